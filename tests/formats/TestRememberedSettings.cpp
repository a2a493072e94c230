#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include "formats/RememberedSettings.h"
#include "foundation/CError.h"
#include "foundation/CObject.h"
#include "foundation/posix/CRegistryValueStore.h"
#include "tests/support/TempFolder.h"

namespace {

using fenn::make;
using fenn::P;
using fenn::String;
using tbx::CRememberedSettings;
using tbx::KeepQuality;

// A store in memory whose names mind case, as a plain map does; it keeps
// the names asked for, so a test sees exactly which keys are read.
class CMemoryStore : public fenn::CObject, public virtual fenn::IValueStore
{
public:
    using Value = std::variant<std::int32_t, bool, std::string>;
    std::map<std::string, Value> values;
    mutable std::vector<std::string> reads;

    using IValueStore::getBool;
    using IValueStore::getInt;
    using IValueStore::getString;

    void setString(const String& name, const String& value) override
    {
        values[name.toStdString()] = value.toStdString();
    }
    void setInt(const String& name, std::int32_t value) override { values[name.toStdString()] = value; }
    void setBool(const String& name, bool value) override { values[name.toStdString()] = value; }
    void setInt64(const String&, std::int64_t) override { unexpected(); }
    void setDouble(const String&, double) override { unexpected(); }
    void setBlock(const String&, const fenn::IMemoryBlock&) override { unexpected(); }
    void setBinary(const String&, const void*, std::int32_t) override { unexpected(); }

    String getString(const String& name, const String& defaultValue, bool& found) const override
    {
        const std::string* value = find<std::string>(name, found);
        return value ? String::copyOf(*value) : defaultValue;
    }
    std::int32_t getInt(const String& name, std::int32_t defaultValue, bool& found) const override
    {
        const std::int32_t* value = find<std::int32_t>(name, found);
        return value ? *value : defaultValue;
    }
    bool getBool(const String& name, bool defaultValue, bool& found) const override
    {
        const bool* value = find<bool>(name, found);
        return value ? *value : defaultValue;
    }
    std::int64_t getInt64(const String&, std::int64_t defaultValue, bool&) const override { return defaultValue; }
    double getDouble(const String&, double defaultValue, bool&) const override { return defaultValue; }
    P<fenn::IMemoryBlock> getBlock(const String&, const P<fenn::IMemoryBlock>& defaultValue, bool&) const override
    {
        return defaultValue;
    }
    bool hasValue(const String& name) const override { return values.count(name.toStdString()) != 0; }
    P<fenn::IValueStore> openSubStore(const String&) override { return unexpected(); }
    P<fenn::IValueStore> createSubStore(const String&) override { return unexpected(); }
    P<fenn::IConstEnum> getValueNames() const override { return unexpected(); }
    P<fenn::IConstEnum> getSubStoreNames() const override { return unexpected(); }
    bool removeValue(const String& name) override { return values.erase(name.toStdString()) != 0; }
    bool removeSubStore(const String&) override { return false; }

private:
    template <class T> const T* find(const String& name, bool& found) const
    {
        reads.push_back(name.toStdString());
        const auto entry = values.find(name.toStdString());
        const T* value = entry == values.end() ? nullptr : std::get_if<T>(&entry->second);
        found = value != nullptr;
        return value;
    }
    [[noreturn]] static std::nullptr_t unexpected() { throw fenn::CError("", "not used by remembered settings"); }
};

TEST(RememberedSettings, LastQualityFallsBackToKeepOrToCDWhereKeepIsForbidden)
{
    struct Case
    {
        std::int32_t stored;
        std::int32_t allowed;
        std::int32_t forbidden;
    };
    constexpr std::int32_t kNothing = -1000;
    const Case cases[] = {{kNothing, 0, 1}, {-1, 0, 1}, {0, 0, 1}, {1, 1, 1}, {4, 4, 4},
                          {5, 5, 5},        {6, 0, 1},  {7, 0, 1}, {-2, 0, 1}};
    for (const Case& test : cases) {
        auto store = make<CMemoryStore>();
        if (test.stored != kNothing) store->values["convert.LastQuality"] = test.stored;
        const CRememberedSettings remembered(store, "convert.");
        EXPECT_EQ(remembered.readLastQuality(KeepQuality::allowed), test.allowed) << test.stored;
        EXPECT_EQ(remembered.readLastQuality(KeepQuality::forbidden), test.forbidden) << test.stored;
    }
}

TEST(RememberedSettings, EachFormatUnderItsKeysBehindTheModulePrefix)
{
    auto store = make<CMemoryStore>();
    CRememberedSettings convert(store, "convert.");
    const CRememberedSettings rip(store, "ripAudioCD.");

    // A first run gives the defaults.
    EXPECT_EQ(convert.readPCMQuality(tbx::PCMFormat::wav).sampleRate, 44100);
    EXPECT_EQ(convert.readPCMQuality(tbx::PCMFormat::flac).bitsPerSample, 16);
    EXPECT_EQ(convert.readPCMQuality(tbx::PCMFormat::flac).channels, 2);
    EXPECT_EQ(convert.readMP3Quality().sampleRate, -1);
    EXPECT_EQ(convert.readLastFormat().toStdString(), "");

    convert.writeLastFormat("OggVorbis");
    convert.writeLastQuality(3);
    convert.writePCMQuality(tbx::PCMFormat::wav, {22050, 8, 1});
    convert.writePCMQuality(tbx::PCMFormat::flac, {32000, 16, 2});
    convert.writeMP3Quality({128000, false, 1, 22050});
    convert.writeVorbisQuality({3, 11025, 1});

    const std::map<std::string, CMemoryStore::Value> expected = {
        {"convert.LastFormat", std::string("OggVorbis")},
        {"convert.LastQuality", 3},
        {"convert.WAV.LastSampleRate", 22050},
        {"convert.WAV.LastBits", 8},
        {"convert.WAV.LastChannels", 1},
        {"convert.FLAC.LastSampleRate", 32000},
        {"convert.FLAC.LastBits", 16},
        {"convert.FLAC.LastChannels", 2},
        {"convert.MP3.LastBitRate", 128000},
        {"convert.MP3.LastVBR", false},
        {"convert.MP3.LastChannels", 1},
        {"convert.MP3.LastSampleRate", 22050},
        {"convert.Vorbis.LastQualityIndex", 3},
        {"convert.Vorbis.LastSampleRate", 11025},
        {"convert.Vorbis.LastChannels", 1},
    };
    EXPECT_EQ(store->values, expected);

    EXPECT_EQ(convert.readLastFormat().toStdString(), "OggVorbis");
    EXPECT_EQ(convert.readLastQuality(KeepQuality::allowed), 3);
    const tbx::PCMQualityChoice wav = convert.readPCMQuality(tbx::PCMFormat::wav);
    EXPECT_EQ(std::vector<std::int32_t>({wav.sampleRate, wav.bitsPerSample, wav.channels}),
              std::vector<std::int32_t>({22050, 8, 1}));
    const tbx::VorbisQualityChoice vorbis = convert.readVorbisQuality();
    EXPECT_EQ(std::vector<std::int32_t>({vorbis.qualityIndex, vorbis.sampleRate, vorbis.channels}),
              std::vector<std::int32_t>({3, 11025, 1}));

    // The MP3 sample rate is read under another spelling than it is written.
    store->reads.clear();
    tbx::MP3QualityChoice mp3 = convert.readMP3Quality();
    EXPECT_EQ(mp3.bitRate, 128000);
    EXPECT_FALSE(mp3.vbr);
    EXPECT_EQ(mp3.channels, 1);
    EXPECT_EQ(mp3.sampleRate, -1);
    EXPECT_EQ(std::count(store->reads.begin(), store->reads.end(), "convert.MP3.lastSampleRate"), 1);
    store->values["convert.MP3.lastSampleRate"] = 32000;
    EXPECT_EQ(convert.readMP3Quality().sampleRate, 32000);

    // Another module keeps its own choices.
    EXPECT_EQ(rip.readLastQuality(KeepQuality::forbidden), 1);
    EXPECT_EQ(rip.readPCMQuality(tbx::PCMFormat::wav).sampleRate, 44100);
    EXPECT_EQ(rip.readLastFormat().toStdString(), "");
}

TEST(RememberedSettings, RoundTripThroughTheSettingsDatabase)
{
    const tbtest::TempFolder folder;
    {
        const P<fenn::IValueStore> store = fenn::posix::openUserValueStore(folder / "settings.db");
        CRememberedSettings remembered(store, "ripAudioCD.");
        remembered.writeLastQuality(7);
        remembered.writeMP3Quality({96000, true, 2, 32000});
    }
    const P<fenn::IValueStore> store = fenn::posix::openUserValueStore(folder / "settings.db");
    const CRememberedSettings remembered(store, "ripAudioCD.");
    EXPECT_EQ(store->getInt("ripAudioCD.LastQuality", 0), 7);
    EXPECT_EQ(remembered.readLastQuality(KeepQuality::allowed), 0);
    EXPECT_EQ(remembered.readLastQuality(KeepQuality::forbidden), 1);
    EXPECT_EQ(remembered.readMP3Quality().bitRate, 96000);
    // The database ignores the case of names, so there the two spellings meet.
    EXPECT_EQ(remembered.readMP3Quality().sampleRate, 32000);
}

}  // namespace
