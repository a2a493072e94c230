#include <gtest/gtest.h>

#include <charconv>
#include <map>
#include <string>

#include "formats/CEncodeSettingsManager.h"
#include "formats/CFileTypeRegistry.h"
#include "foundation/CBoxedValues.h"
#include "foundation/CValueList.h"
#include "foundation/TCast.h"

namespace {

using fenn::CValueList;
using fenn::make;
using fenn::P;
using tbx::CEncodeSettingsManager;

// A value list as sorted "name=value" pairs joined by ", ". Integers show
// as they are, booleans as true or false, doubles always with a point
// ("44100.0"), so that a value of the wrong type does not pass.
std::string describe(const CValueList& list)
{
    std::map<std::string, std::string> entries;
    P<fenn::IConstEnum> names = list.getNames();
    while (names->hasMoreElements()) {
        fenn::PC<fenn::IBase> element;
        names->next(element);
        const fenn::String name(
            P<fenn::IString>(const_cast<fenn::IString*>(fenn::TCast<fenn::IString>(element.get()))));
        const P<fenn::IBase> value = list.getValue(name);
        std::string text = "?";
        if (const auto* box = fenn::TCast<fenn::IInt>(value.get())) {
            text = std::to_string(box->getValue());
        } else if (const auto* box = fenn::TCast<fenn::IBool>(value.get())) {
            text = box->getValue() ? "true" : "false";
        } else if (const auto* box = fenn::TCast<fenn::IDouble>(value.get())) {
            char buffer[32];
            const auto end = std::to_chars(buffer, buffer + sizeof buffer, box->getValue()).ptr;
            text.assign(buffer, end);
            if (text.find('.') == std::string::npos) text += ".0";
        }
        entries[name.toStdString()] = text;
    }
    std::string result;
    for (const auto& [name, text] : entries) result += (result.empty() ? "" : ", ") + name + "=" + text;
    return result;
}

const tbx::IOutputFileType& outputType(const char* id)
{
    static const P<tbx::CFileTypeRegistry> registry = [] {
        auto made = make<tbx::CFileTypeRegistry>();
        tbx::registerOutputFileTypes(*made);
        return made;
    }();
    const P<tbx::IOutputFileType> type = registry->findOutputFileTypeById(id);
    if (!type) throw std::runtime_error(std::string("no output type ") + id);
    return *type;
}

// A fact of the source that the case gives; absent ones are not set.
constexpr std::int32_t kAbsent = -12345;

struct SourceFacts
{
    std::int32_t sampleRate = kAbsent;
    std::int32_t channels = kAbsent;
    std::int32_t bitsPerSample = kAbsent;
    std::int32_t bitRate = kAbsent;
    std::int32_t minBitRate = kAbsent;
    std::int32_t maxBitRate = kAbsent;
};

P<CValueList> makeInfo(const SourceFacts& facts)
{
    auto info = make<CValueList>();
    const std::pair<const char*, std::int32_t> values[] = {
        {"sampleRate", facts.sampleRate}, {"channels", facts.channels},     {"bitsPerSample", facts.bitsPerSample},
        {"bitRate", facts.bitRate},       {"minBitRate", facts.minBitRate}, {"maxBitRate", facts.maxBitRate}};
    for (const auto& [name, value] : values)
        if (value != kAbsent) info->setInt(name, value);
    return info;
}

enum Size { quality, constantSize };

struct KeepCase
{
    const char* sourceType;
    SourceFacts facts;
    const char* target;
    Size size;
    const char* expected;
};

// Every value below was worked out by hand from the keep-quality rules.
// r: sample rate, c: channels, b: bit rate; "t(x)" truncates toward zero.
// clang-format off
const KeepCase kKeepCases[] = {
    // ---- PCM sources (WAV, FLAC, disc tracks) ----
    // To MP3: 160000 from 32000 Hz, 144000 from 22100, 64000 from 16000,
    // else 40000; halved for mono. No sample rate is set.
    {"WAV", {.sampleRate = 48000, .channels = 1}, "MP3", quality, "bitRate=80000, channels=1"},
    {"WAV", {.sampleRate = 32000, .channels = 2}, "MP3", quality, "bitRate=160000, channels=2"},
    {"WAV", {.sampleRate = 31999, .channels = 2}, "MP3", quality, "bitRate=144000, channels=2"},
    {"FLAC", {.sampleRate = 22100, .channels = 2}, "MP3", quality, "bitRate=144000, channels=2"},
    {"WAV", {.sampleRate = 22050, .channels = 2}, "MP3", quality, "bitRate=64000, channels=2"},
    {"CDAudioTrack", {.sampleRate = 16000, .channels = 1}, "MP3", quality, "bitRate=32000, channels=1"},
    {"WAV", {.sampleRate = 15999, .channels = 2}, "MP3", quality, "bitRate=40000, channels=2"},
    {"WAV", {.sampleRate = 8000, .channels = 1}, "MP3", quality, "bitRate=20000, channels=1"},
    // Nothing known: 44100 Hz, stereo, 16 bit.
    {"CDAudioTrack", {}, "MP3", quality, "bitRate=160000, channels=2"},
    // To WAV and FLAC the bits stay; FLAC never goes below 16000 Hz.
    {"FLAC", {.sampleRate = 44100, .channels = 2, .bitsPerSample = 24}, "WAV", quality,
     "bitsPerSample=24, channels=2, sampleRate=44100"},
    {"CDAudioTrack", {}, "FLAC", quality, "bitsPerSample=16, channels=2, sampleRate=44100"},
    {"WAV", {.sampleRate = 8000, .channels = 1, .bitsPerSample = 8}, "FLAC", quality,
     "bitsPerSample=8, channels=1, sampleRate=16000"},
    {"WAV", {.sampleRate = 16000, .channels = 1, .bitsPerSample = 8}, "FLAC", quality,
     "bitsPerSample=8, channels=1, sampleRate=16000"},
    // To Vorbis: quality 5 from 32000 Hz, 3 from 22100, else 1.
    {"WAV", {.sampleRate = 32000, .channels = 2}, "OggVorbis", quality, "channels=2, qualityIndex=5, sampleRate=32000"},
    {"WAV", {.sampleRate = 31999, .channels = 2}, "OggVorbis", quality, "channels=2, qualityIndex=3, sampleRate=31999"},
    {"FLAC", {.sampleRate = 22100, .channels = 1}, "OggVorbis", quality,
     "channels=1, qualityIndex=3, sampleRate=22100"},
    {"WAV", {.sampleRate = 22050, .channels = 2}, "OggVorbis", quality, "channels=2, qualityIndex=1, sampleRate=22050"},
    // To WMA: a quality, or with a size to estimate a constant rate whose
    // third band is 640000.
    {"WAV", {.sampleRate = 32000, .channels = 2}, "WMA", quality,
     "channels=2, sampleRate=32000, vbrEnabled=true, vbrQuality=0.78"},
    {"WAV", {.sampleRate = 22100, .channels = 1}, "WMA", quality,
     "channels=1, sampleRate=22100, vbrEnabled=true, vbrQuality=0.65"},
    {"WAV", {.sampleRate = 16000, .channels = 2}, "WMA", quality,
     "channels=2, sampleRate=16000, vbrEnabled=true, vbrQuality=0.4"},
    {"WAV", {.sampleRate = 15999, .channels = 2}, "WMA", quality,
     "channels=2, sampleRate=15999, vbrEnabled=true, vbrQuality=0.3"},
    {"WAV", {.sampleRate = 44100, .channels = 2}, "WMA", constantSize,
     "cbrBitRate=160000, channels=2, estimateSize=true, sampleRate=44100, vbrEnabled=false"},
    {"FLAC", {.sampleRate = 22100, .channels = 2}, "WMA", constantSize,
     "cbrBitRate=128000, channels=2, estimateSize=true, sampleRate=22100, vbrEnabled=false"},
    {"WAV", {.sampleRate = 22050, .channels = 2}, "WMA", constantSize,
     "cbrBitRate=640000, channels=2, estimateSize=true, sampleRate=22050, vbrEnabled=false"},
    {"WAV", {.sampleRate = 11025, .channels = 1}, "WMA", constantSize,
     "cbrBitRate=40000, channels=1, estimateSize=true, sampleRate=11025, vbrEnabled=false"},

    // ---- MP3 sources; a bit rate below 1 counts as 160000 ----
    // To MP3: t(b * 1.02).
    {"MP3", {.sampleRate = 44100, .channels = 2, .bitRate = 128000}, "MP3", quality,
     "bitRate=130560, channels=2, sampleRate=44100"},
    {"MP3", {.sampleRate = 32000, .channels = 1, .bitRate = 99999}, "MP3", quality,
     "bitRate=101998, channels=1, sampleRate=32000"},
    {"MP3", {.sampleRate = 44100, .channels = 2, .bitRate = 0}, "MP3", quality,
     "bitRate=163200, channels=2, sampleRate=44100"},
    {"MP3", {.sampleRate = 44100, .channels = 2, .bitRate = -1}, "MP3", quality,
     "bitRate=163200, channels=2, sampleRate=44100"},
    {"MP3", {}, "MP3", quality, "bitRate=163200, channels=2, sampleRate=44100"},
    // To WMA: quality 0.85 from 200000, 0.78 from 160000, 0.65 from 144000,
    // 0.4 from 64000, 0.3 from 40000; constant t(b * 0.95).
    {"MP3", {.sampleRate = 44100, .channels = 2, .bitRate = 200000}, "WMA", quality,
     "channels=2, sampleRate=44100, vbrEnabled=true, vbrQuality=0.85"},
    {"MP3", {.sampleRate = 44100, .channels = 2, .bitRate = 199999}, "WMA", quality,
     "channels=2, sampleRate=44100, vbrEnabled=true, vbrQuality=0.78"},
    {"MP3", {.sampleRate = 44100, .channels = 2, .bitRate = 0}, "WMA", quality,
     "channels=2, sampleRate=44100, vbrEnabled=true, vbrQuality=0.78"},
    {"MP3", {.sampleRate = 44100, .channels = 2, .bitRate = 144000}, "WMA", quality,
     "channels=2, sampleRate=44100, vbrEnabled=true, vbrQuality=0.65"},
    {"MP3", {.sampleRate = 44100, .channels = 2, .bitRate = 143999}, "WMA", quality,
     "channels=2, sampleRate=44100, vbrEnabled=true, vbrQuality=0.4"},
    {"MP3", {.sampleRate = 22050, .channels = 1, .bitRate = 64000}, "WMA", quality,
     "channels=1, sampleRate=22050, vbrEnabled=true, vbrQuality=0.4"},
    {"MP3", {.sampleRate = 22050, .channels = 1, .bitRate = 63999}, "WMA", quality,
     "channels=1, sampleRate=22050, vbrEnabled=true, vbrQuality=0.3"},
    {"MP3", {.sampleRate = 22050, .channels = 1, .bitRate = 40000}, "WMA", quality,
     "channels=1, sampleRate=22050, vbrEnabled=true, vbrQuality=0.3"},
    {"MP3", {.sampleRate = 44100, .channels = 2, .bitRate = 128001}, "WMA", constantSize,
     "cbrBitRate=121600, channels=2, estimateSize=true, sampleRate=44100, vbrEnabled=false"},
    {"MP3", {.sampleRate = 44100, .channels = 2, .bitRate = 112000}, "WMA", constantSize,
     "cbrBitRate=106400, channels=2, estimateSize=true, sampleRate=44100, vbrEnabled=false"},
    // To Vorbis: x = b, halved for stereo; t(x * 0.9) from 20000 up to
    // below 60000; for stereo then t(x * 1.7).
    {"MP3", {.sampleRate = 44100, .channels = 2, .bitRate = 128000}, "OggVorbis", quality,
     "avgBitRate=108800, channels=2, sampleRate=44100"},
    {"MP3", {.sampleRate = 44100, .channels = 2, .bitRate = 120000}, "OggVorbis", quality,
     "avgBitRate=102000, channels=2, sampleRate=44100"},
    {"MP3", {.sampleRate = 44100, .channels = 2, .bitRate = 119999}, "OggVorbis", quality,
     "avgBitRate=91798, channels=2, sampleRate=44100"},
    {"MP3", {.sampleRate = 44100, .channels = 2, .bitRate = 96000}, "OggVorbis", quality,
     "avgBitRate=73440, channels=2, sampleRate=44100"},
    {"MP3", {.sampleRate = 22050, .channels = 2, .bitRate = 40000}, "OggVorbis", quality,
     "avgBitRate=30600, channels=2, sampleRate=22050"},
    {"MP3", {.sampleRate = 22050, .channels = 2, .bitRate = 39999}, "OggVorbis", quality,
     "avgBitRate=33998, channels=2, sampleRate=22050"},
    {"MP3", {.sampleRate = 22050, .channels = 1, .bitRate = 59999}, "OggVorbis", quality,
     "avgBitRate=53999, channels=1, sampleRate=22050"},
    {"MP3", {.sampleRate = 22050, .channels = 1, .bitRate = 60000}, "OggVorbis", quality,
     "avgBitRate=60000, channels=1, sampleRate=22050"},
    {"MP3", {.sampleRate = 22050, .channels = 1, .bitRate = 19999}, "OggVorbis", quality,
     "avgBitRate=19999, channels=1, sampleRate=22050"},
    // To WAV and FLAC: 16 bits whatever the source says.
    {"MP3", {.sampleRate = 22050, .channels = 1, .bitsPerSample = 8, .bitRate = 64000}, "WAV", quality,
     "bitsPerSample=16, channels=1, sampleRate=22050"},
    {"MP3", {.sampleRate = 11025, .channels = 1, .bitRate = 32000}, "FLAC", quality,
     "bitsPerSample=16, channels=1, sampleRate=16000"},
    {"MP3", {.sampleRate = 48000, .channels = 2, .bitRate = 320000}, "FLAC", quality,
     "bitsPerSample=16, channels=2, sampleRate=48000"},

    // ---- Ogg Vorbis sources ----
    // To Vorbis: the three rates times 1.02, truncated; a missing average
    // is the mean of positive minimum and maximum; none at all gives
    // quality 5.
    {"OggVorbis", {.sampleRate = 44100, .channels = 2, .bitRate = 128000, .minBitRate = 100000, .maxBitRate = 150000},
     "OggVorbis", quality, "avgBitRate=130560, channels=2, maxBitRate=153000, minBitRate=102000, sampleRate=44100"},
    {"OggVorbis", {.sampleRate = 44100, .channels = 2, .bitRate = 0, .minBitRate = 100000, .maxBitRate = 150000},
     "OggVorbis", quality, "avgBitRate=127500, channels=2, maxBitRate=153000, minBitRate=102000, sampleRate=44100"},
    {"OggVorbis", {.sampleRate = 44100, .channels = 2, .bitRate = 0, .minBitRate = 1, .maxBitRate = 2},
     "OggVorbis", quality, "avgBitRate=1, channels=2, maxBitRate=2, minBitRate=1, sampleRate=44100"},
    {"OggVorbis", {.sampleRate = 44100, .channels = 2, .bitRate = 0, .minBitRate = -1, .maxBitRate = 150000},
     "OggVorbis", quality, "channels=2, qualityIndex=5, sampleRate=44100"},
    {"OggVorbis", {.sampleRate = 32000, .channels = 1, .bitRate = -1, .minBitRate = 0, .maxBitRate = 0},
     "OggVorbis", quality, "channels=1, qualityIndex=5, sampleRate=32000"},
    {"OggVorbis", {.sampleRate = 44100, .channels = 2, .bitRate = 112000}, "OggVorbis", quality,
     "avgBitRate=114240, channels=2, maxBitRate=-1, minBitRate=-1, sampleRate=44100"},
    // To MP3: x = b, t(b * 0.65) for stereo; then t(x * 1.2) below 40000,
    // t(x * 1.1) below 60000, else t(x * 1.02); doubled for stereo.
    {"OggVorbis", {.sampleRate = 44100, .channels = 2, .bitRate = 128000}, "MP3", quality,
     "bitRate=169728, channels=2, sampleRate=44100"},
    {"OggVorbis", {.sampleRate = 44100, .channels = 2, .bitRate = 80000}, "MP3", quality,
     "bitRate=114400, channels=2, sampleRate=44100"},
    {"OggVorbis", {.sampleRate = 44100, .channels = 2, .bitRate = 60000}, "MP3", quality,
     "bitRate=93600, channels=2, sampleRate=44100"},
    {"OggVorbis", {.sampleRate = 22050, .channels = 1, .bitRate = 39999}, "MP3", quality,
     "bitRate=47998, channels=1, sampleRate=22050"},
    {"OggVorbis", {.sampleRate = 22050, .channels = 1, .bitRate = 40000}, "MP3", quality,
     "bitRate=44000, channels=1, sampleRate=22050"},
    {"OggVorbis", {.sampleRate = 22050, .channels = 1, .bitRate = 59999}, "MP3", quality,
     "bitRate=65998, channels=1, sampleRate=22050"},
    {"OggVorbis", {.sampleRate = 22050, .channels = 1, .bitRate = 60000}, "MP3", quality,
     "bitRate=61200, channels=1, sampleRate=22050"},
    // To WMA: as from MP3 with that x.
    {"OggVorbis", {.sampleRate = 44100, .channels = 2, .bitRate = 128000}, "WMA", quality,
     "channels=2, sampleRate=44100, vbrEnabled=true, vbrQuality=0.78"},
    {"OggVorbis", {.sampleRate = 44100, .channels = 2, .bitRate = 128000}, "WMA", constantSize,
     "cbrBitRate=161241, channels=2, estimateSize=true, sampleRate=44100, vbrEnabled=false"},
    {"OggVorbis", {.sampleRate = 22050, .channels = 1, .bitRate = 60000}, "WMA", quality,
     "channels=1, sampleRate=22050, vbrEnabled=true, vbrQuality=0.3"},
    {"OggVorbis", {.sampleRate = 22050, .channels = 1, .bitRate = 22050}, "WAV", quality,
     "bitsPerSample=16, channels=1, sampleRate=22050"},
    {"OggVorbis", {.sampleRate = 8000, .channels = 1}, "FLAC", quality,
     "bitsPerSample=16, channels=1, sampleRate=16000"},

    // ---- WMA and other FFmpeg sources ----
    // To MP3: t(b * 1.3) from 100000, else t(b * 1.2); no sample rate.
    {"WMA", {.sampleRate = 44100, .channels = 2, .bitRate = 128000}, "MP3", quality, "bitRate=166400, channels=2"},
    {"WMA", {.sampleRate = 44100, .channels = 2, .bitRate = 100000}, "MP3", quality, "bitRate=130000, channels=2"},
    {"WMA", {.sampleRate = 44100, .channels = 2, .bitRate = 99999}, "MP3", quality, "bitRate=119998, channels=2"},
    {"DirectShow", {.sampleRate = 22050, .channels = 1, .bitRate = 64000}, "MP3", quality, "bitRate=76800, channels=1"},
    // To WMA: as from MP3 with that x.
    {"WMA", {.sampleRate = 44100, .channels = 2, .bitRate = 128000}, "WMA", quality,
     "channels=2, sampleRate=44100, vbrEnabled=true, vbrQuality=0.78"},
    {"WMA", {.sampleRate = 44100, .channels = 2, .bitRate = 128000}, "WMA", constantSize,
     "cbrBitRate=158080, channels=2, estimateSize=true, sampleRate=44100, vbrEnabled=false"},
    {"DirectShow", {.sampleRate = 32000, .channels = 2, .bitRate = 99999}, "WMA", quality,
     "channels=2, sampleRate=32000, vbrEnabled=true, vbrQuality=0.4"},
    {"DirectShow", {.sampleRate = 32000, .channels = 2, .bitRate = 99999}, "WMA", constantSize,
     "cbrBitRate=113998, channels=2, estimateSize=true, sampleRate=32000, vbrEnabled=false"},
    // To Vorbis: stereo is halved and then t(x * 1.7); mono keeps b.
    {"WMA", {.sampleRate = 44100, .channels = 2, .bitRate = 128000}, "OggVorbis", quality,
     "avgBitRate=108800, channels=2, sampleRate=44100"},
    {"WMA", {.sampleRate = 44100, .channels = 2, .bitRate = 99999}, "OggVorbis", quality,
     "avgBitRate=84998, channels=2, sampleRate=44100"},
    {"WMA", {.sampleRate = 44100, .channels = 1, .bitRate = 128000}, "OggVorbis", quality,
     "avgBitRate=128000, channels=1, sampleRate=44100"},
    // To WAV and FLAC: the rate as it is, also below 16000 for FLAC.
    {"WMA", {.sampleRate = 22050, .channels = 2, .bitsPerSample = 24}, "WAV", quality,
     "bitsPerSample=16, channels=2, sampleRate=22050"},
    {"DirectShow", {.sampleRate = 11025, .channels = 1}, "FLAC", quality,
     "bitsPerSample=16, channels=1, sampleRate=11025"},

    // ---- sources of no known group give nothing ----
    {"AIFF", {.sampleRate = 44100, .channels = 2}, "MP3", quality, ""},
    {"wav", {.sampleRate = 44100, .channels = 2}, "WAV", quality, ""},
    {"", {}, "FLAC", quality, ""},
    {"AIFF", {}, "WMA", constantSize, "estimateSize=true"},
};
// clang-format on

TEST(EncodeSettings, KeepQualityFollowsTheTableForEverySourceGroupAndTarget)
{
    for (const KeepCase& test : kKeepCases) {
        auto result = make<CValueList>();
        if (test.size == constantSize) result->setBool("estimateSize", true);
        CEncodeSettingsManager::getEncodeSettings(*result, outputType(test.target), tbx::qualitySelector::keep,
                                                  *make<CValueList>(), test.sourceType, *makeInfo(test.facts));
        EXPECT_EQ(describe(*result), test.expected)
            << test.sourceType << " " << test.facts.sampleRate << " Hz, " << test.facts.channels << " ch, "
            << test.facts.bitRate << " bit/s to " << test.target;
    }
}

TEST(EncodeSettings, CustomCopiesThePresetsAskTheTypeAndOthersAddNothing)
{
    auto custom = make<CValueList>();
    custom->setInt("bitRate", 256000);
    custom->setBool("vbr", false);
    auto result = make<CValueList>();
    result->setInt("sampleRate", 8000);
    CEncodeSettingsManager::getEncodeSettings(*result, outputType("MP3"), tbx::qualitySelector::custom, *custom, "WAV",
                                              *make<CValueList>());
    EXPECT_EQ(describe(*result), "bitRate=256000, vbr=false");

    // An empty custom list leaves the sink to its defaults.
    CEncodeSettingsManager::getEncodeSettings(*result, outputType("MP3"), tbx::qualitySelector::custom,
                                              *make<CValueList>(), "WAV", *make<CValueList>());
    EXPECT_EQ(describe(*result), "");

    // Presets do not depend on the source, not even on a known one.
    for (const char* source : {"WAV", "AIFF"}) {
        auto preset = make<CValueList>();
        CEncodeSettingsManager::getEncodeSettings(*preset, outputType("OggVorbis"), tbx::qualitySelector::medium,
                                                  *custom, source, *makeInfo({.sampleRate = 8000, .channels = 1}));
        EXPECT_EQ(describe(*preset), "qualityIndex=2, sampleRate=22050") << source;
    }
    // The WMA preset reads "estimateSize" from the list it fills.
    auto wma = make<CValueList>();
    wma->setBool("estimateSize", true);
    CEncodeSettingsManager::getEncodeSettings(*wma, outputType("WMA"), tbx::qualitySelector::good, *custom, "WAV",
                                              *make<CValueList>());
    EXPECT_EQ(describe(*wma), "cbrBitRate=128000, channels=2, estimateSize=true, sampleRate=44100, vbrEnabled=false");

    for (const std::int32_t selector : {-1, 6, 7}) {
        auto none = make<CValueList>();
        CEncodeSettingsManager::getEncodeSettings(*none, outputType("WAV"), selector, *custom, "WAV",
                                                  *make<CValueList>());
        EXPECT_EQ(describe(*none), "") << selector;
    }
}

TEST(EncodeSettings, PresetsOfEveryFormat)
{
    struct PresetCase
    {
        const char* type;
        bool estimateSize;
        const char* expected[4];
    };
    const PresetCase cases[] = {
        {"MP3",
         false,
         {"bitRate=160000, vbr=true", "bitRate=128000, vbr=true", "bitRate=64000, vbr=true",
          "bitRate=32000, vbr=true"}},
        {"OggVorbis",
         false,
         {"qualityIndex=5, sampleRate=44100", "qualityIndex=4, sampleRate=44100", "qualityIndex=2, sampleRate=22050",
          "qualityIndex=1, sampleRate=11025"}},
        {"WAV",
         false,
         {"bitsPerSample=16, channels=2, sampleRate=44100", "bitsPerSample=16, channels=2, sampleRate=32000",
          "bitsPerSample=16, channels=2, sampleRate=22050", "bitsPerSample=8, channels=2, sampleRate=8000"}},
        {"FLAC",
         false,
         {"bitsPerSample=16, channels=2, sampleRate=44100", "bitsPerSample=16, channels=2, sampleRate=32000",
          "bitsPerSample=16, channels=2, sampleRate=22050", "bitsPerSample=8, channels=2, sampleRate=16000"}},
        {"WMA",
         false,
         {"channels=2, sampleRate=44100, vbrEnabled=true, vbrQuality=0.78",
          "channels=2, sampleRate=44100, vbrEnabled=true, vbrQuality=0.65",
          "channels=2, sampleRate=44100, vbrEnabled=true, vbrQuality=0.4",
          "channels=2, sampleRate=44100, vbrEnabled=true, vbrQuality=0.3"}},
        {"WMA",
         true,
         {"cbrBitRate=160000, channels=2, estimateSize=true, sampleRate=44100, vbrEnabled=false",
          "cbrBitRate=128000, channels=2, estimateSize=true, sampleRate=44100, vbrEnabled=false",
          "cbrBitRate=64000, channels=2, estimateSize=true, sampleRate=44100, vbrEnabled=false",
          "cbrBitRate=32000, channels=2, estimateSize=true, sampleRate=44100, vbrEnabled=false"}},
    };
    for (const PresetCase& test : cases) {
        for (std::int32_t selector = 0; selector <= 5; ++selector) {
            auto settings = make<CValueList>();
            if (test.estimateSize) settings->setBool("estimateSize", true);
            outputType(test.type).getPresetSettings(*settings, selector);
            const bool preset = selector >= 1 && selector <= 4;
            EXPECT_EQ(describe(*settings),
                      preset ? test.expected[selector - 1] : (test.estimateSize ? "estimateSize=true" : ""))
                << test.type << " " << selector;
        }
    }
}

}  // namespace
