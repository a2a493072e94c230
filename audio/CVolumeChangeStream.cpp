#include "audio/CVolumeChangeStream.h"

#include <limits>
#include <utility>

namespace tbx {

namespace {

// Truncates towards zero; a product without a 32-bit integer gives the
// integer indefinite, INT32_MIN, as the processor's conversion does.
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

CVolumeChangeStream::CVolumeChangeStream(fenn::P<IAudioBlock> block, double factor, fenn::P<IAudioStream> inner,
                                         std::int64_t startFrame, std::int64_t endFrame, double rate,
                                         std::int32_t channels, std::int32_t resampleMode)
    : m_startFrame(startFrame), m_endFrame(endFrame), m_rate(rate), m_channels(channels), m_resampleMode(resampleMode),
      m_factor(factor), m_position(startFrame), m_block(std::move(block)), m_inner(std::move(inner))
{
}

std::int32_t CVolumeChangeStream::Read(std::int32_t* buffer, std::int32_t frames)
{
    if (!m_inner || frames <= 0) return frames;

    const std::size_t samples = static_cast<std::size_t>(m_channels) * static_cast<std::size_t>(frames);
    m_innerSamples.assign(samples, 0);
    m_inner->Read(m_innerSamples.data(), frames);

    const bool stereo = m_channels == 2;
    // Two samples per round for mono too: see the class comment.
    for (std::size_t index = 0; index < samples; index += 2) {
        if (m_startFrame <= m_position && m_position <= m_endFrame) {
            addInto(buffer[index], truncateSample(m_innerSamples[index] * m_factor));
            if (stereo) addInto(buffer[index + 1], truncateSample(m_innerSamples[index + 1] * m_factor));
        } else {
            addInto(buffer[index], m_innerSamples[index]);
            if (stereo) addInto(buffer[index + 1], m_innerSamples[index + 1]);
        }
        ++m_position;
    }
    return frames;
}

}  // namespace tbx
