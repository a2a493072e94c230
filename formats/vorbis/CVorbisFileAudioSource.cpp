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
// Bytes asked from vorbisfile per call. One call never returns more than
// the rest of one packet, at most 4096 frames per channel.
constexpr std::int32_t kPieceBytes = 4096 * 2 * 2;

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
    // The last piece that vorbisfile decoded, and how much of it is handed out.
    std::vector<std::int16_t> piece = std::vector<std::int16_t>(kPieceBytes / 2);
    std::int32_t pieceFrames = 0;
    std::int32_t pieceOffset = 0;
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

bool CVorbisFileAudioSource::decodeNext()
{
    Decoder& decoder = *m_decoder;
    constexpr int bigEndian = std::endian::native == std::endian::big ? 1 : 0;
    for (;;) {
        int link = 0;
        const long bytes =
            ov_read(&decoder.file, reinterpret_cast<char*>(decoder.piece.data()), kPieceBytes, bigEndian, 2, 1, &link);
        // A hole is data the library could not use (a lost or damaged page);
        // decoding goes on behind it.
        if (bytes == OV_HOLE) continue;
        if (bytes < 0) throw CVorbisError(static_cast<int>(bytes));
        if (bytes == 0) return false;
        const vorbis_info* info = ov_info(&decoder.file, link);
        if (!isSupportedFormat(info)) throw fenn::CFileFormatNotSupportedError(m_uri);
        decoder.pieceRate = static_cast<std::int32_t>(info->rate);
        decoder.pieceChannels = info->channels;
        decoder.pieceFrames = static_cast<std::int32_t>(bytes / (2 * info->channels));
        decoder.pieceOffset = 0;
        if (decoder.pieceFrames > 0) return true;
    }
}

bool CVorbisFileAudioSource::Read(IAudioChunk& chunk)
{
    if (!m_decoder) throw fenn::CInvalidObjectStateError(this, "the source is not open");
    Decoder& decoder = *m_decoder;
    std::int32_t filled = 0;
    bool formatSet = false;
    while (filled < kFramesPerRead) {
        if (decoder.pieceOffset >= decoder.pieceFrames && !decodeNext()) break;
        if (!formatSet) {
            chunk.SetSampleRate(decoder.pieceRate);
            chunk.SetChannels(decoder.pieceChannels);
            chunk.Reserve(kFramesPerRead, false);
            formatSet = true;
        } else if (!chunk.HasFormat(decoder.pieceRate, decoder.pieceChannels)) {
            // The next link of a chained file starts with the next chunk.
            break;
        }
        const std::int32_t frames = std::min(kFramesPerRead - filled, decoder.pieceFrames - decoder.pieceOffset);
        const std::int32_t channels = decoder.pieceChannels;
        std::memcpy(chunk.GetWritableData() + static_cast<size_t>(filled) * channels,
                    decoder.piece.data() + static_cast<size_t>(decoder.pieceOffset) * channels,
                    static_cast<size_t>(frames) * channels * 2);
        filled += frames;
        decoder.pieceOffset += frames;
    }
    chunk.SetLength(filled);
    return formatSet;
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
