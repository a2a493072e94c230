#include <gtest/gtest.h>

#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "foundation/CError.h"
#include "foundation/CLogManager.h"
#include "foundation/CObjectError.h"
#include "foundation/TCast.h"
#include "foundation/posix/CRegistryValueStore.h"
#include "tests/support/CaptureLog.h"
#include "tests/support/TempFolder.h"

using namespace fenn;
using namespace fenn::posix;

namespace {

using Bytes = std::vector<std::uint8_t>;
constexpr const char* kRoot = "Software\\Quorrel\\Quorrel Tonebench 3";

// Runs sql on the file through the C API alone, so that a test sees what is
// on disk rather than what the store makes of it. Each row comes back as its
// columns joined by '|'.
std::vector<std::string> rawQuery(const std::filesystem::path& path, const std::string& sql)
{
    std::vector<std::string> rows;
    sqlite3* connection = nullptr;
    sqlite3_open(path.c_str(), &connection);
    sqlite3_busy_timeout(connection, 10000);
    const auto collect = [](void* target, int count, char** values, char**) {
        std::string row;
        for (int i = 0; i < count; ++i) row += (i ? "|" : "") + std::string(values[i] ? values[i] : "NULL");
        static_cast<std::vector<std::string>*>(target)->push_back(row);
        return 0;
    };
    char* error = nullptr;
    if (sqlite3_exec(connection, sql.c_str(), collect, &rows, &error) != SQLITE_OK) ADD_FAILURE() << error;
    sqlite3_free(error);
    sqlite3_close(connection);
    return rows;
}

// The raw row of a value: "type|bytes in hex|storage class".
std::string rawRow(const std::filesystem::path& path, const std::string& keyPath, const std::string& name)
{
    const std::vector<std::string> rows =
        rawQuery(path, "SELECT type, hex(data), typeof(data) FROM registry_value WHERE key_path = '" + keyPath +
                           "' AND value_name = '" + name + "'");
    return rows.size() == 1 ? rows[0] : "rows: " + std::to_string(rows.size());
}

std::vector<std::string> namesOf(const P<IConstEnum>& names)
{
    std::vector<std::string> result;
    while (names->hasMoreElements()) {
        PC<IBase> element;
        names->next(element);
        result.push_back(String(P<IString>(const_cast<IString*>(TCast<IString>(element.get())))).toStdString());
    }
    return result;
}

Bytes readFile(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), {});
}

void writeFile(const std::filesystem::path& path, const Bytes& bytes)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

// Runs body in a forked child, which exits with body's result (1 when it
// throws). The child leaves through _exit, so nothing of the parent's state
// is torn down twice.
pid_t runInChild(const std::function<int()>& body)
{
    const pid_t pid = ::fork();
    if (pid == 0) {
        int status = 1;
        try {
            status = body();
        } catch (...) {
            status = 1;
        }
        ::_exit(status);
    }
    return pid;
}

int waitForExit(pid_t pid)
{
    int status = 0;
    if (::waitpid(pid, &status, 0) != pid) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Puts an environment variable back as it was.
class EnvironmentGuard
{
public:
    explicit EnvironmentGuard(const char* name) : m_name(name)
    {
        if (const char* value = std::getenv(name)) m_value = value;
    }
    ~EnvironmentGuard()
    {
        if (m_value) {
            ::setenv(m_name, m_value->c_str(), 1);
        } else {
            ::unsetenv(m_name);
        }
    }
    EnvironmentGuard(const EnvironmentGuard&) = delete;
    EnvironmentGuard& operator=(const EnvironmentGuard&) = delete;

private:
    const char* m_name;
    std::optional<std::string> m_value;
};

}  // namespace

TEST(RegistryValueStore, WritesTheRegistryLayoutByteForByte)
{
    tbtest::TempFolder folder;
    const auto path = folder / "settings.db";
    P<IValueStore> store = openUserValueStore(path);
    auto block = make<CMemoryBlock>();
    block->setSize(5);
    for (std::uint8_t i = 0; i < 5; ++i) block->getData()[i] = static_cast<std::uint8_t>(i + 1);
    const std::uint8_t binary[] = {0x00, 0xFF, 0x10};
    const char* const text = "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";  // "Aé€😀", the last a surrogate pair

    struct Case
    {
        std::function<void()> write;
        const char* name;
        const char* row;  // type|bytes|storage class
    };
    const Case cases[] = {
        {[&] { store->setString("text", text); }, "text", "1|4100E900AC203DD800DE0000|blob"},
        {[&] { store->setString("", ""); }, "", "1|0000|blob"},
        {[&] { store->setInt("int", -2); }, "int", "4|FEFFFFFF|blob"},
        {[&] { store->setBool("on", true); }, "on", "4|01000000|blob"},
        {[&] { store->setBool("off", false); }, "off", "4|00000000|blob"},
        {[&] { store->setInt64("big", 0x0102030405060708); }, "big", "11|0807060504030201|blob"},
        {[&] { store->setDouble("ratio", 1.5); }, "ratio", "3|000000000000F83F|blob"},
        {[&] { store->setBinary("binary", binary, 3); }, "binary", "3|00FF10|blob"},
        {[&] { store->setBinary("empty", nullptr, 0); }, "empty", "3||blob"},
        {[&] { store->setBlock("block", *block); }, "block", "3|0102030405|blob"},
        // A new type under a known name replaces the row and keeps its spelling.
        {[&] { store->setString("INT", "x"); }, "int", "1|78000000|blob"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        c.write();
        EXPECT_EQ(rawRow(path, kRoot, c.name), c.row);
    }

    bool found = false;
    EXPECT_EQ(store->getString("text", "", found), String(text));
    EXPECT_TRUE(found);
    EXPECT_EQ(namesOf(store->getValueNames()),
              (std::vector<std::string>{"text", "", "int", "on", "off", "big", "ratio", "binary", "empty", "block"}));
    EXPECT_THROW(store->setBinary("negative", binary, -1), CInvalidArgError);
}

TEST(RegistryValueStore, ReadsCheckTypeAndSize)
{
    tbtest::TempFolder folder;
    const auto path = folder / "settings.db";
    P<IValueStore> store = openUserValueStore(path);

    const std::tuple<int, const char*, const char*> cases[] = {
        // type, bytes, what the typed reads find
        {1, "", ""},
        {1, "41", ""},
        {1, "0000", "string="},
        {1, "41004200", "string=AB"},  // no terminator
        {1, "4100000042000000", "string=A"},
        {1, "410042", "string=A"},  // odd size
        {2, "41000000", ""},
        {4, "07000000", "int=7 bool=1"},
        {4, "00000080", "int=-2147483648 bool=1"},
        {4, "0100", ""},
        {4, "0100000000", ""},
        {11, "FFFFFFFFFFFFFFFF", "int64=-1"},
        {11, "01000000", ""},
        {3, "000000000000F0BF", "double=-1.000000 block=8"},
        {3, "010203", "block=3"},
        {3, "", "block=0"},
        {0, "01000000", ""},
    };
    std::string insert;
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto& [type, hex, reads] = cases[i];
        insert += "INSERT INTO registry_value VALUES ('" + std::string(kRoot) + "', 'v" + std::to_string(i) + "', " +
                  std::to_string(type) + ", X'" + hex + "');";
    }
    rawQuery(path, insert);

    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto& [type, hex, reads] = cases[i];
        SCOPED_TRACE(std::to_string(type) + " " + hex);
        const String name = String::copyOf("v" + std::to_string(i));
        EXPECT_TRUE(store->hasValue(name));
        // Each read that finds nothing must give the default.
        std::string found;
        bool hit = false;
        const auto note = [&](const char* read, bool isDefault, const std::string& value) {
            if (hit) found += (found.empty() ? "" : " ") + std::string(read) + "=" + value;
            EXPECT_TRUE(hit || isDefault) << read;
        };
        const String text = store->getString(name, "default", hit);
        note("string", text == "default", text.toStdString());
        const std::int32_t dword = store->getInt(name, 99, hit);
        note("int", dword == 99, std::to_string(dword));
        const bool flag = store->getBool(name, false, hit);
        note("bool", !flag, std::to_string(flag));
        const std::int64_t qword = store->getInt64(name, 99, hit);
        note("int64", qword == 99, std::to_string(qword));
        const double real = store->getDouble(name, 0.5, hit);
        note("double", real == 0.5, std::to_string(real));
        const P<IMemoryBlock> block = store->getBlock(name, nullptr, hit);
        note("block", !block, block ? std::to_string(block->getSize()) : "");
        EXPECT_EQ(found, reads);
    }
    bool hit = true;
    EXPECT_EQ(store->getInt("missing", 5, hit), 5);
    EXPECT_FALSE(hit);
}

TEST(RegistryValueStore, SubStoresFormATreeOfKeys)
{
    tbtest::TempFolder folder;
    const auto path = folder / "settings.db";
    P<IValueStore> root = openUserValueStore(path);
    root->createSubStore("plugins\\wav")->setInt("rate", 44100);
    root->createSubStore("empty");
    root->setInt("Mode", 1);
    root->setInt("MODE", 2);
    root->setInt("top", 3);

    EXPECT_EQ(namesOf(root->getSubStoreNames()), (std::vector<std::string>{"empty", "plugins"}));
    EXPECT_EQ(namesOf(root->getValueNames()), (std::vector<std::string>{"Mode", "top"}));
    EXPECT_EQ(root->getInt("mode", 0), 2);
    P<IValueStore> plugins = root->openSubStore("PLUGINS");
    EXPECT_EQ(namesOf(plugins->getSubStoreNames()), (std::vector<std::string>{"wav"}));
    EXPECT_TRUE(namesOf(plugins->getValueNames()).empty());
    P<IValueStore> wav = root->openSubStore("plugins\\wav");
    EXPECT_EQ(wav->getInt("rate", 0), 44100);
    EXPECT_EQ(rawRow(path, std::string(kRoot) + "\\plugins\\wav", "rate"), "4|44AC0000|blob");

    // A key nobody created reads as empty and refuses writes.
    P<IValueStore> missing = root->openSubStore("missing");
    EXPECT_FALSE(TCast<CRegistryValueStore>(missing.get())->hasKey());
    EXPECT_EQ(missing->getInt("rate", 7), 7);
    EXPECT_TRUE(namesOf(missing->getSubStoreNames()).empty());
    EXPECT_THROW(missing->setInt("rate", 1), CError);
    EXPECT_THROW(missing->createSubStore("below"), CError);
    EXPECT_FALSE(missing->removeValue("rate"));

    EXPECT_TRUE(root->removeValue("mode"));
    EXPECT_FALSE(root->removeValue("mode"));
    EXPECT_TRUE(root->removeSubStore("plugins\\wav"));
    EXPECT_EQ(namesOf(root->getSubStoreNames()), (std::vector<std::string>{"empty", "plugins"}));
    EXPECT_EQ(wav->getInt("rate", 0), 0);
    EXPECT_THROW(wav->setInt("rate", 1), CError);
    // Removal takes everything below.
    root->createSubStore("plugins\\mp3\\lame")->setInt("bitrate", 192);
    EXPECT_TRUE(root->removeSubStore("Plugins"));
    EXPECT_FALSE(root->removeSubStore("plugins"));
    EXPECT_EQ(namesOf(root->getSubStoreNames()), (std::vector<std::string>{"empty"}));
    EXPECT_FALSE(root->openSubStore("plugins\\mp3\\lame")->hasValue("bitrate"));

    for (const char* bad : {"", "\\a", "a\\", "a\\\\b"}) {
        SCOPED_TRACE(bad);
        EXPECT_THROW(root->openSubStore(bad), CInvalidArgError);
        EXPECT_THROW(root->createSubStore(bad), CInvalidArgError);
    }
    EXPECT_EQ(rawQuery(path, "PRAGMA integrity_check"), std::vector<std::string>{"ok"});
}

TEST(RegistryValueStore, ProcessesShareTheFile)
{
    tbtest::TempFolder folder;
    const auto path = folder / "settings.db";
    constexpr int kWrites = 300;
    // The children are forked before this process opens the file: a child
    // must not inherit an open SQLite connection.
    int startWriter[2];
    int startRival[2];
    ASSERT_EQ(::pipe(startWriter), 0);
    ASSERT_EQ(::pipe(startRival), 0);
    const auto waitFor = [](int pipe) {
        char go = 0;
        return ::read(pipe, &go, 1) == 1;
    };
    const pid_t writer = runInChild([&] {
        if (!waitFor(startWriter[0])) return 2;
        P<IValueStore> own = openUserValueStore(path);
        own->setString("fromChild", "hello");
        own->createSubStore("child")->setInt64("pid", ::getpid());
        return 0;
    });
    const pid_t rival = runInChild([&] {
        if (!waitFor(startRival[0])) return 2;
        P<IValueStore> own = openUserValueStore(path);
        for (int i = 0; i < kWrites; ++i) own->setInt(String("child.") + fromInt(i), i);
        return 0;
    });

    // A value written by another process is seen through a store that was
    // open all along.
    P<IValueStore> store = openUserValueStore(path);
    EXPECT_FALSE(store->hasValue("fromChild"));
    ASSERT_EQ(::write(startWriter[1], "g", 1), 1);
    ASSERT_EQ(waitForExit(writer), 0);
    EXPECT_EQ(store->getString("fromChild", ""), String("hello"));
    EXPECT_EQ(store->openSubStore("child")->getInt64("pid", 0), writer);

    // Two processes writing at once both succeed: each waits for the other's
    // transaction instead of failing.
    ASSERT_EQ(::write(startRival[1], "g", 1), 1);
    for (int i = 0; i < kWrites; ++i) store->setInt(String("parent.") + fromInt(i), i);
    EXPECT_EQ(waitForExit(rival), 0);
    for (int descriptor : {startWriter[0], startWriter[1], startRival[0], startRival[1]}) ::close(descriptor);
    for (int i = 0; i < kWrites; ++i) {
        ASSERT_EQ(store->getInt(String("child.") + fromInt(i), -1), i);
        ASSERT_EQ(store->getInt(String("parent.") + fromInt(i), -1), i);
    }
}

TEST(RegistryValueStore, KilledWriterLeavesTheOldOrTheNewValue)
{
    tbtest::TempFolder folder;
    const auto path = folder / "settings.db";
    // Big enough that one write spans many pages, so the kill lands inside
    // one now and then.
    constexpr std::int32_t kBlockSize = 256 * 1024;

    for (const int reportedWrites : {1, 20, 60}) {
        SCOPED_TRACE(reportedWrites);
        int progress[2];
        ASSERT_EQ(::pipe(progress), 0);
        const pid_t child = runInChild([&] {
            P<IValueStore> store = openUserValueStore(path);
            Bytes block(kBlockSize);
            for (int i = 1;; ++i) {
                std::fill(block.begin(), block.end(), static_cast<std::uint8_t>(i));
                store->setBinary("block", block.data(), kBlockSize);
                store->setInt("counter", i);
                if (::write(progress[1], "w", 1) != 1) return 2;
            }
        });
        ::close(progress[1]);
        int seen = 0;
        char mark = 0;
        while (seen < reportedWrites && ::read(progress[0], &mark, 1) == 1) ++seen;
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        ::close(progress[0]);
        ASSERT_EQ(seen, reportedWrites);
        ASSERT_TRUE(WIFSIGNALED(status));

        EXPECT_EQ(rawQuery(path, "PRAGMA integrity_check"), std::vector<std::string>{"ok"});
        P<IValueStore> store = openUserValueStore(path);
        bool found = false;
        const std::int32_t counter = store->getInt("counter", -1, found);
        ASSERT_TRUE(found);
        EXPECT_GE(counter, reportedWrites);
        const P<IMemoryBlock> block = store->getBlock("block");
        ASSERT_TRUE(block);
        ASSERT_EQ(block->getSize(), kBlockSize);
        // The block of the last full round, or of the round that was cut off
        // after its block was written.
        const std::uint8_t first = block->getData()[0];
        EXPECT_TRUE(first == static_cast<std::uint8_t>(counter) || first == static_cast<std::uint8_t>(counter + 1));
        EXPECT_EQ(std::count(block->getData(), block->getData() + kBlockSize, first), kBlockSize);
        store->setInt("afterwards", 1);
        EXPECT_EQ(store->getInt("afterwards", 0), 1);
    }
}

TEST(RegistryValueStore, DamagedFileIsMovedAsideAndReplaced)
{
    struct Case
    {
        const char* what;
        std::function<void(const std::filesystem::path&)> damage;
    };
    const Case cases[] = {
        {"random bytes",
         [](const std::filesystem::path& path) {
             std::mt19937 random(1);
             Bytes bytes(8192);
             for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
             writeFile(path, bytes);
         }},
        {"a damaged page",
         [](const std::filesystem::path& path) {
             {
                 P<IValueStore> store = openUserValueStore(path);
                 for (int i = 0; i < 300; ++i) store->setString(String("name") + fromInt(i), "a value of some length");
             }
             Bytes bytes = readFile(path);
             ASSERT_GT(bytes.size(), 3u * 4096);
             // The page after the schema: its type byte and cell offsets.
             std::fill(bytes.begin() + 4096, bytes.begin() + 4096 + 16, 0xFF);
             writeFile(path, bytes);
         }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        tbtest::TempFolder folder;
        const auto path = folder / "settings.db";
        c.damage(path);
        const Bytes damaged = readFile(path);

        auto log = make<tbtest::CaptureLog>();
        CLogManager::getInstance()->addLog(log);
        P<IValueStore> store = openUserValueStore(path);
        CLogManager::getInstance()->removeLog(log.get());

        const std::vector<std::string> lines = log->lines();
        ASSERT_EQ(lines.size(), 1u);
        EXPECT_NE(lines[0].find("[settings] Warning"), std::string::npos) << lines[0];
        EXPECT_NE(lines[0].find("damaged"), std::string::npos) << lines[0];

        std::vector<std::filesystem::path> aside;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            if (entry.path().filename().string().starts_with("settings.db.corrupt-")) aside.push_back(entry.path());
        }
        ASSERT_EQ(aside.size(), 1u);
        EXPECT_EQ(readFile(aside[0]), damaged);

        EXPECT_TRUE(namesOf(store->getValueNames()).empty());
        store->setInt("fresh", 1);
        EXPECT_EQ(store->getInt("fresh", 0), 1);
        EXPECT_EQ(rawQuery(path, "PRAGMA integrity_check"), std::vector<std::string>{"ok"});
    }
}

TEST(RegistryValueStore, MachineStoreOnlyReads)
{
    tbtest::TempFolder folder;
    const auto path = folder / "machine.db";
    {
        P<IValueStore> writer = openUserValueStore(path);
        writer->setInt("preset", 5);
        writer->createSubStore("defaults")->setString("format", "wav");
    }
    const Bytes before = readFile(path);

    P<IValueStore> machine = openMachineValueStore(path);
    EXPECT_EQ(machine->getInt("preset", 0), 5);
    P<IValueStore> defaults = machine->openSubStore("defaults");
    EXPECT_EQ(defaults->getString("format", ""), String("wav"));
    P<IValueStore> absent = openMachineValueStore(folder / "absent.db");
    EXPECT_EQ(absent->getInt("preset", 0), 0);
    EXPECT_TRUE(namesOf(absent->getValueNames()).empty());
    EXPECT_FALSE(std::filesystem::exists(folder / "absent.db"));

    const std::uint8_t byte = 1;
    auto block = make<CMemoryBlock>();
    for (const P<IValueStore>& store : {machine, defaults, absent}) {
        const std::function<void()> writes[] = {
            [&] { store->setString("preset", "x"); },      [&] { store->setInt("preset", 1); },
            [&] { store->setInt64("preset", 1); },         [&] { store->setBool("preset", true); },
            [&] { store->setDouble("preset", 1); },        [&] { store->setBlock("preset", *block); },
            [&] { store->setBinary("preset", &byte, 1); }, [&] { store->createSubStore("new"); },
            [&] { store->removeValue("preset"); },         [&] { store->removeSubStore("defaults"); },
        };
        for (const auto& write : writes) EXPECT_THROW(write(), CReadOnlyError);
    }
    EXPECT_EQ(machine->getInt("preset", 0), 5);
    machine = nullptr;
    defaults = nullptr;
    EXPECT_EQ(readFile(path), before);
}

TEST(RegistryValueStore, UserStoreFollowsTheBaseDirectoryRules)
{
    tbtest::TempFolder folder;
    const EnvironmentGuard homeGuard("HOME");
    const EnvironmentGuard configGuard("XDG_CONFIG_HOME");
    const std::string home = (folder / "home").string();
    ::setenv("HOME", home.c_str(), 1);

    const std::string config = (folder / "config").string();
    const std::pair<const char*, std::string> cases[] = {
        {config.c_str(), config + "/Quorrel Tonebench 3/settings.db"},
        {nullptr, home + "/.config/Quorrel Tonebench 3/settings.db"},
        {"relative/config", home + "/.config/Quorrel Tonebench 3/settings.db"},
    };
    for (const auto& [configHome, expected] : cases) {
        SCOPED_TRACE(configHome ? configHome : "(unset)");
        configHome ? ::setenv("XDG_CONFIG_HOME", configHome, 1) : ::unsetenv("XDG_CONFIG_HOME");
        EXPECT_EQ(getUserSettingsPath().string(), expected);
    }

    // The default store makes its folders, for the user only.
    ::setenv("XDG_CONFIG_HOME", config.c_str(), 1);
    openUserValueStore()->setInt("made", 1);
    EXPECT_EQ(std::filesystem::status(config + "/Quorrel Tonebench 3").permissions(),
              std::filesystem::perms::owner_all);
    EXPECT_EQ(rawRow(config + "/Quorrel Tonebench 3/settings.db", kRoot, "made"), "4|01000000|blob");

    // Where no folder can be made, the store is empty and writes throw.
    writeFile(folder / "file", {});
    auto log = make<tbtest::CaptureLog>();
    CLogManager::getInstance()->addLog(log);
    P<IValueStore> nowhere = openUserValueStore(folder / "file" / "sub" / "settings.db");
    CLogManager::getInstance()->removeLog(log.get());
    EXPECT_EQ(log->lines().size(), 1u);
    EXPECT_EQ(nowhere->getInt("made", 0), 0);
    EXPECT_THROW(nowhere->setInt("made", 1), CError);
    EXPECT_FALSE(nowhere->removeValue("made"));
}
