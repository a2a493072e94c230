#include "foundation/CResetableInStreamEmulator.h"

#include <algorithm>

#include "foundation/CURIError.h"
#include "foundation/StreamErrors.h"

namespace fenn {

namespace {

// Bytes skipped while markers live must be kept for replay, so they are read
// through a scratch buffer of this size.
constexpr std::int32_t kSkipPieceSize = 16 * 1024;

}  // namespace

CResetableInStreamEmulator::CMarker::CMarker(std::int64_t pos, P<CResetableInStreamEmulator> owner)
    : m_pos(pos), m_owner(std::move(owner))
{
}

CResetableInStreamEmulator::CMarker::~CMarker()
{
    m_owner->markerGone(this);
}

CResetableInStreamEmulator::CResetableInStreamEmulator(P<IInStream> source) : m_source(std::move(source))
{
    if (!m_source) throw CInvalidArgError(typeid(CResetableInStreamEmulator), "CResetableInStreamEmulator", "source");
}

void CResetableInStreamEmulator::close()
{
    std::lock_guard lock(m_mutex);
    if (m_closed) return;
    m_closed = true;
    m_buffer = nullptr;
    m_source->close();
}

bool CResetableInStreamEmulator::isClosed() const
{
    std::lock_guard lock(m_mutex);
    return m_closed || m_source->isClosed();
}

StreamURI CResetableInStreamEmulator::getURI() const
{
    return m_source->getURI();
}

P<IStreamBase> CResetableInStreamEmulator::getDelegate() const
{
    return m_source;
}

void CResetableInStreamEmulator::read(void* buffer, std::int32_t size)
{
    std::lock_guard lock(m_mutex);
    checkByteCount(this, "read", size);
    auto* bytes = static_cast<std::uint8_t*>(buffer);
    std::int32_t done = 0;
    // One readSome may stop at the end of the replay buffer, and a source
    // may deliver less than asked, so an exact read collects pieces.
    while (done < size) {
        const std::int32_t count = readSome(bytes + done, size - done);
        if (count == 0) throw CEndOfStreamError(getURI());
        done += count;
    }
}

std::int32_t CResetableInStreamEmulator::readSome(void* buffer, std::int32_t size)
{
    std::lock_guard lock(m_mutex);
    checkOpen();
    checkByteCount(this, "readSome", size);
    if (size == 0) return 0;
    if (hasReplay()) {
        m_buffer->seek(m_pos - m_bufferStart);
        const auto wanted = static_cast<std::int32_t>(std::min<std::int64_t>(size, m_totalRead - m_pos));
        const std::int32_t count = m_buffer->readSome(buffer, wanted);
        m_pos += count;
        dropBufferIfDone();
        return count;
    }
    const std::int32_t count = m_source->readSome(buffer, size);
    if (m_buffer && count > 0) {
        m_buffer->seekToEnd();
        m_buffer->write(buffer, count);
    }
    m_totalRead += count;
    m_pos += count;
    return count;
}

std::int64_t CResetableInStreamEmulator::skip(std::int64_t count)
{
    std::lock_guard lock(m_mutex);
    checkOpen();
    if (count < 0) throw CInvalidArgError(this, "skip", "count");
    std::int64_t skipped = 0;
    while (skipped < count) {
        if (hasReplay()) {
            const std::int64_t step = std::min(count - skipped, m_totalRead - m_pos);
            m_pos += step;
            skipped += step;
            dropBufferIfDone();
        } else if (!m_buffer) {
            const std::int64_t step = m_source->skip(count - skipped);
            m_pos += step;
            m_totalRead += step;
            skipped += step;
            break;
        } else {
            std::uint8_t scratch[kSkipPieceSize];
            const auto wanted = static_cast<std::int32_t>(std::min<std::int64_t>(kSkipPieceSize, count - skipped));
            const std::int32_t step = readSome(scratch, wanted);
            if (step == 0) break;
            skipped += step;
        }
    }
    return skipped;
}

bool CResetableInStreamEmulator::isAtEnd()
{
    std::lock_guard lock(m_mutex);
    checkOpen();
    return !hasReplay() && m_source->isAtEnd();
}

std::int64_t CResetableInStreamEmulator::getPos()
{
    std::lock_guard lock(m_mutex);
    checkOpen();
    return m_pos;
}

std::int64_t CResetableInStreamEmulator::getSize()
{
    std::lock_guard lock(m_mutex);
    checkOpen();
    return -1;
}

bool CResetableInStreamEmulator::isSizeKnown()
{
    std::lock_guard lock(m_mutex);
    checkOpen();
    return false;
}

P<IStreamMarker> CResetableInStreamEmulator::createMarker()
{
    std::lock_guard lock(m_mutex);
    checkOpen();
    if (!m_buffer) {
        // Without a buffer nothing is waiting for replay, so the buffer
        // starts where the source stands.
        m_buffer = make<CMemoryIOStream>();
        m_bufferStart = m_pos;
    }
    auto marker = make<CMarker>(m_pos, P<CResetableInStreamEmulator>(this));
    m_markers.push_back(marker.get());
    return marker;
}

void CResetableInStreamEmulator::resetTo(const IStreamMarker& marker)
{
    std::lock_guard lock(m_mutex);
    checkOpen();
    const auto* own = dynamic_cast<const CMarker*>(&marker);
    if (own == nullptr || own->getOwner() != this) throw CInvalidArgError(this, "resetTo", "marker");
    // A live marker keeps the buffer from its own position on.
    m_pos = own->getPos();
}

void CResetableInStreamEmulator::markerGone(const CMarker* marker)
{
    std::lock_guard lock(m_mutex);
    std::erase(m_markers, marker);
    dropBufferIfDone();
}

void CResetableInStreamEmulator::checkOpen() const
{
    if (m_closed) throwStreamClosed(getURI());
}

void CResetableInStreamEmulator::dropBufferIfDone()
{
    if (m_markers.empty() && !hasReplay()) m_buffer = nullptr;
}

}  // namespace fenn
