#include <gtest/gtest.h>

#include <cstdio>

#include "audio/CAudioConverter.h"
#include "formats/wav/CWAVFileAudioSink.h"
#include "foundation/CMemoryIOStream.h"
#include "foundation/CValueList.h"
#include "tests/formats/wav/WAVTestSupport.h"

namespace {

using namespace wavtest;

fenn::P<fenn::CValueList> settingsOf(std::int32_t rate, std::int32_t channels, std::int32_t bits)
{
    auto settings = fenn::make<fenn::CValueList>();
    settings->setInt("sampleRate", rate);
    settings->setInt("channels", channels);
    settings->setInt("bitsPerSample", bits);
    return settings;
}

fenn::P<fenn::CValueList> tagsOf(const std::vector<std::pair<const char*, fenn::String>>& values)
{
    auto tags = fenn::make<fenn::CValueList>();
    for (const auto& [key, value] : values) tags->setString(key, value);
    return tags;
}

fenn::P<tbx::CAudioChunk> chunkOf(std::int32_t rate, std::int32_t channels, const std::vector<std::int16_t>& samples)
{
    const auto frames = static_cast<std::int32_t>(samples.size()) / channels;
    auto chunk = fenn::make<tbx::CAudioChunk>(rate, channels, frames);
    std::copy(samples.begin(), samples.end(), chunk->GetWritableData());
    chunk->SetLength(frames);
    return chunk;
}

// What a sink writes into memory.
Bytes writeToMemory(const fenn::CValueList& settings, const fenn::CValueList& tags,
                    const std::vector<fenn::P<tbx::CAudioChunk>>& chunks, bool finish = true)
{
    auto block = fenn::make<fenn::CMemoryBlock>();
    auto sink = fenn::make<tbx::CWAVFileAudioSink>(fenn::make<fenn::CMemoryIOStream>(block), settings, tags);
    for (const auto& chunk : chunks) sink->Write(*chunk);
    if (finish)
        sink->Finish();
    else
        sink->Abort();
    return Bytes(block->getData(), block->getData() + block->getSize());
}

Bytes bytesOf(std::initializer_list<std::string_view> pieces)
{
    Bytes bytes;
    for (std::string_view piece : pieces) bytes.insert(bytes.end(), piece.begin(), piece.end());
    return bytes;
}

std::string capture(const std::string& command)
{
    std::string output;
    if (FILE* pipe = popen(command.c_str(), "r")) {
        char buffer[4096];
        while (std::size_t got = std::fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, got);
        pclose(pipe);
    }
    return output;
}

TEST(WAVSink, WritesThisExactFile)
{
    const auto settings = settingsOf(8000, 1, 16);
    const auto tags = tagsOf({{"title", "Hi"}, {"artist", "Bob"}, {"comment", "not an INFO key"}});
    const Bytes written = writeToMemory(*settings, *tags, {chunkOf(8000, 1, {1, -2, 0x1234})});
    using namespace std::string_view_literals;
    const Bytes expected = bytesOf({
        "RIFF\x8F\0\0\0WAVE"sv,
        "fmt \x10\0\0\0"sv
        "\x01\0\x01\0"sv
        "\x40\x1F\0\0"sv
        "\x80\x3E\0\0"sv
        "\x02\0\x10\0"sv,
        "data\x06\0\0\0"sv
        "\x01\0\xFE\xFF\x34\x12"sv,
        // Odd lengths stay unpadded: the list and the items "Bob" and the comment.
        "LIST\x5D\0\0\0INFO"sv,
        "ISFT\x13\0\0\0Quorrel Tonebench 3"sv,
        "IART\x03\0\0\0Bob"sv,
        "INAM\x02\0\0\0Hi"sv,
        "ICMT\x21\0\0\0Encoded with Quorrel Tonebench 3."sv,
    });
    EXPECT_EQ(written, expected);
    EXPECT_EQ(tbx::CWAVFileAudioSink::measureHeaderAndTag(*settings, *tags),
              static_cast<std::int64_t>(expected.size() - 6));
}

TEST(WAVSink, NarrowsTo8BitsAndWritesTagsInLatin1)
{
    const auto settings = settingsOf(11025, 1, 8);
    const auto tags = tagsOf({{"title", fenn::String::copyOf("Caf\xC3\xA9 \xE2\x98\x83")},
                              {"description", "Mine"},
                              {"genre", "Jazz"},
                              {"date", "2001"},
                              {"copyright", "(c)"}});
    const Bytes written = writeToMemory(*settings, *tags, {chunkOf(11025, 1, {-32768, -1, 0, 255, 256, 32767})});
    EXPECT_EQ(Bytes(written.begin() + 44, written.begin() + 50), (Bytes{0x00, 0x7F, 0x80, 0x80, 0x81, 0xFF}));
    EXPECT_EQ(le32At(written, 40), 6u);
    EXPECT_EQ(written[32], 1) << "block align";
    EXPECT_EQ(written[34], 8) << "bits";

    // The INFO items in their fixed order, each character one byte.
    std::string ids;
    std::size_t at = 50 + 12;
    while (at + 8 <= written.size()) {
        ids.append(written.begin() + static_cast<std::ptrdiff_t>(at),
                   written.begin() + static_cast<std::ptrdiff_t>(at) + 4);
        if (ids.ends_with("INAM")) {
            EXPECT_EQ(le32At(written, at + 4), 6u);
            EXPECT_EQ(std::string(written.begin() + static_cast<std::ptrdiff_t>(at) + 8,
                                  written.begin() + static_cast<std::ptrdiff_t>(at) + 13),
                      "Caf\xE9 ");
        }
        at += 8 + le32At(written, at + 4);
    }
    EXPECT_EQ(ids, "ISFTICOPINAMICMTIGNRICRD");
    EXPECT_EQ(at, written.size());
    EXPECT_EQ(tbx::CWAVFileAudioSink::measureHeaderAndTag(*settingsOf(44100, 2, 16), fenn::CValueList()), 124);
}

TEST(WAVSink, AbortLeavesSizesZeroAndFinishHappensOnce)
{
    const auto settings = settingsOf(44100, 2, 16);
    const Bytes aborted = writeToMemory(*settings, fenn::CValueList(), {chunkOf(44100, 2, {1, 2, 3, 4})}, false);
    ASSERT_EQ(aborted.size(), 52u);
    EXPECT_EQ(le32At(aborted, 4), 0u);
    EXPECT_EQ(le32At(aborted, 40), 0u);

    auto block = fenn::make<fenn::CMemoryBlock>();
    auto sink =
        fenn::make<tbx::CWAVFileAudioSink>(fenn::make<fenn::CMemoryIOStream>(block), *settings, fenn::CValueList());
    EXPECT_EQ(block->getSize(), 44) << "the header is written at once";
    sink->Write(*chunkOf(44100, 2, {1, 2, 3, 4}));
    sink->Finish();
    const Bytes finished(block->getData(), block->getData() + block->getSize());
    sink->Finish();
    sink->Abort();
    EXPECT_EQ(Bytes(block->getData(), block->getData() + block->getSize()), finished);
    EXPECT_EQ(le32At(finished, 4), finished.size() - 8);
    EXPECT_THROW(sink->Write(*chunkOf(44100, 2, {1, 2})), fenn::CStreamClosedError);
}

TEST(WAVSink, ConvertsWithOneConverterForTheWholeFile)
{
    // Stereo 44100 into mono 22050, in chunks of uneven size: the file holds
    // what one conversion of all the audio at once gives.
    std::vector<std::int16_t> input;
    for (int frame = 0; frame < 10000; ++frame) {
        input.push_back(static_cast<std::int16_t>((frame * 37) % 20000 - 10000));
        input.push_back(static_cast<std::int16_t>((frame * 11) % 16000 - 8000));
    }
    std::vector<fenn::P<tbx::CAudioChunk>> chunks;
    for (std::size_t start = 0, size = 1234; start < input.size(); start += size, size += 1000) {
        const std::size_t end = std::min(input.size(), start + size);
        chunks.push_back(chunkOf(44100, 2,
                                 std::vector<std::int16_t>(input.begin() + static_cast<std::ptrdiff_t>(start),
                                                           input.begin() + static_cast<std::ptrdiff_t>(end))));
    }
    const Bytes written = writeToMemory(*settingsOf(22050, 1, 16), fenn::CValueList(), chunks);

    auto whole = fenn::make<tbx::CAudioChunk>(22050, 1, 0);
    auto converter = fenn::make<tbx::CAudioConverter>();
    whole->ConvertFrom(*chunkOf(44100, 2, input), converter.get());
    std::vector<std::int16_t> expected(whole->GetData(), whole->GetData() + whole->GetLength());
    whole->ConvertRemainder(*converter);
    expected.insert(expected.end(), whole->GetData(), whole->GetData() + whole->GetLength());

    ASSERT_GE(expected.size(), 4999u);
    EXPECT_EQ(le32At(written, 40), expected.size() * 2);
    EXPECT_TRUE(samplesOf(Bytes(written.begin() + 44,
                                written.begin() + 44 + static_cast<std::ptrdiff_t>(expected.size()) * 2)) == expected);
}

class WAVSinkFiles : public DiskStreams
{
};

TEST_F(WAVSinkFiles, EveryVariantReadsBackHereAndInSoxAndFFmpeg)
{
    int index = 0;
    for (std::int32_t bits : {8, 16}) {
        for (std::int32_t channels : {1, 2}) {
            for (std::int32_t rate : {8000, 22050, 44100, 48000}) {
                SCOPED_TRACE(std::to_string(bits) + " bits, " + std::to_string(channels) + " channels, " +
                             std::to_string(rate) + " Hz");
                // Every sample value differs between channels and reaches both ends of the range.
                std::vector<std::int16_t> samples;
                for (int frame = 0; frame < 3001; ++frame) {
                    for (int channel = 0; channel < channels; ++channel) {
                        samples.push_back(static_cast<std::int16_t>((frame * 7919 + channel * 12345) % 65536 - 32768));
                    }
                }
                std::vector<std::int16_t> expected = samples;
                if (bits == 8) {
                    for (std::int16_t& sample : expected) sample = static_cast<std::int16_t>(sample & ~0xFF);
                }

                const auto path = m_folder / ("out" + std::to_string(index++) + ".wav");
                {
                    auto stream = fenn::CStreamManager::getInstance()->openSeekableOutStream(
                        uriOf(path), fenn::StreamShare::exclusive, fenn::StreamCreate::createEmpty,
                        fenn::DeleteOnClose::no);
                    auto sink = fenn::make<tbx::CWAVFileAudioSink>(stream, *settingsOf(rate, channels, bits),
                                                                   *tagsOf({{"title", "Round"}, {"artist", "Trip"}}));
                    const auto half = samples.size() / 2 / channels * channels;
                    sink->Write(*chunkOf(rate, channels,
                                         std::vector<std::int16_t>(
                                             samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(half))));
                    sink->Write(*chunkOf(
                        rate, channels,
                        std::vector<std::int16_t>(samples.begin() + static_cast<std::ptrdiff_t>(half), samples.end())));
                    sink->Finish();
                }
                const Decoded decoded = readAll(path);
                EXPECT_EQ(decoded.sampleRate, rate);
                EXPECT_EQ(decoded.channels, channels);
                EXPECT_TRUE(decoded.samples == expected);

                const auto raw = m_folder / "sox.raw";
                ASSERT_EQ(run("sox " + quoted(path) + " -t s16 " + quoted(raw)), 0);
                EXPECT_TRUE(samplesOf(readFile(raw)) == expected) << "sox";
                EXPECT_TRUE(ffmpegSamples(path, m_folder / ("ffmpeg" + std::to_string(index) + ".raw")) == expected)
                    << "ffmpeg";
                // The LIST behind an odd number of sample bytes is not padded to a
                // word, and ffmpeg looks for it only at the next word.
                if (samples.size() * bits / 8 % 2 == 1) continue;
                const std::string format = capture("ffprobe -v quiet -show_format " + quoted(path));
                EXPECT_NE(format.find("TAG:title=Round"), std::string::npos) << format;
                EXPECT_NE(format.find("TAG:artist=Trip"), std::string::npos) << format;
                EXPECT_NE(format.find("TAG:encoder=Quorrel Tonebench 3"), std::string::npos) << format;
            }
        }
    }
}

}  // namespace
