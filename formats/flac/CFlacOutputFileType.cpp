#include "formats/flac/CFlacOutputFileType.h"

#include "formats/flac/CFlacFileAudioSink.h"
#include "formats/CEncodeSettingsManager.h"
#include "formats/FileTypeIds.h"
#include "formats/FormatTexts.h"
#include "foundation/CValueList.h"

namespace tbx {

namespace {

struct Preset
{
    std::int32_t sampleRate;
    std::int32_t bitsPerSample;
};

// CD, good, medium and low.
constexpr Preset kPresets[] = {{44100, 16}, {32000, 16}, {22050, 16}, {16000, 8}};
constexpr std::int32_t kPresetChannels = 2;

}  // namespace

CFlacOutputFileType::CFlacOutputFileType()
    : COutputFileTypeBase(fileTypeIds::flac, "FLAC", ".flac", formatTexts::flacShortDesc)
{
}

void CFlacOutputFileType::getPresetSettings(fenn::CValueList& settings, std::int32_t selector) const
{
    if (selector < qualitySelector::cd || selector > qualitySelector::low) return;
    const Preset& preset = kPresets[selector - qualitySelector::cd];
    settings.setInt(settingKeys::sampleRate, preset.sampleRate);
    settings.setInt(settingKeys::bitsPerSample, preset.bitsPerSample);
    settings.setInt(settingKeys::channels, kPresetChannels);
}

fenn::String CFlacOutputFileType::getSettingsDescription(const fenn::CValueList& settings, DescriptionForm form) const
{
    return describePCMSettings(settings, form, formatTexts::flacQualityDescLong, formatTexts::flacQualityDesc);
}

std::int64_t CFlacOutputFileType::estimateFileSize(const fenn::CValueList&, double) const
{
    return -1;
}

fenn::P<IAudioSink> CFlacOutputFileType::createAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream,
                                                          const fenn::CValueList& settings, const fenn::CValueList& tags)
{
    return fenn::make<CFlacFileAudioSink>(stream, settings, tags);
}

}  // namespace tbx
