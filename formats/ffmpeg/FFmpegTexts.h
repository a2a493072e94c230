#pragma once

#include "foundation/TextKey.h"

// The user-visible texts of the formats read through FFmpeg, with their keys.
namespace tbx::ffmpegTexts {

inline constexpr fenn::TextKey fileFilterOther{
    "tbx.FileFilter.Other",
    "Other audio files (*.m4a, *.aac, *.mp4, *.opus, *.aif, *.aiff, *.wv, *.ape, *.mpc, *.ac3)"};
inline constexpr fenn::TextKey decoderUnparseable{"tbx.CFFmpegFileAudioSource.ErrorUnparseable",
                                                  "The audio stream cannot be decoded. It may be corrupted."};

// %NAME% is the file name of the library that is missing or incomplete.
inline constexpr fenn::TextKey libraryMissing{
    "tbx.FFmpegLibrary.Missing",
    "The FFmpeg library '%NAME%' could not be loaded. Install FFmpeg to read and write these files."};

inline constexpr fenn::TextKey all[] = {fileFilterOther, decoderUnparseable, libraryMissing};

}  // namespace tbx::ffmpegTexts
