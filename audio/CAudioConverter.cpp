#include "audio/CAudioConverter.h"

#include <algorithm>
#include <cstring>

#include "foundation/CObjectError.h"

namespace tbx {

namespace {

constexpr double minimumRate = 100.0;
constexpr double maximumRate = 500000.0;

// One input frame in 16.16 fixed point.
constexpr std::uint64_t wholeFrame = 0x10000;
constexpr std::int32_t wholeFrame32 = 0x10000;

// The arithmetic of one channel pair. Each pair is a type of its own so that
// the resampling loop is compiled once per pair and tests no channel count
// per sample. All products are 32-bit signed: a 16-bit sample times a weight
// of at most 0x10000 cannot overflow, and the shifts are arithmetic.
//
//   tail:    the frame between the held frame and the first frame of the new
//            input, at fraction frac
//   exact:   the frame at a whole position
//   between: the frame between in[0] and the next frame, at fraction frac
//   hold:    keeps the last frame of the input for the next buffer
struct MonoToMono
{
    static constexpr std::int32_t inputChannels = 1;
    static constexpr std::int32_t outputChannels = 1;

    static void tail(std::int16_t* out, const std::int16_t* in, std::int32_t frac, std::int32_t left,
                     std::int32_t right)
    {
        const std::int32_t mix = (left + right) >> 1;
        out[0] = static_cast<std::int16_t>((frac * in[0] + mix * (wholeFrame32 - frac)) >> 16);
    }
    static void exact(std::int16_t* out, const std::int16_t* in) { out[0] = in[0]; }
    static void between(std::int16_t* out, const std::int16_t* in, std::int32_t frac)
    {
        out[0] = static_cast<std::int16_t>((in[1] * frac + (wholeFrame32 - frac) * in[0]) >> 16);
    }
    static void hold(const std::int16_t* in, std::int32_t& left, std::int32_t& right) { left = right = in[0]; }
};

struct MonoToStereo
{
    static constexpr std::int32_t inputChannels = 1;
    static constexpr std::int32_t outputChannels = 2;

    static void tail(std::int16_t* out, const std::int16_t* in, std::int32_t frac, std::int32_t left,
                     std::int32_t right)
    {
        const std::int32_t mix = (left + right) >> 1;
        const auto value = static_cast<std::int16_t>((frac * in[0] + mix * (wholeFrame32 - frac)) >> 16);
        out[0] = value;
        out[1] = value;
    }
    static void exact(std::int16_t* out, const std::int16_t* in)
    {
        out[0] = in[0];
        out[1] = in[0];
    }
    static void between(std::int16_t* out, const std::int16_t* in, std::int32_t frac)
    {
        const auto value = static_cast<std::int16_t>((in[1] * frac + (wholeFrame32 - frac) * in[0]) >> 16);
        out[0] = value;
        out[1] = value;
    }
    static void hold(const std::int16_t* in, std::int32_t& left, std::int32_t& right) { left = right = in[0]; }
};

struct StereoToStereo
{
    static constexpr std::int32_t inputChannels = 2;
    static constexpr std::int32_t outputChannels = 2;

    static void tail(std::int16_t* out, const std::int16_t* in, std::int32_t frac, std::int32_t left,
                     std::int32_t right)
    {
        out[0] = static_cast<std::int16_t>((frac * in[0] + left * (wholeFrame32 - frac)) >> 16);
        out[1] = static_cast<std::int16_t>((frac * in[1] + right * (wholeFrame32 - frac)) >> 16);
    }
    static void exact(std::int16_t* out, const std::int16_t* in)
    {
        out[0] = in[0];
        out[1] = in[1];
    }
    static void between(std::int16_t* out, const std::int16_t* in, std::int32_t frac)
    {
        out[0] = static_cast<std::int16_t>((in[2] * frac + (wholeFrame32 - frac) * in[0]) >> 16);
        out[1] = static_cast<std::int16_t>((in[3] * frac + (wholeFrame32 - frac) * in[1]) >> 16);
    }
    static void hold(const std::int16_t* in, std::int32_t& left, std::int32_t& right)
    {
        left = in[0];
        right = in[1];
    }
};

struct StereoToMono
{
    static constexpr std::int32_t inputChannels = 2;
    static constexpr std::int32_t outputChannels = 1;

    static void tail(std::int16_t* out, const std::int16_t* in, std::int32_t frac, std::int32_t left,
                     std::int32_t right)
    {
        const std::int32_t l = (frac * in[0] + left * (wholeFrame32 - frac)) >> 16;
        const std::int32_t r = (frac * in[1] + right * (wholeFrame32 - frac)) >> 16;
        out[0] = static_cast<std::int16_t>((r + l) >> 1);
    }
    static void exact(std::int16_t* out, const std::int16_t* in)
    {
        out[0] = static_cast<std::int16_t>((in[1] + in[0]) >> 1);
    }
    static void between(std::int16_t* out, const std::int16_t* in, std::int32_t frac)
    {
        const std::int32_t l = (in[2] * frac + (wholeFrame32 - frac) * in[0]) >> 16;
        const std::int32_t r = (in[3] * frac + (wholeFrame32 - frac) * in[1]) >> 16;
        out[0] = static_cast<std::int16_t>((r + l) >> 1);
    }
    static void hold(const std::int16_t* in, std::int32_t& left, std::int32_t& right)
    {
        left = in[0];
        right = in[1];
    }
};

void checkRate(const CAudioConverter* converter, double rate)
{
    // Written so that NaN fails as well.
    if (!(rate >= minimumRate && rate <= maximumRate)) {
        throw fenn::CInvalidArgError(converter, fenn::String(), fenn::String());
    }
}

void checkChannels(const CAudioConverter* converter, std::int32_t channels)
{
    if (channels != 1 && channels != 2) throw fenn::CInvalidArgError(converter, fenn::String(), fenn::String());
}

}  // namespace

void CAudioConverter::SetInputRate(double rate)
{
    checkRate(this, rate);
    m_inputRate = rate;
}

void CAudioConverter::SetOutputRate(double rate)
{
    checkRate(this, rate);
    m_outputRate = rate;
}

void CAudioConverter::SetInputChannels(std::int32_t channels)
{
    checkChannels(this, channels);
    m_inputChannels = channels;
}

void CAudioConverter::SetOutputChannels(std::int32_t channels)
{
    checkChannels(this, channels);
    m_outputChannels = channels;
}

void CAudioConverter::SetInput(const std::int16_t* samples, std::int32_t frames)
{
    m_input = samples;
    m_inputFrames = frames;
}

void CAudioConverter::SetOutput(std::int16_t* samples, std::int32_t frames)
{
    m_output = samples;
    m_outputFrames = frames;
}

void CAudioConverter::Reset()
{
    m_phase = 0;
    m_tailPending = false;
    m_tailLeft = 0;
    m_tailRight = 0;
}

std::uint64_t CAudioConverter::step() const
{
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(m_inputRate / m_outputRate * 65536.0));
}

void CAudioConverter::Convert(std::int32_t* consumed, std::int32_t* produced)
{
    const std::int32_t inputBefore = m_inputFrames;
    const std::int32_t outputBefore = m_outputFrames;

    if (m_inputRate == m_outputRate) {
        convertEqualRates();
    } else if (m_inputChannels == 1) {
        if (m_outputChannels == 1) {
            resample<MonoToMono>();
        } else {
            resample<MonoToStereo>();
        }
    } else if (m_outputChannels == 2) {
        resample<StereoToStereo>();
    } else {
        resample<StereoToMono>();
    }

    if (consumed != nullptr) *consumed = inputBefore - m_inputFrames;
    if (produced != nullptr) *produced = outputBefore - m_outputFrames;
}

void CAudioConverter::convertEqualRates()
{
    const std::int32_t frames = std::max(0, std::min(m_inputFrames, m_outputFrames));
    const std::int16_t* in = m_input;
    std::int16_t* out = m_output;

    if (frames > 0) {
        if (m_inputChannels == m_outputChannels) {
            std::memcpy(out, in, static_cast<std::size_t>(frames) * static_cast<std::size_t>(m_inputChannels) * 2);
        } else if (m_inputChannels > m_outputChannels) {
            for (std::int32_t i = 0; i < frames; ++i) {
                const std::int32_t left = in[2 * i];
                const std::int32_t right = in[2 * i + 1];
                out[i] = static_cast<std::int16_t>((left + right) >> 1);
            }
        } else {
            for (std::int32_t i = 0; i < frames; ++i) {
                out[2 * i] = in[i];
                out[2 * i + 1] = in[i];
            }
        }
        m_input = in + static_cast<std::ptrdiff_t>(frames) * m_inputChannels;
        m_output = out + static_cast<std::ptrdiff_t>(frames) * m_outputChannels;
        m_inputFrames -= frames;
        m_outputFrames -= frames;
    }
    m_phase = 0;
}

// The streaming linear interpolator. phase is the read position in 16.16
// fixed point relative to the next input frame. When the position falls
// between the last frame of this input and the first of the next one, the
// last frame is held back in tailLeft/tailRight and interpolated against the
// next buffer on the following call.
template <class Pair> void CAudioConverter::resample()
{
    constexpr std::int32_t inChannels = Pair::inputChannels;
    constexpr std::int32_t outChannels = Pair::outputChannels;

    if (m_inputFrames <= 0) return;

    const std::uint64_t increment = step();
    std::uint64_t phase = m_phase;
    const std::int16_t* in = m_input;
    std::int32_t inputFrames = m_inputFrames;
    std::int16_t* out = m_output;
    std::int32_t outputFrames = m_outputFrames;

    if (m_tailPending && outputFrames > 0) {
        while (phase < wholeFrame && outputFrames > 0) {
            Pair::tail(out, in, static_cast<std::int32_t>(phase), m_tailLeft, m_tailRight);
            out += outChannels;
            --outputFrames;
            phase += increment;
        }
        if (phase >= wholeFrame) {
            phase -= wholeFrame;
            m_tailPending = false;
        }
    }

    while (outputFrames > 0) {
        const std::uint64_t whole = phase >> 16;
        if (whole != 0) {
            if (whole >= static_cast<std::uint64_t>(inputFrames)) {
                // The position lies beyond this input: keep it relative to the next one.
                in += static_cast<std::ptrdiff_t>(inputFrames) * inChannels;
                phase -= static_cast<std::uint64_t>(inputFrames) << 16;
                inputFrames = 0;
                break;
            }
            in += static_cast<std::ptrdiff_t>(whole) * inChannels;
            inputFrames -= static_cast<std::int32_t>(whole);
            phase &= wholeFrame - 1;
        }
        if (phase == 0) {
            Pair::exact(out, in);
        } else if (inputFrames == 1) {
            // The frame after this one is in the next buffer.
            Pair::hold(in, m_tailLeft, m_tailRight);
            m_tailPending = true;
            in += inChannels;
            inputFrames = 0;
            break;
        } else {
            Pair::between(out, in, static_cast<std::int32_t>(phase));
        }
        out += outChannels;
        --outputFrames;
        phase += increment;
    }

    m_phase = phase;
    m_input = in;
    m_inputFrames = inputFrames;
    m_output = out;
    m_outputFrames = outputFrames;
}

bool CAudioConverter::Drain(std::int32_t* produced)
{
    const std::int32_t outputBefore = m_outputFrames;

    if (m_inputRate != m_outputRate && m_tailPending && m_outputFrames > 0) {
        const auto increment = static_cast<std::uint32_t>(step());
        if (m_outputChannels == 1) {
            const auto mix = static_cast<std::int16_t>((m_tailLeft + m_tailRight) >> 1);
            while (m_phase < wholeFrame && m_outputFrames > 0) {
                *m_output++ = mix;
                --m_outputFrames;
                m_phase += increment;
            }
        } else {
            const auto left = static_cast<std::int16_t>(m_tailLeft);
            const auto right = static_cast<std::int16_t>(m_tailRight);
            while (m_phase < wholeFrame && m_outputFrames > 0) {
                *m_output++ = left;
                *m_output++ = right;
                --m_outputFrames;
                m_phase += increment;
            }
        }
        if (m_phase >= wholeFrame) {
            m_phase -= wholeFrame;
            m_tailPending = false;
        }
    }

    if (produced != nullptr) *produced = outputBefore - m_outputFrames;
    return m_outputFrames > 0;
}

std::int32_t CAudioConverter::GetPendingFrames() const
{
    if (!m_tailPending || m_inputRate == m_outputRate || m_phase >= wholeFrame) return 0;
    const std::uint64_t increment = step();
    const std::uint64_t frames = (wholeFrame - m_phase) / increment;
    if (frames * increment + m_phase < wholeFrame) return static_cast<std::int32_t>(frames + 1);
    return static_cast<std::int32_t>(frames);
}

}  // namespace tbx
