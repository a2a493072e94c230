#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/dict.h>
#include <libavutil/log.h>
#include <libavutil/mem.h>
#include <libavutil/samplefmt.h>
}

namespace tbx {

// The FFmpeg functions the formats call, loaded with dlopen on first use
// rather than linked: FFmpeg's libraries bring some 130 more shared objects
// whose loading would add tens of milliseconds to every start of the
// program, also of runs that never touch a WMA or AAC file. The libraries
// are the ones of the headers built against (the same major versions), so
// the structures agree. Loaded once, under the lock of a function-local
// static; never unloaded.
struct FFmpegLibrary
{
#define TB_FFMPEG_FUNCTION(library, name) decltype(&::name) name = nullptr;
#include "formats/ffmpeg/FFmpegFunctions.inc"
#undef TB_FFMPEG_FUNCTION
};

// The loaded functions. Throws fenn::CError with the FFmpeg library text
// when a library or one of its functions is missing.
const FFmpegLibrary& ffmpeg();

}  // namespace tbx
