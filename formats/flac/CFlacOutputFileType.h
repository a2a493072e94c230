#pragma once

#include "formats/COutputFileTypeBase.h"

namespace tbx {

// The writing side of FLAC: id "FLAC", extension ".flac". Its settings are
// "sampleRate", "bitsPerSample" and "channels". Owned by the application's
// file type table; GUI thread.
class CFlacOutputFileType : public COutputFileTypeBase
{
public:
    CFlacOutputFileType();

    // Presets 1 to 4, all stereo: 44100 Hz 16 bit, 32000 Hz 16 bit, 22050 Hz
    // 16 bit, 16000 Hz 8 bit.
    void getPresetSettings(fenn::CValueList& settings, std::int32_t selector) const override;
    fenn::String getSettingsDescription(const fenn::CValueList& settings, DescriptionForm form) const override;
    // -1: the size of FLAC output depends on the audio.
    std::int64_t estimateFileSize(const fenn::CValueList& settings, double duration) const override;
    fenn::P<IAudioSink> createAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream,
                                        const fenn::CValueList& settings, const fenn::CValueList& tags) override;
};

}  // namespace tbx
