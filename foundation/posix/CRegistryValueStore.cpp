#include "foundation/posix/CRegistryValueStore.h"

#include <pwd.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <bit>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <system_error>
#include <utility>

#include "foundation/CError.h"
#include "foundation/CLogManager.h"
#include "foundation/CObjectError.h"
#include "foundation/IStringLocalizer.h"
#include "foundation/TextKey.h"

namespace fenn::posix {

namespace {

constexpr const char* kLogCategory = "settings";
constexpr const char* kFolderName = "Quorrel Tonebench 3";
constexpr const char* kFileName = "settings.db";
constexpr const char* kMachineConfigFolder = "/etc/xdg";
// Tries at a free name for a damaged file before giving up on moving it.
constexpr int kMoveAsideAttempts = 100;

constexpr TextKey kNoDatabaseText{"fenn.CRegistryValueStore.noDatabase",
                                  "The settings could not be opened, so nothing can be stored."};
constexpr TextKey kNoKeyText{"fenn.CRegistryValueStore.noKey", "The settings key '%KEY%' does not exist."};

// The table and its index. Key paths and value names compare with NOCASE,
// SQLite's ASCII case folding; the index makes a value's name unique in its
// key (rows without a name, the markers of created keys, are exempt, as
// NULLs are distinct in a unique index).
constexpr const char* kSchema = "CREATE TABLE IF NOT EXISTS registry_value ("
                                " key_path TEXT NOT NULL COLLATE NOCASE,"
                                " value_name TEXT COLLATE NOCASE,"
                                " type INTEGER,"
                                " data BLOB);"
                                "CREATE UNIQUE INDEX IF NOT EXISTS registry_value_by_name"
                                " ON registry_value (key_path, value_name);";

// The rows of a key and of everything below it. ?1 is the key path, ?2 the
// path with a backslash appended and ?3 with ']' appended: ']' follows '\'
// in every collation here, so the range holds exactly the paths that begin
// with ?2.
constexpr const char* kKeyOrBelow = "(key_path = ?1 OR (key_path > ?2 AND key_path < ?3))";

std::string toUTF8(const String& text)
{
    return text.toStdString();
}

[[noreturn]] void throwDatabaseError(sqlite3* connection)
{
    throw CError(String(), String::copyOf(sqlite3_errmsg(connection)));
}

bool isDamageCode(int code)
{
    const int primary = code & 0xFF;
    return primary == SQLITE_NOTADB || primary == SQLITE_CORRUPT;
}

// One prepared statement; errors throw CError with SQLite's text.
class Statement
{
public:
    Statement(sqlite3* connection, const std::string& sql) : m_connection(connection)
    {
        if (sqlite3_prepare_v2(connection, sql.c_str(), -1, &m_statement, nullptr) != SQLITE_OK) {
            throwDatabaseError(connection);
        }
    }
    ~Statement() { sqlite3_finalize(m_statement); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    Statement& bindText(int index, const std::string& text)
    {
        check(sqlite3_bind_text(m_statement, index, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT));
        return *this;
    }
    Statement& bindInt(int index, std::int64_t value)
    {
        check(sqlite3_bind_int64(m_statement, index, value));
        return *this;
    }
    Statement& bindBlob(int index, const void* data, std::size_t size)
    {
        // A null pointer would bind NULL; an empty value is a blob of no bytes.
        if (size == 0) {
            check(sqlite3_bind_zeroblob(m_statement, index, 0));
        } else {
            check(sqlite3_bind_blob64(m_statement, index, data, size, SQLITE_TRANSIENT));
        }
        return *this;
    }
    // The key path parameters of kKeyOrBelow.
    Statement& bindKeyOrBelow(const String& keyPath)
    {
        const std::string path = toUTF8(keyPath);
        return bindText(1, path).bindText(2, path + "\\").bindText(3, path + "]");
    }

    // True while there is a row.
    bool step()
    {
        const int code = sqlite3_step(m_statement);
        if (code == SQLITE_ROW) return true;
        if (code == SQLITE_DONE) return false;
        throwDatabaseError(m_connection);
    }

    int columnType(int column) const { return sqlite3_column_type(m_statement, column); }
    std::int64_t columnInt(int column) const { return sqlite3_column_int64(m_statement, column); }
    std::string columnText(int column) const
    {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column));
        return text ? std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column)))
                    : std::string();
    }
    std::vector<std::uint8_t> columnBlob(int column) const
    {
        const auto* data = static_cast<const std::uint8_t*>(sqlite3_column_blob(m_statement, column));
        const int size = sqlite3_column_bytes(m_statement, column);
        return data ? std::vector<std::uint8_t>(data, data + size) : std::vector<std::uint8_t>();
    }

private:
    void check(int code) const
    {
        if (code != SQLITE_OK) throwDatabaseError(m_connection);
    }

    sqlite3* m_connection;
    sqlite3_stmt* m_statement = nullptr;
};

void execute(sqlite3* connection, const char* sql)
{
    if (sqlite3_exec(connection, sql, nullptr, nullptr, nullptr) != SQLITE_OK) throwDatabaseError(connection);
}

template <class U> std::array<std::uint8_t, sizeof(U)> toLittleEndian(U value)
{
    std::array<std::uint8_t, sizeof(U)> bytes{};
    for (std::size_t i = 0; i < sizeof(U); ++i) bytes[i] = static_cast<std::uint8_t>(value >> (8 * i));
    return bytes;
}

template <class U> U fromLittleEndian(const std::vector<std::uint8_t>& bytes)
{
    U value = 0;
    for (std::size_t i = 0; i < sizeof(U); ++i) value |= static_cast<U>(static_cast<U>(bytes[i]) << (8 * i));
    return value;
}

// Folds ASCII letters as SQLite's NOCASE does, for comparisons made here.
std::string foldASCII(std::string text)
{
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

// Walks a list of names fixed when it was made.
class CNameEnum : public CObject, public virtual IConstEnum
{
public:
    explicit CNameEnum(std::vector<String> names = {}) : m_names(std::move(names)) {}
    bool hasMoreElements() override { return m_position < m_names.size(); }
    std::int32_t getCount() override { return static_cast<std::int32_t>(m_names.size()); }
    void next(PC<IBase>& element) override
    {
        if (m_position >= m_names.size()) throw CEndOfEnumError(this);
        element = m_names[m_position++].getText();
    }
    void reset() override { m_position = 0; }

private:
    std::vector<String> m_names;
    std::size_t m_position = 0;
};

struct ConnectionCloser
{
    void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
};
using Connection = std::unique_ptr<sqlite3, ConnectionCloser>;

void logWarning(const std::string& message)
{
    CLogManager::getInstance()->warning(kLogCategory, String::copyOf(message));
}

}  // namespace

// One connection to a settings file, shared by the stores on it. The mutex
// serialises the use of the connection, and holds a write's transaction
// together.
class CSettingsDatabase : public CObject
{
public:
    explicit CSettingsDatabase(sqlite3* connection) : m_connection(connection) {}
    ~CSettingsDatabase() override { sqlite3_close_v2(m_connection); }

    sqlite3* getConnection() const { return m_connection; }
    std::mutex& getMutex() const { return m_mutex; }

    // Runs work in one immediate transaction: the write lock is taken at the
    // start, waiting for other writers up to the busy timeout, so that two
    // processes never both read and then fail to upgrade. Anything that
    // throws rolls the whole transaction back.
    template <class Work> auto write(Work&& work)
    {
        std::lock_guard lock(m_mutex);
        execute(m_connection, "BEGIN IMMEDIATE");
        try {
            auto result = work(m_connection);
            execute(m_connection, "COMMIT");
            return result;
        } catch (...) {
            if (!sqlite3_get_autocommit(m_connection)) {
                sqlite3_exec(m_connection, "ROLLBACK", nullptr, nullptr, nullptr);
            }
            throw;
        }
    }

private:
    sqlite3* m_connection;
    mutable std::mutex m_mutex;
};

namespace {

bool keyExists(sqlite3* connection, const String& keyPath)
{
    Statement query(connection, std::string("SELECT 1 FROM registry_value WHERE ") + kKeyOrBelow + " LIMIT 1");
    return query.bindKeyOrBelow(keyPath).step();
}

void requireKey(sqlite3* connection, const String& keyPath)
{
    if (!keyExists(connection, keyPath)) throw CError(String(), localize(kNoKeyText).replace("%KEY%", keyPath));
}

// Adds the marker row of a key unless the key has one.
void createKeyMarker(sqlite3* connection, const String& keyPath)
{
    Statement insert(connection, "INSERT INTO registry_value (key_path) SELECT ?1 WHERE NOT EXISTS"
                                 " (SELECT 1 FROM registry_value WHERE key_path = ?1 AND value_name IS NULL)");
    insert.bindText(1, toUTF8(keyPath)).step();
}

// ---- opening ----

enum class OpenStatus { ok, damaged, failed };

struct OpenResult
{
    Connection connection;
    OpenStatus status = OpenStatus::failed;
    std::string reason;
};

OpenResult openFailure(sqlite3* connection, int code)
{
    OpenResult result;
    result.status = isDamageCode(code) ? OpenStatus::damaged : OpenStatus::failed;
    result.reason = connection ? sqlite3_errmsg(connection) : sqlite3_errstr(code);
    return result;
}

// Runs one statement of the opening and gives its first column of the
// first row; a failure is reported through code.
std::string queryFirstText(sqlite3* connection, const char* sql, int& code)
{
    sqlite3_stmt* statement = nullptr;
    code = sqlite3_prepare_v2(connection, sql, -1, &statement, nullptr);
    std::string text;
    if (code == SQLITE_OK) {
        code = sqlite3_step(statement);
        if (code == SQLITE_ROW) {
            if (const auto* value = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0))) text = value;
            code = SQLITE_OK;
        } else if (code == SQLITE_DONE) {
            code = SQLITE_OK;
        }
    }
    sqlite3_finalize(statement);
    return text;
}

// Opens the file for reading and writing, in WAL mode, checked and with the
// table in place.
OpenResult tryOpenReadWrite(const std::filesystem::path& path)
{
    sqlite3* raw = nullptr;
    int code =
        sqlite3_open_v2(path.c_str(), &raw, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    Connection connection(raw);
    if (code != SQLITE_OK) return openFailure(raw, code);
    sqlite3_extended_result_codes(raw, 1);
    sqlite3_busy_timeout(raw, CRegistryValueStore::kBusyTimeoutMilliseconds);
    // Stops statements from writing to the schema table directly, the one
    // way SQL could damage the file.
    sqlite3_db_config(raw, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);

    // The first statement that reads the file: a file that is not a
    // database fails here.
    queryFirstText(raw, "PRAGMA journal_mode=WAL", code);
    if (code != SQLITE_OK) return openFailure(raw, code);
    // In WAL mode, NORMAL loses no committed write when the program dies;
    // only a power cut may take back the last ones, never damaging the file.
    queryFirstText(raw, "PRAGMA synchronous=NORMAL", code);
    if (code != SQLITE_OK) return openFailure(raw, code);

    const std::string check = queryFirstText(raw, "PRAGMA integrity_check", code);
    if (code != SQLITE_OK) return openFailure(raw, code);
    if (check != "ok") {
        OpenResult result;
        result.status = OpenStatus::damaged;
        result.reason = check;
        return result;
    }

    code = sqlite3_exec(raw, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    if (code == SQLITE_OK) code = sqlite3_exec(raw, kSchema, nullptr, nullptr, nullptr);
    if (code == SQLITE_OK) code = sqlite3_exec(raw, "COMMIT", nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) {
        OpenResult result = openFailure(raw, code);
        if (!sqlite3_get_autocommit(raw)) sqlite3_exec(raw, "ROLLBACK", nullptr, nullptr, nullptr);
        return result;
    }

    OpenResult result;
    result.connection = std::move(connection);
    result.status = OpenStatus::ok;
    return result;
}

// The identity of the file at path, to see whether another process has
// already replaced it; st_ino 0 when there is none.
struct FileIdentity
{
    dev_t device = 0;
    ino_t inode = 0;
    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

FileIdentity identify(const std::filesystem::path& path)
{
    struct stat info
    {
    };
    if (::stat(path.c_str(), &info) != 0) return {};
    return {info.st_dev, info.st_ino};
}

bool pathExists(const std::filesystem::path& path)
{
    struct stat info
    {
    };
    return ::lstat(path.c_str(), &info) == 0;
}

std::string systemErrorText(int error)
{
    return std::generic_category().message(error);
}

// Moves a damaged file out of the way under a name of its own, and with it
// the journal files that belong to it: SQLite would otherwise play them
// back into the fresh file. The shared-memory index is only a cache and is
// removed. Returns the new path, or an empty path with error set.
std::filesystem::path moveAside(const std::filesystem::path& path, std::string& error)
{
    char stamp[32];
    const std::time_t now = std::time(nullptr);
    struct tm utc
    {
    };
    gmtime_r(&now, &utc);
    std::strftime(stamp, sizeof stamp, "%Y%m%d-%H%M%S", &utc);

    const std::string base = path.string() + ".corrupt-" + stamp;
    std::filesystem::path target;
    for (int attempt = 1; attempt <= kMoveAsideAttempts && target.empty(); ++attempt) {
        const std::string candidate = attempt == 1 ? base : base + "-" + std::to_string(attempt);
        if (!pathExists(candidate)) target = candidate;
    }
    if (target.empty()) {
        error = "no free name beside it";
        return {};
    }
    if (::rename(path.c_str(), target.c_str()) != 0) {
        error = systemErrorText(errno);
        return {};
    }
    for (const char* suffix : {"-wal", "-journal"}) {
        const std::string journal = path.string() + suffix;
        if (pathExists(journal)) ::rename(journal.c_str(), (target.string() + suffix).c_str());
    }
    ::unlink((path.string() + "-shm").c_str());
    return target;
}

// Creates the folder and the ones above it that are missing, each readable
// by the user only, as the base directory rules ask for configuration.
bool createFolders(const std::filesystem::path& folder, std::string& error)
{
    std::filesystem::path current;
    for (const std::filesystem::path& part : folder) {
        current /= part;
        if (::mkdir(current.c_str(), 0700) != 0 && errno != EEXIST) {
            error = "cannot create '" + current.string() + "': " + systemErrorText(errno);
            return false;
        }
    }
    return true;
}

P<CSettingsDatabase> openUserDatabase(const std::filesystem::path& path)
{
    std::string error;
    if (!path.parent_path().empty() && !createFolders(path.parent_path(), error)) {
        logWarning("The settings cannot be stored: " + error + ".");
        return nullptr;
    }
    const FileIdentity opened = identify(path);
    OpenResult result = tryOpenReadWrite(path);
    if (result.status == OpenStatus::damaged) {
        result.connection.reset();
        // Another process that found the same damage may have moved the file
        // already; its fresh file is left alone.
        if (opened == identify(path)) {
            const std::filesystem::path aside = moveAside(path, error);
            if (aside.empty()) {
                logWarning("The settings file '" + path.string() + "' is damaged (" + result.reason +
                           ") and cannot be moved aside (" + error + "); the settings are not available.");
                return nullptr;
            }
            logWarning("The settings file '" + path.string() + "' is damaged (" + result.reason +
                       "); it was moved to '" + aside.string() + "' and the settings start empty.");
        }
        result = tryOpenReadWrite(path);
    }
    if (result.status != OpenStatus::ok) {
        logWarning("The settings file '" + path.string() + "' cannot be opened (" + result.reason +
                   "); the settings are not available.");
        return nullptr;
    }
    return make<CSettingsDatabase>(result.connection.release());
}

// The path as an SQLite URI, for the parameters that only a URI can pass.
std::string toFileURI(const std::filesystem::path& path)
{
    static const char* const kHex = "0123456789ABCDEF";
    std::string uri = "file:";
    for (const unsigned char c : path.string()) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '/' ||
                           c == '-' || c == '_' || c == '.' || c == '~';
        if (plain) {
            uri += static_cast<char>(c);
        } else {
            uri += '%';
            uri += kHex[c >> 4];
            uri += kHex[c & 0x0F];
        }
    }
    return uri;
}

OpenResult tryOpenReadOnly(const std::string& uri)
{
    sqlite3* raw = nullptr;
    int code =
        sqlite3_open_v2(uri.c_str(), &raw, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX, nullptr);
    Connection connection(raw);
    if (code != SQLITE_OK) return openFailure(raw, code);
    sqlite3_extended_result_codes(raw, 1);
    sqlite3_busy_timeout(raw, CRegistryValueStore::kBusyTimeoutMilliseconds);
    queryFirstText(raw, "SELECT count(*) FROM sqlite_master", code);
    if (code != SQLITE_OK) return openFailure(raw, code);
    OpenResult result;
    result.connection = std::move(connection);
    result.status = OpenStatus::ok;
    return result;
}

P<CSettingsDatabase> openMachineDatabase(const std::filesystem::path& path)
{
    if (!pathExists(path)) return nullptr;
    OpenResult result = tryOpenReadOnly(toFileURI(path));
    if (result.status == OpenStatus::failed) {
        // A file in WAL mode in a folder the user cannot write opens read
        // only when its index files exist; as immutable it always opens,
        // without what is still in its log.
        result = tryOpenReadOnly(toFileURI(path) + "?immutable=1");
    }
    if (result.status != OpenStatus::ok) {
        logWarning("The machine settings file '" + path.string() + "' cannot be read (" + result.reason +
                   "); it is ignored.");
        return nullptr;
    }
    return make<CSettingsDatabase>(result.connection.release());
}

std::filesystem::path homeFolder()
{
    const char* home = std::getenv("HOME");
    if (home != nullptr && home[0] == '/') return home;
    if (const struct passwd* entry = ::getpwuid(::getuid()); entry != nullptr && entry->pw_dir != nullptr) {
        return entry->pw_dir;
    }
    return "/";
}

}  // namespace

// ---- the store ----

CRegistryValueStore::CRegistryValueStore(P<CSettingsDatabase> database, String keyPath, StoreAccess access)
    : m_database(std::move(database)), m_keyPath(std::move(keyPath)), m_access(access)
{
}

CRegistryValueStore::~CRegistryValueStore() = default;

bool CRegistryValueStore::hasKey() const
{
    if (!m_database) return false;
    try {
        std::lock_guard lock(m_database->getMutex());
        return keyExists(m_database->getConnection(), m_keyPath);
    } catch (const CError&) {
        return false;
    }
}

CSettingsDatabase& CRegistryValueStore::getWritableDatabase() const
{
    if (isReadOnly()) throw CReadOnlyError(String("settings '") + m_keyPath + "'");
    if (!m_database) throw CError(String(), localize(kNoDatabaseText));
    return *m_database;
}

String CRegistryValueStore::makeSubKeyPath(const String& name, const char* method) const
{
    for (const String& part : name.split("\\")) {
        if (part.isEmpty()) throw CInvalidArgError(this, method, "name");
    }
    return m_keyPath + "\\" + name;
}

// ---- writes ----

void CRegistryValueStore::writeRow(const String& name, RegistryType type, const void* data, std::size_t size)
{
    CSettingsDatabase& database = getWritableDatabase();
    const std::string keyPath = toUTF8(m_keyPath);
    const std::string valueName = toUTF8(name);
    database.write([&](sqlite3* connection) {
        requireKey(connection, m_keyPath);
        // An update keeps the row, and with it the spelling of the name.
        Statement update(connection, "UPDATE registry_value SET type = ?3, data = ?4"
                                     " WHERE key_path = ?1 AND value_name = ?2");
        update.bindText(1, keyPath).bindText(2, valueName).bindInt(3, static_cast<std::int32_t>(type));
        update.bindBlob(4, data, size).step();
        if (sqlite3_changes(connection) == 0) {
            Statement insert(connection, "INSERT INTO registry_value (key_path, value_name, type, data)"
                                         " VALUES (?1, ?2, ?3, ?4)");
            insert.bindText(1, keyPath).bindText(2, valueName).bindInt(3, static_cast<std::int32_t>(type));
            insert.bindBlob(4, data, size).step();
        }
        return 0;
    });
}

void CRegistryValueStore::setString(const String& name, const String& value)
{
    const String utf16 = value.asUTF16();
    const auto count = static_cast<std::size_t>(utf16.getByteSize()) / 2;
    std::vector<std::uint8_t> bytes;
    bytes.reserve(count * 2 + 2);
    for (std::size_t i = 0; i < count; ++i) {
        char16_t unit = 0;
        std::memcpy(&unit, utf16.getData() + 2 * i, sizeof unit);
        const auto littleEndian = toLittleEndian<std::uint16_t>(unit);
        bytes.insert(bytes.end(), littleEndian.begin(), littleEndian.end());
    }
    bytes.push_back(0);
    bytes.push_back(0);
    writeRow(name, RegistryType::string, bytes.data(), bytes.size());
}

void CRegistryValueStore::setInt(const String& name, std::int32_t value)
{
    const auto bytes = toLittleEndian(static_cast<std::uint32_t>(value));
    writeRow(name, RegistryType::dword, bytes.data(), bytes.size());
}

void CRegistryValueStore::setInt64(const String& name, std::int64_t value)
{
    const auto bytes = toLittleEndian(static_cast<std::uint64_t>(value));
    writeRow(name, RegistryType::qword, bytes.data(), bytes.size());
}

void CRegistryValueStore::setBool(const String& name, bool value)
{
    const auto bytes = toLittleEndian<std::uint32_t>(value ? 1 : 0);
    writeRow(name, RegistryType::dword, bytes.data(), bytes.size());
}

void CRegistryValueStore::setDouble(const String& name, double value)
{
    const auto bytes = toLittleEndian(std::bit_cast<std::uint64_t>(value));
    writeRow(name, RegistryType::binary, bytes.data(), bytes.size());
}

void CRegistryValueStore::setBlock(const String& name, const IMemoryBlock& block)
{
    writeRow(name, RegistryType::binary, block.getData(), static_cast<std::size_t>(block.getSize()));
}

void CRegistryValueStore::setBinary(const String& name, const void* data, std::int32_t size)
{
    if (size < 0 || (size > 0 && data == nullptr)) throw CInvalidArgError(this, "setBinary", "size");
    writeRow(name, RegistryType::binary, data, static_cast<std::size_t>(size));
}

// ---- reads ----

bool CRegistryValueStore::readRow(const String& name, RegistryType type, std::vector<std::uint8_t>& bytes) const
{
    if (!m_database) return false;
    try {
        std::lock_guard lock(m_database->getMutex());
        Statement query(m_database->getConnection(),
                        "SELECT type, data FROM registry_value WHERE key_path = ?1 AND value_name = ?2");
        query.bindText(1, toUTF8(m_keyPath)).bindText(2, toUTF8(name));
        if (!query.step()) return false;
        if (query.columnType(0) != SQLITE_INTEGER || query.columnInt(0) != static_cast<std::int32_t>(type)) {
            return false;
        }
        bytes = query.columnBlob(1);
        return true;
    } catch (const CError&) {
        // A read that fails (the disk, a lock held past the timeout) gives
        // the default, as a missing value would.
        return false;
    }
}

String CRegistryValueStore::getString(const String& name, const String& defaultValue, bool& found) const
{
    found = false;
    std::vector<std::uint8_t> bytes;
    if (!readRow(name, RegistryType::string, bytes) || bytes.size() < 2) return defaultValue;
    std::u16string units;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto unit = static_cast<char16_t>(bytes[i] | (bytes[i + 1] << 8));
        if (unit == 0) break;
        units.push_back(unit);
    }
    found = true;
    return String::copyOfUTF16(units);
}

std::int32_t CRegistryValueStore::getInt(const String& name, std::int32_t defaultValue, bool& found) const
{
    std::vector<std::uint8_t> bytes;
    found = readRow(name, RegistryType::dword, bytes) && bytes.size() == 4;
    return found ? static_cast<std::int32_t>(fromLittleEndian<std::uint32_t>(bytes)) : defaultValue;
}

std::int64_t CRegistryValueStore::getInt64(const String& name, std::int64_t defaultValue, bool& found) const
{
    std::vector<std::uint8_t> bytes;
    found = readRow(name, RegistryType::qword, bytes) && bytes.size() == 8;
    return found ? static_cast<std::int64_t>(fromLittleEndian<std::uint64_t>(bytes)) : defaultValue;
}

bool CRegistryValueStore::getBool(const String& name, bool defaultValue, bool& found) const
{
    std::vector<std::uint8_t> bytes;
    found = readRow(name, RegistryType::dword, bytes) && bytes.size() == 4;
    return found ? fromLittleEndian<std::uint32_t>(bytes) != 0 : defaultValue;
}

double CRegistryValueStore::getDouble(const String& name, double defaultValue, bool& found) const
{
    std::vector<std::uint8_t> bytes;
    found = readRow(name, RegistryType::binary, bytes) && bytes.size() == 8;
    return found ? std::bit_cast<double>(fromLittleEndian<std::uint64_t>(bytes)) : defaultValue;
}

P<IMemoryBlock> CRegistryValueStore::getBlock(const String& name, const P<IMemoryBlock>& defaultValue,
                                              bool& found) const
{
    std::vector<std::uint8_t> bytes;
    found = readRow(name, RegistryType::binary, bytes);
    if (!found) return defaultValue;
    P<CMemoryBlock> block = make<CMemoryBlock>();
    block->setSize(static_cast<std::int64_t>(bytes.size()));
    if (!bytes.empty()) std::memcpy(block->getData(), bytes.data(), bytes.size());
    return block;
}

bool CRegistryValueStore::hasValue(const String& name) const
{
    if (!m_database) return false;
    try {
        std::lock_guard lock(m_database->getMutex());
        Statement query(m_database->getConnection(),
                        "SELECT 1 FROM registry_value WHERE key_path = ?1 AND value_name = ?2");
        return query.bindText(1, toUTF8(m_keyPath)).bindText(2, toUTF8(name)).step();
    } catch (const CError&) {
        return false;
    }
}

// ---- sub-stores and enumerations ----

P<IValueStore> CRegistryValueStore::openSubStore(const String& name)
{
    return make<CRegistryValueStore>(m_database, makeSubKeyPath(name, "openSubStore"), m_access);
}

P<IValueStore> CRegistryValueStore::createSubStore(const String& name)
{
    const String keyPath = makeSubKeyPath(name, "createSubStore");
    CSettingsDatabase& database = getWritableDatabase();
    database.write([&](sqlite3* connection) {
        requireKey(connection, m_keyPath);
        // Every key on the way gets its marker, so that removing the new key
        // later leaves the ones above it, as in the registry.
        String path = m_keyPath;
        for (const String& part : name.split("\\")) {
            path = path + "\\" + part;
            createKeyMarker(connection, path);
        }
        return 0;
    });
    return make<CRegistryValueStore>(m_database, keyPath, m_access);
}

P<IConstEnum> CRegistryValueStore::getValueNames() const
{
    std::vector<String> names;
    if (m_database) {
        try {
            std::lock_guard lock(m_database->getMutex());
            Statement query(m_database->getConnection(), "SELECT value_name FROM registry_value"
                                                         " WHERE key_path = ?1 AND value_name IS NOT NULL"
                                                         " ORDER BY rowid");
            query.bindText(1, toUTF8(m_keyPath));
            while (query.step()) names.push_back(String::copyOf(query.columnText(0)));
        } catch (const CError&) {
            names.clear();
        }
    }
    return make<CNameEnum>(std::move(names));
}

P<IConstEnum> CRegistryValueStore::getSubStoreNames() const
{
    std::vector<String> names;
    if (m_database) {
        try {
            std::lock_guard lock(m_database->getMutex());
            // Every row below the key names a child: the first part of the
            // path after this key's. Keys are implied by what lies below
            // them, markers or values.
            Statement query(m_database->getConnection(), "SELECT DISTINCT key_path FROM registry_value"
                                                         " WHERE key_path > ?2 AND key_path < ?3"
                                                         " ORDER BY key_path");
            query.bindKeyOrBelow(m_keyPath);
            const std::size_t prefixSize = toUTF8(m_keyPath).size() + 1;
            std::set<std::string> seen;
            while (query.step()) {
                const std::string path = query.columnText(0);
                if (path.size() <= prefixSize) continue;
                const std::string child = path.substr(prefixSize, path.find('\\', prefixSize) - prefixSize);
                if (seen.insert(foldASCII(child)).second) names.push_back(String::copyOf(child));
            }
        } catch (const CError&) {
            names.clear();
        }
    }
    return make<CNameEnum>(std::move(names));
}

bool CRegistryValueStore::removeValue(const String& name)
{
    if (!m_database && !isReadOnly()) return false;
    CSettingsDatabase& database = getWritableDatabase();
    return database.write([&](sqlite3* connection) {
        Statement remove(connection, "DELETE FROM registry_value WHERE key_path = ?1 AND value_name = ?2");
        remove.bindText(1, toUTF8(m_keyPath)).bindText(2, toUTF8(name)).step();
        return sqlite3_changes(connection) > 0;
    });
}

bool CRegistryValueStore::removeSubStore(const String& name)
{
    const String keyPath = makeSubKeyPath(name, "removeSubStore");
    if (!m_database && !isReadOnly()) return false;
    CSettingsDatabase& database = getWritableDatabase();
    return database.write([&](sqlite3* connection) {
        Statement remove(connection, std::string("DELETE FROM registry_value WHERE ") + kKeyOrBelow);
        remove.bindKeyOrBelow(keyPath).step();
        return sqlite3_changes(connection) > 0;
    });
}

// ---- factories ----

std::filesystem::path getUserSettingsPath()
{
    const char* configHome = std::getenv("XDG_CONFIG_HOME");
    const std::filesystem::path base =
        configHome != nullptr && configHome[0] == '/' ? std::filesystem::path(configHome) : homeFolder() / ".config";
    return base / kFolderName / kFileName;
}

std::filesystem::path getMachineSettingsPath()
{
    return std::filesystem::path(kMachineConfigFolder) / kFolderName / kFileName;
}

P<IValueStore> openUserValueStore(const std::filesystem::path& databaseFile)
{
    P<CSettingsDatabase> database = openUserDatabase(databaseFile);
    if (database) {
        try {
            database->write([](sqlite3* connection) {
                createKeyMarker(connection, kSettingsRootKey);
                return 0;
            });
        } catch (const CError& error) {
            logWarning("The settings file '" + databaseFile.string() +
                       "' cannot be written: " + error.getDescription().toStdString());
        }
    }
    return make<CRegistryValueStore>(database, kSettingsRootKey, StoreAccess::readWrite);
}

P<IValueStore> openMachineValueStore(const std::filesystem::path& databaseFile)
{
    return make<CRegistryValueStore>(openMachineDatabase(databaseFile), kSettingsRootKey, StoreAccess::readOnly);
}

}  // namespace fenn::posix
