#include "formats/RememberedSettings.h"

#include "formats/CEncodeSettingsManager.h"

namespace tbx {

namespace {

constexpr const char* kLastFormat = "LastFormat";
constexpr const char* kLastQuality = "LastQuality";
// Nothing stored yet; falls outside the selectors like any stray value.
constexpr std::int32_t kNoQuality = -1;

struct PCMKeys
{
    const char* sampleRate;
    const char* bits;
    const char* channels;
};

constexpr PCMKeys kWAVKeys{"WAV.LastSampleRate", "WAV.LastBits", "WAV.LastChannels"};
constexpr PCMKeys kFlacKeys{"FLAC.LastSampleRate", "FLAC.LastBits", "FLAC.LastChannels"};

const PCMKeys& keysOf(PCMFormat format)
{
    return format == PCMFormat::wav ? kWAVKeys : kFlacKeys;
}

constexpr const char* kMP3BitRate = "MP3.LastBitRate";
constexpr const char* kMP3VBR = "MP3.LastVBR";
constexpr const char* kMP3Channels = "MP3.LastChannels";
constexpr const char* kMP3SampleRateRead = "MP3.lastSampleRate";
constexpr const char* kMP3SampleRateWritten = "MP3.LastSampleRate";

constexpr const char* kVorbisQualityIndex = "Vorbis.LastQualityIndex";
constexpr const char* kVorbisSampleRate = "Vorbis.LastSampleRate";
constexpr const char* kVorbisChannels = "Vorbis.LastChannels";

}  // namespace

CRememberedSettings::CRememberedSettings(fenn::P<fenn::IValueStore> store, fenn::String modulePrefix)
    : m_store(std::move(store)), m_modulePrefix(std::move(modulePrefix))
{
}

std::int32_t CRememberedSettings::readInt(const char* name, std::int32_t defaultValue) const
{
    return m_store->getInt(makeKey(name), defaultValue);
}

fenn::String CRememberedSettings::readLastFormat() const
{
    return m_store->getString(makeKey(kLastFormat));
}

void CRememberedSettings::writeLastFormat(const fenn::String& formatId)
{
    m_store->setString(makeKey(kLastFormat), formatId);
}

std::int32_t CRememberedSettings::readLastQuality(KeepQuality keepQuality) const
{
    std::int32_t selector = readInt(kLastQuality, kNoQuality);
    if (selector < qualitySelector::keep || selector > qualitySelector::custom) selector = qualitySelector::keep;
    if (selector == qualitySelector::keep && keepQuality == KeepQuality::forbidden) selector = qualitySelector::cd;
    return selector;
}

void CRememberedSettings::writeLastQuality(std::int32_t selector)
{
    m_store->setInt(makeKey(kLastQuality), selector);
}

PCMQualityChoice CRememberedSettings::readPCMQuality(PCMFormat format) const
{
    const PCMKeys& keys = keysOf(format);
    const PCMQualityChoice defaults;
    return PCMQualityChoice{readInt(keys.sampleRate, defaults.sampleRate), readInt(keys.bits, defaults.bitsPerSample),
                            readInt(keys.channels, defaults.channels)};
}

void CRememberedSettings::writePCMQuality(PCMFormat format, const PCMQualityChoice& choice)
{
    const PCMKeys& keys = keysOf(format);
    m_store->setInt(makeKey(keys.sampleRate), choice.sampleRate);
    m_store->setInt(makeKey(keys.bits), choice.bitsPerSample);
    m_store->setInt(makeKey(keys.channels), choice.channels);
}

MP3QualityChoice CRememberedSettings::readMP3Quality() const
{
    const MP3QualityChoice defaults;
    return MP3QualityChoice{readInt(kMP3BitRate, defaults.bitRate), m_store->getBool(makeKey(kMP3VBR), defaults.vbr),
                            readInt(kMP3Channels, defaults.channels), readInt(kMP3SampleRateRead, defaults.sampleRate)};
}

void CRememberedSettings::writeMP3Quality(const MP3QualityChoice& choice)
{
    m_store->setInt(makeKey(kMP3BitRate), choice.bitRate);
    m_store->setBool(makeKey(kMP3VBR), choice.vbr);
    m_store->setInt(makeKey(kMP3Channels), choice.channels);
    m_store->setInt(makeKey(kMP3SampleRateWritten), choice.sampleRate);
}

VorbisQualityChoice CRememberedSettings::readVorbisQuality() const
{
    const VorbisQualityChoice defaults;
    return VorbisQualityChoice{readInt(kVorbisQualityIndex, defaults.qualityIndex),
                               readInt(kVorbisSampleRate, defaults.sampleRate),
                               readInt(kVorbisChannels, defaults.channels)};
}

void CRememberedSettings::writeVorbisQuality(const VorbisQualityChoice& choice)
{
    m_store->setInt(makeKey(kVorbisQualityIndex), choice.qualityIndex);
    m_store->setInt(makeKey(kVorbisSampleRate), choice.sampleRate);
    m_store->setInt(makeKey(kVorbisChannels), choice.channels);
}

}  // namespace tbx
