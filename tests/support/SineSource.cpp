#include "tests/support/SineSource.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "foundation/CValueList.h"

namespace tbtest {

SineSource::SineSource(std::int32_t sampleRate, std::int32_t channels, std::int64_t frames, std::int32_t framesPerRead,
                       double frequency, double amplitude)
    : m_sampleRate(sampleRate), m_channels(channels), m_frames(frames), m_framesPerRead(framesPerRead),
      m_frequency(frequency), m_amplitude(amplitude)
{
}

std::int16_t SineSource::expectedSample(std::int64_t frame) const
{
    const double phase = 2.0 * std::numbers::pi * m_frequency * static_cast<double>(frame) / m_sampleRate;
    return static_cast<std::int16_t>(std::lround(m_amplitude * std::sin(phase)));
}

void SineSource::Open(std::int32_t, fenn::IBase*)
{
    m_position = 0;
}

fenn::P<fenn::CValueList> SineSource::GetInfo()
{
    auto info = fenn::make<fenn::CValueList>();
    info->setInt("sampleRate", m_sampleRate);
    info->setInt("channels", m_channels);
    info->setDouble("duration", static_cast<double>(m_frames) / m_sampleRate);
    return info;
}

fenn::P<fenn::CValueList> SineSource::GetTags()
{
    return fenn::make<fenn::CValueList>();
}

bool SineSource::Read(tbx::IAudioChunk& chunk)
{
    if (m_position >= m_frames) return false;
    const auto frames = static_cast<std::int32_t>(std::min<std::int64_t>(m_framesPerRead, m_frames - m_position));
    chunk.SetSampleRate(m_sampleRate);
    chunk.SetChannels(m_channels);
    chunk.Reserve(frames, false);
    std::int16_t* out = chunk.GetWritableData();
    for (std::int32_t i = 0; i < frames; ++i) {
        const std::int16_t sample = expectedSample(m_position + i);
        for (std::int32_t c = 0; c < m_channels; ++c) *out++ = sample;
    }
    chunk.SetLength(frames);
    m_position += frames;
    return true;
}

double SineSource::GetProgress() const
{
    return m_frames == 0 ? 1.0 : static_cast<double>(m_position) / static_cast<double>(m_frames);
}

}  // namespace tbtest
