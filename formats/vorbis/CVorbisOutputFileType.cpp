#include "formats/vorbis/CVorbisOutputFileType.h"

#include "formats/vorbis/CVorbisFileAudioSink.h"
#include "formats/CEncodeSettingsManager.h"
#include "formats/FileTypeIds.h"
#include "formats/FormatTexts.h"
#include "foundation/CValueList.h"
#include "foundation/IStringLocalizer.h"

namespace tbx {

namespace {

struct Preset
{
    std::int32_t qualityIndex;
    std::int32_t sampleRate;
};

// CD, good, medium and low.
constexpr Preset kPresets[] = {{5, 44100}, {4, 44100}, {2, 22050}, {1, 11025}};

}  // namespace

CVorbisOutputFileType::CVorbisOutputFileType()
    : COutputFileTypeBase(fileTypeIds::vorbis, "Ogg Vorbis", ".ogg", formatTexts::vorbisShortDesc)
{
}

void CVorbisOutputFileType::getPresetSettings(fenn::CValueList& settings, std::int32_t selector) const
{
    if (selector < qualitySelector::cd || selector > qualitySelector::low) return;
    const Preset& preset = kPresets[selector - qualitySelector::cd];
    settings.setInt(settingKeys::qualityIndex, preset.qualityIndex);
    settings.setInt(settingKeys::sampleRate, preset.sampleRate);
}

fenn::String CVorbisOutputFileType::getSettingsDescription(const fenn::CValueList& settings, DescriptionForm form) const
{
    // Absent settings read as the sink's defaults.
    return fenn::localize(form == DescriptionForm::full ? formatTexts::vorbisQualityDescLong
                                                        : formatTexts::vorbisQualityDesc)
        .replace("%QUAL%", fenn::fromInt(settings.getInt(settingKeys::qualityIndex, 5)))
        .replace("%SR%", formatKiloHertz(settings.getInt(settingKeys::sampleRate, 44100)))
        .replace("%CHAN%", fenn::fromInt(settings.getInt(settingKeys::channels, 2)));
}

std::int64_t CVorbisOutputFileType::estimateFileSize(const fenn::CValueList&, double) const
{
    return -1;
}

fenn::P<IAudioSink> CVorbisOutputFileType::createAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream,
                                                            const fenn::CValueList& settings, const fenn::CValueList& tags)
{
    return fenn::make<CVorbisFileAudioSink>(stream, settings, tags);
}

}  // namespace tbx
