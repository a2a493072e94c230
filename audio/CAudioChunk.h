#pragma once

#include "audio/IAudioChunk.h"
#include "foundation/CObject.h"

namespace tbx {

// A chunk whose buffer is owned and only grows. Pumps keep one chunk for a
// whole job and let each source overwrite all of its fields on every read.
// Used by one thread at a time.
class CAudioChunk : public fenn::CObject, public virtual IAudioChunk
{
public:
    CAudioChunk(std::int32_t sampleRate, std::int32_t channels, std::int32_t capacityInFrames);
    ~CAudioChunk() override;
    CAudioChunk(const CAudioChunk&) = delete;
    CAudioChunk& operator=(const CAudioChunk&) = delete;

    const std::int16_t* GetData() const override { return m_data; }
    std::int16_t* GetWritableData() override { return m_data; }
    std::int32_t GetCapacity() const override;
    std::int32_t GetCapacityInBytes() const override { return m_capacity; }
    void Reserve(std::int32_t frames, bool keep) override;
    void ReserveBytes(std::int32_t bytes, bool keep) override;
    void SetLength(std::int32_t frames) override { m_length = frames; }
    std::int32_t GetLength() const override { return m_length; }
    std::int32_t GetSizeInBytes() const override { return m_length * m_channels * 2; }
    void SetChannels(std::int32_t channels) override { m_channels = channels; }
    std::int32_t GetChannels() const override { return m_channels; }
    void SetSampleRate(std::int32_t sampleRate) override { m_sampleRate = sampleRate; }
    std::int32_t GetSampleRate() const override { return m_sampleRate; }
    bool HasFormat(std::int32_t sampleRate, std::int32_t channels) const override
    {
        return m_sampleRate == sampleRate && m_channels == channels;
    }
    void ConvertFrom(const IAudioChunk& source, CAudioConverter* converter) override;
    void ConvertRemainder(CAudioConverter& converter) override;
    fenn::IBase* CopyFrom(const IAudioChunk& source) override;

private:
    void replaceBuffer(std::int32_t bytes, std::int32_t bytesToKeep);
    // Frames of the current channel count that fit in the buffer.
    std::int32_t fittingFrames() const { return m_capacity / (m_channels * 2); }

    std::int16_t* m_data = nullptr;
    std::int32_t m_capacity = 0;  // bytes
    std::int32_t m_length = 0;    // frames
    std::int32_t m_channels;
    std::int32_t m_sampleRate;
};

}  // namespace tbx
