#pragma once

#include <mutex>

#include "foundation/CObject.h"
#include "foundation/IMemoryBlock.h"
#include "foundation/IStream.h"

namespace fenn {

// A seekable input and output stream on a memory block that grows as it is
// written. Writing past the end (after a seek there) fills the gap with
// zero bytes. Closing lets go of the block. One mutex per stream: any
// thread may call it, one call at a time.
class CMemoryIOStream : public CObject, public virtual ISeekableIOStream
{
public:
    // A remembered position of one memory stream; it keeps its stream alive.
    class CMarker : public CObject, public virtual IStreamMarker
    {
    public:
        CMarker(std::int64_t pos, P<const CMemoryIOStream> stream) : m_pos(pos), m_stream(std::move(stream)) {}
        std::int64_t getPos() const override { return m_pos; }
        const CMemoryIOStream* getStream() const { return m_stream.get(); }

    private:
        std::int64_t m_pos;
        P<const CMemoryIOStream> m_stream;
    };

    // A stream on a new, empty block, or on the given block from its start.
    explicit CMemoryIOStream(P<IMemoryBlock> block = nullptr, StreamURI uri = StreamURI());

    // The block written to; null once the stream is closed.
    P<IMemoryBlock> getMemoryBlock() const;

    void close() override;
    bool isClosed() const override;
    StreamURI getURI() const override;
    P<IStreamBase> getDelegate() const override;

    void read(void* buffer, std::int32_t size) override;
    std::int32_t readSome(void* buffer, std::int32_t size) override;
    std::int64_t skip(std::int64_t count) override;
    bool isAtEnd() override;

    void write(const void* buffer, std::int32_t size) override;
    void flush() override;

    std::int64_t getPos() override;
    std::int64_t getSize() override;
    bool isSizeKnown() override;
    P<IStreamMarker> createMarker() override;
    void resetTo(const IStreamMarker& marker) override;

    void seek(std::int64_t pos) override;
    void seekRelative(std::int64_t delta) override;
    void seekToEnd() override;

private:
    IMemoryBlock& openBlock() const;

    mutable std::recursive_mutex m_mutex;
    P<IMemoryBlock> m_block;
    std::int64_t m_pos = 0;
    StreamURI m_uri;
};

}  // namespace fenn
