#include "foundation/posix/CDiskStream.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <limits>
#include <utility>

#include "foundation/CURIError.h"
#include "foundation/StreamErrors.h"

namespace fenn::posix {

namespace {

enum class Access { read, write, readWrite };

// Closes a descriptor that an open attempt gives up on.
class DescriptorGuard
{
public:
    explicit DescriptorGuard(int descriptor) : m_descriptor(descriptor) {}
    ~DescriptorGuard()
    {
        if (m_descriptor >= 0) ::close(m_descriptor);
    }
    DescriptorGuard(const DescriptorGuard&) = delete;
    DescriptorGuard& operator=(const DescriptorGuard&) = delete;

    int get() const { return m_descriptor; }
    int release() { return std::exchange(m_descriptor, -1); }

private:
    int m_descriptor;
};

struct OpenedFile
{
    int descriptor = -1;
    std::string deletePath;
};

[[noreturn]] void throwSystemError(const StreamURI& uri, const char* action, int error)
{
    throw CStreamError(uri, describeSystemError(action, error));
}

// The path that deleteOnClose removes, absolute so that a later change of
// the working folder does not redirect it.
std::string absolutePath(const std::string& path, const StreamURI& uri)
{
    if (!path.empty() && path.front() == '/') return path;
    char* folder = ::getcwd(nullptr, 0);
    if (folder == nullptr) throwSystemError(uri, "Cannot open", errno);
    std::string result = std::string(folder) + "/" + path;
    std::free(folder);
    return result;
}

// The descriptor of the opened file, or -1 when the file or its folder is
// missing.
OpenedFile openFile(const std::string& path, const StreamURI& uri, Access access, StreamShare share,
                    StreamCreate create, DeleteOnClose deleteOnClose)
{
    checkOpenArguments(typeid(CDiskStream), "tryOpen", share, create, deleteOnClose);
    int flags = O_CLOEXEC;
    switch (access) {
    case Access::read:
        flags |= O_RDONLY;
        break;
    case Access::write:
        flags |= O_WRONLY;
        break;
    case Access::readWrite:
        flags |= O_RDWR;
        break;
    }
    // No O_TRUNC here: truncating waits until the lock is held.
    if (create != StreamCreate::openExisting) flags |= O_CREAT;

    int descriptor;
    do {
        descriptor = ::open(path.c_str(), flags, 0666);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0) {
        if (errno == ENOENT || errno == ENOTDIR) return {};
        throwSystemError(uri, "Cannot open", errno);
    }
    DescriptorGuard guard(descriptor);

    // Reading a folder opens fine and fails only at the first read.
    struct stat info;
    if (::fstat(descriptor, &info) != 0) throwSystemError(uri, "Cannot open", errno);
    if (S_ISDIR(info.st_mode)) throwSystemError(uri, "Cannot open", EISDIR);

    if (share == StreamShare::exclusive) {
        int result;
        do {
            result = ::flock(descriptor, LOCK_EX | LOCK_NB);
        } while (result != 0 && errno == EINTR);
        if (result != 0) {
            if (errno == EWOULDBLOCK) {
                throw CStreamError(uri, "Cannot open '%URI%': another stream holds the file exclusively.");
            }
            throwSystemError(uri, "Cannot lock", errno);
        }
    }
    if (create == StreamCreate::createEmpty && ::ftruncate(descriptor, 0) != 0) {
        throwSystemError(uri, "Cannot empty", errno);
    }

    OpenedFile opened;
    if (deleteOnClose == DeleteOnClose::yes) opened.deletePath = absolutePath(path, uri);
    opened.descriptor = guard.release();
    return opened;
}

}  // namespace

CDiskStream::CDiskStream(int descriptor, StreamURI uri, std::string deletePath)
    : m_descriptor(descriptor), m_uri(std::move(uri)), m_deletePath(std::move(deletePath))
{
}

CDiskStream::~CDiskStream()
{
    releaseDescriptor(false);
}

void CDiskStream::close()
{
    std::lock_guard lock(m_mutex);
    releaseDescriptor(true);
}

bool CDiskStream::isClosed() const
{
    std::lock_guard lock(m_mutex);
    return m_descriptor < 0;
}

StreamURI CDiskStream::getURI() const
{
    return m_uri;
}

P<IStreamBase> CDiskStream::getDelegate() const
{
    return nullptr;
}

std::int64_t CDiskStream::getPos()
{
    std::lock_guard lock(m_mutex);
    return moveTo(0, SEEK_CUR, "getPos");
}

std::int64_t CDiskStream::getSize()
{
    std::lock_guard lock(m_mutex);
    struct stat info;
    if (::fstat(openDescriptorOrThrow(), &info) != 0) throwSystemError(m_uri, "Cannot get the size of", errno);
    return info.st_size;
}

bool CDiskStream::isSizeKnown()
{
    std::lock_guard lock(m_mutex);
    openDescriptorOrThrow();
    return true;
}

P<IStreamMarker> CDiskStream::createMarker()
{
    std::lock_guard lock(m_mutex);
    return make<CMarker>(getPos(), P<const CDiskStream>(this));
}

void CDiskStream::resetTo(const IStreamMarker& marker)
{
    std::lock_guard lock(m_mutex);
    openDescriptorOrThrow();
    const auto* own = dynamic_cast<const CMarker*>(&marker);
    if (own == nullptr || own->getStream() != this) throw CInvalidArgError(this, "resetTo", "marker");
    moveTo(own->getPos(), SEEK_SET, "resetTo");
}

void CDiskStream::seek(std::int64_t pos)
{
    std::lock_guard lock(m_mutex);
    openDescriptorOrThrow();
    if (pos < 0) throw CInvalidArgError(this, "seek", "pos");
    moveTo(pos, SEEK_SET, "seek");
}

void CDiskStream::seekRelative(std::int64_t delta)
{
    std::lock_guard lock(m_mutex);
    const std::int64_t pos = moveTo(0, SEEK_CUR, "seekRelative");
    // pos is never negative, so only a positive delta can overflow.
    if (delta < -pos || (delta > 0 && pos > std::numeric_limits<std::int64_t>::max() - delta)) {
        throw CInvalidArgError(this, "seekRelative", "delta");
    }
    moveTo(pos + delta, SEEK_SET, "seekRelative");
}

void CDiskStream::seekToEnd()
{
    std::lock_guard lock(m_mutex);
    moveTo(0, SEEK_END, "seekToEnd");
}

void CDiskStream::readBytes(void* buffer, std::int32_t size)
{
    if (readSomeBytes(buffer, size) != size) throw CEndOfStreamError(m_uri);
}

std::int32_t CDiskStream::readSomeBytes(void* buffer, std::int32_t size)
{
    std::lock_guard lock(m_mutex);
    const int descriptor = openDescriptorOrThrow();
    checkByteCount(this, "readSome", size);
    ssize_t count;
    do {
        count = ::read(descriptor, buffer, static_cast<std::size_t>(size));
    } while (count < 0 && errno == EINTR);
    if (count < 0) throwSystemError(m_uri, "Cannot read from", errno);
    return static_cast<std::int32_t>(count);
}

std::int64_t CDiskStream::skipBytes(std::int64_t count)
{
    std::lock_guard lock(m_mutex);
    const std::int64_t pos = moveTo(0, SEEK_CUR, "skip");
    if (count < 0) throw CInvalidArgError(this, "skip", "count");
    const std::int64_t skipped = std::min(count, std::max<std::int64_t>(0, getSize() - pos));
    moveTo(pos + skipped, SEEK_SET, "skip");
    return skipped;
}

bool CDiskStream::isAtEndOfFile()
{
    std::lock_guard lock(m_mutex);
    return getPos() >= getSize();
}

void CDiskStream::writeBytes(const void* buffer, std::int32_t size)
{
    std::lock_guard lock(m_mutex);
    const int descriptor = openDescriptorOrThrow();
    checkByteCount(this, "write", size);
    if (size == 0) return;
    ssize_t count;
    do {
        count = ::write(descriptor, buffer, static_cast<std::size_t>(size));
    } while (count < 0 && errno == EINTR);
    if (count < 0) throwSystemError(m_uri, "Cannot write to", errno);
    // A regular file writes short when the disk fills up; the next call
    // would name the cause, but this stream makes one call per write.
    if (count != size) throw CStreamError(m_uri, "Cannot write to '%URI%': only part of the data was written.");
}

void CDiskStream::flushBytes()
{
    // Every write has already gone to the system, so readers see it; there is
    // nothing of our own to push.
    std::lock_guard lock(m_mutex);
    openDescriptorOrThrow();
}

int CDiskStream::openDescriptorOrThrow() const
{
    if (m_descriptor < 0) throwStreamClosed(m_uri);
    return m_descriptor;
}

std::int64_t CDiskStream::moveTo(std::int64_t offset, int whence, const char* method)
{
    const off_t pos = ::lseek(openDescriptorOrThrow(), offset, whence);
    if (pos < 0) {
        if (errno == EINVAL) throw CInvalidArgError(this, method, "pos");
        throwSystemError(m_uri, "Cannot move in", errno);
    }
    return pos;
}

void CDiskStream::releaseDescriptor(bool reportErrors)
{
    if (m_descriptor < 0) return;
    // The file goes while the descriptor (and any lock) is still held, so no
    // exclusive opener can slip in between. A file that someone else has
    // already moved or removed is not our business any more.
    if (!m_deletePath.empty()) ::unlink(m_deletePath.c_str());
    const int descriptor = std::exchange(m_descriptor, -1);
    // The descriptor is gone after close even when it reports an error, so
    // there is no retry; an error means written data may be lost.
    if (::close(descriptor) != 0 && errno != EINTR && reportErrors) throwSystemError(m_uri, "Cannot close", errno);
}

P<CDiskInStream> CDiskInStream::tryOpen(const std::string& path, const StreamURI& uri)
{
    const OpenedFile opened =
        openFile(path, uri, Access::read, StreamShare::readWriteDelete, StreamCreate::openExisting, DeleteOnClose::no);
    if (opened.descriptor < 0) return nullptr;
    return make<CDiskInStream>(opened.descriptor, uri);
}

P<CDiskOutStream> CDiskOutStream::tryOpen(const std::string& path, const StreamURI& uri, StreamShare share,
                                          StreamCreate create, DeleteOnClose deleteOnClose)
{
    OpenedFile opened = openFile(path, uri, Access::write, share, create, deleteOnClose);
    if (opened.descriptor < 0) return nullptr;
    return make<CDiskOutStream>(opened.descriptor, uri, std::move(opened.deletePath));
}

P<CDiskIOStream> CDiskIOStream::tryOpen(const std::string& path, const StreamURI& uri, StreamShare share,
                                        StreamCreate create, DeleteOnClose deleteOnClose)
{
    OpenedFile opened = openFile(path, uri, Access::readWrite, share, create, deleteOnClose);
    if (opened.descriptor < 0) return nullptr;
    return make<CDiskIOStream>(opened.descriptor, uri, std::move(opened.deletePath));
}

}  // namespace fenn::posix
