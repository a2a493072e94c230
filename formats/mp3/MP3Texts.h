#pragma once

#include "foundation/TextKey.h"

// The user-visible texts of the MP3 source and sink, with their keys.
namespace tbx::mp3Texts {

using fenn::TextKey;

inline constexpr TextKey decodeError{"tbx.CMP3FileAudioSource.Error", "Error decoding MP3 file (error code %CODE%)"};
inline constexpr TextKey encodeError{"tbx.CMP3FileAudioSink.EncodeError", "MP3 encoding error."};
inline constexpr TextKey encoderSettingsError{
    "tbx.CMP3FileAudioSink.SettingsError",
    "The MP3 encoder cannot work with these settings (%RATE% Hz, %CHANNELS% channels, %BITRATE% kBit/s)."};

inline constexpr TextKey all[] = {decodeError, encodeError, encoderSettingsError};

}  // namespace tbx::mp3Texts
