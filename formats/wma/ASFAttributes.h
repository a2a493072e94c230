#pragma once

// The ASF attributes that hold the tags of a Windows Media file, as
// libavformat's "asf" muxer takes them. The muxer writes every one into the
// Extended Content Description object, and title, author and copyright into
// the Content Description object as well, which is where Windows Media looks
// for them; it takes "title" and "copyright" in its own lower-case names.
// Its demuxer hands most attributes out under common names ("artist",
// "album", "track", "comment"), but keeps the year as "WM/Year".
namespace tbx::asfAttributes {

inline constexpr const char* title = "title";
inline constexpr const char* author = "Author";
inline constexpr const char* albumTitle = "WM/AlbumTitle";
inline constexpr const char* genre = "WM/Genre";
inline constexpr const char* year = "WM/Year";
inline constexpr const char* trackNumber = "WM/TrackNumber";
inline constexpr const char* description = "Description";
inline constexpr const char* copyright = "copyright";
inline constexpr const char* publisher = "WM/Publisher";
inline constexpr const char* isrc = "WM/ISRC";
// FFmpeg reads this one as the file's "encoder".
inline constexpr const char* encodingSettings = "WM/EncodingSettings";

// What every file written here names as its encoder, and the description it
// gets when its tags bring none.
inline constexpr const char* encoderName = "Quorrel Tonebench 3";
inline constexpr const char* defaultDescription = "Encoded with Quorrel Tonebench 3.";

}  // namespace tbx::asfAttributes
