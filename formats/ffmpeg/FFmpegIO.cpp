// libavformat over the program's streams: demuxers and muxers that read and
// write through fenn streams instead of opening files of their own.
#include "formats/ffmpeg/FFmpegIO.h"

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/dict.h>
#include <libavutil/log.h>
#include <libavutil/mem.h>
}

#include <cstring>
#include <limits>
#include <mutex>
#include <new>
#include <string>

#include "formats/ffmpeg/FFmpegLibrary.h"
#include "foundation/CLogManager.h"
#include "foundation/CObjectError.h"
#include "foundation/CStreamManager.h"
#include "foundation/CURIError.h"

namespace tbx {

namespace {

// Bytes of the AVIOContext's buffer: FFmpeg reads and writes the stream in
// pieces of this size.
constexpr int kIOBufferSize = 64 * 1024;

#if LIBAVFORMAT_VERSION_MAJOR < 61
using WrittenBytes = std::uint8_t*;
#else
using WrittenBytes = const std::uint8_t*;
#endif

void logStreamFailure(const char* action, const fenn::CException& error)
{
    fenn::CLogManager::getInstance()->error("formats", fenn::String("Exception during '") + action +
                                                           "': " + error.getDescription());
}

// Demuxers that would open other files or URLs (playlists, references in
// MP4 files) get nothing: a file is read from its own stream alone.
int refuseToOpen(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**)
{
    return AVERROR(EPERM);
}

// One stream of the stream manager behind an AVIOContext.
struct StreamIO
{
    StreamIO() = default;
    StreamIO(const StreamIO&) = delete;
    StreamIO& operator=(const StreamIO&) = delete;
    ~StreamIO()
    {
        if (context != nullptr) {
            // The context may have replaced the buffer it was given.
            ffmpeg().av_freep(&context->buffer);
            ffmpeg().avio_context_free(&context);
        }
    }

    void open(bool writable)
    {
        auto* buffer = static_cast<unsigned char*>(ffmpeg().av_malloc(kIOBufferSize));
        if (buffer == nullptr) throw std::bad_alloc();
        context = ffmpeg().avio_alloc_context(buffer, kIOBufferSize, writable ? 1 : 0, this, writable ? nullptr : read,
                                              writable ? write : nullptr, seek);
        if (context == nullptr) {
            ffmpeg().av_free(buffer);
            throw std::bad_alloc();
        }
    }

    void keep(const char* action, const fenn::CException& failure)
    {
        logStreamFailure(action, failure);
        if (!error) error = failure.clone();
    }

    static StreamIO& of(void* opaque) { return *static_cast<StreamIO*>(opaque); }

    static int read(void* opaque, std::uint8_t* buffer, int size)
    {
        StreamIO& self = of(opaque);
        try {
            const std::int32_t arrived = self.input->readSome(buffer, size);
            return arrived > 0 ? arrived : AVERROR_EOF;
        } catch (const fenn::CException& failure) {
            self.keep("FFmpeg: read", failure);
        } catch (...) {
            // Nothing may unwind through the library's C frames.
        }
        return AVERROR(EIO);
    }

    static int write(void* opaque, WrittenBytes buffer, int size)
    {
        StreamIO& self = of(opaque);
        try {
            self.output->write(buffer, size);
            return size;
        } catch (const fenn::CException& failure) {
            self.keep("FFmpeg: write", failure);
        } catch (...) {
        }
        return AVERROR(EIO);
    }

    static std::int64_t seek(void* opaque, std::int64_t offset, int whence)
    {
        StreamIO& self = of(opaque);
        try {
            fenn::ISeekableStream& stream = *self.seekable;
            if ((whence & AVSEEK_SIZE) != 0) return stream.isSizeKnown() ? stream.getSize() : AVERROR(ENOSYS);
            std::int64_t base = 0;
            switch (whence & ~AVSEEK_FORCE) {
            case SEEK_SET:
                break;
            case SEEK_CUR:
                base = stream.getPos();
                break;
            case SEEK_END:
                if (!stream.isSizeKnown()) return AVERROR(ENOSYS);
                base = stream.getSize();
                break;
            default:
                return AVERROR(EINVAL);
            }
            if ((offset > 0 && base > std::numeric_limits<std::int64_t>::max() - offset) || base + offset < 0) {
                return AVERROR(EINVAL);
            }
            // A damaged header may send a demuxer far past the end of a
            // file it reads, further than the system can seek.
            if (self.input && stream.isSizeKnown() && base + offset > stream.getSize()) return AVERROR(EINVAL);
            stream.seek(base + offset);
            return base + offset;
        } catch (const fenn::CException& failure) {
            self.keep("FFmpeg: seek", failure);
        } catch (...) {
        }
        return AVERROR(EIO);
    }

    fenn::P<fenn::ISeekableInStream> input;
    fenn::P<fenn::ISeekableOutStream> output;
    fenn::ISeekableStream* seekable = nullptr;
    AVIOContext* context = nullptr;
    // The first error a callback caught.
    fenn::P<fenn::CException> error;
};

}  // namespace

void silenceFFmpegLog()
{
    static std::once_flag once;
    std::call_once(once, [] { ffmpeg().av_log_set_level(AV_LOG_QUIET); });
}

fenn::String ffmpegMetadataText(const AVDictionary* metadata, std::initializer_list<const char*> names)
{
    for (const char* name : names) {
        const AVDictionaryEntry* entry = ffmpeg().av_dict_get(metadata, name, nullptr, 0);
        if (entry == nullptr || entry->value == nullptr) continue;
        const fenn::String text = fenn::String::copyOf(entry->value).trim();
        if (!text.isEmpty()) return text;
    }
    return fenn::String();
}

struct CFFmpegDemuxer::IO : StreamIO
{
};

CFFmpegDemuxer::CFFmpegDemuxer(const fenn::CURI& uri, const char* demuxers) : m_uri(uri), m_io(std::make_unique<IO>())
{
    silenceFFmpegLog();
    m_io->input = fenn::CStreamManager::getInstance()->openSeekableInStream(uri);
    m_io->seekable = m_io->input.get();
    try {
        m_io->open(false);
        AVFormatContext* context = ffmpeg().avformat_alloc_context();
        if (context == nullptr) throw std::bad_alloc();
        context->pb = m_io->context;
        context->io_open = refuseToOpen;
        // Freed with the context.
        context->format_whitelist = ffmpeg().av_strdup(demuxers);
        if (context->format_whitelist == nullptr) {
            ffmpeg().avformat_free_context(context);
            throw std::bad_alloc();
        }
        // Only the name: some demuxers trust a matching extension a little
        // more, and nothing can be opened by it.
        const std::string name = uri.getFileName().toStdString();
        // A failed open frees the context.
        if (ffmpeg().avformat_open_input(&context, name.c_str(), nullptr, nullptr) < 0) {
            rethrowStreamError();
            throw fenn::CFileFormatNotSupportedError(uri);
        }
        m_context = context;
    } catch (...) {
        const fenn::P<fenn::ISeekableInStream> stream = m_io->input;
        m_io.reset();
        try {
            stream->close();
        } catch (const fenn::CException& error) {
            logStreamFailure("FFmpeg: close", error);
        }
        throw;
    }
}

CFFmpegDemuxer::~CFFmpegDemuxer()
{
    if (m_context != nullptr) ffmpeg().avformat_close_input(&m_context);
    if (m_io) {
        const fenn::P<fenn::ISeekableInStream> stream = m_io->input;
        m_io.reset();
        try {
            stream->close();
        } catch (const fenn::CException& error) {
            logStreamFailure("FFmpeg: close", error);
        }
    }
}

std::int64_t CFFmpegDemuxer::getPosition() const
{
    return m_context != nullptr ? ffmpeg().avio_seek(m_context->pb, 0, SEEK_CUR) : 0;
}

std::int64_t CFFmpegDemuxer::getSize() const
{
    return m_io->input->isSizeKnown() ? m_io->input->getSize() : -1;
}

void CFFmpegDemuxer::rethrowStreamError() const
{
    if (m_io && m_io->error) m_io->error->raise();
}

struct CFFmpegMuxer::IO : StreamIO
{
};

CFFmpegMuxer::CFFmpegMuxer(fenn::P<fenn::ISeekableOutStream> stream, const char* muxer) : m_io(std::make_unique<IO>())
{
    silenceFFmpegLog();
    m_io->output = std::move(stream);
    m_io->seekable = m_io->output.get();
    m_io->open(true);
    if (ffmpeg().avformat_alloc_output_context2(&m_context, nullptr, muxer, nullptr) < 0 || m_context == nullptr) {
        throw std::bad_alloc();
    }
    m_context->pb = m_io->context;
    m_context->io_open = refuseToOpen;
    // Without it libavformat puts its own name into the "encoder" metadata.
    m_context->flags |= AVFMT_FLAG_BITEXACT;
}

CFFmpegMuxer::~CFFmpegMuxer()
{
    // The context does not own the custom AVIOContext; IO frees it after.
    if (m_context != nullptr) ffmpeg().avformat_free_context(m_context);
}

bool CFFmpegMuxer::finish()
{
    ffmpeg().avio_flush(m_context->pb);
    rethrowStreamError();
    return m_context->pb->error == 0;
}

void CFFmpegMuxer::rethrowStreamError() const
{
    if (m_io->error) m_io->error->raise();
}

}  // namespace tbx
