#pragma once

#include "formats/COutputFileTypeBase.h"

namespace tbx {

// The writing side of MPEG audio layer III: id "MP3", extension ".mp3". Its
// settings are "bitRate" (bits per second), "vbr", "sampleRate" (-1 or
// absent: the encoder chooses) and "channels". Owned by the application's
// file type table; GUI thread.
class CMP3OutputFileType : public COutputFileTypeBase
{
public:
    // The bit rate that descriptions and size estimates assume when the
    // settings name none.
    static constexpr std::int32_t kDefaultBitRate = 192000;

    CMP3OutputFileType();

    // Presets 1 to 4: VBR around 160, 128, 64 and 32 kBit/s.
    void getPresetSettings(fenn::CValueList& settings, std::int32_t selector) const override;
    fenn::String getSettingsDescription(const fenn::CValueList& settings, DescriptionForm form) const override;
    std::int64_t estimateFileSize(const fenn::CValueList& settings, double duration) const override;
    fenn::P<IAudioSink> createAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream,
                                        const fenn::CValueList& settings, const fenn::CValueList& tags) override;
};

}  // namespace tbx
