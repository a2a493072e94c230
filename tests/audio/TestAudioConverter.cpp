#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "audio/CAudioChunk.h"
#include "audio/CAudioConverter.h"
#include "foundation/CObjectError.h"

namespace {

using tbx::CAudioChunk;
using tbx::CAudioConverter;
using Samples = std::vector<std::int16_t>;

fenn::P<CAudioConverter> makeConverter(double inputRate, std::int32_t inputChannels, double outputRate,
                                       std::int32_t outputChannels)
{
    auto converter = fenn::make<CAudioConverter>();
    converter->SetInputRate(inputRate);
    converter->SetInputChannels(inputChannels);
    converter->SetOutputRate(outputRate);
    converter->SetOutputChannels(outputChannels);
    return converter;
}

// Converts all of input in one call, then drains into the same output.
Samples convertAtOnce(CAudioConverter& converter, const Samples& input, bool drain = true)
{
    const std::int32_t inFrames = static_cast<std::int32_t>(input.size()) / converter.GetInputChannels();
    // The truncated step makes extreme upsampling a little longer than the ratio.
    const auto room =
        static_cast<std::int32_t>(inFrames * converter.GetOutputRate() / converter.GetInputRate() * 1.02) + 16;
    Samples output(static_cast<std::size_t>(room * converter.GetOutputChannels()));
    converter.SetInput(input.data(), inFrames);
    converter.SetOutput(output.data(), room);
    converter.Convert();
    if (drain) converter.Drain();
    output.resize(static_cast<std::size_t>((room - converter.GetOutputFrames()) * converter.GetOutputChannels()));
    return output;
}

struct HandCase
{
    const char* name;
    double inputRate;
    std::int32_t inputChannels;
    double outputRate;
    std::int32_t outputChannels;
    Samples input;
    Samples converted;  // what Convert writes
    Samples drained;    // what Drain adds afterwards
};

TEST(AudioConverter, HandComputedFramesOfEveryChannelPair)
{
    // 33075 -> 44100 steps by 0xC000, 22050 -> 44100 by 0x8000, 44100 ->
    // 33075 by 87381. Every value follows from (b * frac + (0x10000 - frac) * a) >> 16.
    const HandCase cases[] = {
        {"mono half steps", 22050, 1, 44100, 1, {0, 1000, -2000, 3000}, {0, 500, 1000, -500, -2000, 500, 3000}, {3000}},
        {"mono shift rounds down", 22050, 1, 44100, 1, {0, -1, 1}, {0, -1, -1, 0, 1}, {1}},
        {"mono three quarter steps", 33075, 1, 44100, 1, {1000, -1000, 3001, 7}, {1000, -500, 1000, 2252, 7}, {7}},
        {"mono downsampled", 44100, 1, 33075, 1, {300, 600, -900, 1200, 10}, {300, 100, 499, 10}, {}},
        {"mono to stereo", 33075, 1, 44100, 2, {1000, -1000}, {1000, 1000, -500, -500}, {-1000, -1000}},
        {"stereo", 33075, 2, 44100, 2, {1000, -3, -1000, 5}, {1000, -3, -500, 3}, {-1000, 5}},
        {"stereo to mono", 33075, 2, 44100, 1, {1000, -3, -1000, 5}, {498, -249}, {-498}},
        {"stereo to mono, odd negative sums", 33075, 2, 44100, 1, {-1001, 0, -1000, 5}, {-501, -499}, {-498}},
        {"stereo downsampled",
         44100,
         2,
         33075,
         2,
         {300, -300, 600, -600, -900, 900, 1200, -1200, 10, -10},
         {300, -300, 100, -101, 499, -500, 10, -11},
         {}},
    };
    for (const HandCase& c : cases) {
        SCOPED_TRACE(c.name);
        auto converter = makeConverter(c.inputRate, c.inputChannels, c.outputRate, c.outputChannels);
        const Samples converted = convertAtOnce(*converter, c.input, false);
        EXPECT_EQ(converted, c.converted);
        EXPECT_EQ(converter->GetInputFrames(), 0);
        EXPECT_EQ(converter->GetPendingFrames(), static_cast<std::int32_t>(c.drained.size()) / c.outputChannels);

        Samples drained(16);
        converter->SetOutput(drained.data(), 16 / c.outputChannels);
        std::int32_t produced = -1;
        EXPECT_TRUE(converter->Drain(&produced));
        drained.resize(static_cast<std::size_t>(produced * c.outputChannels));
        EXPECT_EQ(drained, c.drained);
        EXPECT_EQ(converter->GetPendingFrames(), 0);
    }
}

TEST(AudioConverter, EqualRatesCopyMixOrDuplicateWithoutInterpolation)
{
    struct EqualCase
    {
        std::int32_t inputChannels;
        std::int32_t outputChannels;
        Samples input;
        std::int32_t room;
        Samples expected;
    };
    const EqualCase cases[] = {
        {1, 1, {5, -32768, 32767, 0}, 10, {5, -32768, 32767, 0}},
        {2, 2, {1, 2, 3, 4, 5, 6}, 2, {1, 2, 3, 4}},
        // The sum is shifted, not divided: -1 / 2 rounds towards minus infinity.
        {2, 1, {-1, 0, 3, 4, -3, -4, 32767, 32767, -32768, -32768}, 10, {-1, 3, -4, 32767, -32768}},
        {1, 2, {7, -8, 9}, 2, {7, 7, -8, -8}},
    };
    for (const EqualCase& c : cases) {
        SCOPED_TRACE(testing::Message() << c.inputChannels << " -> " << c.outputChannels);
        auto converter = makeConverter(44100, c.inputChannels, 44100, c.outputChannels);
        const std::int32_t frames = static_cast<std::int32_t>(c.input.size()) / c.inputChannels;
        Samples output(static_cast<std::size_t>(c.room * c.outputChannels), 99);
        converter->SetInput(c.input.data(), frames);
        converter->SetOutput(output.data(), c.room);
        std::int32_t consumed = -1;
        std::int32_t produced = -1;
        converter->Convert(&consumed, &produced);
        const std::int32_t expectedFrames = static_cast<std::int32_t>(c.expected.size()) / c.outputChannels;
        EXPECT_EQ(consumed, expectedFrames);
        EXPECT_EQ(produced, expectedFrames);
        EXPECT_EQ(converter->GetInputFrames(), frames - expectedFrames);
        output.resize(c.expected.size());
        EXPECT_EQ(output, c.expected);
        EXPECT_EQ(converter->GetPendingFrames(), 0);
    }

    // The phase is 0 after a copy: resampling from there starts on a whole frame.
    auto converter = makeConverter(44100, 1, 44100, 1);
    const Samples input = {10, 20};
    EXPECT_EQ(convertAtOnce(*converter, input), input);
    converter->SetOutputRate(88200);
    EXPECT_EQ(convertAtOnce(*converter, Samples{40, 60}), (Samples{40, 50, 60, 60}));
}

TEST(AudioConverter, SingleFrameBuffersAreHeldBackAndInterpolatedWithTheNext)
{
    struct Step
    {
        Samples input;
        Samples output;
    };
    // 22050 -> 44100 stereo, one frame per call: each call writes the frame
    // between the held one and the new one, then the new one, and holds it.
    // 33075 -> 44100 mono: the phase wanders, and a frame may only come out
    // through its neighbours.
    const struct
    {
        double inputRate;
        std::int32_t channels;
        std::vector<Step> steps;
        Samples drained;
    } cases[] = {
        {22050,
         2,
         {{{100, -100}, {100, -100}}, {{300, 100}, {200, 0, 300, 100}}, {{-300, -500}, {0, -200, -300, -500}}},
         {-300, -500}},
        {33075, 1, {{{0, 400}, {0, 300}}, {{800}, {600}}, {{1600}, {1000, 1600}}}, {1600}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.inputRate);
        auto converter = makeConverter(c.inputRate, c.channels, 44100, c.channels);
        Samples output(32);
        for (const Step& step : c.steps) {
            converter->SetInput(step.input.data(), static_cast<std::int32_t>(step.input.size()) / c.channels);
            // Without room nothing is taken, not even the held frame's successor.
            converter->SetOutput(output.data(), 0);
            std::int32_t consumed = -1;
            std::int32_t produced = -1;
            converter->Convert(&consumed, &produced);
            EXPECT_EQ(produced, 0);
            EXPECT_EQ(converter->GetInputFrames() * c.channels, static_cast<std::int32_t>(step.input.size()));

            converter->SetOutput(output.data(), 16 / c.channels);
            converter->Convert(&consumed, &produced);
            EXPECT_EQ(consumed * c.channels, static_cast<std::int32_t>(step.input.size()));
            EXPECT_EQ(converter->GetInputFrames(), 0);
            EXPECT_EQ(Samples(output.begin(), output.begin() + produced * c.channels), step.output);
            // The last frame waits for its successor.
            EXPECT_EQ(converter->GetPendingFrames(), 1);
        }
        std::int32_t produced = -1;
        converter->SetOutput(output.data(), 16 / c.channels);
        converter->Drain(&produced);
        EXPECT_EQ(Samples(output.begin(), output.begin() + produced * c.channels), c.drained);
    }
}

// Feeds the signal in random pieces and with random output room, the way a
// sink feeds a converter chunk by chunk, and drains at the end.
Samples convertInPieces(CAudioConverter& converter, const Samples& input, std::mt19937& random)
{
    const std::int32_t inChannels = converter.GetInputChannels();
    const std::int32_t outChannels = converter.GetOutputChannels();
    const std::int32_t totalFrames = static_cast<std::int32_t>(input.size()) / inChannels;
    std::uniform_int_distribution<std::int32_t> pieceSize(0, 40);
    std::uniform_int_distribution<std::int32_t> roomSize(0, 60);
    Samples output;
    Samples room(64 * 2);

    std::int32_t fed = 0;
    while (fed < totalFrames || converter.GetInputFrames() > 0) {
        if (converter.GetInputFrames() == 0) {
            const std::int32_t frames = std::min(pieceSize(random), totalFrames - fed);
            converter.SetInput(input.data() + static_cast<std::size_t>(fed * inChannels), frames);
            fed += frames;
        }
        const std::int32_t space = roomSize(random);
        converter.SetOutput(room.data(), space);
        std::int32_t produced = 0;
        converter.Convert(nullptr, &produced);
        output.insert(output.end(), room.begin(), room.begin() + produced * outChannels);
    }
    while (converter.GetPendingFrames() > 0) {
        const std::int32_t space = roomSize(random) % 3;
        converter.SetOutput(room.data(), space);
        std::int32_t produced = 0;
        const bool roomLeft = converter.Drain(&produced);
        EXPECT_EQ(roomLeft, produced < space);
        output.insert(output.end(), room.begin(), room.begin() + produced * outChannels);
    }
    return output;
}

TEST(AudioConverter, ManySmallCallsGiveTheSameSamplesAsOneCall)
{
    const double rates[][2] = {{22050, 44100}, {48000, 44100}, {44100, 8000}, {8000, 48000},
                               {11025, 44100}, {44100, 44100}, {100, 500000}, {500000, 100}};
    const std::int32_t pairs[][2] = {{1, 1}, {1, 2}, {2, 2}, {2, 1}};
    std::mt19937 random(20240611);
    std::uniform_int_distribution<std::int32_t> sample(-32768, 32767);

    for (const auto& rate : rates) {
        for (const auto& pair : pairs) {
            SCOPED_TRACE(testing::Message() << rate[0] << " -> " << rate[1] << ", " << pair[0] << " -> " << pair[1]);
            Samples input(static_cast<std::size_t>(997 * pair[0]));
            for (auto& s : input) s = static_cast<std::int16_t>(sample(random));

            auto whole = makeConverter(rate[0], pair[0], rate[1], pair[1]);
            const Samples once = convertAtOnce(*whole, input);
            auto pieces = makeConverter(rate[0], pair[0], rate[1], pair[1]);
            const Samples piecewise = convertInPieces(*pieces, input, random);

            ASSERT_EQ(once.size(), piecewise.size());
            EXPECT_EQ(once, piecewise);
            // The length follows the ratio, up to the truncation of the step.
            const double expectedFrames = 997.0 * rate[1] / rate[0];
            EXPECT_NEAR(static_cast<double>(once.size() / static_cast<std::size_t>(pair[1])), expectedFrames,
                        expectedFrames * 0.01 + 2.0);
        }
    }
}

TEST(AudioConverter, PendingFramesAreWhatDrainWrites)
{
    // Ratios whose steps divide the remaining fraction exactly and ones that do not.
    const double rates[][2] = {{22050, 44100}, {11025, 44100}, {33075, 44100}, {44100, 48000},
                               {100, 500000},  {48000, 44100}, {8000, 11025}};
    std::mt19937 random(7);
    for (const auto& rate : rates) {
        for (std::int32_t frames : {1, 2, 3, 5, 17, 100}) {
            SCOPED_TRACE(testing::Message() << rate[0] << " -> " << rate[1] << ", " << frames << " frames");
            auto converter = makeConverter(rate[0], 2, rate[1], 1);
            Samples input(static_cast<std::size_t>(frames * 2));
            for (auto& s : input) s = static_cast<std::int16_t>(random() % 2000);
            convertAtOnce(*converter, input, false);
            const std::int32_t pending = converter->GetPendingFrames();

            Samples output(static_cast<std::size_t>(pending + 10));
            converter->SetOutput(output.data(), pending + 10);
            std::int32_t produced = -1;
            EXPECT_TRUE(converter->Drain(&produced));
            EXPECT_EQ(produced, pending);
            EXPECT_EQ(converter->GetPendingFrames(), 0);
            // A second Drain has nothing left.
            converter->Drain(&produced);
            EXPECT_EQ(produced, 0);
        }
    }

    // Drain without room reports that none is left and keeps the tail.
    auto converter = makeConverter(11025, 1, 44100, 1);
    convertAtOnce(*converter, Samples{1, 2}, false);
    EXPECT_EQ(converter->GetPendingFrames(), 3);
    converter->SetOutput(nullptr, 0);
    EXPECT_FALSE(converter->Drain());
    EXPECT_EQ(converter->GetPendingFrames(), 3);
    // After Reset nothing is held.
    converter->Reset();
    EXPECT_EQ(converter->GetPendingFrames(), 0);
}

TEST(AudioConverter, RatesAndChannelsOutsideTheRangeAreRefused)
{
    auto converter = fenn::make<CAudioConverter>();
    EXPECT_EQ(converter->GetInputRate(), 44100.0);
    EXPECT_EQ(converter->GetOutputChannels(), 2);

    for (double rate : {99.9, 500000.1, 0.0, -44100.0, std::nan("")}) {
        SCOPED_TRACE(rate);
        EXPECT_THROW(converter->SetInputRate(rate), fenn::CInvalidArgError);
        EXPECT_THROW(converter->SetOutputRate(rate), fenn::CInvalidArgError);
    }
    EXPECT_EQ(converter->GetInputRate(), 44100.0);
    for (double rate : {100.0, 500000.0, 22050.5}) {
        converter->SetInputRate(rate);
        converter->SetOutputRate(rate);
        EXPECT_EQ(converter->GetInputRate(), rate);
        EXPECT_EQ(converter->GetOutputRate(), rate);
    }

    for (std::int32_t channels : {0, 3, -1}) {
        EXPECT_THROW(converter->SetInputChannels(channels), fenn::CInvalidArgError);
        EXPECT_THROW(converter->SetOutputChannels(channels), fenn::CInvalidArgError);
    }
    converter->SetInputChannels(1);
    converter->SetOutputChannels(1);
    EXPECT_EQ(converter->GetInputChannels(), 1);
    EXPECT_EQ(converter->GetOutputChannels(), 1);
}

fenn::P<CAudioChunk> makeChunk(std::int32_t rate, std::int32_t channels, const Samples& samples)
{
    const std::int32_t frames = static_cast<std::int32_t>(samples.size()) / channels;
    auto chunk = fenn::make<CAudioChunk>(rate, channels, frames);
    if (!samples.empty()) std::memcpy(chunk->GetWritableData(), samples.data(), samples.size() * 2);
    chunk->SetLength(frames);
    return chunk;
}

Samples samplesOf(const CAudioChunk& chunk)
{
    return Samples(chunk.GetData(), chunk.GetData() + chunk.GetLength() * chunk.GetChannels());
}

TEST(AudioConverter, ChunksConvertWithATemporaryOrAKeptConverter)
{
    // Equal format: a plain copy of the same length.
    const Samples stereo = {1, -1, 2, -2, 3, -3};
    auto source = makeChunk(44100, 2, stereo);
    auto target = fenn::make<CAudioChunk>(44100, 2, 0);
    target->ConvertFrom(*source, nullptr);
    EXPECT_EQ(target->GetLength(), 3);
    EXPECT_EQ(samplesOf(*target), stereo);

    // A temporary converter is drained: the held last frame is written too.
    auto mono = makeChunk(22050, 1, {0, 1000, -2000, 3000});
    auto upsampled = fenn::make<CAudioChunk>(44100, 1, 1);
    upsampled->ConvertFrom(*mono, nullptr);
    EXPECT_EQ(samplesOf(*upsampled), (Samples{0, 500, 1000, -500, -2000, 500, 3000, 3000}));
    EXPECT_TRUE(upsampled->HasFormat(44100, 1));

    // Chunks through one kept converter and a remainder give what one chunk
    // gives. Each chunk has the room ConvertFrom reserves, which is enough as
    // long as the chunks are not tiny.
    std::mt19937 random(3);
    Samples signal(2 * 300);
    for (auto& s : signal) s = static_cast<std::int16_t>(random() % 20000) - 10000;
    auto all = makeChunk(32000, 2, signal);
    auto expected = fenn::make<CAudioChunk>(44100, 1, 0);
    expected->ConvertFrom(*all, nullptr);
    EXPECT_NEAR(expected->GetLength(), 300 * 44100 / 32000, 1);

    auto converter = fenn::make<CAudioConverter>();
    auto out = fenn::make<CAudioChunk>(44100, 1, 0);
    Samples collected;
    for (auto piece : {std::make_pair(0, 100), std::make_pair(100, 37), std::make_pair(137, 163)}) {
        auto part = makeChunk(
            32000, 2, Samples(signal.begin() + piece.first * 2, signal.begin() + (piece.first + piece.second) * 2));
        out->ConvertFrom(*part, converter.get());
        EXPECT_EQ(converter->GetInputFrames(), 0);
        const Samples got = samplesOf(*out);
        collected.insert(collected.end(), got.begin(), got.end());
    }
    auto remainder = fenn::make<CAudioChunk>(8000, 2, 0);
    remainder->ConvertRemainder(*converter);
    EXPECT_TRUE(remainder->HasFormat(44100, 1));
    const Samples rest = samplesOf(*remainder);
    EXPECT_EQ(rest.size(), 1u);
    collected.insert(collected.end(), rest.begin(), rest.end());
    EXPECT_EQ(collected, samplesOf(*expected));

    // A rate outside the range reaches the converter's check.
    auto tooSlow = makeChunk(50, 1, {1, 2});
    EXPECT_THROW(out->ConvertFrom(*tooSlow, nullptr), fenn::CInvalidArgError);
}

}  // namespace
