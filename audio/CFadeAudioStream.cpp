#include "audio/CFadeAudioStream.h"

#include <cstdint>
#include <limits>
#include <utility>

namespace tbx {

namespace {

// Truncates towards zero like the processor's conversion instruction: a value
// that has no 32-bit integer (NaN from a fade of zero length, infinity) gives
// the integer indefinite, INT32_MIN, instead of undefined behaviour.
std::int32_t truncateSample(double value)
{
    if (!(value > -2147483649.0 && value < 2147483648.0)) return std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(value);
}

// The accumulator wraps instead of overflowing; only absurd mixes come near.
void addInto(std::int32_t& target, std::int32_t value)
{
    target = static_cast<std::int32_t>(static_cast<std::uint32_t>(target) + static_cast<std::uint32_t>(value));
}

}  // namespace

CFadeAudioStream::CFadeAudioStream(fenn::P<IAudioBlock> block, double startGain, double endGain,
                                   fenn::P<IAudioStream> inner, std::int64_t startFrame, std::int64_t endFrame,
                                   double rate, std::int32_t channels, std::int32_t resampleMode)
    : m_startFrame(startFrame), m_endFrame(endFrame), m_rate(rate), m_channels(channels), m_resampleMode(resampleMode),
      m_fadeStartFrame(static_cast<std::int64_t>(block->GetStart() * rate)),
      m_fadeEndFrame(static_cast<std::int64_t>(block->GetDuration() * rate + static_cast<double>(m_fadeStartFrame))),
      m_position(startFrame), m_startGain(startGain), m_gainDelta(endGain - startGain), m_block(std::move(block)),
      m_inner(std::move(inner))
{
}

std::int32_t CFadeAudioStream::Read(std::int32_t* buffer, std::int32_t frames)
{
    if (!m_inner || frames <= 0) return frames;

    m_innerSamples.assign(static_cast<std::size_t>(m_channels) * static_cast<std::size_t>(frames), 0);
    m_inner->Read(m_innerSamples.data(), frames);

    const double fadeLength = static_cast<double>(m_fadeEndFrame - m_fadeStartFrame);
    std::int64_t position = m_position;
    for (std::int32_t frame = 0; frame < frames; ++frame) {
        if (position > m_endFrame) break;
        if (position < m_startFrame) continue;
        if (m_fadeStartFrame <= position && position <= m_fadeEndFrame) {
            const double gain =
                static_cast<double>(position - m_fadeStartFrame) / fadeLength * m_gainDelta + m_startGain;
            const std::size_t first = static_cast<std::size_t>(frame) * static_cast<std::size_t>(m_channels);
            for (std::int32_t channel = 0; channel < m_channels; ++channel) {
                addInto(buffer[first + channel], truncateSample(m_innerSamples[first + channel] * gain));
            }
        }
        ++position;
        if (position > m_fadeEndFrame) break;
    }
    m_position = position;
    return frames;
}

}  // namespace tbx
