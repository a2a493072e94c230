#pragma once

#include "foundation/TextKey.h"

// The user-visible texts of the FLAC codec, with their keys.
namespace tbx::flacTexts {

inline constexpr fenn::TextKey decoderAborted{"tbx.CFlacFileAudioSource.ErrorAborted",
                                              "The FLAC audio decoding operation was aborted"};
inline constexpr fenn::TextKey decoderUnparseable{"tbx.CFlacFileAudioSource.ErrorUnparseable",
                                                  "The FLAC audio stream cannot be decoded. It may be corrupted."};
inline constexpr fenn::TextKey decoderGeneric{"tbx.CFlacFileAudioSource.ErrorGeneric",
                                              "An error occurred during the decoding of FLAC audio data."};
inline constexpr fenn::TextKey encoderInit{"tbx.CFlacFileAudioSink.ErrorInit",
                                           "Error initializing FLAC audio encoder."};
inline constexpr fenn::TextKey encoderEncoding{"tbx.CFlacFileAudioSink.ErrorEncoding",
                                               "Error during FLAC audio encoding."};

inline constexpr fenn::TextKey all[] = {decoderAborted, decoderUnparseable, decoderGeneric, encoderInit,
                                        encoderEncoding};

}  // namespace tbx::flacTexts
