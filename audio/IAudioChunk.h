#pragma once

#include <cstdint>

#include "foundation/IBase.h"

namespace fenn {
class CValueList;
}

namespace tbx {

class CAudioConverter;

// The one unit of audio exchange: interleaved signed 16-bit samples in host
// byte order, one or two channels, an integer sample rate. A chunk carries its
// own format; a receiver compares each chunk with HasFormat. The setters check
// nothing: a chunk is a plain buffer that its owner keeps consistent.
class IAudioChunk : public virtual fenn::IBase
{
public:
    virtual const std::int16_t* GetData() const = 0;
    virtual std::int16_t* GetWritableData() = 0;
    // Capacity in frames of the current channel count.
    virtual std::int32_t GetCapacity() const = 0;
    virtual std::int32_t GetCapacityInBytes() const = 0;
    virtual void Reserve(std::int32_t frames, bool keep) = 0;
    // Grows the buffer to at least bytes, rounded up to a multiple of 4, and
    // copies the audio over when keep is set. Never shrinks.
    virtual void ReserveBytes(std::int32_t bytes, bool keep) = 0;
    virtual void SetLength(std::int32_t frames) = 0;
    virtual std::int32_t GetLength() const = 0;
    virtual std::int32_t GetSizeInBytes() const = 0;
    virtual void SetChannels(std::int32_t channels) = 0;
    virtual std::int32_t GetChannels() const = 0;
    virtual void SetSampleRate(std::int32_t sampleRate) = 0;
    virtual std::int32_t GetSampleRate() const = 0;
    virtual bool HasFormat(std::int32_t sampleRate, std::int32_t channels) const = 0;
    // Fills this chunk from source, converted to this chunk's rate and
    // channels, growing the buffer as needed. With a null converter a
    // temporary one is used and its held tail is written too; a caller that
    // passes its own converter keeps the state between chunks and ends with
    // ConvertRemainder.
    virtual void ConvertFrom(const IAudioChunk& source, CAudioConverter* converter) = 0;
    // Takes the converter's output format and writes the frames its held
    // tail still yields. Called once at the end of the audio.
    virtual void ConvertRemainder(CAudioConverter& converter) = 0;
    // Copies audio, length and format. A buffer that is too small is freed
    // first and replaced by one of exactly the needed size.
    virtual fenn::IBase* CopyFrom(const IAudioChunk& source) = 0;
};

}  // namespace tbx
