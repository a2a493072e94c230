#include "formats/wav/CWAVOutputFileType.h"

#include "formats/CEncodeSettingsManager.h"
#include "formats/FileTypeIds.h"
#include "formats/FormatTexts.h"
#include "formats/wav/CWAVFileAudioSink.h"
#include "foundation/CValueList.h"

namespace tbx {

namespace {

struct Preset
{
    std::int32_t sampleRate;
    std::int32_t bitsPerSample;
};

// CD, good, medium and low.
constexpr Preset kPresets[] = {{44100, 16}, {32000, 16}, {22050, 16}, {8000, 8}};
constexpr std::int32_t kPresetChannels = 2;

}  // namespace

CWAVOutputFileType::CWAVOutputFileType()
    : COutputFileTypeBase(fileTypeIds::wav, "WAV", ".wav", formatTexts::wavShortDesc)
{
}

void CWAVOutputFileType::getPresetSettings(fenn::CValueList& settings, std::int32_t selector) const
{
    if (selector < qualitySelector::cd || selector > qualitySelector::low) return;
    const Preset& preset = kPresets[selector - qualitySelector::cd];
    settings.setInt(settingKeys::sampleRate, preset.sampleRate);
    settings.setInt(settingKeys::bitsPerSample, preset.bitsPerSample);
    settings.setInt(settingKeys::channels, kPresetChannels);
}

fenn::String CWAVOutputFileType::getSettingsDescription(const fenn::CValueList& settings, DescriptionForm form) const
{
    return describePCMSettings(settings, form, formatTexts::wavQualityDescLong, formatTexts::wavQualityDesc);
}

std::int64_t CWAVOutputFileType::estimateFileSize(const fenn::CValueList& settings, double duration) const
{
    // The header and tag are measured by a real sink writing them, so the
    // estimate follows whatever the sink makes of the settings.
    const std::int64_t head = CWAVFileAudioSink::measureHeaderAndTag(settings, fenn::CValueList());
    const std::int64_t bytesPerSecond = std::int64_t{settings.getInt(settingKeys::bitsPerSample, 16) / 8} *
                                        settings.getInt(settingKeys::channels, 2) *
                                        settings.getInt(settingKeys::sampleRate, 44100);
    return head + static_cast<std::int64_t>(static_cast<double>(bytesPerSecond) * duration) + 1024;
}

fenn::P<IAudioSink> CWAVOutputFileType::createAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream,
                                                        const fenn::CValueList& settings, const fenn::CValueList& tags)
{
    return fenn::make<CWAVFileAudioSink>(stream, settings, tags);
}

}  // namespace tbx
