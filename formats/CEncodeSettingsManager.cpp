#include "formats/CEncodeSettingsManager.h"

#include <algorithm>

#include "formats/FileTypeIds.h"

namespace tbx {

namespace {

// The keep-quality rules come in groups by the kind of the source: what its
// bit rate (if any) says about its quality differs from one codec to the next.
enum class SourceGroup { unknown, pcm, mp3, vorbis, wma };
enum class Target { unknown, mp3, wma, vorbis, wav, flac };

SourceGroup findSourceGroup(const fenn::String& sourceType)
{
    if (sourceType == fileTypeIds::wav || sourceType == fileTypeIds::flac || sourceType == fileTypeIds::cdAudioTrack)
        return SourceGroup::pcm;
    if (sourceType == fileTypeIds::mp3) return SourceGroup::mp3;
    if (sourceType == fileTypeIds::vorbis) return SourceGroup::vorbis;
    if (sourceType == fileTypeIds::wma || sourceType == fileTypeIds::directShow) return SourceGroup::wma;
    return SourceGroup::unknown;
}

Target findTarget(const fenn::String& id)
{
    if (id == fileTypeIds::mp3) return Target::mp3;
    if (id == fileTypeIds::wma) return Target::wma;
    if (id == fileTypeIds::vorbis) return Target::vorbis;
    if (id == fileTypeIds::wav) return Target::wav;
    if (id == fileTypeIds::flac) return Target::flac;
    return Target::unknown;
}

// The facts of the source, with the values assumed when it does not tell.
struct Source
{
    std::int32_t sampleRate;
    std::int32_t channels;
    std::int32_t bitsPerSample;
    std::int32_t bitRate;
    std::int32_t minBitRate;
    std::int32_t maxBitRate;
};

constexpr std::int32_t kDefaultSampleRate = 44100;
constexpr std::int32_t kDefaultChannels = 2;
constexpr std::int32_t kDefaultBitsPerSample = 16;
constexpr std::int32_t kDefaultBitRate = 160000;
constexpr std::int32_t kNoBitRate = -1;
// FLAC output is never made below this rate.
constexpr std::int32_t kLowestFlacSampleRate = 16000;
// Decoders give 16-bit samples whatever the compressed source held.
constexpr std::int32_t kDecodedBitsPerSample = 16;

Source readSource(const fenn::CValueList& info)
{
    return Source{info.getInt(settingKeys::sampleRate, kDefaultSampleRate),
                  info.getInt(settingKeys::channels, kDefaultChannels),
                  info.getInt(settingKeys::bitsPerSample, kDefaultBitsPerSample),
                  info.getInt(settingKeys::bitRate, kDefaultBitRate),
                  info.getInt(settingKeys::minBitRate, kNoBitRate),
                  info.getInt(settingKeys::maxBitRate, kNoBitRate)};
}

// A value scaled in double arithmetic and truncated toward zero, the way
// the factors of the rules below have always been applied.
std::int32_t scale(std::int32_t value, double factor)
{
    return static_cast<std::int32_t>(static_cast<double>(value) * factor);
}

// The WMA quality that matches a bit rate of another lossy format. Below
// 40000 the steps end; the lowest quality is used there, and callers keep
// their rates at or above 40000.
double wmaQualityFor(std::int32_t bitRate)
{
    if (bitRate >= 200000) return 0.85;
    if (bitRate >= 160000) return 0.78;
    if (bitRate >= 144000) return 0.65;
    if (bitRate >= 64000) return 0.4;
    return 0.3;
}

// WMA is set up for a variable rate of the given quality, or, when the
// caller must know the size beforehand, for the given constant rate.
void setWMARate(fenn::CValueList& result, double vbrQuality, std::int32_t cbrBitRate)
{
    if (result.getBool(settingKeys::estimateSize, false)) {
        result.setBool(settingKeys::vbrEnabled, false);
        result.setInt(settingKeys::cbrBitRate, cbrBitRate);
    } else {
        result.setBool(settingKeys::vbrEnabled, true);
        result.setDouble(settingKeys::vbrQuality, vbrQuality);
    }
}

// WMA from a lossy source of bit rate x: the quality of that rate, or 95% of
// it as a constant rate.
void setWMAFromBitRate(fenn::CValueList& result, std::int32_t bitRate)
{
    setWMARate(result, wmaQualityFor(bitRate), scale(bitRate, 0.95));
}

void setPCM(fenn::CValueList& result, std::int32_t sampleRate, std::int32_t bitsPerSample)
{
    result.setInt(settingKeys::sampleRate, sampleRate);
    result.setInt(settingKeys::bitsPerSample, bitsPerSample);
}

// The rate thresholds of PCM sources. 22100 rather than 22050 is how the
// table has always been: a 22050 Hz source falls into the band below it.
constexpr std::int32_t kHighRate = 32000;
constexpr std::int32_t kMiddleRate = 22100;
constexpr std::int32_t kLowRate = 16000;

void keepFromPCM(fenn::CValueList& result, Target target, const Source& source)
{
    const std::int32_t rate = source.sampleRate;
    switch (target) {
    case Target::wav:
        setPCM(result, rate, source.bitsPerSample);
        break;
    case Target::flac:
        setPCM(result, std::max(rate, kLowestFlacSampleRate), source.bitsPerSample);
        break;
    case Target::mp3: {
        std::int32_t bitRate = rate >= kHighRate     ? 160000
                               : rate >= kMiddleRate ? 144000
                               : rate >= kLowRate    ? 64000
                                                     : 40000;
        if (source.channels < 2) bitRate /= 2;
        result.setInt(settingKeys::bitRate, bitRate);
        break;
    }
    case Target::vorbis:
        result.setInt(settingKeys::sampleRate, rate);
        result.setInt(settingKeys::qualityIndex, rate >= kHighRate ? 5 : rate >= kMiddleRate ? 3 : 1);
        break;
    case Target::wma:
        result.setInt(settingKeys::sampleRate, rate);
        // The constant rate of the third band, 640000, breaks the order of
        // its column; it is the value the program has always used.
        if (rate >= kHighRate)
            setWMARate(result, 0.78, 160000);
        else if (rate >= kMiddleRate)
            setWMARate(result, 0.65, 128000);
        else if (rate >= kLowRate)
            setWMARate(result, 0.4, 640000);
        else
            setWMARate(result, 0.3, 40000);
        break;
    case Target::unknown:
        return;
    }
    result.setInt(settingKeys::channels, source.channels);
}

void keepFromMP3(fenn::CValueList& result, Target target, const Source& source)
{
    // A source that does not know its bit rate is taken as a good one.
    const std::int32_t bitRate = source.bitRate < 1 ? kDefaultBitRate : source.bitRate;
    const std::int32_t rate = source.sampleRate;
    const bool stereo = source.channels == 2;
    switch (target) {
    case Target::mp3:
        result.setInt(settingKeys::sampleRate, rate);
        result.setInt(settingKeys::bitRate, scale(bitRate, 1.02));
        break;
    case Target::wma:
        result.setInt(settingKeys::sampleRate, rate);
        setWMAFromBitRate(result, bitRate);
        break;
    case Target::vorbis: {
        // Vorbis needs less per channel than MP3 in the middle band, and its
        // stereo coupling makes a pair of channels cheaper than two.
        result.setInt(settingKeys::sampleRate, rate);
        std::int32_t average = stereo ? bitRate / 2 : bitRate;
        if (average >= 20000 && average < 60000) average = scale(average, 0.9);
        if (stereo) average = scale(average, 1.7);
        result.setInt(settingKeys::avgBitRate, average);
        break;
    }
    case Target::wav:
        setPCM(result, rate, kDecodedBitsPerSample);
        break;
    case Target::flac:
        setPCM(result, std::max(rate, kLowestFlacSampleRate), kDecodedBitsPerSample);
        break;
    case Target::unknown:
        return;
    }
    result.setInt(settingKeys::channels, source.channels);
}

// The bit rate of another lossy format that matches a Vorbis rate: per
// channel for stereo (65% of the pair), raised most where rates are low.
std::int32_t lossyRateFromVorbis(const Source& source)
{
    const bool stereo = source.channels == 2;
    std::int32_t rate = stereo ? scale(source.bitRate, 0.65) : source.bitRate;
    if (rate < 40000)
        rate = scale(rate, 1.2);
    else if (rate < 60000)
        rate = scale(rate, 1.1);
    else
        rate = scale(rate, 1.02);
    return stereo ? rate * 2 : rate;
}

void keepFromVorbis(fenn::CValueList& result, Target target, const Source& source)
{
    const std::int32_t rate = source.sampleRate;
    switch (target) {
    case Target::vorbis: {
        result.setInt(settingKeys::sampleRate, rate);
        std::int32_t average = source.bitRate;
        if (average < 1 && source.minBitRate > 0 && source.maxBitRate > 0)
            average = static_cast<std::int32_t>((static_cast<std::int64_t>(source.minBitRate) + source.maxBitRate) / 2);
        if (average < 1) {
            result.setInt(settingKeys::qualityIndex, 5);
        } else {
            result.setInt(settingKeys::minBitRate, scale(source.minBitRate, 1.02));
            result.setInt(settingKeys::avgBitRate, scale(average, 1.02));
            result.setInt(settingKeys::maxBitRate, scale(source.maxBitRate, 1.02));
        }
        break;
    }
    case Target::mp3:
        result.setInt(settingKeys::bitRate, lossyRateFromVorbis(source));
        result.setInt(settingKeys::sampleRate, rate);
        break;
    case Target::wma:
        result.setInt(settingKeys::sampleRate, rate);
        setWMAFromBitRate(result, lossyRateFromVorbis(source));
        break;
    case Target::wav:
        setPCM(result, rate, kDecodedBitsPerSample);
        break;
    case Target::flac:
        setPCM(result, std::max(rate, kLowestFlacSampleRate), kDecodedBitsPerSample);
        break;
    case Target::unknown:
        return;
    }
    result.setInt(settingKeys::channels, source.channels);
}

void keepFromWMA(fenn::CValueList& result, Target target, const Source& source)
{
    const std::int32_t rate = source.sampleRate;
    // WMA holds up better than MP3 at the same rate, the more so at high rates.
    const std::int32_t lossyRate = source.bitRate >= 100000 ? scale(source.bitRate, 1.3) : scale(source.bitRate, 1.2);
    switch (target) {
    case Target::mp3:
        result.setInt(settingKeys::bitRate, lossyRate);
        break;
    case Target::wma:
        result.setInt(settingKeys::sampleRate, rate);
        setWMAFromBitRate(result, lossyRate);
        break;
    case Target::vorbis: {
        result.setInt(settingKeys::sampleRate, rate);
        std::int32_t average = source.bitRate;
        if (source.channels == 2) average = scale(average / 2, 1.7);
        result.setInt(settingKeys::avgBitRate, average);
        break;
    }
    case Target::wav:
    case Target::flac:
        setPCM(result, rate, kDecodedBitsPerSample);
        break;
    case Target::unknown:
        return;
    }
    result.setInt(settingKeys::channels, source.channels);
}

}  // namespace

void CEncodeSettingsManager::getEncodeSettings(fenn::CValueList& result, const IOutputFileType& outputType,
                                               std::int32_t selector, const fenn::CValueList& customSettings,
                                               const fenn::String& sourceType, const fenn::CValueList& sourceInfo)
{
    if (selector == qualitySelector::custom) {
        result.assign(customSettings);
        return;
    }
    if (selector != qualitySelector::keep) {
        outputType.getPresetSettings(result, selector);
        return;
    }

    const Target target = findTarget(outputType.getId());
    const Source source = readSource(sourceInfo);
    switch (findSourceGroup(sourceType)) {
    case SourceGroup::pcm:
        keepFromPCM(result, target, source);
        break;
    case SourceGroup::mp3:
        keepFromMP3(result, target, source);
        break;
    case SourceGroup::vorbis:
        keepFromVorbis(result, target, source);
        break;
    case SourceGroup::wma:
        keepFromWMA(result, target, source);
        break;
    case SourceGroup::unknown:
        break;
    }
}

}  // namespace tbx
