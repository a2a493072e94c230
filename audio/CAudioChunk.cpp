#include "audio/CAudioChunk.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "foundation/CObjectError.h"

namespace tbx {

namespace {

std::int16_t* allocateSamples(std::int32_t bytes)
{
    if (bytes <= 0) return nullptr;
    void* block = std::malloc(static_cast<std::size_t>(bytes));
    if (block == nullptr) throw std::bad_alloc();
    return static_cast<std::int16_t*>(block);
}

}  // namespace

CAudioChunk::CAudioChunk(std::int32_t sampleRate, std::int32_t channels, std::int32_t capacityInFrames)
    : m_channels(channels), m_sampleRate(sampleRate)
{
    const std::int32_t bytes = std::max(0, channels * capacityInFrames * 2);
    m_data = allocateSamples(bytes);
    m_capacity = bytes;
}

CAudioChunk::~CAudioChunk()
{
    std::free(m_data);
}

std::int32_t CAudioChunk::GetCapacity() const
{
    if (m_channels == 0) throw fenn::CInvalidObjectStateError(this, "the chunk has no channels");
    return m_capacity / m_channels / 2;
}

void CAudioChunk::Reserve(std::int32_t frames, bool keep)
{
    ReserveBytes(m_channels * frames * 2, keep);
}

void CAudioChunk::ReserveBytes(std::int32_t bytes, bool keep)
{
    if (m_capacity >= bytes) return;
    const std::int32_t rounded = (bytes + 3) & ~3;
    replaceBuffer(rounded, keep ? std::min(GetSizeInBytes(), m_capacity) : 0);
}

void CAudioChunk::replaceBuffer(std::int32_t bytes, std::int32_t bytesToKeep)
{
    std::int16_t* buffer = allocateSamples(bytes);
    if (bytesToKeep > 0) std::memcpy(buffer, m_data, static_cast<std::size_t>(bytesToKeep));
    std::free(m_data);
    m_data = buffer;
    m_capacity = bytes;
}

fenn::IBase* CAudioChunk::CopyFrom(const IAudioChunk& source)
{
    const std::int32_t bytes = source.GetSizeInBytes();
    if (m_capacity < bytes) {
        // The old audio is overwritten anyway: free it before allocating.
        std::free(m_data);
        m_data = nullptr;
        m_capacity = 0;
        m_data = allocateSamples(bytes);
        m_capacity = bytes;
    }
    if (bytes > 0) std::memcpy(m_data, source.GetData(), static_cast<std::size_t>(bytes));
    m_length = source.GetLength();
    m_channels = source.GetChannels();
    m_sampleRate = source.GetSampleRate();
    return this;
}

}  // namespace tbx
