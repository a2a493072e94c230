#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "audio/CAudioChunk.h"
#include "foundation/CObjectError.h"
#include "foundation/CValueList.h"
#include "tests/support/SineSource.h"

namespace {

using tbx::CAudioChunk;

TEST(AudioChunk, ReserveRoundsUpGrowsOnlyAndKeepsAudioOnRequest)
{
    auto chunk = fenn::make<CAudioChunk>(44100, 2, 0);
    chunk->Reserve(0, false);
    EXPECT_EQ(chunk->GetCapacityInBytes(), 0);

    chunk->ReserveBytes(5, false);
    EXPECT_EQ(chunk->GetCapacityInBytes(), 8);
    EXPECT_EQ(chunk->GetCapacity(), 2);

    // Two frames of audio survive a growth with keep.
    std::int16_t* data = chunk->GetWritableData();
    const std::int16_t samples[] = {1, -2, 30000, -32768};
    std::memcpy(data, samples, sizeof samples);
    chunk->SetLength(2);
    chunk->Reserve(100, true);
    EXPECT_EQ(chunk->GetCapacityInBytes(), 400);
    EXPECT_EQ(std::memcmp(chunk->GetData(), samples, sizeof samples), 0);

    // A smaller request never shrinks the buffer.
    chunk->ReserveBytes(16, false);
    EXPECT_EQ(chunk->GetCapacityInBytes(), 400);

    // The same bytes are half as many frames in stereo as in mono.
    chunk->SetChannels(1);
    EXPECT_EQ(chunk->GetCapacity(), 200);
    chunk->SetChannels(0);
    EXPECT_THROW(chunk->GetCapacity(), fenn::CInvalidObjectStateError);
}

TEST(AudioChunk, CopyFromTakesFormatAndAllocatesExactly)
{
    auto source = fenn::make<CAudioChunk>(22050, 1, 3);
    const std::int16_t samples[] = {7, 8, 9};
    std::memcpy(source->GetWritableData(), samples, sizeof samples);
    source->SetLength(3);

    auto target = fenn::make<CAudioChunk>(48000, 2, 1);
    EXPECT_EQ(target->CopyFrom(*source), static_cast<fenn::IBase*>(target.get()));
    EXPECT_EQ(target->GetCapacityInBytes(), 6);  // exact size, no rounding to 4
    EXPECT_TRUE(target->HasFormat(22050, 1));
    EXPECT_FALSE(target->HasFormat(22049, 1));
    EXPECT_FALSE(target->HasFormat(22050, 2));
    EXPECT_EQ(target->GetLength(), 3);
    EXPECT_EQ(std::memcmp(target->GetData(), samples, sizeof samples), 0);

    // A large enough buffer is reused.
    auto big = fenn::make<CAudioChunk>(44100, 2, 100);
    big->CopyFrom(*source);
    EXPECT_EQ(big->GetCapacityInBytes(), 400);
    EXPECT_EQ(big->GetSizeInBytes(), 6);
}

// Collects what a pump writes, chunk by chunk, with each chunk's format.
class CollectingSink : public fenn::CObject, public virtual tbx::IAudioSink
{
public:
    struct Piece
    {
        std::int32_t sampleRate;
        std::int32_t channels;
        std::vector<std::int16_t> samples;
    };

    void Write(const tbx::IAudioChunk& chunk) override
    {
        const std::int16_t* data = chunk.GetData();
        pieces.push_back({chunk.GetSampleRate(), chunk.GetChannels(),
                          std::vector<std::int16_t>(data, data + chunk.GetLength() * chunk.GetChannels())});
    }
    void Finish() override { finished = true; }
    void Abort() override {}

    std::vector<Piece> pieces;
    bool finished = false;
};

// The pump of a job: one chunk reused for every read of every source.
void pump(tbx::IAudioSource& source, tbx::IAudioChunk& chunk, tbx::IAudioSink& sink)
{
    source.Open(static_cast<std::int32_t>(tbx::AudioPurpose::conversion), nullptr);
    while (source.Read(chunk)) {
        if (chunk.GetLength() > 0) sink.Write(chunk);
    }
    source.Close();
}

TEST(AudioChunk, ChunksCarryGeneratedAudioAndFormatChangesToTheSink)
{
    // Two sources of different formats share one chunk, as the sources of a
    // job do: the second reuses a buffer that was sized for the first.
    auto stereo = fenn::make<tbtest::SineSource>(44100, 2, 100000, 44100);
    auto mono = fenn::make<tbtest::SineSource>(22050, 1, 5000, 1024, 1000.0, 30000.0);
    auto chunk = fenn::make<CAudioChunk>(44100, 2, 44100);
    auto sink = fenn::make<CollectingSink>();

    pump(*stereo, *chunk, *sink);
    EXPECT_DOUBLE_EQ(stereo->GetProgress(), 1.0);
    pump(*mono, *chunk, *sink);
    sink->Finish();

    ASSERT_EQ(sink->pieces.size(), 3u + 5u);
    std::int64_t frame = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const auto& piece = sink->pieces[i];
        ASSERT_EQ(piece.channels, 2);
        ASSERT_EQ(piece.sampleRate, 44100);
        for (std::size_t s = 0; s < piece.samples.size(); s += 2, ++frame) {
            ASSERT_EQ(piece.samples[s], stereo->expectedSample(frame)) << "frame " << frame;
            ASSERT_EQ(piece.samples[s + 1], stereo->expectedSample(frame)) << "frame " << frame;
        }
    }
    EXPECT_EQ(frame, 100000);

    frame = 0;
    for (std::size_t i = 3; i < sink->pieces.size(); ++i) {
        const auto& piece = sink->pieces[i];
        ASSERT_EQ(piece.channels, 1);
        ASSERT_EQ(piece.sampleRate, 22050);
        for (std::int16_t sample : piece.samples) ASSERT_EQ(sample, mono->expectedSample(frame++));
    }
    EXPECT_EQ(frame, 5000);
    EXPECT_TRUE(sink->finished);

    auto info = mono->GetInfo();
    EXPECT_EQ(info->getInt("channels", 0), 1);
    EXPECT_DOUBLE_EQ(info->getDouble("duration", 0.0), 5000.0 / 22050.0);
}

}  // namespace
