#include "formats/vorbis/CVorbisFileAudioSource.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string_view>
#include <vector>

// The library's ready-made callbacks over FILE* are static data that this
// file does not use.
#define OV_EXCLUDE_STATIC_CALLBACKS
#include <vorbis/vorbisfile.h>

#include "formats/FileTypeIds.h"
#include "formats/vorbis/CVorbisError.h"
#include "formats/vorbis/VorbisComments.h"
#include "foundation/CLogManager.h"
#include "foundation/CObjectError.h"
#include "foundation/CStreamManager.h"
#include "foundation/CURIError.h"
#include "foundation/CValueList.h"

namespace tbx {

namespace {

// Frames handed out per Read: a fifth of a second at 44100 Hz keeps the
// pump responsive without many small reads.
constexpr std::int32_t kFramesPerRead = 8192;

void logCallbackFailure(const char* action, const fenn::CException& error)
{
    fenn::CLogManager::getInstance()->error("formats", fenn::String("Exception during '") + action +
                                                           "': " + error.getDescription());
}

}  // namespace

// The library's state and the stream it reads. vorbisfile holds a pointer
// to this object as its data source, so it stays at one address while open.
struct CVorbisFileAudioSource::Decoder
{
    Decoder() = default;
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder()
    {
        if (fileOpen) ov_clear(&file);
        if (stream) {
            try {
                stream->close();
            } catch (const fenn::CException& error) {
                logCallbackFailure("CVorbisFileAudioSource: close", error);
            }
        }
    }

    fenn::P<fenn::ISeekableInStream> stream;
    OggVorbis_File file{};
    bool fileOpen = false;
    // Samples of a new link with another format, kept for the next chunk.
    std::vector<std::int16_t> piece;
    std::int32_t pieceFrames = 0;
    std::int32_t pieceRate = 0;
    std::int32_t pieceChannels = 0;

    // vorbisfile tells the end of the data from a failed read by errno: it must
    // be 0 after a read of 0 bytes at the regular end.
    static size_t read(void* buffer, size_t size, size_t count, void* source)
    {
        auto& stream = *static_cast<Decoder*>(source)->stream;
        if (size == 0 || count == 0) return 0;
        const size_t wanted = size * count;
        size_t got = 0;
        try {
            while (got < wanted) {
                const auto ask = static_cast<std::int32_t>(
                    std::min<size_t>(wanted - got, static_cast<size_t>(std::numeric_limits<std::int32_t>::max())));
                const std::int32_t arrived = stream.readSome(static_cast<char*>(buffer) + got, ask);
                if (arrived <= 0) break;
                got += static_cast<size_t>(arrived);
            }
        } catch (const fenn::CException& error) {
            logCallbackFailure("CVorbisFileAudioSource: read", error);
            errno = EIO;
            return 0;
        } catch (...) {
            // Nothing may unwind through the library's C frames.
            errno = EIO;
            return 0;
        }
        errno = 0;
        return got / size;
    }

    static int seek(void* source, ogg_int64_t offset, int whence)
    {
        auto& stream = *static_cast<Decoder*>(source)->stream;
        try {
            switch (whence) {
            case SEEK_SET:
                stream.seek(offset);
                return 0;
            case SEEK_CUR:
                stream.seekRelative(offset);
                return 0;
            case SEEK_END:
                stream.seekToEnd();
                if (offset != 0) stream.seekRelative(offset);
                return 0;
            default:
                return -1;
            }
        } catch (const fenn::CException& error) {
            logCallbackFailure("CVorbisFileAudioSource: seek", error);
            return -1;
        } catch (...) {
            return -1;
        }
    }

    // The stream belongs to the source, which closes it after the library let go.
    static int close(void*) { return 0; }

    static long tell(void* source)
    {
        auto& stream = *static_cast<Decoder*>(source)->stream;
        try {
            return static_cast<long>(stream.getPos());
        } catch (const fenn::CException& error) {
            logCallbackFailure("CVorbisFileAudioSource: getPosition", error);
            return -1;
        } catch (...) {
            return -1;
        }
    }
};

namespace {

std::int32_t clampToInt32(long value)
{
    return static_cast<std::int32_t>(
        std::clamp<long>(value, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
}

// Chunks hold one or two channels at a rate that fits their integer.
bool isSupportedFormat(const vorbis_info* info)
{
    return info != nullptr && info->channels >= 1 && info->channels <= 2 && info->rate >= 1 &&
           info->rate <= std::numeric_limits<std::int32_t>::max();
}

}  // namespace

CVorbisFileAudioSource::CVorbisFileAudioSource(const fenn::CURI& uri) : m_uri(uri) {}

CVorbisFileAudioSource::~CVorbisFileAudioSource() = default;

fenn::String CVorbisFileAudioSource::GetTypeName() const
{
    return fileTypeIds::vorbis;
}

void CVorbisFileAudioSource::Open(std::int32_t, fenn::IBase*)
{
    Close();
    auto decoder = std::make_unique<Decoder>();
    decoder->stream = fenn::CStreamManager::getInstance()->openSeekableInStream(m_uri);
    const ov_callbacks callbacks{Decoder::read, Decoder::seek, Decoder::close, Decoder::tell};
    // On failure the library has already cleared its state; the stream
    // closes with the decoder.
    const int result = ov_open_callbacks(decoder.get(), &decoder->file, nullptr, 0, callbacks);
    if (result != 0) throw CVorbisError(result);
    decoder->fileOpen = true;
    for (long link = 0; link < ov_streams(&decoder->file); ++link) {
        if (!isSupportedFormat(ov_info(&decoder->file, static_cast<int>(link)))) {
            throw fenn::CFileFormatNotSupportedError(m_uri);
        }
    }
    m_decoder = std::move(decoder);
    if (!m_info) publishFacts();
}

void CVorbisFileAudioSource::publishFacts()
{
    OggVorbis_File& file = m_decoder->file;
    const vorbis_info* info = ov_info(&file, -1);
    m_info = fenn::make<fenn::CValueList>();
    m_info->setInt("sampleRate", clampToInt32(info->rate));
    m_info->setInt("channels", info->channels);
    m_info->setInt("bitRate", clampToInt32(info->bitrate_nominal));
    m_info->setInt("minBitRate", clampToInt32(info->bitrate_lower));
    m_info->setInt("maxBitRate", clampToInt32(info->bitrate_upper));
    const double duration = ov_time_total(&file, -1);
    m_info->setDouble("duration", duration > 0.0 ? duration : 0.0);

    m_tags = fenn::make<fenn::CValueList>();
    const vorbis_comment* comment = ov_comment(&file, -1);
    if (comment != nullptr) {
        if (comment->vendor != nullptr) m_info->setString("encoder", fenn::String::copyOf(comment->vendor));
        for (int i = 0; i < comment->comments; ++i) {
            if (comment->user_comments[i] == nullptr || comment->comment_lengths[i] < 0) continue;
            vorbisComments::addComment(
                *m_tags, std::string_view(comment->user_comments[i], static_cast<size_t>(comment->comment_lengths[i])));
        }
    }
}

fenn::P<fenn::CValueList> CVorbisFileAudioSource::GetInfo()
{
    return m_info ? m_info : fenn::make<fenn::CValueList>();
}

fenn::P<fenn::CValueList> CVorbisFileAudioSource::GetTags()
{
    return m_tags ? m_tags : fenn::make<fenn::CValueList>();
}

long CVorbisFileAudioSource::decodeInto(char* buffer, int bytes, int& link)
{
    constexpr int bigEndian = std::endian::native == std::endian::big ? 1 : 0;
    for (;;) {
        const long decoded = ov_read(&m_decoder->file, buffer, bytes, bigEndian, 2, 1, &link);
        // A hole is data the library could not use (a lost or damaged page);
        // decoding goes on behind it.
        if (decoded == OV_HOLE) continue;
        if (decoded < 0) throw CVorbisError(static_cast<int>(decoded));
        if (decoded > 0 && !isSupportedFormat(ov_info(&m_decoder->file, link)))
            throw fenn::CFileFormatNotSupportedError(m_uri);
        return decoded;
    }
}

bool CVorbisFileAudioSource::Read(IAudioChunk& chunk)
{
    if (!m_decoder) throw fenn::CInvalidObjectStateError(this, "the source is not open");
    Decoder& decoder = *m_decoder;
    std::int32_t filled = 0;
    std::int32_t channels = 0;
    if (decoder.pieceFrames > 0) {
        // The first samples of a chained file's next link, held back by the
        // last call, open this chunk.
        channels = decoder.pieceChannels;
        chunk.SetSampleRate(decoder.pieceRate);
        chunk.SetChannels(channels);
        chunk.Reserve(kFramesPerRead, false);
        filled = decoder.pieceFrames;
        std::memcpy(chunk.GetWritableData(), decoder.piece.data(), static_cast<size_t>(filled) * channels * 2);
        decoder.pieceFrames = 0;
    } else {
        const vorbis_info* info = ov_info(&decoder.file, -1);
        if (!isSupportedFormat(info)) throw fenn::CFileFormatNotSupportedError(m_uri);
        channels = info->channels;
        chunk.SetSampleRate(static_cast<std::int32_t>(info->rate));
        chunk.SetChannels(channels);
        chunk.Reserve(kFramesPerRead, false);
    }
    // vorbisfile converts straight into the chunk: one call gives at most the
    // rest of one packet and never more than the room it is offered.
    char* data = reinterpret_cast<char*>(chunk.GetWritableData());
    while (filled < kFramesPerRead) {
        const int room = (kFramesPerRead - filled) * channels * 2;
        char* at = data + static_cast<size_t>(filled) * channels * 2;
        int link = 0;
        const long bytes = decodeInto(at, room, link);
        if (bytes == 0) break;
        const vorbis_info* info = ov_info(&decoder.file, link);
        if (!chunk.HasFormat(static_cast<std::int32_t>(info->rate), info->channels)) {
            // The next link of a chained file starts with the next chunk.
            decoder.piece.resize(static_cast<size_t>(bytes / 2));
            std::memcpy(decoder.piece.data(), at, static_cast<size_t>(bytes));
            decoder.pieceRate = static_cast<std::int32_t>(info->rate);
            decoder.pieceChannels = info->channels;
            decoder.pieceFrames = static_cast<std::int32_t>(bytes / (2 * info->channels));
            break;
        }
        filled += static_cast<std::int32_t>(bytes / (2 * channels));
    }
    chunk.SetLength(filled);
    // The very first samples belonged to a new link: they start this chunk
    // after all.
    if (filled == 0 && decoder.pieceFrames > 0) return Read(chunk);
    return filled > 0;
}

double CVorbisFileAudioSource::GetProgress() const
{
    if (!m_decoder) return 0.0;
    OggVorbis_File& file = m_decoder->file;
    const ogg_int64_t total = ov_pcm_total(&file, -1);
    if (total <= 0) return 0.0;
    const ogg_int64_t position = ov_pcm_tell(&file);
    if (position <= 0) return 0.0;
    return std::min(1.0, static_cast<double>(position) / static_cast<double>(total));
}

void CVorbisFileAudioSource::Reset()
{
    Close();
    Open(0, nullptr);
}

void CVorbisFileAudioSource::Close()
{
    m_decoder.reset();
}

}  // namespace tbx
