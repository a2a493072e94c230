#include <gtest/gtest.h>

#include <random>

#include "audio/CAudioChunk.h"
#include "formats/mp3/CMP3FileAudioSource.h"
#include "formats/mp3/CMP3PiggyBackData.h"
#include "foundation/CBoxedValues.h"
#include "foundation/CMemoryIOStream.h"
#include "foundation/CStreamManager.h"
#include "foundation/CURIError.h"
#include "foundation/CValueList.h"
#include "foundation/TCast.h"
#include "tests/formats/mp3/MP3TestSupport.h"

namespace {

using namespace mp3test;

fenn::CURI uriOf(const std::filesystem::path& path)
{
    return fenn::CURI::fromPath(fenn::String::copyOf(path.string()));
}

class MP3FileAudioSource : public MP3Test
{
};

struct EncodedCase
{
    const char* name;
    int sampleRate;
    int channels;
    const char* lameOptions;
    bool vbr;
    int bitRate;  // bits per second; 0: any plausible mean
};

// Each file decodes to exactly the samples of the reference player, which
// uses the same library: same count (gapless trimming included), same values.
TEST_F(MP3FileAudioSource, DecodesLikeTheReferencePlayer)
{
    const EncodedCase cases[] = {
        {"cbr", 44100, 2, "-b 128", false, 128000},
        {"vbr", 44100, 2, "-V 4", true, 0},
        {"abr", 48000, 2, "--abr 112 --resample 48", true, 112000},
        {"mono", 44100, 1, "-b 64 -m m", false, 64000},
        {"low", 32000, 1, "-V 6 -m m", true, 0},
        {"tagged", 48000, 2, "-b 160 --add-id3v2 --tt Title --ta Artist --tl Album --ty 1999 --tn 3 --tg Rock", false,
         160000},
        {"mpeg2", 22050, 2, "-b 64", false, 64000},
        {"notag", 44100, 2, "-b 128 -t", false, 128000},
    };
    for (const EncodedCase& test : cases) {
        SCOPED_TRACE(test.name);
        const auto path = m_folder / (std::string(test.name) + ".mp3");
        makeMP3(path, test.sampleRate, test.channels, 1.3, test.lameOptions);
        const std::vector<std::int16_t> expected = decodeWithMpg123(path);
        const Decoded decoded = decodeWithSource(path);
        ASSERT_EQ(decoded.formats.size(), 1u);
        EXPECT_EQ(decoded.formats[0], std::make_pair(test.sampleRate, test.channels));
        ASSERT_EQ(decoded.samples.size(), expected.size());
        EXPECT_TRUE(decoded.samples == expected);

        auto source = fenn::make<tbx::CMP3FileAudioSource>(uriOf(path));
        source->Open(8, nullptr);
        const auto info = source->GetInfo();
        EXPECT_EQ(info->getInt("sampleRate", 0), test.sampleRate);
        EXPECT_EQ(info->getInt("channels", 0), test.channels);
        EXPECT_EQ(info->getBool("VBR", !test.vbr), test.vbr);
        // With a VBR header the length is exact; without one it is estimated.
        const double duration = static_cast<double>(decoded.frames) / test.sampleRate;
        EXPECT_NEAR(info->getDouble("duration", 0.0), duration, 0.05);
        if (test.bitRate > 0) {
            EXPECT_EQ(info->getInt("bitRate", 0), test.bitRate);
        } else {
            EXPECT_GT(info->getInt("bitRate", 0), 16000);
        }
        EXPECT_EQ(source->GetTypeName(), fenn::String("MP3"));
        EXPECT_EQ(source->GetProgress(), 0.0);
        auto chunk = fenn::make<tbx::CAudioChunk>(44100, 2, 1000);
        double last = 0.0;
        while (source->Read(*chunk)) {
            EXPECT_GE(source->GetProgress(), last);
            last = source->GetProgress();
        }
        EXPECT_EQ(last, 1.0);
        source->Close();
    }
}

// Two streams of different format one after the other: the chunks follow
// the change, and the samples are still the reference player's.
TEST_F(MP3FileAudioSource, PassesFormatChangesOn)
{
    makeMP3(m_folder / "a.mp3", 44100, 2, 0.7, "-b 128 -t");
    makeMP3(m_folder / "b.mp3", 22050, 1, 0.7, "-b 32 -m m -t");
    Bytes joined = readFile(m_folder / "a.mp3");
    const Bytes second = readFile(m_folder / "b.mp3");
    joined.insert(joined.end(), second.begin(), second.end());
    const auto path = m_folder / "joined.mp3";
    writeFile(path, joined);

    const Decoded decoded = decodeWithSource(path);
    ASSERT_EQ(decoded.formats.size(), 2u);
    EXPECT_EQ(decoded.formats[0], std::make_pair(44100, 2));
    EXPECT_EQ(decoded.formats[1], std::make_pair(22050, 1));
    EXPECT_TRUE(decoded.samples == decodeWithMpg123(path));
}

TEST_F(MP3FileAudioSource, PublishesTagsOfBothVersionsAndThePiggyBackData)
{
    const auto path = m_folder / "tags.mp3";
    makeMP3(path, 44100, 2, 0.5,
            "-b 128 --add-id3v2 --tt 'Song Title' --ta Singer --tl Record --ty 2001 --tn 7 --tg Jazz "
            "--tc 'v1 comment'");
    // A text that only the ID3v2 tag has, and one that differs between the two.
    run("id3v2 --TPUB Label --TCOP 'C 2001' --TIT3 Subtitle --TSRC GBAYE0000001 -t 'New Title' " + quote(path));

    auto source = fenn::make<tbx::CMP3FileAudioSource>(uriOf(path));
    source->Open(8, nullptr);
    const auto tags = source->GetTags();
    const std::pair<const char*, const char*> expected[] = {
        {"title", "New Title"},  {"performer", "Singer"},  {"album", "Record"},         {"date", "2001"},
        {"tracknumber", "7"},    {"genre", "Jazz"},        {"description", "Subtitle"}, {"organization", "Label"},
        {"copyright", "C 2001"}, {"isrc", "GBAYE0000001"},
    };
    for (const auto& [key, value] : expected) {
        EXPECT_EQ(tags->getString(key, "-"), fenn::String(value)) << key;
        EXPECT_EQ(source->GetInfo()->getString(key, "-"), fenn::String(value)) << key;
    }

    const Bytes file = readFile(path);
    auto* piggyBack = fenn::TCast<tbx::IMP3PiggyBackData>(tags->getValue(tbx::kMP3PiggyBackDataKey).get());
    ASSERT_NE(piggyBack, nullptr);
    ASSERT_GT(piggyBack->getHeadSize(), 10);
    EXPECT_TRUE(std::equal(file.begin(), file.begin() + piggyBack->getHeadSize(), piggyBack->getHeadData()));
    EXPECT_EQ(file[static_cast<std::size_t>(piggyBack->getHeadSize())], 0xFF);
    ASSERT_EQ(piggyBack->getTailSize(), 128);
    EXPECT_TRUE(std::equal(file.end() - 128, file.end(), piggyBack->getTailData()));
    EXPECT_TRUE(source->GetInfo()->hasValue(tbx::kMP3PiggyBackDataKey));
}

TEST_F(MP3FileAudioSource, ID3v1AloneFillsTheKeys)
{
    const auto path = m_folder / "v1.mp3";
    makeMP3(path, 44100, 1, 0.5, "-b 64 -m m --id3v1-only --tt Old --ta Band --ty 1987 --tn 12 --tg Rock --tc Note");
    auto source = fenn::make<tbx::CMP3FileAudioSource>(uriOf(path));
    source->Open(8, nullptr);
    const auto tags = source->GetTags();
    EXPECT_EQ(tags->getString("title", ""), fenn::String("Old"));
    EXPECT_EQ(tags->getString("performer", ""), fenn::String("Band"));
    EXPECT_EQ(tags->getString("date", ""), fenn::String("1987"));
    EXPECT_EQ(tags->getString("tracknumber", ""), fenn::String("12"));
    EXPECT_EQ(tags->getString("genre", ""), fenn::String("Rock"));
    EXPECT_EQ(tags->getString("description", ""), fenn::String("Note"));
}

// A file cut inside a frame decodes to its end like the reference player;
// junk and empty files are refused with the system's errors.
TEST_F(MP3FileAudioSource, HostileFiles)
{
    const auto whole = m_folder / "whole.mp3";
    makeMP3(whole, 44100, 2, 1.0, "-b 128");
    Bytes bytes = readFile(whole);
    for (const std::size_t cut : {bytes.size() / 2 + 77, bytes.size() - 1, std::size_t{2000}}) {
        SCOPED_TRACE(cut);
        const auto truncated = m_folder / ("cut" + std::to_string(cut) + ".mp3");
        writeFile(truncated, Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(cut)));
        const Decoded decoded = decodeWithSource(truncated);
        EXPECT_GT(decoded.frames, 0);
        EXPECT_TRUE(decoded.samples == decodeWithMpg123(truncated));
    }
    // The VBR header frame and a piece of the next: no audio at all.
    const auto headerOnly = m_folder / "header.mp3";
    writeFile(headerOnly, Bytes(bytes.begin(), bytes.begin() + 700));
    auto empty = fenn::make<tbx::CMP3FileAudioSource>(uriOf(headerOnly));
    EXPECT_THROW(empty->Open(8, nullptr), fenn::CFileFormatNotSupportedError);

    std::mt19937 random(7);
    Bytes junk(30000);
    for (auto& byte : junk) byte = static_cast<std::uint8_t>(random());
    const auto junkFile = m_folder / "junk.mp3";
    writeFile(junkFile, junk);
    writeFile(m_folder / "empty.mp3", {});
    for (const char* name : {"junk.mp3", "empty.mp3"}) {
        SCOPED_TRACE(name);
        auto source = fenn::make<tbx::CMP3FileAudioSource>(uriOf(m_folder / name));
        EXPECT_THROW(source->Open(8, nullptr), fenn::CError);
        auto chunk = fenn::make<tbx::CAudioChunk>(44100, 2, 100);
        EXPECT_THROW(source->Read(*chunk), fenn::CException);
        source->Close();
    }
    auto missing = fenn::make<tbx::CMP3FileAudioSource>(uriOf(m_folder / "missing.mp3"));
    EXPECT_THROW(missing->Open(8, nullptr), fenn::CFileNotFoundError);
}

// Damaged files decode, or fail with the decoder's text (its code filled in)
// or as a format the program does not know; nothing else, and no crash.
TEST_F(MP3FileAudioSource, RandomDamageGivesKnownErrorsOrDecodes)
{
    makeMP3(m_folder / "good.mp3", 44100, 2, 0.6, "-b 96 --add-id3v2 --tt Title");
    const Bytes good = readFile(m_folder / "good.mp3");
    const auto path = m_folder / "mutated.mp3";
    const std::string notSupported = fenn::CFileFormatNotSupportedError(uriOf(path)).getDescription().toStdString();
    std::mt19937 generator(23);
    for (int round = 0; round < 40; ++round) {
        Bytes bytes = good;
        const int flips = std::uniform_int_distribution<int>(1, 40)(generator);
        for (int i = 0; i < flips; ++i) {
            const auto at = std::uniform_int_distribution<std::size_t>(0, bytes.size() - 1)(generator);
            bytes[at] = static_cast<std::uint8_t>(generator());
        }
        if (round % 3 == 0) bytes.resize(std::uniform_int_distribution<std::size_t>(0, bytes.size())(generator));
        writeFile(path, bytes);
        try {
            decodeWithSource(path);
        } catch (const fenn::CError& error) {
            const std::string text = error.getDescription().toStdString();
            EXPECT_TRUE(text == notSupported || (text.rfind("Error decoding MP3 file (error code ", 0) == 0 &&
                                                 text.find('%') == std::string::npos))
                << text;
        }
    }
}

// A memory stream under its own scheme whose reads fail once the test arms it.
class CFailingStream : public fenn::CMemoryIOStream
{
public:
    CFailingStream(fenn::P<fenn::IMemoryBlock> block, fenn::P<fenn::CBool> armed)
        : CMemoryIOStream(std::move(block), fenn::CURI("failing:/x.mp3")), m_armed(std::move(armed))
    {
    }
    std::int32_t readSome(void* buffer, std::int32_t size) override
    {
        if (m_armed->getValue()) throw fenn::CStreamError(getURI(), "Disk gone '%URI%'.");
        return CMemoryIOStream::readSome(buffer, size);
    }
    void read(void* buffer, std::int32_t size) override
    {
        if (m_armed->getValue()) throw fenn::CStreamError(getURI(), "Disk gone '%URI%'.");
        CMemoryIOStream::read(buffer, size);
    }

private:
    fenn::P<fenn::CBool> m_armed;
};

class CFailingStreamFactory : public fenn::CObject, public fenn::CStreamFactoryBase
{
public:
    CFailingStreamFactory(const Bytes& bytes, fenn::P<fenn::CBool> armed) : m_bytes(bytes), m_armed(std::move(armed)) {}
    fenn::P<fenn::IInStream> tryOpenInStream(const fenn::StreamURI& uri) override
    {
        return tryOpenSeekableInStream(uri);
    }
    fenn::P<fenn::IResetableInStream> tryOpenResetableInStream(const fenn::StreamURI& uri) override
    {
        return tryOpenSeekableInStream(uri);
    }
    fenn::P<fenn::ISeekableInStream> tryOpenSeekableInStream(const fenn::StreamURI& uri) override
    {
        if (!uri.isScheme("failing")) return nullptr;
        auto block = fenn::make<fenn::CMemoryBlock>();
        block->setSize(static_cast<std::int64_t>(m_bytes.size()));
        std::copy(m_bytes.begin(), m_bytes.end(), block->getData());
        return fenn::make<CFailingStream>(block, m_armed);
    }
#define TB_NO_OUTPUT(Type, name)                                                                                       \
    fenn::P<Type> name(const fenn::StreamURI&, fenn::StreamShare, fenn::StreamCreate, fenn::DeleteOnClose) override    \
    {                                                                                                                  \
        return nullptr;                                                                                                \
    }
    TB_NO_OUTPUT(fenn::IOutStream, tryOpenOutStream)
    TB_NO_OUTPUT(fenn::IResetableOutStream, tryOpenResetableOutStream)
    TB_NO_OUTPUT(fenn::ISeekableOutStream, tryOpenSeekableOutStream)
    TB_NO_OUTPUT(fenn::IIOStream, tryOpenIOStream)
    TB_NO_OUTPUT(fenn::IResetableIOStream, tryOpenResetableIOStream)
    TB_NO_OUTPUT(fenn::ISeekableIOStream, tryOpenSeekableIOStream)
#undef TB_NO_OUTPUT

private:
    Bytes m_bytes;
    fenn::P<fenn::CBool> m_armed;
};

// A failure of the stream behind the decoder comes out as that stream's
// error, not as a decoder code: at opening and in the middle of the audio.
TEST_F(MP3FileAudioSource, StreamErrorsReachTheCaller)
{
    const auto path = m_folder / "long.mp3";
    makeMP3(path, 44100, 2, 3.0, "-b 128");
    auto armed = fenn::make<fenn::CBool>(false);
    auto factory = fenn::make<CFailingStreamFactory>(readFile(path), armed);
    fenn::CStreamManager::getInstance()->addFactory(factory);
    const auto expectStreamError = [](auto&& call) {
        try {
            call();
            ADD_FAILURE() << "no error";
        } catch (const fenn::CStreamError& error) {
            EXPECT_TRUE(error.getDescription().contains("Disk gone"));
            EXPECT_TRUE(error.getDescription().contains("failing:/x.mp3"));
        }
    };

    auto source = fenn::make<tbx::CMP3FileAudioSource>(fenn::CURI("failing:/x.mp3"));
    source->Open(8, nullptr);
    auto chunk = fenn::make<tbx::CAudioChunk>(44100, 2, 4096);
    ASSERT_TRUE(source->Read(*chunk));
    armed->setValue(true);
    expectStreamError([&] {
        while (source->Read(*chunk)) {
        }
    });
    source->Close();

    auto fresh = fenn::make<tbx::CMP3FileAudioSource>(fenn::CURI("failing:/x.mp3"));
    expectStreamError([&] { fresh->Open(8, nullptr); });
    fenn::CStreamManager::getInstance()->removeFactory(factory.get());
}

}  // namespace
