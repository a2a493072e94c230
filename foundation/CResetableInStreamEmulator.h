#pragma once

#include <mutex>
#include <vector>

#include "foundation/CMemoryIOStream.h"
#include "foundation/CObject.h"
#include "foundation/IStream.h"

namespace fenn {

// Gives a forward-only input stream markers. While no marker lives, data
// passes straight through. While at least one lives, everything read from
// the source is also kept in a replay buffer, and resetTo moves back into
// it; reads take what the buffer holds past the current position before
// they go to the source again. When the last marker goes the buffer is
// dropped, as soon as the bytes in it that were not yet read again have
// been delivered. The size is unknown (-1). One mutex guards every call.
class CResetableInStreamEmulator : public CObject, public virtual IResetableInStream
{
public:
    // A live marker keeps the emulator buffering; it keeps its emulator
    // alive and signs off in its destructor.
    class CMarker : public CObject, public virtual IStreamMarker
    {
    public:
        CMarker(std::int64_t pos, P<CResetableInStreamEmulator> owner);
        ~CMarker() override;
        std::int64_t getPos() const override { return m_pos; }
        const CResetableInStreamEmulator* getOwner() const { return m_owner.get(); }

    private:
        std::int64_t m_pos;
        P<CResetableInStreamEmulator> m_owner;
    };

    explicit CResetableInStreamEmulator(P<IInStream> source);

    void close() override;
    bool isClosed() const override;
    StreamURI getURI() const override;
    P<IStreamBase> getDelegate() const override;

    void read(void* buffer, std::int32_t size) override;
    std::int32_t readSome(void* buffer, std::int32_t size) override;
    std::int64_t skip(std::int64_t count) override;
    bool isAtEnd() override;

    std::int64_t getPos() override;
    std::int64_t getSize() override;
    bool isSizeKnown() override;
    P<IStreamMarker> createMarker() override;
    void resetTo(const IStreamMarker& marker) override;

private:
    void markerGone(const CMarker* marker);
    void checkOpen() const;
    bool hasReplay() const { return m_pos < m_totalRead; }
    void dropBufferIfDone();

    mutable std::recursive_mutex m_mutex;
    P<IInStream> m_source;
    // Holds the bytes from m_bufferStart up to m_totalRead; null while
    // nothing needs replaying.
    P<CMemoryIOStream> m_buffer;
    std::int64_t m_pos = 0;
    std::int64_t m_bufferStart = 0;
    std::int64_t m_totalRead = 0;
    std::vector<const CMarker*> m_markers;
    bool m_closed = false;
};

}  // namespace fenn
