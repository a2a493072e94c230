#pragma once

// The ids of the output formats, which are also the type names of their
// sources, and the two ids of sources that no output type has.
namespace tbx::fileTypeIds {

inline constexpr const char* mp3 = "MP3";
inline constexpr const char* wma = "WMA";
inline constexpr const char* vorbis = "OggVorbis";
inline constexpr const char* wav = "WAV";
inline constexpr const char* flac = "FLAC";
// A track read from an audio CD.
inline constexpr const char* cdAudioTrack = "CDAudioTrack";
// Any other format read through FFmpeg; it keeps quality like WMA.
inline constexpr const char* directShow = "DirectShow";

}  // namespace tbx::fileTypeIds
