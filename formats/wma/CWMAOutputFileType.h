#pragma once

#include "formats/COutputFileTypeBase.h"

namespace tbx {

// The writing side of Windows Media audio: id "WMA", extension ".wma". Its
// settings are "vbrEnabled" with "vbrQuality" (0.0 to 1.0) for a variable
// rate, or "cbrBitRate" (bits per second) for a constant one, and
// "sampleRate" and "channels". Owned by the application's file type table;
// GUI thread.
class CWMAOutputFileType : public COutputFileTypeBase
{
public:
    // What descriptions and estimates assume for absent settings: the CD preset.
    static constexpr bool kDefaultVBREnabled = true;
    static constexpr double kDefaultVBRQuality = 0.78;
    static constexpr std::int32_t kDefaultCBRBitRate = 160000;

    CWMAOutputFileType();

    // Presets 1 to 4, all 44100 Hz stereo: VBR quality 0.78, 0.65, 0.4 and
    // 0.3, or when the list holds "estimateSize" true, CBR at 160, 128, 64
    // and 32 kBit/s, whose output size can be told before encoding.
    void getPresetSettings(fenn::CValueList& settings, std::int32_t selector) const override;
    fenn::String getSettingsDescription(const fenn::CValueList& settings, DescriptionForm form) const override;
    // At a constant bit rate the size follows from it; a variable rate gives -1.
    std::int64_t estimateFileSize(const fenn::CValueList& settings, double duration) const override;
    fenn::P<IAudioSink> createAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream,
                                        const fenn::CValueList& settings, const fenn::CValueList& tags) override;
};

}  // namespace tbx
