#include "formats/wma/CWMAOutputFileType.h"

#include <cmath>

#include "formats/CEncodeSettingsManager.h"
#include "formats/FileTypeIds.h"
#include "formats/FormatTexts.h"
#include "formats/wma/CWMAFileAudioSink.h"
#include "foundation/CValueList.h"
#include "foundation/IStringLocalizer.h"

namespace tbx {

namespace {

struct Preset
{
    double vbrQuality;
    std::int32_t cbrBitRate;
};

// CD, good, medium and low.
constexpr Preset kPresets[] = {{0.78, 160000}, {0.65, 128000}, {0.4, 64000}, {0.3, 32000}};
constexpr std::int32_t kPresetSampleRate = 44100;
constexpr std::int32_t kPresetChannels = 2;

// Every ASF data packet starts with a small header; 2 kBit/s covers them at
// the rates the program offers.
constexpr double kPacketOverheadBitRate = 2000.0;
// The ASF header objects (file and stream properties, content description)
// and the simple index of a file of some minutes.
constexpr std::int64_t kContainerReserve = 8192;

}  // namespace

CWMAOutputFileType::CWMAOutputFileType()
    : COutputFileTypeBase(fileTypeIds::wma, "WMA", ".wma", formatTexts::wmaShortDesc)
{
}

void CWMAOutputFileType::getPresetSettings(fenn::CValueList& settings, std::int32_t selector) const
{
    if (selector < qualitySelector::cd || selector > qualitySelector::low) return;
    const Preset& preset = kPresets[selector - qualitySelector::cd];
    settings.setInt(settingKeys::sampleRate, kPresetSampleRate);
    settings.setInt(settingKeys::channels, kPresetChannels);
    if (settings.getBool(settingKeys::estimateSize, false)) {
        settings.setBool(settingKeys::vbrEnabled, false);
        settings.setInt(settingKeys::cbrBitRate, preset.cbrBitRate);
    } else {
        settings.setBool(settingKeys::vbrEnabled, true);
        settings.setDouble(settingKeys::vbrQuality, preset.vbrQuality);
    }
}

fenn::String CWMAOutputFileType::getSettingsDescription(const fenn::CValueList& settings, DescriptionForm form) const
{
    const bool full = form == DescriptionForm::full;
    fenn::String text;
    if (settings.getBool(settingKeys::vbrEnabled, kDefaultVBREnabled)) {
        const double quality = settings.getDouble(settingKeys::vbrQuality, kDefaultVBRQuality);
        text = fenn::localize(full ? formatTexts::wmaQualityDescLongVBR : formatTexts::wmaQualityDescVBR)
                   .replace("%QUAL%", fenn::fromInt(std::lround(quality * 100.0)));
    } else {
        const std::int32_t bitRate = settings.getInt(settingKeys::cbrBitRate, kDefaultCBRBitRate);
        text = fenn::localize(full ? formatTexts::wmaQualityDescLongCBR : formatTexts::wmaQualityDescCBR)
                   .replace("%BR%", fenn::fromInt(bitRate / 1000));
    }
    return text.replace("%SR%", formatKiloHertz(settings.getInt(settingKeys::sampleRate, kPresetSampleRate)))
        .replace("%CHAN%", fenn::fromInt(settings.getInt(settingKeys::channels, kPresetChannels)));
}

std::int64_t CWMAOutputFileType::estimateFileSize(const fenn::CValueList& settings, double duration) const
{
    if (settings.getBool(settingKeys::vbrEnabled, kDefaultVBREnabled)) return -1;
    const double bitRate = settings.getInt(settingKeys::cbrBitRate, kDefaultCBRBitRate);
    return static_cast<std::int64_t>((bitRate + kPacketOverheadBitRate) * duration / 8.0) + kContainerReserve;
}

fenn::P<IAudioSink> CWMAOutputFileType::createAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream,
                                                        const fenn::CValueList& settings, const fenn::CValueList& tags)
{
    return fenn::make<CWMAFileAudioSink>(stream, settings, tags);
}

}  // namespace tbx
