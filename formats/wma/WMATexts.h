#pragma once

#include "foundation/TextKey.h"

// The user-visible texts of Windows Media audio, with their keys.
namespace tbx::wmaTexts {

inline constexpr fenn::TextKey decoderUnparseable{
    "tbx.CWMAFileAudioSource.ErrorUnparseable",
    "The Windows Media audio stream cannot be decoded. It may be corrupted."};
inline constexpr fenn::TextKey decoderTruncated{
    "tbx.CWMAFileAudioSource.ErrorTruncated",
    "The Windows Media audio file ends before the end of its audio data. It may be incomplete."};
inline constexpr fenn::TextKey encoderInit{"tbx.CWMAFileAudioSink.ErrorInit",
                                           "Error initializing Windows Media audio encoder."};
inline constexpr fenn::TextKey encoderEncoding{"tbx.CWMAFileAudioSink.ErrorEncoding",
                                               "Error during Windows Media audio encoding."};
// %URI% is the file whose tags were to be written.
inline constexpr fenn::TextKey tagSaveFailed{"tbx.CWMAFileTag.SaveFailed",
                                             "Error writing the tags of '%URI%'. The file is unchanged."};

inline constexpr fenn::TextKey all[] = {decoderUnparseable, decoderTruncated, encoderInit, encoderEncoding,
                                        tagSaveFailed};

}  // namespace tbx::wmaTexts
