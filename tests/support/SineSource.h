#pragma once

#include <cstdint>

#include "audio/IAudioSource.h"
#include "foundation/CObject.h"

namespace tbtest {

// A generated source: a sine of a given frequency and amplitude, the same
// on every channel, handed out in reads of a fixed size. Sample n of the
// signal is expectedSample(n), so a receiver can check every sample.
class SineSource : public fenn::CObject, public virtual tbx::IAudioSource
{
public:
    SineSource(std::int32_t sampleRate, std::int32_t channels, std::int64_t frames, std::int32_t framesPerRead,
               double frequency = 441.0, double amplitude = 12000.0);

    std::int16_t expectedSample(std::int64_t frame) const;

    fenn::String GetTypeName() const override { return "Sine"; }
    void Open(std::int32_t purpose, fenn::IBase* context) override;
    fenn::P<fenn::CValueList> GetInfo() override;
    fenn::P<fenn::CValueList> GetTags() override;
    bool Read(tbx::IAudioChunk& chunk) override;
    bool IsLive() const override { return false; }
    double GetProgress() const override;
    void Reset() override { m_position = 0; }
    void Close() override {}

private:
    std::int32_t m_sampleRate;
    std::int32_t m_channels;
    std::int64_t m_frames;
    std::int32_t m_framesPerRead;
    double m_frequency;
    double m_amplitude;
    std::int64_t m_position = 0;
};

}  // namespace tbtest
