#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <string>

#include "audio/processing/ProcessingTexts.h"
#include "formats/CFileTypeRegistry.h"
#include "formats/FormatTexts.h"
#include "formats/ffmpeg/FFmpegTexts.h"
#include "formats/flac/FlacTexts.h"
#include "formats/mp3/MP3Texts.h"
#include "formats/vorbis/VorbisTexts.h"
#include "formats/wav/WAVTexts.h"
#include "formats/wma/WMATexts.h"
#include "foundation/CURIError.h"
#include "foundation/CValueList.h"
#include "foundation/IStringLocalizer.h"
#include "gui/GuiTexts.h"
#include "gui/builder/BuilderTexts.h"
#include "tags/TagTexts.h"

namespace {

using fenn::CValueList;
using fenn::make;
using fenn::P;
using tbx::DescriptionForm;

P<tbx::CFileTypeRegistry> makeRegistry()
{
    auto registry = make<tbx::CFileTypeRegistry>();
    tbx::registerInputFileTypes(*registry);
    tbx::registerOutputFileTypes(*registry);
    return registry;
}

std::string text(const fenn::String& value)
{
    return value.toStdString();
}

TEST(FileTypes, InputTypesInRegistryOrderWithTheirFiltersAndExtensions)
{
    const auto registry = makeRegistry();
    struct Expected
    {
        const char* extension;
        const char* filterText;
        const char* pattern;
    };
    const Expected expected[] = {{".ogg", "Ogg Vorbis files (*.ogg)", "*.ogg"},
                                 {".mp3", "MP3 files (*.mp3)", "*.mp3"},
                                 {".wav", "WAV files (*.wav)", "*.wav"},
                                 {".wma", "Windows Media Audio files (*.wma)", "*.wma"},
                                 {".flac", "Flac files (*.flac)", "*.flac"}};
    const auto& types = registry->getInputFileTypes();
    // The five formats of the program, then the one that reads the rest
    // through FFmpeg.
    ASSERT_EQ(types.size(), std::size(expected) + 1);
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        const std::vector<fenn::String> extensions = types[i]->getExtensions();
        ASSERT_EQ(extensions.size(), 1u);
        EXPECT_EQ(text(extensions[0]), expected[i].extension);
        EXPECT_EQ(text(types[i]->getFileFilter().text), expected[i].filterText);
        EXPECT_EQ(text(types[i]->getFileFilter().pattern), expected[i].pattern);
        // Look-ups ignore case and find the type in its place.
        EXPECT_EQ(registry->findInputFileTypeByExtension(fenn::String(expected[i].extension).toUpperCase()), types[i]);

        // Each type passes over what is not its own without an error.
        const fenn::CURI uri("file:///tmp/no-such-file.xyz");
        EXPECT_EQ(types[i]->createAudioSource("", uri), nullptr);
        EXPECT_EQ(types[i]->createAudioSource(".xyz", uri), nullptr);
        EXPECT_EQ(types[i]->createAudioSource(expected[(i + 1) % std::size(expected)].extension, uri), nullptr);
    }
    const auto& other = types.back();
    EXPECT_EQ(other->getExtensions().size(), 10u);
    EXPECT_EQ(registry->findInputFileTypeByExtension(".AIFF"), other);
    EXPECT_EQ(registry->findInputFileTypeByExtension(".m4a"), other);
    EXPECT_EQ(text(other->getFileFilter().pattern), "*.m4a;*.aac;*.mp4;*.opus;*.aif;*.aiff;*.wv;*.ape;*.mpc;*.ac3");
    EXPECT_EQ(other->createAudioSource(".wav", fenn::CURI("file:///tmp/no-such-file.xyz")), nullptr);
    EXPECT_EQ(registry->findInputFileTypeByExtension(".xyz"), nullptr);
    EXPECT_EQ(registry->findInputFileTypeByExtension(""), nullptr);

    EXPECT_THROW(registry->openAudioSource(fenn::CURI("file:///tmp/song.xyz")), fenn::CFileFormatNotSupportedError);
    EXPECT_THROW(registry->openAudioSource(fenn::CURI("file:///tmp/song")), fenn::CFileFormatNotSupportedError);
}

TEST(FileTypes, OutputTypesInRegistryOrderWithTheirNames)
{
    const auto registry = makeRegistry();
    struct Expected
    {
        const char* id;
        const char* name;
        const char* extension;
        const char* descriptionKey;
    };
    const Expected expected[] = {{"MP3", "MP3", ".mp3", "tbx.CMP3OutputFileType.shortDesc"},
                                 {"WMA", "WMA", ".wma", "tbx.CWMAOutputFileType.shortDesc"},
                                 {"OggVorbis", "Ogg Vorbis", ".ogg", "tbx.CVorbisOutputFileType.shortDesc"},
                                 {"WAV", "WAV", ".wav", "tbx.CWAVOutputFileType.shortDesc"},
                                 {"FLAC", "FLAC", ".flac", "tbx.CFlacOutputFileType.shortDesc"}};
    const auto& types = registry->getOutputFileTypes();
    ASSERT_EQ(types.size(), std::size(expected));
    for (std::size_t i = 0; i < types.size(); ++i) {
        EXPECT_EQ(text(types[i]->getId()), expected[i].id);
        EXPECT_EQ(text(types[i]->getName()), expected[i].name);
        EXPECT_EQ(text(types[i]->getExtension()), expected[i].extension);
        EXPECT_TRUE(types[i]->isExtension(expected[i].extension));
        EXPECT_FALSE(types[i]->isExtension(expected[(i + 1) % types.size()].extension));
        EXPECT_EQ(registry->findOutputFileTypeById(expected[i].id), types[i]);
        EXPECT_EQ(registry->findOutputFileTypeByExtension(expected[i].extension), types[i]);

        bool keyFound = false;
        for (const fenn::TextKey& entry : tbx::formatTexts::all) {
            if (std::string(entry.key) != expected[i].descriptionKey) continue;
            keyFound = true;
            EXPECT_EQ(text(types[i]->getDescription()), entry.defaultText);
        }
        EXPECT_TRUE(keyFound) << expected[i].descriptionKey;
    }
    EXPECT_EQ(text(types[3]->getDescription()),
              "WAV files have perfect quality at high quality settings but are VERY big.");
    EXPECT_EQ(registry->findOutputFileTypeById("oggvorbis"), nullptr);
    EXPECT_EQ(registry->findOutputFileTypeByExtension(".aiff"), nullptr);
}

TEST(FileTypes, SettingsAndPresetDescriptions)
{
    const auto registry = makeRegistry();
    const auto type = [&](const char* id) { return registry->findOutputFileTypeById(id); };
    const auto full = DescriptionForm::full;
    const auto brief = DescriptionForm::brief;

    EXPECT_EQ(text(type("WAV")->getPresetDescription(1, full)), "44 kHz, 16 bit, 2 channels");
    EXPECT_EQ(text(type("WAV")->getPresetDescription(4, brief)), "8 kHz, 8 bit");
    EXPECT_EQ(text(type("FLAC")->getPresetDescription(4, full)), "16 kHz, 8 bit, 2 channels");
    EXPECT_EQ(text(type("FLAC")->getPresetDescription(2, brief)), "32 kHz, 16 bit");
    EXPECT_EQ(text(type("OggVorbis")->getPresetDescription(3, full)), "quality index 2, 22 kHz, 2 channels");
    EXPECT_EQ(text(type("OggVorbis")->getPresetDescription(4, brief)), "quality index 1, 11 kHz");
    EXPECT_EQ(text(type("MP3")->getPresetDescription(1, full)), "160 kBit/s, VBR, auto samplerate, 2 channels");
    EXPECT_EQ(text(type("MP3")->getPresetDescription(3, brief)), "64 kBit/s, ");
    EXPECT_EQ(text(type("WMA")->getPresetDescription(2, full)), "VBR quality 65%, 44 kHz, 2 channels");
    EXPECT_EQ(text(type("WMA")->getPresetDescription(4, brief)), "VBR quality 30%");

    // Absent settings read as the defaults of each format.
    EXPECT_EQ(text(type("WAV")->getPresetDescription(0, full)), "44 kHz, 16 bit, 2 channels");
    EXPECT_EQ(text(type("OggVorbis")->getPresetDescription(5, full)), "quality index 5, 44 kHz, 2 channels");

    auto mp3 = make<CValueList>();
    mp3->setInt("bitRate", 128999);
    mp3->setBool("vbr", false);
    mp3->setInt("sampleRate", 22050);
    mp3->setInt("channels", 1);
    EXPECT_EQ(text(type("MP3")->getSettingsDescription(*mp3, full)), "128 kBit/s, CBR, 22 kHz, 1 channels");
    mp3->setInt("sampleRate", 0);
    EXPECT_EQ(text(type("MP3")->getSettingsDescription(*mp3, full)), "128 kBit/s, CBR, auto samplerate, 1 channels");

    auto wma = make<CValueList>();
    wma->setBool("vbrEnabled", false);
    wma->setInt("cbrBitRate", 64000);
    wma->setInt("sampleRate", 32000);
    wma->setInt("channels", 1);
    EXPECT_EQ(text(type("WMA")->getSettingsDescription(*wma, full)), "64 kBit/s CBR, 32 kHz, 1 channels");
    EXPECT_EQ(text(type("WMA")->getSettingsDescription(*wma, brief)), "64 kBit/s CBR");

    // No placeholder survives in any description.
    const std::regex placeholder("%[A-Z]+%");
    for (const P<tbx::IOutputFileType>& each : registry->getOutputFileTypes())
        for (std::int32_t selector = 0; selector <= 5; ++selector)
            for (const DescriptionForm form : {full, brief}) {
                const std::string description = text(each->getPresetDescription(selector, form));
                EXPECT_FALSE(description.empty() || std::regex_search(description, placeholder))
                    << text(each->getId()) << " " << selector << ": " << description;
            }
}

TEST(FileTypes, SizeEstimates)
{
    const auto registry = makeRegistry();
    const auto type = [&](const char* id) { return registry->findOutputFileTypeById(id); };
    auto settings = make<CValueList>();
    EXPECT_EQ(type("OggVorbis")->estimateFileSize(*settings, 60.0), -1);
    EXPECT_EQ(type("FLAC")->estimateFileSize(*settings, 60.0), -1);

    // MP3: (bit rate + 2000) * seconds / 8 of audio, truncated; the bytes
    // around the audio do not depend on the duration. 192000 without a rate.
    const auto mp3Audio = [&](double seconds) {
        return type("MP3")->estimateFileSize(*settings, seconds) - type("MP3")->estimateFileSize(*settings, 0.0);
    };
    EXPECT_EQ(mp3Audio(1.5), 36375);
    settings->setInt("bitRate", 128000);
    EXPECT_EQ(mp3Audio(10.0), 162500);
    EXPECT_EQ(mp3Audio(0.001), 16);
    EXPECT_GE(type("MP3")->estimateFileSize(*settings, 0.0), 1024);
    // The ID3v2 tag built from the values counts too.
    const std::int64_t untagged = type("MP3")->estimateFileSize(*settings, 10.0);
    settings->setString("title", "A title long enough to be seen in the size");
    EXPECT_GT(type("MP3")->estimateFileSize(*settings, 10.0), untagged + 40);

    // WAV: the header a sink writes, the PCM bytes (truncated) and 1024.
    auto wav = make<CValueList>();
    const auto wavAudio = [&](double seconds) {
        return type("WAV")->estimateFileSize(*wav, seconds) - type("WAV")->estimateFileSize(*wav, 0.0);
    };
    EXPECT_GE(type("WAV")->estimateFileSize(*wav, 0.0), 44 + 1024);
    EXPECT_EQ(wavAudio(1.0), 176400);
    EXPECT_EQ(wavAudio(0.00001), 1);
    wav->setInt("sampleRate", 8000);
    wav->setInt("channels", 1);
    wav->setInt("bitsPerSample", 8);
    EXPECT_EQ(wavAudio(0.5), 4000);

    // WMA: a size only at a constant rate, (rate + 2000) * seconds / 8 plus
    // 8192 for the container.
    auto wma = make<CValueList>();
    EXPECT_EQ(type("WMA")->estimateFileSize(*wma, 10.0), -1);
    wma->setBool("vbrEnabled", false);
    EXPECT_EQ(type("WMA")->estimateFileSize(*wma, 10.0), 202500 + 8192);
    wma->setInt("cbrBitRate", 64000);
    EXPECT_EQ(type("WMA")->estimateFileSize(*wma, 2.5), 20625 + 8192);
}

TEST(FileTypes, TextsHaveUniqueKeysAndDefaults)
{
    // Every table of texts of the file types, the tags, the jobs and the
    // GUI toolkit (headers of constants only, nothing of the GUI is linked):
    // a key used twice would make a language pack's entry change two texts.
    std::set<std::string> keys;
    const auto walk = [&keys](const auto& table) {
        for (const fenn::TextKey& entry : table) {
            ASSERT_TRUE(entry.key != nullptr && entry.defaultText != nullptr);
            EXPECT_STRNE(entry.key, "");
            EXPECT_STRNE(entry.defaultText, "") << entry.key;
            EXPECT_TRUE(keys.insert(entry.key).second) << "duplicate key " << entry.key;
        }
    };
    walk(tbx::formatTexts::all);
    walk(tbx::wavTexts::all);
    walk(tbx::mp3Texts::all);
    walk(tbx::vorbisTexts::all);
    walk(tbx::flacTexts::all);
    walk(tbx::wmaTexts::all);
    walk(tbx::ffmpegTexts::all);
    walk(tbx::tags::texts::all);
    walk(tbx::processingTexts::all);
    walk(fenn::gui::texts::all);
    walk(fenn::gui::builder::texts::all);
    // The quality selector's rows, in selector order.
    const char* names[] = {"Auto", "CD", "Good", "Medium", "Low", "Custom"};
    const char* descriptions[] = {"Keep", "CD", "Good", "Medium", "Low", "Custom"};
    ASSERT_EQ(std::size(tbx::formatTexts::qualityNames), 6u);
    ASSERT_EQ(std::size(tbx::formatTexts::qualityDescriptions), 6u);
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(std::string(tbx::formatTexts::qualityNames[i].key),
                  std::string("tbx.CQualityPage.QualityNames.") + names[i]);
        EXPECT_EQ(std::string(tbx::formatTexts::qualityDescriptions[i].key),
                  std::string("tbx.CQualityPage.QualityDescs.") + descriptions[i]);
        EXPECT_EQ(keys.count(tbx::formatTexts::qualityNames[i].key), 1u);
        EXPECT_EQ(keys.count(tbx::formatTexts::qualityDescriptions[i].key), 1u);
    }
    EXPECT_STREQ(tbx::formatTexts::qualityNames[0].defaultText, "Keep Quality");
}

}  // namespace
