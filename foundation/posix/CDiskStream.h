#pragma once

#include <mutex>
#include <string>

#include "foundation/CDataInStream.h"
#include "foundation/CDataOutStream.h"
#include "foundation/CObject.h"
#include "foundation/IStream.h"
#include "foundation/IStreamFactory.h"

namespace fenn::posix {

// The common part of the disk streams: a POSIX file descriptor (-1 once the
// stream is closed), the URI for error texts and one mutex. There is no
// buffer of its own: every read and write is one system call, so callers
// that read in small pieces wrap the stream or read larger blocks. Markers
// are stored positions. Any thread may call, one call at a time.
//
// The tryOpen functions of the three classes open with O_CLOEXEC; an
// exclusive share takes an exclusive flock, so a second exclusive opener
// fails, while the other shares take no lock. StreamCreate::createEmpty
// truncates only after the lock is held, so a file that another stream
// holds is left alone. They give null when the file or its folder does not
// exist; other failures throw CStreamError, invalid modes CInvalidArgError.
class CDiskStream : public CObject, public virtual ISeekableStream
{
public:
    // A remembered position of one disk stream; it keeps its stream alive.
    class CMarker : public CObject, public virtual IStreamMarker
    {
    public:
        CMarker(std::int64_t pos, P<const CDiskStream> stream) : m_pos(pos), m_stream(std::move(stream)) {}
        std::int64_t getPos() const override { return m_pos; }
        const CDiskStream* getStream() const { return m_stream.get(); }

    private:
        std::int64_t m_pos;
        P<const CDiskStream> m_stream;
    };

    ~CDiskStream() override;

    // Closes the descriptor, and removes the file first when the stream was
    // opened with DeleteOnClose::yes.
    void close() override;
    bool isClosed() const override;
    StreamURI getURI() const override;
    P<IStreamBase> getDelegate() const override;

    std::int64_t getPos() override;
    std::int64_t getSize() override;
    bool isSizeKnown() override;
    P<IStreamMarker> createMarker() override;
    void resetTo(const IStreamMarker& marker) override;

    void seek(std::int64_t pos) override;
    void seekRelative(std::int64_t delta) override;
    void seekToEnd() override;

protected:
    // Adopts an open descriptor. deletePath, when not empty, is removed when
    // the stream closes.
    CDiskStream(int descriptor, StreamURI uri, std::string deletePath);

    void readBytes(void* buffer, std::int32_t size);
    std::int32_t readSomeBytes(void* buffer, std::int32_t size);
    std::int64_t skipBytes(std::int64_t count);
    bool isAtEndOfFile();
    void writeBytes(const void* buffer, std::int32_t size);
    void flushBytes();

private:
    int openDescriptorOrThrow() const;
    std::int64_t moveTo(std::int64_t offset, int whence, const char* method);
    void releaseDescriptor(bool reportErrors);

    mutable std::recursive_mutex m_mutex;
    int m_descriptor;
    StreamURI m_uri;
    std::string m_deletePath;
};

// A read-only disk stream with the typed reads.
class CDiskInStream : public CDiskStream, public CDataInOperations, public virtual ISeekableDataInStream
{
public:
    CDiskInStream(int descriptor, StreamURI uri) : CDiskStream(descriptor, std::move(uri), std::string()) {}

    // Null when the file does not exist.
    static P<CDiskInStream> tryOpen(const std::string& path, const StreamURI& uri);

    void read(void* buffer, std::int32_t size) override { readBytes(buffer, size); }
    std::int32_t readSome(void* buffer, std::int32_t size) override { return readSomeBytes(buffer, size); }
    std::int64_t skip(std::int64_t count) override { return skipBytes(count); }
    bool isAtEnd() override { return isAtEndOfFile(); }
};

// A write-only disk stream with the typed writes.
class CDiskOutStream : public CDiskStream, public CDataOutOperations, public virtual ISeekableDataOutStream
{
public:
    CDiskOutStream(int descriptor, StreamURI uri, std::string deletePath = std::string())
        : CDiskStream(descriptor, std::move(uri), std::move(deletePath))
    {
    }

    // Null when the file (for StreamCreate::openExisting) or its folder does
    // not exist.
    static P<CDiskOutStream> tryOpen(const std::string& path, const StreamURI& uri, StreamShare share,
                                     StreamCreate create, DeleteOnClose deleteOnClose);

    void write(const void* buffer, std::int32_t size) override { writeBytes(buffer, size); }
    void flush() override { flushBytes(); }
};

// A disk stream that reads and writes, with the typed reads and writes.
class CDiskIOStream : public CDiskStream,
                      public CDataInOperations,
                      public CDataOutOperations,
                      public virtual ISeekableIOStream,
                      public virtual ISeekableDataInStream,
                      public virtual ISeekableDataOutStream
{
public:
    CDiskIOStream(int descriptor, StreamURI uri, std::string deletePath = std::string())
        : CDiskStream(descriptor, std::move(uri), std::move(deletePath))
    {
    }

    // Null when the file (for StreamCreate::openExisting) or its folder does
    // not exist.
    static P<CDiskIOStream> tryOpen(const std::string& path, const StreamURI& uri, StreamShare share,
                                    StreamCreate create, DeleteOnClose deleteOnClose);

    void read(void* buffer, std::int32_t size) override { readBytes(buffer, size); }
    std::int32_t readSome(void* buffer, std::int32_t size) override { return readSomeBytes(buffer, size); }
    std::int64_t skip(std::int64_t count) override { return skipBytes(count); }
    bool isAtEnd() override { return isAtEndOfFile(); }
    void write(const void* buffer, std::int32_t size) override { writeBytes(buffer, size); }
    void flush() override { flushBytes(); }
};

}  // namespace fenn::posix
