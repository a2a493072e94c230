#include "audio/CAudioChunk.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "audio/CAudioConverter.h"
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

void CAudioChunk::ConvertFrom(const IAudioChunk& source, CAudioConverter* converter)
{
    // One frame more than the exact ratio covers the rounding of the phase.
    const std::int64_t target =
        static_cast<std::int64_t>(source.GetLength()) * m_sampleRate / source.GetSampleRate() + 1;
    Reserve(static_cast<std::int32_t>(target), true);

    fenn::P<CAudioConverter> temporary;
    if (converter == nullptr) {
        temporary = fenn::make<CAudioConverter>();
        converter = temporary.get();
    }
    converter->SetInputRate(source.GetSampleRate());
    converter->SetInputChannels(source.GetChannels());
    converter->SetInput(source.GetData(), source.GetLength());
    converter->SetOutputRate(m_sampleRate);
    converter->SetOutputChannels(m_channels);
    const std::int32_t fitting = fittingFrames();
    converter->SetOutput(m_data, fitting);

    converter->Convert();
    // A temporary converter dies here, so whatever it holds back is written now.
    if (temporary) converter->Drain();
    m_length = fitting - converter->GetOutputFrames();
}

void CAudioChunk::ConvertRemainder(CAudioConverter& converter)
{
    m_channels = converter.GetOutputChannels();
    m_sampleRate = static_cast<std::int32_t>(converter.GetOutputRate());
    Reserve(converter.GetPendingFrames() + 1, true);
    const std::int32_t fitting = fittingFrames();
    converter.SetOutput(m_data, fitting);
    converter.Drain();
    m_length = fitting - converter.GetOutputFrames();
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
