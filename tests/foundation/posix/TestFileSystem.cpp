#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "foundation/CError.h"
#include "foundation/CFileSystemManager.h"
#include "foundation/CLockFile.h"
#include "foundation/CObjectError.h"
#include "foundation/CStreamManager.h"
#include "foundation/CURIError.h"
#include "foundation/posix/CDiskStreamFactory.h"
#include "foundation/posix/CFileSystem.h"
#include "foundation/posix/CMountTable.h"
#include "tests/support/TempFolder.h"

using namespace fenn;
using fenn::posix::CFileSystem;
using fenn::posix::CMountTable;

namespace {

namespace fs = std::filesystem;

void writeFile(const fs::path& path, const std::string& content)
{
    std::ofstream(path, std::ios::binary) << content;
}

std::string readFile(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

CURI uriOf(const fs::path& path)
{
    return CURI::fromPath(String::copyOf(path.string()));
}

std::string text(const String& value)
{
    return value.toStdString();
}

TEST(FileSystem, CursorListsEveryEntryOnceAndMatchesPatterns)
{
    tbtest::TempFolder folder;
    constexpr int kFiles = 10000;
    for (int i = 0; i < kFiles; ++i) writeFile(folder / (std::to_string(i) + ".wav"), "");
    writeFile(folder / ".hidden.txt", "");
    fs::create_directory(folder / "sub folder");

    auto fileSystem = make<CFileSystem>();
    const P<IFileObjectCursor> cursor = fileSystem->createCursor(uriOf(folder.path()));
    EXPECT_THROW(cursor->getName(), CInvalidObjectStateError);
    for (int pass = 0; pass < 2; ++pass) {
        std::map<std::string, int> seen;
        while (cursor->next()) ++seen[text(cursor->getName())];
        EXPECT_EQ(seen.size(), static_cast<std::size_t>(kFiles + 2));
        for (int i = 0; i < kFiles; ++i) ASSERT_EQ(seen[std::to_string(i) + ".wav"], 1) << i;
        EXPECT_EQ(seen[".hidden.txt"], 1);
        EXPECT_EQ(seen["sub folder"], 1);
        EXPECT_FALSE(cursor->next());
        cursor->reset();
    }

    struct Case
    {
        const char* pattern;
        std::vector<std::string> names;
    };
    const Case cases[] = {{"*.txt", {".hidden.txt"}},
                          {"12?.wav",
                           {"120.wav", "121.wav", "122.wav", "123.wav", "124.wav", "125.wav", "126.wav", "127.wav",
                            "128.wav", "129.wav"}},
                          {"sub*", {"sub folder"}},
                          {"*.mp3", {}}};
    for (const Case& c : cases) {
        std::vector<std::string> names;
        const P<IFileObjectCursor> matching = fileSystem->createCursor(uriOf(folder.path()), c.pattern);
        while (matching->next()) {
            names.push_back(text(matching->getName()));
            EXPECT_EQ(text(matching->getURI().toPath()), (folder / names.back()).string());
        }
        std::sort(names.begin(), names.end());
        EXPECT_EQ(names, c.names) << c.pattern;
    }

    try {
        fileSystem->createCursor(uriOf(folder / "1.wav"));
        FAIL() << "a cursor on a file";
    } catch (const CFileError& error) {
        EXPECT_EQ(text(error.getDescription()), "The file object is not a folder.");
    }
    EXPECT_THROW(fileSystem->createCursor(uriOf(folder / "missing")), CFileNotFoundError);
}

TEST(FileSystem, FileObjectsReportAndChangeAttributesAndTimes)
{
    tbtest::TempFolder folder;
    const fs::path file = folder / "a b%#?ü.wav";
    writeFile(file, "12345");
    writeFile(folder / ".hidden", "");
    auto fileSystem = make<CFileSystem>();

    const P<IFileObject> object = fileSystem->getFileObjectChecked(uriOf(file));
    EXPECT_TRUE(object->isFile());
    EXPECT_FALSE(object->isFolder() || object->isFolderLike());
    EXPECT_EQ(object->getSize(), 5);
    EXPECT_EQ(text(object->getName()), "a b%#?ü.wav");
    EXPECT_EQ(text(object->getURIForDisplay()), file.string());
    EXPECT_EQ(object->getAttributes(), 0u);
    EXPECT_TRUE(object->getCreationTime() == kUnknownFileTime || object->getCreationTime() > 0);

    object->setAttributes(fileAttributeReadOnly | fileAttributeHidden);
    EXPECT_EQ(object->getAttributes(), static_cast<std::uint32_t>(fileAttributeReadOnly));
    EXPECT_EQ(fs::status(file).permissions() & (fs::perms::owner_write | fs::perms::others_write), fs::perms::none);
    EXPECT_EQ(fileSystem->getFileObject(uriOf(file))->getAttributes(),
              static_cast<std::uint32_t>(fileAttributeReadOnly));
    object->setAttributes(0);
    EXPECT_EQ(object->getAttributes(), 0u);
    EXPECT_NE(fs::status(file).permissions() & fs::perms::owner_write, fs::perms::none);
    EXPECT_EQ(fileSystem->getFileObject(uriOf(folder / ".hidden"))->getAttributes(),
              static_cast<std::uint32_t>(fileAttributeHidden));

    const FileTime written = 1600000000123;
    const FileTime accessed = 1500000000456;
    object->setTimes(kUnknownFileTime, written, accessed);
    EXPECT_EQ(object->getLastWriteTime(), written);
    EXPECT_EQ(object->getLastAccessTime(), accessed);
    object->setTimes(kUnknownFileTime, kUnknownFileTime, accessed + 1000);
    const FileObjectInfo info = fileSystem->getFileObject(uriOf(file))->getInfo();
    EXPECT_EQ(info.lastWriteTime, written);
    EXPECT_EQ(info.lastAccessTime, accessed + 1000);
    struct stat facts;
    ASSERT_EQ(::stat(file.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mtim.tv_sec, 1600000000);
    EXPECT_EQ(facts.st_mtim.tv_nsec, 123000000);

    const P<IFileObject> folderObject = fileSystem->getFileObject(uriOf(folder.path()));
    EXPECT_TRUE(folderObject->isFolder() && folderObject->isFolderLike() && !folderObject->isFile());
    EXPECT_EQ(folderObject->getSize(), 0);
    EXPECT_NE(folderObject->getVolume(), nullptr);
    EXPECT_GT(fileSystem->getVolumeFreeSpace(uriOf(folder / "not yet" / "there.wav")), 0);

    // URIs find their file objects through the shared manager.
    CFileSystemManager::getInstance()->addFileSystem(fileSystem);
    EXPECT_EQ(uriOf(file).getFileObject()->getSize(), 5);
    CFileSystemManager::getInstance()->removeFileSystem(fileSystem.get());
    EXPECT_THROW(uriOf(file).getFileObject(), CURITypeNotSupportedError);

    EXPECT_EQ(fileSystem->getFileObject(uriOf(folder / "missing")), nullptr);
    EXPECT_THROW(fileSystem->getFileObjectChecked(uriOf(folder / "missing")), CFileNotFoundError);
    EXPECT_THROW(fileSystem->getFileObject(CURI("http://host/x")), CURITypeNotSupportedError);
}

TEST(FileSystem, CreatesMovesAndDeletes)
{
    tbtest::TempFolder folder;
    auto fileSystem = make<CFileSystem>();
    const CURI nested = uriOf(folder / "a" / "b c");
    fileSystem->createFolder(nested);
    fileSystem->createFolder(nested);
    EXPECT_TRUE(fs::is_directory(folder / "a" / "b c"));

    const CURI temporary = fileSystem->createTemporaryFile(nested, "", ".tmp");
    const std::string temporaryName = text(temporary.getFileName());
    EXPECT_TRUE(temporaryName.ends_with(".tmp") && temporaryName.size() > 4) << temporaryName;
    EXPECT_NE(temporary, fileSystem->createTemporaryFile(nested, "", ".tmp"));
    EXPECT_TRUE(fs::exists(text(temporary.toPath())));

    const std::string unique[] = {"song.wav", "song (2).wav", "song (3).wav"};
    for (const std::string& name : unique)
        EXPECT_EQ(text(fileSystem->createUniqueFile(nested, "song", ".wav").getFileName()), name);

    writeFile(text(temporary.toPath()), "new");
    const CURI target = nested.append("song.wav");
    EXPECT_THROW(fileSystem->moveFile(temporary, target, ExistingTarget::fail), CFileError);
    EXPECT_TRUE(fs::exists(text(temporary.toPath())));
    fileSystem->moveFile(temporary, target, ExistingTarget::replace);
    EXPECT_FALSE(fs::exists(text(temporary.toPath())));
    EXPECT_EQ(readFile(text(target.toPath())), "new");
    EXPECT_THROW(fileSystem->moveFile(temporary, target, ExistingTarget::replace), CFileNotFoundError);

    fileSystem->deleteFile(target);
    EXPECT_THROW(fileSystem->deleteFile(target), CFileNotFoundError);
    EXPECT_THROW(fileSystem->deleteFolder(nested), CFileError);
    for (const fs::directory_entry& entry : fs::directory_iterator(folder / "a" / "b c")) fs::remove(entry.path());
    fileSystem->deleteFolder(nested);
    EXPECT_FALSE(fs::exists(folder / "a" / "b c"));
}

TEST(FileSystem, MovesAcrossVolumesByCopying)
{
    tbtest::TempFolder folder;
    struct stat here;
    struct stat there;
    if (::stat(folder.path().c_str(), &here) != 0 || ::stat("/dev/shm", &there) != 0 || here.st_dev == there.st_dev)
        GTEST_SKIP() << "no second volume at /dev/shm";
    const fs::path away = fs::path("/dev/shm") / folder.path().filename();
    fs::create_directory(away);
    struct Cleanup
    {
        fs::path path;
        ~Cleanup() { fs::remove_all(path); }
    } cleanup{away};

    auto fileSystem = make<CFileSystem>();
    writeFile(folder / "one.wav", "one");
    fs::create_directories(folder / "album" / "disc 2");
    writeFile(folder / "album" / "disc 2" / "track.wav", "track");
    fs::create_symlink("disc 2/track.wav", folder / "album" / "link");
    const P<IFileObject> before = fileSystem->getFileObject(uriOf(folder / "one.wav"));
    before->setTimes(kUnknownFileTime, 1400000000000, kUnknownFileTime);
    fs::permissions(folder / "one.wav", fs::perms::owner_read | fs::perms::owner_write);

    fileSystem->moveFile(uriOf(folder / "one.wav"), uriOf(away / "one.wav"), ExistingTarget::fail);
    EXPECT_FALSE(fs::exists(folder / "one.wav"));
    EXPECT_EQ(readFile(away / "one.wav"), "one");
    EXPECT_EQ(fileSystem->getFileObject(uriOf(away / "one.wav"))->getLastWriteTime(), 1400000000000);
    EXPECT_EQ(fs::status(away / "one.wav").permissions(), fs::perms::owner_read | fs::perms::owner_write);

    fileSystem->moveFile(uriOf(folder / "album"), uriOf(away / "album"), ExistingTarget::fail);
    EXPECT_FALSE(fs::exists(folder / "album"));
    EXPECT_EQ(readFile(away / "album" / "disc 2" / "track.wav"), "track");
    EXPECT_EQ(fs::read_symlink(away / "album" / "link"), "disc 2/track.wav");

    // An existing target is left alone, and so is the source.
    writeFile(folder / "one.wav", "again");
    EXPECT_THROW(fileSystem->moveFile(uriOf(folder / "one.wav"), uriOf(away / "one.wav"), ExistingTarget::fail),
                 CFileError);
    EXPECT_EQ(readFile(folder / "one.wav"), "again");
    EXPECT_EQ(readFile(away / "one.wav"), "one");
    fileSystem->moveFile(uriOf(folder / "one.wav"), uriOf(away / "one.wav"), ExistingTarget::replace);
    EXPECT_EQ(readFile(away / "one.wav"), "again");
    EXPECT_EQ(std::distance(fs::directory_iterator(away), fs::directory_iterator()), 2) << "no copy left behind";
}

TEST(FileSystem, VolumesComeFromTheMountTable)
{
    auto fileSystem = make<CFileSystem>();
    const std::vector<P<IFileSystemVolume>> volumes = fileSystem->getVolumes();
    ASSERT_FALSE(volumes.empty());
    const P<IFileSystemVolume> root = fileSystem->getVolumeChecked("osfs:/");
    EXPECT_EQ(text(root->getRootURI().getRawURI()), "file:///");
    EXPECT_EQ(text(root->getType()), "DiskDrive");
    EXPECT_NE(root->getListener(), nullptr);
    for (const P<IFileSystemVolume>& volume : volumes) {
        EXPECT_TRUE(text(volume->getID()).starts_with("osfs:/"));
        EXPECT_EQ(fileSystem->getVolume(volume->getID()), volume);
    }
    EXPECT_EQ(fileSystem->getVolume("osfs:/no/such/mount"), nullptr);
    EXPECT_THROW(fileSystem->getVolumeChecked("osfs:/no/such/mount"), CInvalidVolumeIDError);

    // A place belongs to the volume of its device, found through symbolic links.
    tbtest::TempFolder folder;
    struct stat facts;
    ASSERT_EQ(::stat(folder.path().c_str(), &facts), 0);
    fs::create_directory_symlink("/", folder / "to root");
    const auto volume = fileSystem->getVolumeForURI(uriOf(folder / "file.wav"));
    ASSERT_NE(volume, nullptr);
    const std::string mountPoint = text(volume->getRootURI().toPath());
    struct stat mountFacts;
    ASSERT_EQ(::stat(mountPoint.c_str(), &mountFacts), 0);
    EXPECT_EQ(mountFacts.st_dev, facts.st_dev) << mountPoint;
    EXPECT_EQ(fileSystem->getVolumeForURI(uriOf(folder / "to root" / "x")), root);
}

TEST(MountTable, ParsesMountInfoAndDiffsTables)
{
    const CMountTable table = CMountTable::parse(
        "22 27 0:21 / /proc rw,relatime - proc proc rw\n"
        "27 1 254:0 / / rw,relatime shared:1 - ext4 /dev/vda rw\n"
        "not a mount line\n"
        "40 27 8:17 /sub /media/My\\040Disk\\011Tab\\134 rw,nosuid shared:5 master:2 - vfat /dev/sdb\\0401 rw\n"
        "41 27 0:30 / /dev/shm rw - tmpfs tmpfs rw\n"
        "42 27 0:31 / /dev/shm rw - tmpfs tmpfs rw,size=1k\n"
        "43 27 0:32 / relative rw - tmpfs tmpfs rw\n"
        "44 27 x:1 / /bad rw - tmpfs tmpfs rw\n"
        "45 27 0:33 / /short rw tmpfs tmpfs rw\n"
        "46 23 0:34 / /sys/fs/cgroup rw - tmpfs tmpfs rw\n"
        "47 27 0:35 / /system rw - tmpfs tmpfs rw\n");
    ASSERT_EQ(table.getEntries().size(), 7u);
    const posix::CMountEntry& disk = table.getEntries()[2];
    EXPECT_EQ(disk.mountID, 40);
    EXPECT_EQ(disk.parentID, 27);
    EXPECT_EQ(disk.major, 8u);
    EXPECT_EQ(disk.minor, 17u);
    EXPECT_EQ(disk.root, "/sub");
    EXPECT_EQ(disk.mountPoint, "/media/My Disk\tTab\\");
    EXPECT_EQ(disk.options, "rw,nosuid");
    EXPECT_EQ(disk.fileSystemType, "vfat");
    EXPECT_EQ(disk.source, "/dev/sdb 1");

    // Without the kernel's file systems; the mount on top of /dev/shm wins.
    const CMountTable visible = table.withoutSystemMounts();
    std::vector<int> visibleIDs;
    for (const posix::CMountEntry& entry : visible.getEntries()) visibleIDs.push_back(entry.mountID);
    EXPECT_EQ(visibleIDs, (std::vector<int>{27, 40, 42, 47}));

    const CMountTable later = CMountTable::parse(
        "27 1 254:0 / / ro,relatime shared:1 - ext4 /dev/vda ro\n"                 // remounted read-only: the same
        "46 27 8:17 /sub /media/My\\040Disk\\011Tab\\134 rw - vfat /dev/sdb rw\n"  // a new mount there
        "42 27 0:31 / /dev/shm rw - tmpfs tmpfs rw,size=1k\n"
        "48 27 11:0 / /media/cdrom ro - iso9660 /dev/sr0 ro\n");
    const posix::CMountTableChanges changes = diffMountTables(visible, later);
    std::vector<int> added;
    std::vector<int> removed;
    for (const posix::CMountEntry& entry : changes.added) added.push_back(entry.mountID);
    for (const posix::CMountEntry& entry : changes.removed) removed.push_back(entry.mountID);
    EXPECT_EQ(added, (std::vector<int>{46, 48}));
    EXPECT_EQ(removed, (std::vector<int>{40, 47}));
    EXPECT_TRUE(diffMountTables(later, later).added.empty());
}

TEST(LockFile, HoldsItsFileExclusivelyWhileItLives)
{
    tbtest::TempFolder folder;
    auto diskStreams = make<posix::CDiskStreamFactory>();
    CStreamManager::getInstance()->addFactory(diskStreams);
    struct Cleanup
    {
        IStreamFactory* factory;
        ~Cleanup() { CStreamManager::getInstance()->removeFactory(factory); }
    } cleanup{diskStreams.get()};

    const CURI uri = uriOf(folder / "running 50%.lock");
    {
        auto lock = make<CLockFile>(uri);
        EXPECT_TRUE(fs::exists(folder / "running 50%.lock"));
        EXPECT_EQ(lock->getURI(), uri);
        EXPECT_THROW(make<CLockFile>(uri), CStreamError);
        EXPECT_TRUE(fs::exists(folder / "running 50%.lock"));
    }
    EXPECT_FALSE(fs::exists(folder / "running 50%.lock"));
    EXPECT_NO_THROW(make<CLockFile>(uri));
}

// Serves "fake:" URIs and "fake:" volume IDs, and says who it is through
// the names of the files it creates.
class CFakeFileSystem : public CObject, public virtual IFileSystem
{
public:
    explicit CFakeFileSystem(std::string name) : m_name(std::move(name)) {}

    void announce(const P<IFileSystemVolume>& volume)
    {
        m_listeners.notify([&volume](IFileSystemVolumeListener& listener) { listener.volumeAdded(volume); });
    }

    bool handlesURI(const CURI& uri) override { return uri.isScheme("fake"); }
    bool handlesVolumeID(const String& id) override { return id.startsWith("fake:"); }
    P<IFileObjectCursor> createCursor(const CURI&, const String&) override { return nullptr; }
    P<IFileObject> getFileObject(const CURI&) override { return nullptr; }
    P<IFileObject> getFileObjectChecked(const CURI& uri) override { throw CFileNotFoundError(uri); }
    void addVolumeListener(IFileSystemVolumeListener* listener) override { m_listeners.add(listener); }
    void addFrailVolumeListener(IFileSystemVolumeListener* listener) override { m_listeners.addFrail(listener); }
    void removeVolumeListener(IFileSystemVolumeListener* listener) override { m_listeners.remove(listener); }
    std::int64_t getVolumeFreeSpace(const CURI&) override { return 0; }
    std::vector<P<IFileSystemVolume>> getVolumes() override { return {}; }
    P<IFileSystemVolume> getVolumeForURI(const CURI&) override { return nullptr; }
    P<IFileSystemVolume> getVolume(const String&) override { return nullptr; }
    P<IFileSystemVolume> getVolumeChecked(const String& id) override
    {
        throw CInvalidVolumeIDError(id + String::copyOf(m_name));
    }
    void refresh() override {}
    void createFolder(const CURI&) override {}
    void deleteFile(const CURI&) override {}
    void deleteFolder(const CURI&) override {}
    void moveFile(const CURI&, const CURI&, ExistingTarget) override {}
    CURI createTemporaryFile(const CURI& folder, const String&, const String&) override
    {
        return folder.append(String::copyOf(m_name));
    }
    CURI createUniqueFile(const CURI& folder, const String& stem, const String& extension) override
    {
        return createTemporaryFile(folder, stem, extension);
    }

private:
    std::string m_name;
    TFrailArray<IFileSystemVolumeListener> m_listeners;
};

class CVolumeLog : public CObject, public virtual IFileSystemVolumeListener
{
public:
    void volumeAdded(const P<IFileSystemVolume>& volume) override { added.push_back(volume.get()); }
    void volumeRemoved(const P<IFileSystemVolume>&) override {}
    std::vector<IFileSystemVolume*> added;
};

TEST(FileSystemManager, TheLastAddedFileSystemWinsAndEventsAreForwarded)
{
    auto manager = make<CFileSystemManager>();
    const CURI folder("fake:/folder/");
    EXPECT_THROW(manager->createTemporaryFile(folder, "", ".tmp"), CURITypeNotSupportedError);
    EXPECT_THROW(manager->getVolume("fake:1"), CInvalidVolumeIDError);

    auto early = make<CFakeFileSystem>("early");
    auto late = make<CFakeFileSystem>("late");
    manager->addFileSystem(early);
    manager->addFileSystem(late);
    EXPECT_TRUE(manager->handlesURI(folder));
    EXPECT_FALSE(manager->handlesURI(CURI("file:///x")));
    EXPECT_EQ(text(manager->createTemporaryFile(folder, "", ".tmp").getFileName()), "late");
    try {
        manager->getVolumeChecked("fake:1");
        FAIL() << "an unknown volume";
    } catch (const CInvalidVolumeIDError& error) {
        EXPECT_EQ(text(error.getDescription()), "Invalid volume id: fake:1late");
    }
    EXPECT_THROW(manager->getVolumeChecked("other:1"), CInvalidVolumeIDError);
    EXPECT_THROW(manager->moveFile(folder, CURI("file:///x"), ExistingTarget::fail), CURITypeNotSupportedError);

    auto log = make<CVolumeLog>();
    manager->addVolumeListener(log.get());
    auto volume = make<posix::CFileSystemVolume>(posix::CMountEntry{}, nullptr);
    early->announce(volume);
    late->announce(volume);
    EXPECT_EQ(log->added.size(), 2u);

    manager->removeFileSystem(late.get());
    EXPECT_EQ(text(manager->createTemporaryFile(folder, "", ".tmp").getFileName()), "early");
    late->announce(volume);
    EXPECT_EQ(log->added.size(), 2u);
    manager->removeVolumeListener(log.get());
    early->announce(volume);
    EXPECT_EQ(log->added.size(), 2u);
}

}  // namespace
