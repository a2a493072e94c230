#include "foundation/posix/CFileSystem.h"

#include <fcntl.h>
#include <fnmatch.h>
#include <gio/gio.h>
#include <poll.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <tuple>
#include <utility>

#include "foundation/CError.h"
#include "foundation/CObjectError.h"
#include "foundation/CURIError.h"
#include "foundation/FoundationTexts.h"
#include "foundation/IStringLocalizer.h"
#include "foundation/StreamErrors.h"

namespace fenn::posix {

namespace {

// Every attempt to find a free name for a new file gives up after this many
// names; a folder that full is broken.
constexpr int kTemporaryNameAttempts = 100;
constexpr int kUniqueNameAttempts = 10000;
// Block size of copies across volumes where copy_file_range cannot help.
constexpr std::size_t kCopyBlockSize = 1 << 20;

[[noreturn]] void throwFileError(const CURI& uri, const char* action, int error)
{
    if (error == ENOENT || error == ENOTDIR) throw CFileNotFoundError(uri);
    throw CFileError(uri, describeSystemError(action, error));
}

FileTime toFileTime(std::int64_t seconds, std::int64_t nanoseconds)
{
    return seconds * 1000 + nanoseconds / 1000000;
}

timespec toTimespec(FileTime time)
{
    timespec result{};
    if (time == kUnknownFileTime) {
        result.tv_nsec = UTIME_OMIT;
        return result;
    }
    result.tv_sec = static_cast<time_t>(time / 1000);
    result.tv_nsec = static_cast<long>((time % 1000) * 1000000);
    if (result.tv_nsec < 0) {
        result.tv_sec -= 1;
        result.tv_nsec += 1000000000;
    }
    return result;
}

std::string lastSegment(const std::string& path)
{
    if (path == "/") return path;
    std::string trimmed = path;
    while (trimmed.size() > 1 && trimmed.back() == '/') trimmed.pop_back();
    const std::size_t slash = trimmed.rfind('/');
    return slash == std::string::npos ? trimmed : trimmed.substr(slash + 1);
}

std::string parentPath(const std::string& path)
{
    std::string trimmed = path;
    while (trimmed.size() > 1 && trimmed.back() == '/') trimmed.pop_back();
    const std::size_t slash = trimmed.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : trimmed.substr(0, slash);
}

std::string joinPath(const std::string& folder, const std::string& name)
{
    return folder.ends_with('/') ? folder + name : folder + "/" + name;
}

void fillInfo(FileObjectInfo& info, std::uint32_t mode, std::int64_t size)
{
    info.isFolder = S_ISDIR(mode);
    info.isFile = S_ISREG(mode);
    info.size = info.isFile ? size : 0;
    info.attributes = 0;
    if (info.name.startsWith(".")) info.attributes |= fileAttributeHidden;
    if ((mode & S_IWUSR) == 0) info.attributes |= fileAttributeReadOnly;
}

// statx where the kernel has it, for the creation time; stat elsewhere.
std::atomic<bool> g_statxMissing{false};

// The facts of name in the folder descriptor (AT_FDCWD for paths). A
// symbolic link is followed; one that leads nowhere is described itself.
// Returns 0 or the errno value.
int readInfo(int folder, const char* name, FileObjectInfo& info)
{
#ifdef STATX_BTIME
    if (!g_statxMissing.load(std::memory_order_relaxed)) {
        struct statx facts;
        const unsigned mask = STATX_TYPE | STATX_MODE | STATX_SIZE | STATX_ATIME | STATX_MTIME | STATX_BTIME;
        int result = ::statx(folder, name, AT_STATX_SYNC_AS_STAT, mask, &facts);
        if (result != 0 && errno == ENOENT) result = ::statx(folder, name, AT_SYMLINK_NOFOLLOW, mask, &facts);
        if (result == 0) {
            fillInfo(info, facts.stx_mode, static_cast<std::int64_t>(facts.stx_size));
            info.lastWriteTime = toFileTime(facts.stx_mtime.tv_sec, facts.stx_mtime.tv_nsec);
            info.lastAccessTime = toFileTime(facts.stx_atime.tv_sec, facts.stx_atime.tv_nsec);
            info.creationTime = (facts.stx_mask & STATX_BTIME) != 0
                                    ? toFileTime(facts.stx_btime.tv_sec, facts.stx_btime.tv_nsec)
                                    : kUnknownFileTime;
            return 0;
        }
        // Old kernels and some sandboxes refuse the call itself.
        if (errno != ENOSYS && errno != EPERM) return errno;
        g_statxMissing.store(true, std::memory_order_relaxed);
    }
#endif
    struct stat facts;
    int result = ::fstatat(folder, name, &facts, 0);
    if (result != 0 && errno == ENOENT) result = ::fstatat(folder, name, &facts, AT_SYMLINK_NOFOLLOW);
    if (result != 0) return errno;
    fillInfo(info, facts.st_mode, facts.st_size);
    info.lastWriteTime = toFileTime(facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec);
    info.lastAccessTime = toFileTime(facts.st_atim.tv_sec, facts.st_atim.tv_nsec);
    info.creationTime = kUnknownFileTime;
    return 0;
}

// The nearest path at or above path that exists, with its facts.
std::string existingAncestor(std::string path, struct stat& facts)
{
    for (;;) {
        if (::stat(path.c_str(), &facts) == 0) return path;
        if (path == "/" || path == ".") return std::string();
        path = parentPath(path);
    }
}

bool isUnder(const std::string& path, const std::string& mountPoint)
{
    if (mountPoint == "/") return path.starts_with('/');
    return path == mountPoint || path.starts_with(mountPoint + "/");
}

std::string absolutePath(const std::string& path)
{
    if (path.starts_with('/')) return path;
    char* folder = ::getcwd(nullptr, 0);
    if (folder == nullptr) return path;
    std::string result = joinPath(folder, path);
    std::free(folder);
    return result;
}

class Descriptor
{
public:
    explicit Descriptor(int descriptor = -1) : m_descriptor(descriptor) {}
    ~Descriptor()
    {
        if (m_descriptor >= 0) ::close(m_descriptor);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_descriptor; }

private:
    int m_descriptor;
};

// Renames, refusing to replace an existing target when asked. File systems
// without RENAME_NOREPLACE get a look before the rename instead.
int renamePath(const std::string& source, const std::string& target, ExistingTarget existing)
{
    if (existing == ExistingTarget::replace) return ::rename(source.c_str(), target.c_str()) == 0 ? 0 : errno;
    if (::renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS) return errno;
    struct stat facts;
    if (::lstat(target.c_str(), &facts) == 0) return EEXIST;
    return ::rename(source.c_str(), target.c_str()) == 0 ? 0 : errno;
}

int copyBytes(int from, int to)
{
    // copy_file_range lets the kernel copy without the data passing through
    // here; it refuses some pairs of file systems, then plain reads serve.
    for (;;) {
        const ssize_t copied = ::copy_file_range(from, nullptr, to, nullptr, kCopyBlockSize, 0);
        if (copied == 0) return 0;
        if (copied > 0) continue;
        if (errno == EINTR) continue;
        if (errno != EXDEV && errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP) return errno;
        break;
    }
    std::vector<char> buffer(kCopyBlockSize);
    for (;;) {
        const ssize_t count = ::read(from, buffer.data(), buffer.size());
        if (count == 0) return 0;
        if (count < 0) {
            if (errno == EINTR) continue;
            return errno;
        }
        for (ssize_t written = 0; written < count;) {
            const ssize_t step = ::write(to, buffer.data() + written, static_cast<std::size_t>(count - written));
            if (step < 0 && errno == EINTR) continue;
            if (step < 0) return errno;
            written += step;
        }
    }
}

// Copies a regular file to a hidden temporary name beside the target, with
// its permissions and times, and renames that into place, so the target
// never exists half-written. Returns 0 or the errno value.
int copyFile(const std::string& source, const std::string& target, const struct stat& facts, ExistingTarget existing)
{
    const Descriptor from(::open(source.c_str(), O_RDONLY | O_CLOEXEC));
    if (from.get() < 0) return errno;
    std::string temporary = joinPath(parentPath(target), "." + lastSegment(target) + ".XXXXXX");
    const Descriptor to(::mkostemp(temporary.data(), O_CLOEXEC));
    if (to.get() < 0) return errno;
    int error = copyBytes(from.get(), to.get());
    const timespec times[2] = {facts.st_atim, facts.st_mtim};
    if (error == 0 && ::fchmod(to.get(), facts.st_mode & 07777) != 0) error = errno;
    if (error == 0 && ::futimens(to.get(), times) != 0) error = errno;
    // The source goes once this returns; the copy must be on the disk first.
    if (error == 0 && ::fsync(to.get()) != 0) error = errno;
    if (error == 0) error = renamePath(temporary, target, existing);
    if (error != 0) ::unlink(temporary.c_str());
    return error;
}

// Moves by copying and deleting, for a source on another volume than the
// target. Folders move entry by entry and go once they are empty; a failure
// part way leaves what has moved at the target and the rest at the source.
int moveAcrossVolumes(const std::string& source, const std::string& target, ExistingTarget existing)
{
    struct stat facts;
    if (::lstat(source.c_str(), &facts) != 0) return errno;
    if (S_ISREG(facts.st_mode)) {
        const int error = copyFile(source, target, facts, existing);
        if (error != 0) return error;
        return ::unlink(source.c_str()) == 0 ? 0 : errno;
    }
    if (S_ISLNK(facts.st_mode)) {
        std::string destination(static_cast<std::size_t>(facts.st_size) + 1, '\0');
        const ssize_t length = ::readlink(source.c_str(), destination.data(), destination.size());
        if (length < 0) return errno;
        destination.resize(static_cast<std::size_t>(length));
        if (existing == ExistingTarget::replace) ::unlink(target.c_str());
        if (::symlink(destination.c_str(), target.c_str()) != 0) return errno;
        return ::unlink(source.c_str()) == 0 ? 0 : errno;
    }
    if (!S_ISDIR(facts.st_mode)) return EOPNOTSUPP;

    if (::mkdir(target.c_str(), facts.st_mode & 07777) != 0) {
        const int error = errno;
        struct stat targetFacts;
        if (error != EEXIST) return error;
        if (existing == ExistingTarget::fail) return EEXIST;
        if (::stat(target.c_str(), &targetFacts) != 0 || !S_ISDIR(targetFacts.st_mode)) return EEXIST;
    }
    DIR* folder = ::opendir(source.c_str());
    if (folder == nullptr) return errno;
    std::vector<std::string> names;
    while (const dirent* entry = ::readdir(folder)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(name);
    }
    ::closedir(folder);
    for (const std::string& name : names) {
        const int error = moveAcrossVolumes(joinPath(source, name), joinPath(target, name), existing);
        if (error != 0) return error;
    }
    const timespec times[2] = {facts.st_atim, facts.st_mtim};
    ::utimensat(AT_FDCWD, target.c_str(), times, 0);
    return ::rmdir(source.c_str()) == 0 ? 0 : errno;
}

// The one volume of a system whose mount table cannot be read.
CMountTable rootOnly()
{
    CMountEntry root;
    root.mountPoint = "/";
    root.root = "/";
    struct stat facts;
    if (::stat("/", &facts) == 0) {
        root.major = major(facts.st_dev);
        root.minor = minor(facts.st_dev);
    }
    return CMountTable({root});
}

std::mt19937_64& randomNumbers()
{
    thread_local std::mt19937_64 numbers{std::random_device{}()};
    return numbers;
}

}  // namespace

// ---- CVolumeListenerList ----

void CVolumeListenerList::add(IFileSystemVolumeListener* listener)
{
    std::lock_guard lock(m_mutex);
    m_listeners.add(listener);
}

void CVolumeListenerList::addFrail(IFileSystemVolumeListener* listener)
{
    std::lock_guard lock(m_mutex);
    m_listeners.addFrail(listener);
}

void CVolumeListenerList::remove(IFileSystemVolumeListener* listener)
{
    std::lock_guard lock(m_mutex);
    m_listeners.remove(listener);
}

// The walk goes over the shared entry array, which tolerates listeners that
// add or remove listeners while they are called.
void CVolumeListenerList::volumeAdded(const P<IFileSystemVolume>& volume)
{
    m_listeners.notify([&volume](IFileSystemVolumeListener& listener) { listener.volumeAdded(volume); });
}

void CVolumeListenerList::volumeRemoved(const P<IFileSystemVolume>& volume)
{
    m_listeners.notify([&volume](IFileSystemVolumeListener& listener) { listener.volumeRemoved(volume); });
}

// ---- CFileSystemVolume ----

CFileSystemVolume::CFileSystemVolume(CMountEntry mount, P<CVolumeListenerList> listener)
    : m_mount(std::move(mount)), m_listener(std::move(listener))
{
}

String CFileSystemVolume::getID()
{
    return String(kIDPrefix) + String::copyOf(m_mount.mountPoint);
}

String CFileSystemVolume::getName()
{
    return String::copyOf(lastSegment(m_mount.mountPoint));
}

CURI CFileSystemVolume::getRootURI()
{
    const std::string& point = m_mount.mountPoint;
    return CURI::fromPath(String::copyOf(point.ends_with('/') ? point : point + "/"));
}

P<IFileSystemVolumeListener> CFileSystemVolume::getListener()
{
    return m_listener;
}

String CFileSystemVolume::getFileSystemType() const
{
    return String::copyOf(m_mount.fileSystemType);
}

// ---- CFileSystemFileObject ----

CFileSystemFileObject::CFileSystemFileObject(P<CFileSystem> fileSystem, CURI uri, std::string path, FileObjectInfo info)
    : m_fileSystem(std::move(fileSystem)), m_uri(std::move(uri)), m_path(std::move(path)), m_info(std::move(info))
{
}

String CFileSystemFileObject::getURIForDisplay()
{
    return String::copyOf(m_path);
}

void CFileSystemFileObject::reload()
{
    const int error = readInfo(AT_FDCWD, m_path.c_str(), m_info);
    if (error != 0) throwFileError(m_uri, "Cannot read the facts of", error);
}

void CFileSystemFileObject::setTimes(FileTime, FileTime lastWriteTime, FileTime lastAccessTime)
{
    const timespec times[2] = {toTimespec(lastAccessTime), toTimespec(lastWriteTime)};
    if (::utimensat(AT_FDCWD, m_path.c_str(), times, 0) != 0) throwFileError(m_uri, "Cannot set the times of", errno);
    reload();
}

void CFileSystemFileObject::setAttributes(std::uint32_t attributes)
{
    struct stat facts;
    if (::stat(m_path.c_str(), &facts) != 0) throwFileError(m_uri, "Cannot change", errno);
    mode_t mode = facts.st_mode & 07777;
    if ((attributes & fileAttributeReadOnly) != 0)
        mode &= ~static_cast<mode_t>(S_IWUSR | S_IWGRP | S_IWOTH);
    else
        mode |= S_IWUSR;
    if (mode != (facts.st_mode & 07777) && ::chmod(m_path.c_str(), mode) != 0)
        throwFileError(m_uri, "Cannot change", errno);
    reload();
}

P<IFileSystemVolume> CFileSystemFileObject::getVolume()
{
    return m_fileSystem->getVolumeForURI(m_uri);
}

P<IFileObjectCursor> CFileSystemFileObject::getCursor(const String& pattern)
{
    return m_fileSystem->createCursor(m_uri, pattern);
}

// ---- CFileSystemFolderCursor ----

CFileSystemFolderCursor::CFileSystemFolderCursor(P<CFileSystem> fileSystem, const CURI& folder, const String& pattern)
    : m_fileSystem(std::move(fileSystem)), m_folder(folder), m_path(m_fileSystem->toPath(folder)),
      m_pattern(pattern.isEmpty() ? std::string("*") : pattern.toStdString())
{
    struct stat facts;
    if (::stat(m_path.c_str(), &facts) != 0) throwFileError(folder, "Cannot open the folder", errno);
    if (!S_ISDIR(facts.st_mode)) throw CFileError(folder, localize(texts::folderCursorNotAFolder));
    m_directory = ::opendir(m_path.c_str());
    if (m_directory == nullptr) throwFileError(folder, "Cannot open the folder", errno);
}

CFileSystemFolderCursor::~CFileSystemFolderCursor()
{
    if (m_directory != nullptr) ::closedir(m_directory);
}

bool CFileSystemFolderCursor::next()
{
    m_current = nullptr;
    for (;;) {
        errno = 0;
        const dirent* entry = ::readdir(m_directory);
        if (entry == nullptr) {
            if (errno != 0) throwFileError(m_folder, "Cannot read the folder", errno);
            return false;
        }
        const char* name = entry->d_name;
        if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0) continue;
        if (::fnmatch(m_pattern.c_str(), name, 0) != 0) continue;
        FileObjectInfo info;
        info.name = String::copyOf(name);
        const int error = readInfo(::dirfd(m_directory), name, info);
        if (error == ENOENT) continue;  // removed since readdir saw it
        if (error != 0) throwFileError(m_folder, "Cannot read the folder", error);
        m_current = make<CFileSystemFileObject>(m_fileSystem, m_folder.append(info.name), joinPath(m_path, name),
                                                std::move(info));
        return true;
    }
}

void CFileSystemFolderCursor::reset()
{
    ::rewinddir(m_directory);
    m_current = nullptr;
}

CFileSystemFileObject& CFileSystemFolderCursor::current()
{
    if (!m_current) throw CInvalidObjectStateError(this, "The cursor is not on an entry.");
    return *m_current;
}

// ---- CFileSystem ----

CFileSystem::CFileSystem() : m_listeners(make<CVolumeListenerList>())
{
    m_mountInfo = ::open(CMountTable::kMountInfoPath, O_RDONLY | O_CLOEXEC);
    // Nobody listens yet, so the first table needs no events.
    takeMounts(m_mountInfo >= 0 ? CMountTable::read(m_mountInfo) : CMountTable());
}

CFileSystem::~CFileSystem()
{
    if (m_mountInfo >= 0) ::close(m_mountInfo);
}

bool CFileSystem::handlesURI(const CURI& uri)
{
    return uri.isScheme("file") || uri.isRelative();
}

bool CFileSystem::handlesVolumeID(const String& id)
{
    return id.startsWith(CFileSystemVolume::kIDPrefix);
}

std::string CFileSystem::toPath(const CURI& uri)
{
    if (!handlesURI(uri)) throw CURITypeNotSupportedError(uri);
    return uri.toPath().toStdString();
}

P<IFileObjectCursor> CFileSystem::createCursor(const CURI& folder, const String& pattern)
{
    return make<CFileSystemFolderCursor>(P<CFileSystem>(this), folder, pattern);
}

P<IFileObject> CFileSystem::getFileObject(const CURI& uri)
{
    const std::string path = toPath(uri);
    FileObjectInfo info;
    info.name = String::copyOf(lastSegment(path));
    const int error = readInfo(AT_FDCWD, path.c_str(), info);
    if (error == ENOENT || error == ENOTDIR) return nullptr;
    if (error != 0) throwFileError(uri, "Cannot read the facts of", error);
    return make<CFileSystemFileObject>(P<CFileSystem>(this), uri, path, std::move(info));
}

P<IFileObject> CFileSystem::getFileObjectChecked(const CURI& uri)
{
    P<IFileObject> object = getFileObject(uri);
    if (!object) throw CFileNotFoundError(uri);
    return object;
}

void CFileSystem::addVolumeListener(IFileSystemVolumeListener* listener)
{
    m_listeners->add(listener);
}

void CFileSystem::addFrailVolumeListener(IFileSystemVolumeListener* listener)
{
    m_listeners->addFrail(listener);
}

void CFileSystem::removeVolumeListener(IFileSystemVolumeListener* listener)
{
    m_listeners->remove(listener);
}

std::int64_t CFileSystem::getVolumeFreeSpace(const CURI& uri)
{
    struct stat facts;
    const std::string existing = existingAncestor(absolutePath(toPath(uri)), facts);
    struct statvfs space;
    if (existing.empty() || ::statvfs(existing.c_str(), &space) != 0)
        throwFileError(uri, "Cannot read the free space of", existing.empty() ? ENOENT : errno);
    return static_cast<std::int64_t>(space.f_bavail) * static_cast<std::int64_t>(space.f_frsize);
}

std::vector<P<IFileSystemVolume>> CFileSystem::getVolumes()
{
    refresh();
    std::lock_guard lock(m_mutex);
    return std::vector<P<IFileSystemVolume>>(m_volumes.begin(), m_volumes.end());
}

P<IFileSystemVolume> CFileSystem::getVolumeForURI(const CURI& uri)
{
    const std::string path = absolutePath(toPath(uri));
    struct stat facts;
    const bool known = !existingAncestor(path, facts).empty();
    refresh();
    std::lock_guard lock(m_mutex);
    // The device decides first: it sees through symbolic links. Among the
    // mounts of one device (bind mounts) the longest mount point above the
    // path names the place best.
    P<CFileSystemVolume> best;
    std::tuple<bool, std::size_t> bestScore{false, 0};
    for (const P<CFileSystemVolume>& volume : m_volumes) {
        const CMountEntry& mount = volume->getMount();
        const bool onDevice = known && makedev(mount.major, mount.minor) == facts.st_dev;
        const bool under = isUnder(path, mount.mountPoint);
        if (!onDevice && !under) continue;
        const std::tuple<bool, std::size_t> score{onDevice, under ? mount.mountPoint.size() + 1 : 0};
        if (!best || score > bestScore) {
            best = volume;
            bestScore = score;
        }
    }
    return best;
}

P<IFileSystemVolume> CFileSystem::getVolume(const String& id)
{
    refresh();
    std::lock_guard lock(m_mutex);
    for (const P<CFileSystemVolume>& volume : m_volumes) {
        if (volume->getID() == id) return volume;
    }
    return nullptr;
}

P<IFileSystemVolume> CFileSystem::getVolumeChecked(const String& id)
{
    P<IFileSystemVolume> volume = getVolume(id);
    if (!volume) throw CInvalidVolumeIDError(id);
    return volume;
}

void CFileSystem::refresh()
{
    VolumeChanges changes;
    {
        std::lock_guard lock(m_mutex);
        if (m_mountInfo < 0) return;
        pollfd watch{m_mountInfo, POLLPRI, 0};
        // The kernel reports a changed table once per change, with POLLPRI
        // and POLLERR together.
        if (::poll(&watch, 1, 0) <= 0 || (watch.revents & (POLLPRI | POLLERR)) == 0) return;
        changes = takeMounts(CMountTable::read(m_mountInfo));
    }
    notify(changes);
}

CFileSystem::VolumeChanges CFileSystem::takeMounts(const CMountTable& mounts)
{
    VolumeChanges result;
    CMountTable visible = mounts.withoutSystemMounts();
    if (visible.getEntries().empty()) visible = rootOnly();
    const CMountTableChanges changes = diffMountTables(m_mounts, visible);
    for (const CMountEntry& entry : changes.removed) {
        std::erase_if(m_volumes, [&entry, &result](const P<CFileSystemVolume>& volume) {
            if (!volume->getMount().isSameMount(entry)) return false;
            result.removed.push_back(volume);
            return true;
        });
    }
    for (const CMountEntry& entry : changes.added) {
        const auto volume = make<CFileSystemVolume>(entry, m_listeners);
        m_volumes.push_back(volume);
        result.added.push_back(volume);
    }
    m_mounts = visible;
    return result;
}

void CFileSystem::notify(const VolumeChanges& changes)
{
    for (const P<IFileSystemVolume>& volume : changes.removed) m_listeners->volumeRemoved(volume);
    for (const P<IFileSystemVolume>& volume : changes.added) m_listeners->volumeAdded(volume);
}

void CFileSystem::createFolder(const CURI& folder)
{
    const std::string path = toPath(folder);
    // Each missing folder from the top down; one that another thread makes
    // meanwhile is as good.
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        const std::string part = path.substr(0, end);
        if (!part.empty() && ::mkdir(part.c_str(), 0777) != 0 && errno != EEXIST)
            throwFileError(folder, "Cannot create the folder", errno);
        if (end == std::string::npos) break;
    }
    struct stat facts;
    if (::stat(path.c_str(), &facts) != 0) throwFileError(folder, "Cannot create the folder", errno);
    if (!S_ISDIR(facts.st_mode)) throwFileError(folder, "Cannot create the folder", EEXIST);
}

void CFileSystem::deleteFile(const CURI& file)
{
    if (::unlink(toPath(file).c_str()) != 0) throwFileError(file, "Cannot delete", errno);
}

void CFileSystem::deleteFolder(const CURI& folder)
{
    if (::rmdir(toPath(folder).c_str()) != 0) throwFileError(folder, "Cannot delete the folder", errno);
}

void CFileSystem::moveFile(const CURI& source, const CURI& target, ExistingTarget existing)
{
    const std::string from = toPath(source);
    const std::string to = toPath(target);
    struct stat facts;
    if (::lstat(from.c_str(), &facts) != 0) throwFileError(source, "Cannot move", errno);
    int error = renamePath(from, to, existing);
    if (error == EXDEV) error = moveAcrossVolumes(from, to, existing);
    if (error == 0) return;
    if (error == EEXIST || error == ENOTEMPTY)
        throw CFileError(target, String("Cannot move to '%URI%': the target exists."));
    // A missing source was found above, so a missing folder now is the
    // target's (or the source went meanwhile).
    if (error == ENOENT) throwFileError(::lstat(from.c_str(), &facts) == 0 ? target : source, "Cannot move", error);
    throw CFileError(source, describeSystemError("Cannot move", error));
}

CURI CFileSystem::createNewFile(const CURI& folder, const std::function<std::string(int)>& nameFor, int attempts)
{
    const std::string folderPath = toPath(folder);
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const std::string name = nameFor(attempt);
        const int descriptor =
            ::open(joinPath(folderPath, name).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor >= 0) {
            ::close(descriptor);
            return folder.append(String::copyOf(name));
        }
        if (errno != EEXIST) throwFileError(folder, "Cannot create a file in", errno);
    }
    throw CFileError(folder, String("Cannot create a file in '%URI%': every name tried exists."));
}

CURI CFileSystem::createTemporaryFile(const CURI& folder, const String& stem, const String& extension)
{
    const std::string prefix = stem.toStdString();
    const std::string suffix = extension.toStdString();
    return createNewFile(
        folder,
        [&](int) {
            char random[17];
            std::snprintf(random, sizeof random, "%016llx", static_cast<unsigned long long>(randomNumbers()()));
            return prefix + random + suffix;
        },
        kTemporaryNameAttempts);
}

CURI CFileSystem::createUniqueFile(const CURI& folder, const String& stem, const String& extension)
{
    const std::string prefix = stem.toStdString();
    const std::string suffix = extension.toStdString();
    return createNewFile(
        folder,
        [&](int attempt) {
            return attempt == 0 ? prefix + suffix : prefix + " (" + std::to_string(attempt + 1) + ")" + suffix;
        },
        kUniqueNameAttempts);
}

void CFileSystem::moveToTrash(const CURI& file)
{
    const std::string path = toPath(file);
    struct stat facts;
    if (::lstat(path.c_str(), &facts) != 0) throwFileError(file, "Cannot move to the trash", errno);
    GFile* place = g_file_new_for_path(path.c_str());
    GError* error = nullptr;
    const bool trashed = g_file_trash(place, nullptr, &error) != FALSE;
    g_object_unref(place);
    if (trashed) return;
    String reason = error != nullptr ? String::copyOf(error->message) : String("unknown reason");
    if (error != nullptr) g_error_free(error);
    throw CFileError(file, String("Cannot move '%URI%' to the trash: ") + reason);
}

}  // namespace fenn::posix
