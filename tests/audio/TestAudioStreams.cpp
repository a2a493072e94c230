#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "audio/CAudioPaddingStream.h"
#include "audio/CFadeAudioStream.h"
#include "audio/CMixingAudioStream.h"
#include "audio/CSilenceStream.h"
#include "audio/CVolumeChangeStream.h"

namespace {

using Buffer = std::vector<std::int32_t>;

constexpr std::int32_t prefill = 1000000;

// An inner stream whose frame n (counted over all reads) is start + n * step
// on the left or mono channel and its negation on the right. Records the size
// of every read it gets.
class RampStream : public fenn::CObject, public virtual tbx::IAudioStream
{
public:
    RampStream(std::int32_t channels, std::int32_t start, std::int32_t step)
        : m_channels(channels), m_start(start), m_step(step)
    {
    }

    std::int32_t Read(std::int32_t* buffer, std::int32_t frames) override
    {
        reads.push_back(frames);
        for (std::int32_t i = 0; i < frames; ++i, ++m_frame) {
            const std::int32_t value = m_start + static_cast<std::int32_t>(m_frame) * m_step;
            buffer[i * m_channels] += value;
            if (m_channels == 2) buffer[i * m_channels + 1] += -value;
        }
        return frames;
    }

    std::vector<std::int32_t> reads;

private:
    std::int32_t m_channels;
    std::int32_t m_start;
    std::int32_t m_step;
    std::int64_t m_frame = 0;
};

// Only the place on the time line matters to the streams.
class PlacedBlock : public fenn::CObject, public virtual tbx::IAudioBlock
{
public:
    PlacedBlock(double start, double duration) : m_start(start), m_duration(duration) {}
    double GetStart() const override { return m_start; }
    double GetDuration() const override { return m_duration; }
    bool Save(fenn::IOutStream&) override { return false; }
    fenn::P<tbx::IAudioStream> CreateStream(std::int64_t, std::int64_t, double, std::int32_t, std::int32_t) override
    {
        return nullptr;
    }

private:
    double m_start;
    double m_duration;
};

Buffer filled(std::size_t samples)
{
    return Buffer(samples, prefill);
}

// The buffer minus the prefill: what the stream added.
Buffer added(const Buffer& buffer)
{
    Buffer result(buffer);
    for (auto& sample : result) sample -= prefill;
    return result;
}

TEST(AudioStreams, SilenceAddsNothingAndNeverEnds)
{
    auto silence = fenn::make<tbx::CSilenceStream>();
    Buffer buffer = filled(8);
    EXPECT_EQ(silence->Read(buffer.data(), 4), 4);
    EXPECT_EQ(buffer, filled(8));
}

TEST(AudioStreams, PaddingKeepsSilenceInFrontAndBehindTheInnerStream)
{
    // Range 100..120, five frames of front padding, three behind: the inner
    // stream plays from 105 to 116.
    auto inner = fenn::make<RampStream>(2, 1, 1);
    auto padded = fenn::make<tbx::CAudioPaddingStream>(inner, 100, 120, 2, 5, 3);

    struct Read
    {
        std::int32_t frames;
        std::vector<std::int32_t> innerReads;  // all the inner reads so far
        Buffer added;
    };
    const Read reads[] = {
        // The front padding is longer than the request: the inner stream is not asked.
        {4, {}, {0, 0, 0, 0, 0, 0, 0, 0}},
        // One more frame of padding, then the inner stream fills the rest.
        {6, {5}, {0, 0, 1, -1, 2, -2, 3, -3, 4, -4, 5, -5}},
        // The back padding cuts the inner read to 7 frames of the 10.
        {10, {5, 7}, {6, -6, 7, -7, 8, -8, 9, -9, 10, -10, 11, -11, 12, -12, 0, 0, 0, 0, 0, 0}},
        // From here on everything is back padding.
        {4, {5, 7}, {0, 0, 0, 0, 0, 0, 0, 0}},
        {4, {5, 7}, {0, 0, 0, 0, 0, 0, 0, 0}},
    };
    for (const Read& read : reads) {
        Buffer buffer = filled(static_cast<std::size_t>(read.frames * 2));
        EXPECT_EQ(padded->Read(buffer.data(), read.frames), read.frames);
        EXPECT_EQ(inner->reads, read.innerReads);
        EXPECT_EQ(added(buffer), read.added);
    }
}

TEST(AudioStreams, MixingSumsEveryStreamBeyondSixteenBitsUntilTheEnd)
{
    auto mix = fenn::make<tbx::CMixingAudioStream>(2, 44100.0, 0, 10);
    mix->AddStream(fenn::make<RampStream>(2, 30000, 1000));
    mix->AddStream(fenn::make<tbx::CSilenceStream>());
    mix->AddStream(fenn::make<RampStream>(2, 30000, 0));

    Buffer buffer = filled(8);
    EXPECT_EQ(mix->Read(buffer.data(), 4), 4);
    EXPECT_EQ(added(buffer), (Buffer{60000, -60000, 61000, -61000, 62000, -62000, 63000, -63000}));
    // Positions 4, 8: still inside; 12 lies past the end frame 10.
    EXPECT_EQ(mix->Read(buffer.data(), 4), 4);
    EXPECT_EQ(mix->Read(buffer.data(), 4), 4);
    EXPECT_EQ(mix->Read(buffer.data(), 4), 0);

    // Without streams the mix is silent but keeps time.
    auto empty = fenn::make<tbx::CMixingAudioStream>(1, 8000.0, 5, 14);
    Buffer mono = filled(5);
    EXPECT_EQ(empty->Read(mono.data(), 5), 5);
    EXPECT_EQ(empty->Read(mono.data(), 5), 5);
    EXPECT_EQ(empty->Read(mono.data(), 5), 0);
    EXPECT_EQ(mono, filled(5));
}

TEST(AudioStreams, FadeScalesLinearlyAndIsSilentOutsideTheFade)
{
    // At 10 Hz a block from 1.0 s for 0.4 s fades over the frames 10 to 14.
    // Products truncate towards zero: 1001 * 0.75 = 750.75 gives 750 and
    // -750.75 gives -750.
    auto block = fenn::make<PlacedBlock>(1.0, 0.4);
    auto fadeOut =
        fenn::make<tbx::CFadeAudioStream>(block, 1.0, 0.0, fenn::make<RampStream>(2, 1001, 0), 8, 20, 10.0, 2, 0);
    EXPECT_EQ(fadeOut->GetFadeStartFrame(), 10);
    EXPECT_EQ(fadeOut->GetFadeEndFrame(), 14);
    Buffer buffer = filled(20);
    EXPECT_EQ(fadeOut->Read(buffer.data(), 10), 10);
    EXPECT_EQ(added(buffer),
              (Buffer{0, 0, 0, 0, 1001, -1001, 750, -750, 500, -500, 250, -250, 0, 0, 0, 0, 0, 0, 0, 0}));
    // Past the fade the stream stays silent.
    Buffer later = filled(20);
    EXPECT_EQ(fadeOut->Read(later.data(), 10), 10);
    EXPECT_EQ(later, filled(20));

    // A fade in above unity leaves values beyond 16 bits in the accumulator.
    auto fadeIn =
        fenn::make<tbx::CFadeAudioStream>(block, 0.5, 2.5, fenn::make<RampStream>(1, 30000, 0), 10, 20, 10.0, 1, 0);
    Buffer mono(6, 0);
    fadeIn->Read(mono.data(), 3);
    fadeIn->Read(mono.data() + 3, 3);
    EXPECT_EQ(mono, (Buffer{15000, 30000, 45000, 60000, 75000, 0}));

    // No inner stream: silent, and the frames count as handled.
    auto empty = fenn::make<tbx::CFadeAudioStream>(block, 1.0, 0.0, nullptr, 0, 20, 10.0, 1, 0);
    Buffer untouched = filled(4);
    EXPECT_EQ(empty->Read(untouched.data(), 4), 4);
    EXPECT_EQ(untouched, filled(4));

    // A fade of zero length divides 0 by 0: the frame gets the integer indefinite.
    auto point = fenn::make<PlacedBlock>(1.0, 0.0);
    auto degenerate =
        fenn::make<tbx::CFadeAudioStream>(point, 1.0, 0.0, fenn::make<RampStream>(1, 5, 0), 10, 20, 10.0, 1, 0);
    Buffer zero(3, 0);
    degenerate->Read(zero.data(), 3);
    EXPECT_EQ(zero, (Buffer{std::numeric_limits<std::int32_t>::min(), 0, 0}));
}

TEST(AudioStreams, VolumeChangeScalesInsideItsRangeAndWalksMonoTwoSamplesAtATime)
{
    auto block = fenn::make<PlacedBlock>(0.0, 1.0);

    // Stereo: frames 0..2 are inside the range, 3 and 4 pass unchanged.
    auto stereo =
        fenn::make<tbx::CVolumeChangeStream>(block, 0.5, fenn::make<RampStream>(2, 1001, 0), 0, 2, 10.0, 2, 0);
    Buffer buffer = filled(10);
    EXPECT_EQ(stereo->Read(buffer.data(), 5), 5);
    EXPECT_EQ(added(buffer), (Buffer{500, -500, 500, -500, 500, -500, 1001, -1001, 1001, -1001}));

    // Mono: only samples 0, 2 and 4 are added, and the position moves once
    // per pair, so frame 4 (sample 105) is the first outside the range 0..1.
    auto mono = fenn::make<tbx::CVolumeChangeStream>(block, 0.5, fenn::make<RampStream>(1, 101, 1), 0, 1, 10.0, 1, 0);
    Buffer first = filled(6);
    EXPECT_EQ(mono->Read(first.data(), 6), 6);
    EXPECT_EQ(added(first), (Buffer{50, 0, 51, 0, 105, 0}));
    // Odd frame count: samples 0 and 2 of the next three, both outside.
    Buffer second = filled(3);
    EXPECT_EQ(mono->Read(second.data(), 3), 3);
    EXPECT_EQ(added(second), (Buffer{107, 0, 109}));

    auto empty = fenn::make<tbx::CVolumeChangeStream>(block, 0.5, nullptr, 0, 10, 10.0, 2, 0);
    Buffer untouched = filled(4);
    EXPECT_EQ(empty->Read(untouched.data(), 2), 2);
    EXPECT_EQ(untouched, filled(4));
}

}  // namespace
