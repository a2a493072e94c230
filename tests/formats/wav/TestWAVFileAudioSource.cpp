#include <gtest/gtest.h>

#include <optional>

#include "foundation/CURIError.h"
#include "foundation/CValueList.h"
#include "tests/formats/wav/WAVTestSupport.h"

namespace {

using namespace wavtest;

class WAVSource : public DiskStreams
{
protected:
    // Half a second of two different signals per channel at 22050 Hz, odd in
    // length so that block codecs end in a padded block.
    std::filesystem::path makeSignal()
    {
        const auto path = m_folder / "signal.wav";
        EXPECT_EQ(run("sox -n -r 22050 -c 2 -b 16 " + quoted(path) +
                      " synth 0.5013 sine 300-3000 sine 660 vol 0.7 remix 1 2"),
                  0);
        return path;
    }
};

// How much of ffmpeg's output the source gives: all of it, or all up to the
// frame count of the "fact" chunk (block and frame codecs pad the end, and
// ffmpeg keeps the padding).
enum class Length { same, trimmedToFact };

struct Variant
{
    const char* name;
    const char* command;  // {in} and {out} are replaced
    Length length;
    std::int32_t bitsPerSample;  // of the decoded format
};

TEST_F(WAVSource, DecodesEveryFormatToTheSamplesFFmpegDecodes)
{
    const Variant variants[] = {
        {"pcm 16 at 44100 (read directly)", "sox {in} -r 44100 {out}", Length::same, 16},
        {"pcm 16 at 44101", "sox {in} -r 44101 {out}", Length::same, 16},
        {"pcm 16 at 48000", "sox {in} -r 48000 {out}", Length::same, 16},
        {"pcm 8 at 22050 (read directly)", "sox {in} -b 8 {out}", Length::same, 8},
        {"pcm 8 at 48000", "sox {in} -r 48000 -b 8 {out}", Length::same, 8},
        {"pcm 24", "sox {in} -t wavpcm -b 24 {out}", Length::same, 16},
        {"pcm 32", "sox {in} -t wavpcm -b 32 {out}", Length::same, 16},
        {"extensible pcm 24", "sox {in} -b 24 {out}", Length::same, 16},
        {"extensible pcm 32", "sox {in} -b 32 {out}", Length::same, 16},
        {"float 32", "sox {in} -e floating-point -b 32 {out}", Length::same, 16},
        {"extensible float 32", "ffmpeg -nostdin -loglevel quiet -i {in} -c:a pcm_f32le {out}", Length::same, 16},
        {"a-law", "sox {in} -e a-law {out}", Length::same, 16},
        {"mu-law", "sox {in} -e u-law {out}", Length::same, 16},
        {"ima adpcm (sox)", "sox {in} -e ima-adpcm {out}", Length::trimmedToFact, 16},
        {"ima adpcm (ffmpeg)", "ffmpeg -nostdin -loglevel quiet -i {in} -c:a adpcm_ima_wav {out}",
         Length::trimmedToFact, 16},
        {"ms adpcm (sox)", "sox {in} -e ms-adpcm {out}", Length::trimmedToFact, 16},
        {"ms adpcm (ffmpeg)", "ffmpeg -nostdin -loglevel quiet -i {in} -c:a adpcm_ms {out}", Length::trimmedToFact, 16},
        {"gsm 6.10", "sox {in} -r 8000 -c 1 -e gsm-full-rate {out}", Length::trimmedToFact, 16},
        {"mp3", "ffmpeg -nostdin -loglevel quiet -i {in} -c:a libmp3lame -b:a 64k {out}", Length::trimmedToFact, 16},
    };
    const auto signal = makeSignal();
    int index = 0;
    for (const Variant& variant : variants) {
        SCOPED_TRACE(variant.name);
        const auto file = m_folder / ("variant" + std::to_string(index) + ".wav");
        const auto raw = m_folder / ("variant" + std::to_string(index++) + ".raw");
        std::string command = variant.command;
        command.replace(command.find("{in}"), 4, quoted(signal));
        command.replace(command.find("{out}"), 5, quoted(file));
        ASSERT_EQ(run(command), 0) << command;

        const std::vector<std::int16_t> reference = ffmpegSamples(file, raw);
        const Bytes bytes = readFile(file);
        auto source = fenn::make<tbx::CWAVFileAudioSource>(uriOf(file));
        const auto info = source->GetInfo();
        const std::int32_t channels = info->getInt("channels", 0);
        EXPECT_EQ(info->getInt("bitsPerSample", 0), variant.bitsPerSample);
        source->Open(8, nullptr);
        const Decoded decoded = readAll(*source);
        EXPECT_EQ(decoded.channels, channels);
        EXPECT_EQ(decoded.sampleRate, info->getInt("sampleRate", 0));
        EXPECT_EQ(decoded.sampleRate, static_cast<std::int32_t>(le32At(bytes, findChunk(bytes, "fmt ") + 12)));
        EXPECT_DOUBLE_EQ(source->GetProgress(), 1.0);

        const auto referenceFrames = static_cast<std::int64_t>(reference.size()) / channels;
        std::int64_t expectedFrames = referenceFrames;
        if (variant.length == Length::trimmedToFact) {
            const std::size_t fact = findChunk(bytes, "fact");
            ASSERT_NE(fact, std::string::npos);
            expectedFrames = std::min<std::int64_t>(referenceFrames, le32At(bytes, fact + 8));
        }
        ASSERT_EQ(decoded.frames(), expectedFrames);
        ASSERT_GT(expectedFrames, 1000);
        const std::vector<std::int16_t> expected(reference.begin(), reference.begin() + expectedFrames * channels);
        EXPECT_TRUE(decoded.samples == expected);
    }
}

const std::vector<std::int16_t> kSamples = {100, -200, 300, -400, 32767, -32768};

// A file with the chunks before, a data chunk of kSamples and the chunks after.
Bytes monoFile(const std::vector<Bytes>& before, const std::vector<Bytes>& after = {})
{
    std::vector<Bytes> chunks = before;
    chunks.push_back(chunk("data", sampleBytes(kSamples)));
    chunks.insert(chunks.end(), after.begin(), after.end());
    return riffFile(chunks);
}

struct HeaderCase
{
    const char* name;
    Bytes file;
    bool readable;
    std::optional<std::string> title;  // the "title" tag when the file is readable
};

TEST_F(WAVSource, WalksTheHeaderByItsOwnRules)
{
    const Bytes fmt = chunk("fmt ", pcmFormatBody(1, 8000, 16));
    const Bytes list = infoList("LIST", {{"INAM", "Title"}});
    Bytes oddThenPad = chunk("junk", {1, 2, 3});
    oddThenPad.push_back(0);
    const auto formatOfSize = [](std::uint32_t size) {
        Bytes body = pcmFormatBody(1, 8000, 16);
        body.resize(size, 0xAB);
        return chunk("fmt ", body);
    };
    const auto cut = [](Bytes file, std::size_t size) {
        file.resize(size);
        return file;
    };
    // An item that claims more than its list holds ends the list.
    const auto itemTooLong = [&] {
        Bytes file = monoFile({fmt, infoList("LIST", {{"IART", "A"}, {"INAM", "Title"}})});
        putLE32(file, findChunk(file, "LIST") + 12 + 4, 100);
        return file;
    };
    const HeaderCase cases[] = {
        {"plain", monoFile({fmt}), true, std::nullopt},
        {"riff, wave and DATA in other case", riffFile({fmt, chunk("DATA", sampleBytes(kSamples))}, "riff", "wave"),
         true, std::nullopt},
        {"FMT  is an unknown chunk", monoFile({chunk("FMT ", pcmFormatBody(2, 1, 8)), fmt}), true, std::nullopt},
        {"no fmt  but FMT ", monoFile({chunk("FMT ", pcmFormatBody(1, 8000, 16))}), false, std::nullopt},
        {"RIFX", riffFile({fmt, chunk("data", sampleBytes(kSamples))}, "RIFX"), false, std::nullopt},
        {"odd chunk without pad byte", monoFile({chunk("junk", {1, 2, 3}), fmt}), true, std::nullopt},
        {"odd chunk with pad byte", monoFile({oddThenPad, fmt}), false, std::nullopt},
        {"fmt of 15 bytes", monoFile({formatOfSize(15)}), false, std::nullopt},
        {"fmt of 1985 bytes", monoFile({formatOfSize(1985)}), false, std::nullopt},
        {"fmt of 1984 bytes", monoFile({formatOfSize(1984)}), true, std::nullopt},
        {"LIST before fmt", monoFile({list, fmt}), true, "Title"},
        {"LIST before data", monoFile({fmt, list}), true, "Title"},
        {"LIST behind data", monoFile({fmt}, {list}), true, "Title"},
        {"only the first LIST behind data", monoFile({fmt}, {list, infoList("LIST", {{"INAM", "Later"}})}), true,
         "Title"},
        {"LIST before data wins", monoFile({fmt, infoList("LIST", {{"INAM", "Early"}})}, {list}), true, "Early"},
        {"list is an unknown chunk", monoFile({fmt, infoList("list", {{"INAM", "Title"}})}), true, std::nullopt},
        {"value ends at a zero byte", monoFile({fmt, infoList("LIST", {{"INAM", std::string("Ti\0tle", 6)}})}), true,
         "Ti"},
        {"empty item goes on", monoFile({fmt, infoList("LIST", {{"ICMT", ""}, {"INAM", "Title"}})}), true, "Title"},
        {"item larger than its list", itemTooLong(), true, std::nullopt},
        {"truncated in the fmt chunk", cut(monoFile({fmt}), 30), false, std::nullopt},
        {"truncated in a chunk header", cut(monoFile({fmt}), 40), false, std::nullopt},
        {"no data chunk", riffFile({fmt}), false, std::nullopt},
        {"rate 0", monoFile({chunk("fmt ", pcmFormatBody(1, 0, 16))}), false, std::nullopt},
        {"unknown format tag", monoFile({chunk("fmt ", pcmFormatBody(1, 8000, 16, 0x1234))}), false, std::nullopt},
    };
    int index = 0;
    for (const HeaderCase& headerCase : cases) {
        SCOPED_TRACE(headerCase.name);
        const auto path = m_folder / ("header" + std::to_string(index++) + ".wav");
        writeFile(path, headerCase.file);
        if (!headerCase.readable) {
            EXPECT_THROW(fenn::make<tbx::CWAVFileAudioSource>(uriOf(path)), fenn::CFileFormatNotSupportedError);
            continue;
        }
        auto source = fenn::make<tbx::CWAVFileAudioSource>(uriOf(path));
        const auto tags = source->GetTags();
        EXPECT_EQ(tags->hasValue("title"), headerCase.title.has_value());
        if (headerCase.title) {
            EXPECT_EQ(tags->getString("title", ""), fenn::String::copyOf(*headerCase.title));
            EXPECT_EQ(source->GetInfo()->getString("title", ""), fenn::String::copyOf(*headerCase.title));
        }
        source->Open(8, nullptr);
        EXPECT_TRUE(readAll(*source).samples == kSamples);
    }
}

TEST_F(WAVSource, ProgressAndDurationKeepTheirQuirks)
{
    // 8-bit: delivered 16-bit bytes are counted against the file's bytes,
    // so progress is 1 at half the file.
    const auto eightBit = m_folder / "eight.wav";
    writeFile(eightBit, riffFile({chunk("fmt ", pcmFormatBody(1, 8000, 8)), chunk("data", Bytes(20000, 0x90))}));
    auto source = fenn::make<tbx::CWAVFileAudioSource>(uriOf(eightBit));
    EXPECT_DOUBLE_EQ(source->GetInfo()->getDouble("duration", 0), 2.0);
    source->Open(8, nullptr);
    auto audio = fenn::make<tbx::CAudioChunk>(8000, 1, 1000);
    std::int64_t frames = 0;
    std::vector<double> progress;
    while (source->Read(*audio)) {
        EXPECT_EQ(audio->GetData()[0], 0x10 * 256);
        frames += audio->GetLength();
        progress.push_back(source->GetProgress());
        if (frames == 9000) {
            EXPECT_DOUBLE_EQ(source->GetProgress(), 0.9);
        }
        if (frames == 10000) {
            EXPECT_DOUBLE_EQ(source->GetProgress(), 1.0);
        }
    }
    EXPECT_EQ(frames, 20000);
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));

    // 16-bit reaches 1 only at the end; the odd last byte never reaches a
    // chunk; the duration is in whole seconds; a reopened source starts again.
    const auto sixteenBit = m_folder / "sixteen.wav";
    writeFile(sixteenBit, riffFile({chunk("fmt ", pcmFormatBody(1, 8000, 16)), chunk("data", Bytes(40001, 1))}));
    source = fenn::make<tbx::CWAVFileAudioSource>(uriOf(sixteenBit));
    EXPECT_DOUBLE_EQ(source->GetInfo()->getDouble("duration", 0), 2.0);
    for (int pass = 0; pass < 2; ++pass) {
        if (pass == 0) {
            source->Open(8, nullptr);
        } else {
            source->Reset();
        }
        frames = 0;
        while (source->Read(*audio)) {
            frames += audio->GetLength();
            if (frames < 20000) {
                EXPECT_LT(source->GetProgress(), 1.0);
            }
        }
        EXPECT_EQ(frames, 20000);
        EXPECT_LT(source->GetProgress(), 1.0) << "the odd byte is counted but never delivered";
    }

    // No data: nothing to read, progress 0, duration 0; no byte rate: duration -1.
    const auto empty = m_folder / "empty.wav";
    writeFile(empty, riffFile({chunk("fmt ", pcmFormatBody(2, 44100, 16)), chunk("data", {})}));
    source = fenn::make<tbx::CWAVFileAudioSource>(uriOf(empty));
    EXPECT_DOUBLE_EQ(source->GetInfo()->getDouble("duration", 1), 0.0);
    source->Open(8, nullptr);
    EXPECT_FALSE(source->Read(*audio));
    EXPECT_DOUBLE_EQ(source->GetProgress(), 0.0);
    Bytes noRate = riffFile({chunk("fmt ", pcmFormatBody(2, 44100, 16)), chunk("data", Bytes(8, 0))});
    putLE32(noRate, 28, 0);
    writeFile(empty, noRate);
    EXPECT_DOUBLE_EQ(fenn::make<tbx::CWAVFileAudioSource>(uriOf(empty))->GetInfo()->getDouble("duration", 0), -1.0);
}

TEST_F(WAVSource, DataBeyondTheFileIsCorrupted)
{
    // The data chunk claims 4000 bytes of which 3000 are there: the reads up
    // to the missing part deliver, then the file is reported corrupted.
    Bytes file = riffFile({chunk("fmt ", pcmFormatBody(1, 8000, 16)), chunk("data", Bytes(3000, 0))});
    putLE32(file, 40, 4000);
    const auto path = m_folder / "short.wav";
    writeFile(path, file);
    auto source = fenn::make<tbx::CWAVFileAudioSource>(uriOf(path));
    source->Open(8, nullptr);
    auto audio = fenn::make<tbx::CAudioChunk>(8000, 1, 100000);
    std::int64_t frames = 0;
    try {
        while (source->Read(*audio)) frames += audio->GetLength();
        ADD_FAILURE() << "no error";
    } catch (const fenn::CError& error) {
        EXPECT_EQ(error.getDescription(), fenn::String("The file is corrupted."));
    }
    EXPECT_EQ(frames, 1500);
}

}  // namespace
