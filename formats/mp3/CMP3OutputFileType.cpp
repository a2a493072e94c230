#include "formats/mp3/CMP3OutputFileType.h"

#include "formats/CEncodeSettingsManager.h"
#include "formats/FileTypeIds.h"
#include "formats/FormatTexts.h"
#include "formats/mp3/CMP3FileAudioSink.h"
#include "foundation/CValueList.h"
#include "foundation/IStringLocalizer.h"

namespace tbx {

namespace {

// The mean bit rates of the presets CD, good, medium and low.
constexpr std::int32_t kPresetBitRates[] = {160000, 128000, 64000, 32000};
// LAME adds frame headers and side information to the coded audio; 2 kBit/s
// of them is a safe allowance at every rate the program offers.
constexpr double kFrameOverheadBitRate = 2000.0;
// Room for the VBR header frame and rounding.
constexpr std::int64_t kSizeReserve = 1024;

}  // namespace

CMP3OutputFileType::CMP3OutputFileType()
    : COutputFileTypeBase(fileTypeIds::mp3, "MP3", ".mp3", formatTexts::mp3ShortDesc)
{
}

void CMP3OutputFileType::getPresetSettings(fenn::CValueList& settings, std::int32_t selector) const
{
    if (selector < qualitySelector::cd || selector > qualitySelector::low) return;
    settings.setBool(settingKeys::vbr, true);
    settings.setInt(settingKeys::bitRate, kPresetBitRates[selector - qualitySelector::cd]);
}

fenn::String CMP3OutputFileType::getSettingsDescription(const fenn::CValueList& settings, DescriptionForm form) const
{
    const fenn::String bitRate = fenn::fromInt(settings.getInt(settingKeys::bitRate, kDefaultBitRate) / 1000);
    if (form == DescriptionForm::brief) return fenn::localize(formatTexts::mp3QualityDesc).replace("%BR%", bitRate);

    const std::int32_t sampleRate = settings.getInt(settingKeys::sampleRate, -1);
    const fenn::String sampleRateText =
        sampleRate < 1
            ? fenn::localize(formatTexts::mp3QualityDescLongAutoSampleRate)
            : fenn::localize(formatTexts::mp3QualityDescLongSampleRate).replace("%R%", formatKiloHertz(sampleRate));
    return fenn::localize(formatTexts::mp3QualityDescLong)
        .replace("%BR%", bitRate)
        .replace("%VCBR%", settings.getBool(settingKeys::vbr, true) ? "VBR" : "CBR")
        .replace("%SR%", sampleRateText)
        .replace("%CHAN%", fenn::fromInt(settings.getInt(settingKeys::channels, 2)));
}

std::int64_t CMP3OutputFileType::estimateFileSize(const fenn::CValueList& settings, double duration) const
{
    const double bitRate = settings.getInt(settingKeys::bitRate, kDefaultBitRate);
    const auto audioBytes = static_cast<std::int64_t>((bitRate + kFrameOverheadBitRate) * duration / 8.0);
    // The bytes around the audio: a piggyback object's head and tail, or the
    // ID3v2 tag that the sink would build from these values.
    return audioBytes + CMP3FileAudioSink::estimateTagBytes(settings) + kSizeReserve;
}

fenn::P<IAudioSink> CMP3OutputFileType::createAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream,
                                                        const fenn::CValueList& settings, const fenn::CValueList& tags)
{
    return fenn::make<CMP3FileAudioSink>(stream, settings, tags);
}

}  // namespace tbx
