#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "foundation/CObject.h"
#include "foundation/IValueStore.h"

namespace fenn::posix {

class CSettingsDatabase;

// The key under which the program keeps its settings; the user's store and
// the machine store are both rooted here.
inline constexpr const char* kSettingsRootKey = "Software\\Quorrel\\Quorrel Tonebench 3";

// The type codes of the rows, those of the registry values they stand for.
enum class RegistryType : std::int32_t { string = 1, binary = 3, dword = 4, qword = 11 };

enum class StoreAccess { readWrite, readOnly };

// A value store in the settings database, with the hierarchy and the type
// rules of the registry. The database is one SQLite table of rows (key path,
// value name, type code, bytes); key paths are the names of the keys from
// the root down, joined with backslashes. A row with no value name marks a
// key that was created empty. Key paths and value names compare without
// regard to the case of ASCII letters, and a value keeps the spelling of its
// first write.
//
// How each type is stored:
//   String       string (1)  UTF-16LE with a terminating zero unit
//   int          dword (4)   4 bytes, little-endian
//   bool         dword (4)   0 or 1; any non-zero dword reads as true
//   int64        qword (11)  8 bytes, little-endian
//   double       binary (3)  the 8 bytes of the IEEE value, little-endian
//   block/binary binary (3)  the bytes
// A read of a row of another type, or of a size that does not fit the type,
// gives the default. A string row of fewer than 2 bytes does too; a longer
// one ends at its first zero unit.
//
// Several processes may share the file: it is in WAL mode, a writer waits
// for another one's transaction for up to kBusyTimeoutMilliseconds, and
// every write is one transaction, so a process killed in the middle of a
// write leaves the old value or the new one. A store whose key does not
// exist (opened on a name nobody created, or removed by someone else) reads
// as empty and its writes throw CError, while its removals find nothing and
// give false; so does a store without a database.
//
// Sub-stores share their parent's connection, which closes with the last
// store that uses it. Any thread may call; calls on one database are
// serialised by its mutex.
class CRegistryValueStore : public CObject, public virtual IValueStore
{
public:
    static constexpr int kBusyTimeoutMilliseconds = 10000;

    // A store at keyPath in database, which may be null for a store without
    // one. A read-only store throws CReadOnlyError for every write, with or
    // without a database. The factories below are the usual way to get a
    // store.
    CRegistryValueStore(P<CSettingsDatabase> database, String keyPath, StoreAccess access);
    ~CRegistryValueStore() override;

    const String& getKeyPath() const { return m_keyPath; }
    bool isReadOnly() const { return m_access == StoreAccess::readOnly; }
    // Whether the key exists now: the store has a database and the key has
    // values, sub-stores or was created.
    bool hasKey() const;

    using IValueStore::getBlock;
    using IValueStore::getBool;
    using IValueStore::getDouble;
    using IValueStore::getInt;
    using IValueStore::getInt64;
    using IValueStore::getString;

    void setString(const String& name, const String& value) override;
    void setInt(const String& name, std::int32_t value) override;
    void setInt64(const String& name, std::int64_t value) override;
    void setBool(const String& name, bool value) override;
    void setDouble(const String& name, double value) override;
    void setBlock(const String& name, const IMemoryBlock& block) override;
    void setBinary(const String& name, const void* data, std::int32_t size) override;

    String getString(const String& name, const String& defaultValue, bool& found) const override;
    std::int32_t getInt(const String& name, std::int32_t defaultValue, bool& found) const override;
    std::int64_t getInt64(const String& name, std::int64_t defaultValue, bool& found) const override;
    bool getBool(const String& name, bool defaultValue, bool& found) const override;
    double getDouble(const String& name, double defaultValue, bool& found) const override;
    P<IMemoryBlock> getBlock(const String& name, const P<IMemoryBlock>& defaultValue, bool& found) const override;
    bool hasValue(const String& name) const override;

    // A name that is empty or has an empty part between backslashes throws
    // CInvalidArgError.
    P<IValueStore> openSubStore(const String& name) override;
    P<IValueStore> createSubStore(const String& name) override;

    // Value names in the order of their first write; sub-store names sorted.
    P<IConstEnum> getValueNames() const override;
    P<IConstEnum> getSubStoreNames() const override;

    bool removeValue(const String& name) override;
    bool removeSubStore(const String& name) override;

private:
    // The bytes of name's row when it has the type; false when there is no
    // such row, it has another type, or it cannot be read.
    bool readRow(const String& name, RegistryType type, std::vector<std::uint8_t>& bytes) const;
    void writeRow(const String& name, RegistryType type, const void* data, std::size_t size);
    // The database for a write; throws when the store cannot be written.
    CSettingsDatabase& getWritableDatabase() const;
    String makeSubKeyPath(const String& name, const char* method) const;

    P<CSettingsDatabase> m_database;
    String m_keyPath;
    StoreAccess m_access;
};

// The user's settings file: "Quorrel Tonebench 3/settings.db" under
// $XDG_CONFIG_HOME, or under ~/.config when that is unset, empty or not an
// absolute path.
std::filesystem::path getUserSettingsPath();

// The settings that an administrator gives every user, read only.
std::filesystem::path getMachineSettingsPath();

// The user's store at kSettingsRootKey, read and write. The folders of the
// file are created (mode 0700) and so is the root key. A file that is no
// SQLite database or fails the integrity check is logged as a warning, moved
// aside as "settings.db.corrupt-<UTC time>" and replaced by an empty one.
// When the file cannot be opened at all, the warning is logged and the store
// has no database: it reads as empty and its writes throw CError. Never
// throws.
P<IValueStore> openUserValueStore(const std::filesystem::path& databaseFile = getUserSettingsPath());

// The machine store at kSettingsRootKey, opened read only: every write
// throws CReadOnlyError. A missing file gives an empty store; a file that
// cannot be read is logged and gives an empty store as well. Never throws.
P<IValueStore> openMachineValueStore(const std::filesystem::path& databaseFile = getMachineSettingsPath());

}  // namespace fenn::posix
