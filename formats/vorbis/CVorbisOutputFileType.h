#pragma once

#include "formats/COutputFileTypeBase.h"

namespace tbx {

// The writing side of Ogg Vorbis: id "OggVorbis", extension ".ogg". Its
// settings are "qualityIndex" (0 to 10), "sampleRate", "channels", and for
// managed bit rates "minBitRate", "avgBitRate" and "maxBitRate". Owned by
// the application's file type table; GUI thread.
class CVorbisOutputFileType : public COutputFileTypeBase
{
public:
    CVorbisOutputFileType();

    // Presets 1 to 4: quality index 5, 4, 2 and 1 at 44100, 44100, 22050
    // and 11025 Hz.
    void getPresetSettings(fenn::CValueList& settings, std::int32_t selector) const override;
    fenn::String getSettingsDescription(const fenn::CValueList& settings, DescriptionForm form) const override;
    // -1: the size of Vorbis output depends on the audio.
    std::int64_t estimateFileSize(const fenn::CValueList& settings, double duration) const override;
    fenn::P<IAudioSink> createAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream,
                                        const fenn::CValueList& settings, const fenn::CValueList& tags) override;
};

}  // namespace tbx
