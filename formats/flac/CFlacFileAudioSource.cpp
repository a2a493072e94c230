#include "formats/flac/CFlacFileAudioSource.h"

#include <FLAC/stream_decoder.h>

#include <algorithm>
#include <limits>
#include <new>
#include <string>
#include <vector>

#include "formats/DecodedBlocks.h"
#include "formats/FileTypeIds.h"
#include "formats/flac/FlacTexts.h"
#include "formats/vorbis/VorbisComments.h"
#include "foundation/CLogManager.h"
#include "foundation/CObjectError.h"
#include "foundation/CStreamManager.h"
#include "foundation/CURIError.h"
#include "foundation/CValueList.h"
#include "foundation/IStringLocalizer.h"

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

// A 16-bit sample from one of another width: narrower samples move up,
// wider ones lose their low bits.
std::int16_t toSixteenBits(FLAC__int32 sample, std::uint32_t bits)
{
    if (bits == 16) return static_cast<std::int16_t>(sample);
    if (bits < 16) return static_cast<std::int16_t>(sample * (1 << (16 - bits)));
    return static_cast<std::int16_t>(sample >> (bits - 16));
}

}  // namespace

// The library's decoder, the stream it reads and what its callbacks have
// delivered. libFLAC holds a pointer to this object as its client data, so
// it stays at one address while the decoder lives.
struct CFlacFileAudioSource::Decoder
{
    Decoder() = default;
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder()
    {
        if (decoder != nullptr) FLAC__stream_decoder_delete(decoder);
        if (stream) {
            try {
                stream->close();
            } catch (const fenn::CException& error) {
                logCallbackFailure("CFlacFileAudioSource: close", error);
            }
        }
    }

    fenn::P<fenn::ISeekableInStream> stream;
    FLAC__StreamDecoder* decoder = nullptr;

    // From the STREAMINFO block.
    bool hasStreamInfo = false;
    std::uint32_t sampleRate = 0;
    std::uint32_t channels = 0;
    std::uint32_t bitsPerSample = 0;
    FLAC__uint64 totalFrames = 0;
    // From the VORBIS_COMMENT block.
    std::string vendor;
    std::vector<std::string> comments;

    // The first damage the decoder reported, and whether a block had a
    // format that chunks cannot carry.
    bool hasError = false;
    FLAC__StreamDecoderErrorStatus firstError = FLAC__STREAM_DECODER_ERROR_STATUS_LOST_SYNC;
    bool badBlockFormat = false;

    // The last decoded block as interleaved 16-bit samples, and how much of
    // it is handed out.
    std::vector<std::int16_t> block;
    std::int32_t blockFrames = 0;
    std::int32_t blockOffset = 0;
    std::int32_t blockRate = 0;
    std::int32_t blockChannels = 0;
    FLAC__uint64 decodedFrames = 0;

    static Decoder& of(void* client) { return *static_cast<Decoder*>(client); }

    static FLAC__StreamDecoderReadStatus read(const FLAC__StreamDecoder*, FLAC__byte buffer[], size_t* bytes,
                                              void* client)
    {
        if (*bytes == 0) return FLAC__STREAM_DECODER_READ_STATUS_ABORT;
        try {
            const auto ask = static_cast<std::int32_t>(
                std::min<size_t>(*bytes, static_cast<size_t>(std::numeric_limits<std::int32_t>::max())));
            const std::int32_t arrived = of(client).stream->readSome(buffer, ask);
            *bytes = static_cast<size_t>(std::max(arrived, 0));
            return arrived > 0 ? FLAC__STREAM_DECODER_READ_STATUS_CONTINUE
                               : FLAC__STREAM_DECODER_READ_STATUS_END_OF_STREAM;
        } catch (const fenn::CException& error) {
            // The name under which reading failures of FLAC files have
            // always been logged.
            logCallbackFailure("CFlacFileAudioSink: read", error);
        } catch (...) {
            // Nothing may unwind through the library's C frames.
        }
        *bytes = 0;
        return FLAC__STREAM_DECODER_READ_STATUS_ABORT;
    }

    static FLAC__StreamDecoderSeekStatus seek(const FLAC__StreamDecoder*, FLAC__uint64 offset, void* client)
    {
        try {
            if (offset > static_cast<FLAC__uint64>(std::numeric_limits<std::int64_t>::max())) {
                return FLAC__STREAM_DECODER_SEEK_STATUS_ERROR;
            }
            of(client).stream->seek(static_cast<std::int64_t>(offset));
            return FLAC__STREAM_DECODER_SEEK_STATUS_OK;
        } catch (const fenn::CException& error) {
            logCallbackFailure("CFlacFileAudioSource: seek", error);
        } catch (...) {
        }
        return FLAC__STREAM_DECODER_SEEK_STATUS_ERROR;
    }

    static FLAC__StreamDecoderTellStatus tell(const FLAC__StreamDecoder*, FLAC__uint64* offset, void* client)
    {
        try {
            *offset = static_cast<FLAC__uint64>(of(client).stream->getPos());
            return FLAC__STREAM_DECODER_TELL_STATUS_OK;
        } catch (const fenn::CException& error) {
            logCallbackFailure("CFlacFileAudioSource: getPosition", error);
        } catch (...) {
        }
        return FLAC__STREAM_DECODER_TELL_STATUS_ERROR;
    }

    static FLAC__StreamDecoderLengthStatus length(const FLAC__StreamDecoder*, FLAC__uint64* length, void* client)
    {
        try {
            fenn::ISeekableInStream& stream = *of(client).stream;
            if (!stream.isSizeKnown()) return FLAC__STREAM_DECODER_LENGTH_STATUS_UNSUPPORTED;
            *length = static_cast<FLAC__uint64>(stream.getSize());
            return FLAC__STREAM_DECODER_LENGTH_STATUS_OK;
        } catch (const fenn::CException& error) {
            logCallbackFailure("CFlacFileAudioSource: getSize", error);
        } catch (...) {
        }
        return FLAC__STREAM_DECODER_LENGTH_STATUS_ERROR;
    }

    static FLAC__bool eof(const FLAC__StreamDecoder*, void* client)
    {
        try {
            return of(client).stream->isAtEnd() ? 1 : 0;
        } catch (...) {
            // A stream that cannot answer has nothing more to give.
            return 1;
        }
    }

    static FLAC__StreamDecoderWriteStatus write(const FLAC__StreamDecoder*, const FLAC__Frame* frame,
                                                const FLAC__int32* const buffer[], void* client)
    {
        Decoder& self = of(client);
        const FLAC__FrameHeader& header = frame->header;
        if (header.channels < 1 || header.channels > 2 || header.bits_per_sample < 4 || header.bits_per_sample > 32 ||
            header.sample_rate < 1 ||
            header.sample_rate > static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max())) {
            self.badBlockFormat = true;
            return FLAC__STREAM_DECODER_WRITE_STATUS_ABORT;
        }
        const std::uint32_t channels = header.channels;
        try {
            self.block.resize(static_cast<size_t>(header.blocksize) * channels);
        } catch (const std::bad_alloc&) {
            return FLAC__STREAM_DECODER_WRITE_STATUS_ABORT;
        }
        std::int16_t* out = self.block.data();
        for (std::uint32_t frameIndex = 0; frameIndex < header.blocksize; ++frameIndex) {
            for (std::uint32_t channel = 0; channel < channels; ++channel) {
                *out++ = toSixteenBits(buffer[channel][frameIndex], header.bits_per_sample);
            }
        }
        self.blockFrames = static_cast<std::int32_t>(header.blocksize);
        self.blockOffset = 0;
        self.blockRate = static_cast<std::int32_t>(header.sample_rate);
        self.blockChannels = static_cast<std::int32_t>(channels);
        self.decodedFrames += header.blocksize;
        return FLAC__STREAM_DECODER_WRITE_STATUS_CONTINUE;
    }

    static void metadata(const FLAC__StreamDecoder*, const FLAC__StreamMetadata* block, void* client)
    {
        Decoder& self = of(client);
        try {
            if (block->type == FLAC__METADATA_TYPE_STREAMINFO) {
                const FLAC__StreamMetadata_StreamInfo& info = block->data.stream_info;
                self.hasStreamInfo = true;
                self.sampleRate = info.sample_rate;
                self.channels = info.channels;
                self.bitsPerSample = info.bits_per_sample;
                self.totalFrames = info.total_samples;
            } else if (block->type == FLAC__METADATA_TYPE_VORBIS_COMMENT) {
                const FLAC__StreamMetadata_VorbisComment& comment = block->data.vorbis_comment;
                if (comment.vendor_string.entry != nullptr) {
                    self.vendor.assign(reinterpret_cast<const char*>(comment.vendor_string.entry),
                                       comment.vendor_string.length);
                }
                for (FLAC__uint32 i = 0; i < comment.num_comments; ++i) {
                    const FLAC__StreamMetadata_VorbisComment_Entry& entry = comment.comments[i];
                    if (entry.entry == nullptr) continue;
                    self.comments.emplace_back(reinterpret_cast<const char*>(entry.entry), entry.length);
                }
            }
        } catch (const std::bad_alloc&) {
            // Tags that do not fit in memory are left out; the audio still plays.
        }
    }

    static void error(const FLAC__StreamDecoder*, FLAC__StreamDecoderErrorStatus status, void* client)
    {
        Decoder& self = of(client);
        if (self.hasError) return;
        self.hasError = true;
        self.firstError = status;
    }
};

CFlacFileAudioSource::CFlacFileAudioSource(const fenn::CURI& uri) : m_uri(uri) {}

CFlacFileAudioSource::~CFlacFileAudioSource() = default;

fenn::String CFlacFileAudioSource::GetTypeName() const
{
    return fileTypeIds::flac;
}

void CFlacFileAudioSource::Open(std::int32_t, fenn::IBase*)
{
    Close();
    auto decoder = std::make_unique<Decoder>();
    decoder->stream = fenn::CStreamManager::getInstance()->openSeekableInStream(m_uri);
    decoder->decoder = FLAC__stream_decoder_new();
    if (decoder->decoder == nullptr) throw std::bad_alloc();
    FLAC__stream_decoder_set_metadata_respond(decoder->decoder, FLAC__METADATA_TYPE_VORBIS_COMMENT);
    const FLAC__StreamDecoderInitStatus status = FLAC__stream_decoder_init_stream(
        decoder->decoder, Decoder::read, Decoder::seek, Decoder::tell, Decoder::length, Decoder::eof, Decoder::write,
        Decoder::metadata, Decoder::error, decoder.get());
    if (status != FLAC__STREAM_DECODER_INIT_STATUS_OK) {
        throw fenn::CError(fenn::String(), fenn::localize(flacTexts::decoderGeneric));
    }
    m_decoder = std::move(decoder);
    try {
        const bool ok = FLAC__stream_decoder_process_until_end_of_metadata(m_decoder->decoder) != 0;
        if (m_decoder->hasError || (!ok && !m_decoder->hasStreamInfo)) throwDecoderError();
        if (!m_decoder->hasStreamInfo) throw fenn::CFileFormatNotSupportedError(m_uri);
        if (m_decoder->channels < 1 || m_decoder->channels > 2 || m_decoder->sampleRate < 1) {
            throw fenn::CFileFormatNotSupportedError(m_uri);
        }
    } catch (...) {
        Close();
        throw;
    }
    if (!m_info) publishFacts();
}

void CFlacFileAudioSource::publishFacts()
{
    const Decoder& decoder = *m_decoder;
    m_info = fenn::make<fenn::CValueList>();
    m_info->setInt("sampleRate", static_cast<std::int32_t>(decoder.sampleRate));
    m_info->setInt("channels", static_cast<std::int32_t>(decoder.channels));
    m_info->setInt("bitsPerSample", static_cast<std::int32_t>(decoder.bitsPerSample));
    m_info->setDouble("duration", static_cast<double>(decoder.totalFrames) / decoder.sampleRate);
    if (!decoder.vendor.empty()) m_info->setString("encoder", fenn::String::copyOf(decoder.vendor));
    m_tags = fenn::make<fenn::CValueList>();
    for (const std::string& comment : decoder.comments) vorbisComments::addComment(*m_tags, comment);
}

fenn::P<fenn::CValueList> CFlacFileAudioSource::GetInfo()
{
    return m_info ? m_info : fenn::make<fenn::CValueList>();
}

fenn::P<fenn::CValueList> CFlacFileAudioSource::GetTags()
{
    return m_tags ? m_tags : fenn::make<fenn::CValueList>();
}

void CFlacFileAudioSource::throwDecoderError() const
{
    const Decoder& decoder = *m_decoder;
    // Damage that the decoder reported, a block it could not hand on and a
    // stream that stops short of its sample count all mean the same to a
    // user: the file is corrupted.
    if (decoder.hasError) {
        fenn::CLogManager::getInstance()->warning("formats",
                                                  fenn::String("CFlacFileAudioSource: the decoder reports ") +
                                                      FLAC__StreamDecoderErrorStatusString[decoder.firstError] +
                                                      " in '" + m_uri.getRawURI() + "'");
    }
    if (decoder.hasError || decoder.badBlockFormat) {
        throw fenn::CError(fenn::String(), fenn::localize(flacTexts::decoderUnparseable));
    }
    const FLAC__StreamDecoderState state = FLAC__stream_decoder_get_state(decoder.decoder);
    if (state == FLAC__STREAM_DECODER_ABORTED) {
        throw fenn::CError(fenn::String(), fenn::localize(flacTexts::decoderAborted));
    }
    if (state == FLAC__STREAM_DECODER_END_OF_STREAM) {
        throw fenn::CError(fenn::String(), fenn::localize(flacTexts::decoderUnparseable));
    }
    throw fenn::CError(fenn::String(), fenn::localize(flacTexts::decoderGeneric));
}

bool CFlacFileAudioSource::decodeNext()
{
    Decoder& decoder = *m_decoder;
    for (;;) {
        if (FLAC__stream_decoder_get_state(decoder.decoder) == FLAC__STREAM_DECODER_END_OF_STREAM) {
            // A stream cut off inside a frame ends here too, short of the
            // count that its header promised.
            if (decoder.totalFrames != 0 && decoder.decodedFrames < decoder.totalFrames) throwDecoderError();
            return false;
        }
        decoder.blockFrames = 0;
        decoder.blockOffset = 0;
        const bool ok = FLAC__stream_decoder_process_single(decoder.decoder) != 0;
        if (decoder.hasError || decoder.badBlockFormat) throwDecoderError();
        if (!ok && FLAC__stream_decoder_get_state(decoder.decoder) != FLAC__STREAM_DECODER_END_OF_STREAM) {
            throwDecoderError();
        }
        if (decoder.blockFrames > 0) return true;
    }
}

bool CFlacFileAudioSource::Read(IAudioChunk& chunk)
{
    if (!m_decoder) throw fenn::CInvalidObjectStateError(this, "the source is not open");
    return readDecodedBlocks(chunk, *m_decoder, kFramesPerRead, [this] { return decodeNext(); });
}

double CFlacFileAudioSource::GetProgress() const
{
    if (!m_decoder || m_decoder->totalFrames == 0) return 0.0;
    const FLAC__uint64 handedOut =
        m_decoder->decodedFrames - static_cast<FLAC__uint64>(m_decoder->blockFrames - m_decoder->blockOffset);
    return std::min(1.0, static_cast<double>(handedOut) / static_cast<double>(m_decoder->totalFrames));
}

void CFlacFileAudioSource::Reset()
{
    Close();
    Open(0, nullptr);
}

void CFlacFileAudioSource::Close()
{
    m_decoder.reset();
}

}  // namespace tbx
