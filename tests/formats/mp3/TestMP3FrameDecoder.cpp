#include <gtest/gtest.h>

#include "formats/mp3/CMP3FrameDecoder.h"
#include "formats/mp3/CMP3FrameFinder.h"
#include "tests/formats/mp3/MP3TestSupport.h"

namespace {

using namespace mp3test;
using tbx::CMP3FrameDecoder;

// libmad's codes for a reservoir pointer that reaches before the data it
// has and for a big_values count above 288.
constexpr std::int32_t kBadDataPointer = 0x0235;
constexpr std::int32_t kBadBigValues = 0x0232;

std::vector<Bytes> framesOf(const Bytes& file)
{
    std::vector<Bytes> frames;
    for (const FoundFrame& frame : findFrames(file)) {
        const auto start = file.begin() + frame.position;
        frames.emplace_back(start, start + frame.length);
    }
    return frames;
}

std::int32_t decode(CMP3FrameDecoder& decoder, const Bytes& frame)
{
    return decoder.decodeFrame(frame.data(), static_cast<std::int32_t>(frame.size()));
}

void setBits(Bytes& bytes, std::size_t firstBit, int count, std::uint32_t value)
{
    for (int i = 0; i < count; ++i) {
        const std::size_t bit = firstBit + static_cast<std::size_t>(i);
        const std::uint8_t mask = static_cast<std::uint8_t>(0x80 >> (bit % 8));
        if ((value >> (count - 1 - i)) & 1) {
            bytes[bit / 8] |= mask;
        } else {
            bytes[bit / 8] &= static_cast<std::uint8_t>(~mask);
        }
    }
}

class MP3FrameDecoder : public MP3Test
{
};

// Fed in order, every frame of a good file decodes, also those that lean on
// the bit reservoir of low bit rates and those with a CRC.
TEST_F(MP3FrameDecoder, EveryFrameOfAGoodFileDecodes)
{
    const std::pair<const char*, const char*> cases[] = {
        {"low.mp3", "-b 32"}, {"vbr.mp3", "-V 5"}, {"crc.mp3", "-b 96 -p"}, {"mono.mp3", "-b 8 -m m --resample 8"}};
    for (const auto& [name, options] : cases) {
        SCOPED_TRACE(name);
        makeMP3(m_folder / name, 44100, 2, 1.5, options);
        const std::vector<Bytes> frames = framesOf(readFile(m_folder / name));
        ASSERT_GT(frames.size(), 10u);
        auto decoder = fenn::make<CMP3FrameDecoder>();
        for (std::size_t i = 0; i < frames.size(); ++i) {
            EXPECT_EQ(decode(*decoder, frames[i]), CMP3FrameDecoder::kSuccess) << "frame " << i;
            EXPECT_TRUE(CMP3FrameDecoder::checkCRC(frames[i].data(), static_cast<std::int32_t>(frames[i].size())));
        }
    }
}

// A frame whose main data begins in the frames before fails alone and
// decodes once those frames came first.
TEST_F(MP3FrameDecoder, JudgesReservoirFramesWithTheirPredecessors)
{
    makeMP3(m_folder / "low.mp3", 44100, 2, 1.0, "-b 32");
    const std::vector<Bytes> frames = framesOf(readFile(m_folder / "low.mp3"));
    std::size_t borrowing = 0;
    for (std::size_t i = 5; i < frames.size() && borrowing == 0; ++i) {
        // main_data_begin: the first nine bits behind the header (MPEG 1, no CRC).
        if (((frames[i][4] << 1) | (frames[i][5] >> 7)) > 150) borrowing = i;
    }
    ASSERT_NE(borrowing, 0u);

    auto decoder = fenn::make<CMP3FrameDecoder>();
    EXPECT_EQ(decode(*decoder, frames[borrowing]), kBadDataPointer);
    decoder->reset();
    for (std::size_t i = borrowing - 5; i < borrowing; ++i) decode(*decoder, frames[i]);
    EXPECT_EQ(decode(*decoder, frames[borrowing]), CMP3FrameDecoder::kSuccess);
    decoder->reset();
    EXPECT_EQ(decode(*decoder, frames[borrowing]), kBadDataPointer);
}

TEST_F(MP3FrameDecoder, FindsDamage)
{
    makeMP3(m_folder / "crc.mp3", 44100, 2, 1.0, "-b 128 -p");
    makeMP3(m_folder / "plain.mp3", 44100, 2, 1.0, "-b 128");
    const std::vector<Bytes> protectedFrames = framesOf(readFile(m_folder / "crc.mp3"));
    const std::vector<Bytes> plainFrames = framesOf(readFile(m_folder / "plain.mp3"));
    ASSERT_GT(protectedFrames.size(), 12u);
    ASSERT_GT(plainFrames.size(), 12u);

    struct DamageCase
    {
        const char* name;
        const std::vector<Bytes>* frames;
        std::size_t firstBit;
        int bitCount;
        std::uint32_t value;
        std::int32_t expected;
    };
    // Side information starts at byte 6 behind a CRC and at byte 4 without;
    // big_values of the first granule follows main_data_begin, the private
    // bits, scfsi and part2_3_length (9 + 3 + 8 + 12 bits in stereo).
    const DamageCase cases[] = {
        {"side info under the CRC", &protectedFrames, 6 * 8 + 40, 1, 1, CMP3FrameDecoder::kCRCMismatch},
        {"the CRC word", &protectedFrames, 4 * 8 + 3, 1, 1, CMP3FrameDecoder::kCRCMismatch},
        {"big_values", &plainFrames, 4 * 8 + 32, 9, 511, kBadBigValues},
        {"no sync", &plainFrames, 0, 8, 0x12, CMP3FrameDecoder::kNotAFrame},
    };
    for (const DamageCase& test : cases) {
        SCOPED_TRACE(test.name);
        auto decoder = fenn::make<CMP3FrameDecoder>();
        for (std::size_t i = 0; i < 10; ++i) ASSERT_EQ(decode(*decoder, (*test.frames)[i]), 0);
        Bytes damaged = (*test.frames)[10];
        if (test.bitCount == 1) {
            damaged[test.firstBit / 8] ^= static_cast<std::uint8_t>(0x80 >> (test.firstBit % 8));
        } else {
            setBits(damaged, test.firstBit, test.bitCount, test.value);
        }
        EXPECT_EQ(decode(*decoder, damaged), test.expected);
        // The next frame is judged on its own merits again.
        EXPECT_EQ(decode(*decoder, (*test.frames)[11]), 0);
    }
    auto decoder = fenn::make<CMP3FrameDecoder>();
    EXPECT_EQ(decoder->decodeFrame(nullptr, 0), CMP3FrameDecoder::kNotAFrame);
    EXPECT_EQ(decode(*decoder, Bytes{0xFF, 0xFB}), CMP3FrameDecoder::kNotAFrame);
    // A header that promises more bytes than the frame has.
    EXPECT_NE(decode(*decoder, Bytes(plainFrames[5].begin(), plainFrames[5].begin() + 100)), 0);
}

// Layer I frames carry a CRC over header and bit allocation, which libmad
// checks as well: a silent mono frame with the CRC of this code decodes.
TEST(MP3FrameDecoderLayerI, ChecksTheBitAllocation)
{
    Bytes frame(312, 0);  // 288 kBit/s at 44.1 kHz
    frame[0] = 0xFF;
    frame[1] = 0xFE;
    frame[2] = 0x90;
    frame[3] = 0xC0;
    std::uint16_t crc = 0xFFFF;
    for (std::size_t index : {2u, 3u, 6u, 7u, 8u, 9u, 10u, 11u, 12u, 13u, 14u, 15u, 16u, 17u, 18u, 19u, 20u, 21u}) {
        for (int bit = 7; bit >= 0; --bit) {
            const bool top = (crc & 0x8000) != 0;
            crc = static_cast<std::uint16_t>(crc << 1);
            if (top != (((frame[index] >> bit) & 1) != 0)) crc ^= 0x8005;
        }
    }
    frame[4] = static_cast<std::uint8_t>(crc >> 8);
    frame[5] = static_cast<std::uint8_t>(crc & 0xFF);
    auto decoder = fenn::make<CMP3FrameDecoder>();
    EXPECT_EQ(decode(*decoder, frame), CMP3FrameDecoder::kSuccess);
    frame[21] ^= 0x01;  // the last allocation bits
    EXPECT_FALSE(CMP3FrameDecoder::checkCRC(frame.data(), static_cast<std::int32_t>(frame.size())));
    EXPECT_EQ(decode(*decoder, frame), CMP3FrameDecoder::kCRCMismatch);
}

}  // namespace
