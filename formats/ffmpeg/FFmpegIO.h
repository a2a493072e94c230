#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>

#include "foundation/CURI.h"
#include "foundation/P.h"
#include "foundation/String.h"

struct AVDictionary;
struct AVFormatContext;

namespace fenn {
class ISeekableOutStream;
}

// libavformat over the program's own streams. FFmpeg reads and writes
// through a custom AVIOContext whose callbacks call a stream of the stream
// manager, so every place the stream manager reaches (disk, memory, packages)
// is reachable here too, and FFmpeg itself opens nothing: demuxers that would
// follow references to other files or URLs are refused.
//
// FFmpeg's callbacks are C frames: a stream error is caught in the callback,
// kept, and handed to the caller by rethrowStreamError once the library call
// has returned its failure.
namespace tbx {

// Turns FFmpeg's own log off for the whole process; the program reports the
// failures itself, in its own words. Safe to call from any thread, any number
// of times.
void silenceFFmpegLog();

// The first non-empty value of the dictionary under one of the names (FFmpeg
// compares them without regard to case), as text; empty when none has one.
fenn::String ffmpegMetadataText(const AVDictionary* metadata, std::initializer_list<const char*> names);

// The reading side: a file of the stream manager opened by one of the named
// libavformat demuxers. Not a CObject: it belongs to one source or tag for
// one pass over the file. One thread at a time.
class CFFmpegDemuxer
{
public:
    // demuxers is a comma-separated list of libavformat input format names
    // ("asf", "mov,ogg") that may claim the file. The stream's errors pass
    // through; a file that none of them opens throws
    // CFileFormatNotSupportedError with the URI.
    CFFmpegDemuxer(const fenn::CURI& uri, const char* demuxers);
    ~CFFmpegDemuxer();
    CFFmpegDemuxer(const CFFmpegDemuxer&) = delete;
    CFFmpegDemuxer& operator=(const CFFmpegDemuxer&) = delete;

    AVFormatContext* get() const { return m_context; }
    const fenn::CURI& getURI() const { return m_uri; }
    // The stream's read position and size in bytes (-1 when unknown).
    std::int64_t getPosition() const;
    std::int64_t getSize() const;
    // Throws the error that the stream raised inside one of FFmpeg's
    // callbacks, if there was one.
    void rethrowStreamError() const;

private:
    struct IO;

    fenn::CURI m_uri;
    std::unique_ptr<IO> m_io;
    AVFormatContext* m_context = nullptr;
};

// The writing side: a file written by one of libavformat's muxers into a
// seekable output stream, which the muxer may seek back in at the end to
// complete its header (the "asf" muxer writes sizes and duration there). The
// caller adds streams and metadata to get(), then calls avformat_write_header,
// the packets and av_write_trailer, and last finish(). The muxer writes no
// "encoder" of its own into the metadata. One thread at a time.
class CFFmpegMuxer
{
public:
    // muxer is a libavformat output format name ("asf"). Throws std::bad_alloc
    // when FFmpeg has no memory; the stream stays open and is the caller's to
    // close.
    CFFmpegMuxer(fenn::P<fenn::ISeekableOutStream> stream, const char* muxer);
    ~CFFmpegMuxer();
    CFFmpegMuxer(const CFFmpegMuxer&) = delete;
    CFFmpegMuxer& operator=(const CFFmpegMuxer&) = delete;

    AVFormatContext* get() const { return m_context; }
    // Writes what FFmpeg still buffers to the stream; the stream's errors
    // pass through. False when the output failed in another way.
    [[nodiscard]] bool finish();
    void rethrowStreamError() const;

private:
    struct IO;

    std::unique_ptr<IO> m_io;
    AVFormatContext* m_context = nullptr;
};

}  // namespace tbx
