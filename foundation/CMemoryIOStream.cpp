#include "foundation/CMemoryIOStream.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "foundation/CURIError.h"
#include "foundation/StreamErrors.h"

namespace fenn {

CMemoryIOStream::CMemoryIOStream(P<IMemoryBlock> block, StreamURI uri)
    : m_block(block ? std::move(block) : P<IMemoryBlock>(make<CMemoryBlock>())), m_uri(std::move(uri))
{
}

P<IMemoryBlock> CMemoryIOStream::getMemoryBlock() const
{
    std::lock_guard lock(m_mutex);
    return m_block;
}

void CMemoryIOStream::close()
{
    std::lock_guard lock(m_mutex);
    m_block = nullptr;
}

bool CMemoryIOStream::isClosed() const
{
    std::lock_guard lock(m_mutex);
    return !m_block;
}

StreamURI CMemoryIOStream::getURI() const
{
    return m_uri;
}

P<IStreamBase> CMemoryIOStream::getDelegate() const
{
    return nullptr;
}

void CMemoryIOStream::read(void* buffer, std::int32_t size)
{
    if (readSome(buffer, size) != size) throw CEndOfStreamError(m_uri);
}

std::int32_t CMemoryIOStream::readSome(void* buffer, std::int32_t size)
{
    std::lock_guard lock(m_mutex);
    const IMemoryBlock& block = openBlock();
    checkByteCount(this, "readSome", size);
    const std::int64_t available = std::max<std::int64_t>(0, block.getSize() - m_pos);
    const auto count = static_cast<std::int32_t>(std::min<std::int64_t>(size, available));
    if (count > 0) std::memcpy(buffer, block.getData() + m_pos, static_cast<std::size_t>(count));
    m_pos += count;
    return count;
}

std::int64_t CMemoryIOStream::skip(std::int64_t count)
{
    std::lock_guard lock(m_mutex);
    const IMemoryBlock& block = openBlock();
    if (count < 0) throw CInvalidArgError(this, "skip", "count");
    const std::int64_t skipped = std::min(count, std::max<std::int64_t>(0, block.getSize() - m_pos));
    m_pos += skipped;
    return skipped;
}

bool CMemoryIOStream::isAtEnd()
{
    std::lock_guard lock(m_mutex);
    return m_pos >= openBlock().getSize();
}

void CMemoryIOStream::write(const void* buffer, std::int32_t size)
{
    std::lock_guard lock(m_mutex);
    IMemoryBlock& block = openBlock();
    checkByteCount(this, "write", size);
    if (size == 0) return;
    if (m_pos > std::numeric_limits<std::int64_t>::max() - size) throw CInvalidArgError(this, "write", "size");
    const std::int64_t end = m_pos + size;
    if (end > block.getSize()) block.setSize(end);
    std::memcpy(block.getData() + m_pos, buffer, static_cast<std::size_t>(size));
    m_pos = end;
}

void CMemoryIOStream::flush()
{
    std::lock_guard lock(m_mutex);
    openBlock();
}

std::int64_t CMemoryIOStream::getPos()
{
    std::lock_guard lock(m_mutex);
    openBlock();
    return m_pos;
}

std::int64_t CMemoryIOStream::getSize()
{
    std::lock_guard lock(m_mutex);
    return openBlock().getSize();
}

bool CMemoryIOStream::isSizeKnown()
{
    std::lock_guard lock(m_mutex);
    openBlock();
    return true;
}

P<IStreamMarker> CMemoryIOStream::createMarker()
{
    std::lock_guard lock(m_mutex);
    openBlock();
    return make<CMarker>(m_pos, P<const CMemoryIOStream>(this));
}

void CMemoryIOStream::resetTo(const IStreamMarker& marker)
{
    std::lock_guard lock(m_mutex);
    openBlock();
    const auto* own = dynamic_cast<const CMarker*>(&marker);
    if (own == nullptr || own->getStream() != this) throw CInvalidArgError(this, "resetTo", "marker");
    m_pos = own->getPos();
}

void CMemoryIOStream::seek(std::int64_t pos)
{
    std::lock_guard lock(m_mutex);
    openBlock();
    if (pos < 0) throw CInvalidArgError(this, "seek", "pos");
    m_pos = pos;
}

void CMemoryIOStream::seekRelative(std::int64_t delta)
{
    std::lock_guard lock(m_mutex);
    openBlock();
    // m_pos is never negative, so only a positive delta can overflow.
    if (delta < -m_pos || (delta > 0 && m_pos > std::numeric_limits<std::int64_t>::max() - delta)) {
        throw CInvalidArgError(this, "seekRelative", "delta");
    }
    m_pos += delta;
}

void CMemoryIOStream::seekToEnd()
{
    std::lock_guard lock(m_mutex);
    m_pos = openBlock().getSize();
}

IMemoryBlock& CMemoryIOStream::openBlock() const
{
    if (!m_block) throwStreamClosed(m_uri);
    return *m_block;
}

}  // namespace fenn
