#include "formats/flac/CFlacFileAudioSink.h"

#include <FLAC/metadata.h>
#include <FLAC/stream_encoder.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>
#include <vector>

#include "formats/CEncodeSettingsManager.h"
#include "formats/flac/FlacTexts.h"
#include "formats/vorbis/VorbisComments.h"
#include "foundation/CLogManager.h"
#include "foundation/CObjectError.h"
#include "foundation/CValueList.h"
#include "foundation/IStream.h"
#include "foundation/IStringLocalizer.h"

namespace tbx {

namespace {

// Samples handed to the encoder per call: 262144 bytes of 32-bit samples.
constexpr std::int32_t kBufferSamples = 0x10000;
// The encoder parameters of the library's compression level 5 as this
// program has always written them.
constexpr std::uint32_t kMaxLPCOrder = 8;
constexpr std::uint32_t kResidualPartitionOrder = 3;
constexpr std::uint32_t kBlockSize = 4608;
// Room behind the comments, so that tags can grow later without rewriting
// the audio.
constexpr std::uint32_t kPaddingBytes = 4096;

void logFailure(const char* action, const fenn::CException& error)
{
    fenn::CLogManager::getInstance()->error("formats", fenn::String("Exception during '") + action +
                                                           "': " + error.getDescription());
}

[[noreturn]] void throwEncoderError(const fenn::TextKey& text)
{
    throw fenn::CError(fenn::String(), fenn::localize(text));
}

// A setting that the library takes unsigned; a negative value becomes 0,
// which the encoder refuses at initialisation.
std::uint32_t asUnsigned(std::int32_t value)
{
    return value > 0 ? static_cast<std::uint32_t>(value) : 0;
}

}  // namespace

// The library's encoder, its metadata blocks and the sample buffer. libFLAC
// holds a pointer to this object as its client data, so it stays at one
// address while the encoder lives.
struct CFlacFileAudioSink::Encoder
{
    Encoder() = default;
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;
    ~Encoder()
    {
        // Deleting an encoder that has not finished writes nothing more.
        if (encoder != nullptr) FLAC__stream_encoder_delete(encoder);
        if (comments != nullptr) FLAC__metadata_object_delete(comments);
        if (padding != nullptr) FLAC__metadata_object_delete(padding);
    }

    // The sink's stream; the sink outlives this object.
    fenn::ISeekableOutStream* stream = nullptr;
    // Set when the output is given up: the callbacks then refuse all work.
    bool discarded = false;
    FLAC__StreamEncoder* encoder = nullptr;
    FLAC__StreamMetadata* comments = nullptr;
    FLAC__StreamMetadata* padding = nullptr;
    FLAC__StreamMetadata* blocks[2] = {nullptr, nullptr};
    std::vector<FLAC__int32> samples = std::vector<FLAC__int32>(kBufferSamples);

    static Encoder& of(void* client) { return *static_cast<Encoder*>(client); }

    static FLAC__StreamEncoderWriteStatus write(const FLAC__StreamEncoder*, const FLAC__byte buffer[], size_t bytes,
                                                uint32_t, uint32_t, void* client)
    {
        Encoder& self = of(client);
        if (self.discarded) return FLAC__STREAM_ENCODER_WRITE_STATUS_FATAL_ERROR;
        try {
            while (bytes > 0) {
                const auto piece = static_cast<std::int32_t>(
                    std::min<size_t>(bytes, static_cast<size_t>(std::numeric_limits<std::int32_t>::max())));
                self.stream->write(buffer, piece);
                buffer += piece;
                bytes -= static_cast<size_t>(piece);
            }
            return FLAC__STREAM_ENCODER_WRITE_STATUS_OK;
        } catch (const fenn::CException& error) {
            logFailure("CFlacFileAudioSink: write", error);
        } catch (...) {
            // Nothing may unwind through the library's C frames.
        }
        return FLAC__STREAM_ENCODER_WRITE_STATUS_FATAL_ERROR;
    }

    static FLAC__StreamEncoderSeekStatus seek(const FLAC__StreamEncoder*, FLAC__uint64 offset, void* client)
    {
        Encoder& self = of(client);
        if (self.discarded || offset > static_cast<FLAC__uint64>(std::numeric_limits<std::int64_t>::max())) {
            return FLAC__STREAM_ENCODER_SEEK_STATUS_ERROR;
        }
        try {
            self.stream->seek(static_cast<std::int64_t>(offset));
            return FLAC__STREAM_ENCODER_SEEK_STATUS_OK;
        } catch (const fenn::CException& error) {
            logFailure("CFlacFileAudioSink: seek", error);
        } catch (...) {
        }
        return FLAC__STREAM_ENCODER_SEEK_STATUS_ERROR;
    }

    static FLAC__StreamEncoderTellStatus tell(const FLAC__StreamEncoder*, FLAC__uint64* offset, void* client)
    {
        Encoder& self = of(client);
        if (self.discarded) return FLAC__STREAM_ENCODER_TELL_STATUS_ERROR;
        try {
            *offset = static_cast<FLAC__uint64>(self.stream->getPos());
            return FLAC__STREAM_ENCODER_TELL_STATUS_OK;
        } catch (const fenn::CException& error) {
            logFailure("CFlacFileAudioSink: getPosition", error);
        } catch (...) {
        }
        return FLAC__STREAM_ENCODER_TELL_STATUS_ERROR;
    }
};

CFlacFileAudioSink::CFlacFileAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream,
                                       const fenn::CValueList& settings, const fenn::CValueList& tags)
    : m_stream(stream), m_sampleRate(settings.getInt(settingKeys::sampleRate, 44100)),
      m_channels(settings.getInt(settingKeys::channels, 2)),
      m_bitsPerSample(settings.getInt(settingKeys::bitsPerSample, 16)),
      m_converted(fenn::make<CAudioChunk>(m_sampleRate, m_channels, 0)), m_converter(fenn::make<CAudioConverter>())
{
    if (!m_stream) throw fenn::CInvalidArgError(this, "CFlacFileAudioSink", "stream");
    auto encoder = std::make_unique<Encoder>();
    encoder->stream = m_stream.get();
    encoder->encoder = FLAC__stream_encoder_new();
    if (encoder->encoder == nullptr) throw std::bad_alloc();
    FLAC__StreamEncoder* flac = encoder->encoder;

    FLAC__stream_encoder_set_compression_level(flac, 5);
    FLAC__stream_encoder_set_channels(flac, asUnsigned(m_channels));
    FLAC__stream_encoder_set_bits_per_sample(flac, asUnsigned(m_bitsPerSample));
    FLAC__stream_encoder_set_sample_rate(flac, asUnsigned(m_sampleRate));
    // Mid-side coding only has a meaning for a pair of channels.
    FLAC__stream_encoder_set_do_mid_side_stereo(flac, m_channels == 2 ? 1 : 0);
    FLAC__stream_encoder_set_loose_mid_side_stereo(flac, 0);
    FLAC__stream_encoder_set_max_lpc_order(flac, kMaxLPCOrder);
    FLAC__stream_encoder_set_min_residual_partition_order(flac, kResidualPartitionOrder);
    FLAC__stream_encoder_set_max_residual_partition_order(flac, kResidualPartitionOrder);
    FLAC__stream_encoder_set_blocksize(flac, kBlockSize);

    encoder->comments = FLAC__metadata_object_new(FLAC__METADATA_TYPE_VORBIS_COMMENT);
    encoder->padding = FLAC__metadata_object_new(FLAC__METADATA_TYPE_PADDING);
    if (encoder->comments == nullptr || encoder->padding == nullptr) throw std::bad_alloc();
    for (const vorbisComments::Comment& comment : vorbisComments::makeComments(tags)) {
        FLAC__StreamMetadata_VorbisComment_Entry entry{};
        // The library checks the name and the UTF-8 of the value; a comment
        // it refuses is left out.
        if (FLAC__metadata_object_vorbiscomment_entry_from_name_value_pair(&entry, comment.name.c_str(),
                                                                           comment.value.c_str()) == 0) {
            continue;
        }
        if (FLAC__metadata_object_vorbiscomment_append_comment(encoder->comments, entry, 0) == 0) {
            std::free(entry.entry);
            throw std::bad_alloc();
        }
    }
    encoder->padding->length = kPaddingBytes;
    encoder->blocks[0] = encoder->comments;
    encoder->blocks[1] = encoder->padding;
    FLAC__stream_encoder_set_metadata(flac, encoder->blocks, 2);

    const FLAC__StreamEncoderInitStatus status =
        FLAC__stream_encoder_init_stream(flac, Encoder::write, Encoder::seek, Encoder::tell, nullptr, encoder.get());
    if (status != FLAC__STREAM_ENCODER_INIT_STATUS_OK) throwEncoderError(flacTexts::encoderInit);
    m_encoder = std::move(encoder);
}

CFlacFileAudioSink::~CFlacFileAudioSink()
{
    // A sink dropped without Finish leaves an incomplete file behind, as Abort does.
    if (m_encoder) Abort();
}

void CFlacFileAudioSink::checkOpen() const
{
    if (!m_encoder) throw fenn::CInvalidObjectStateError(this, "the sink is finished");
}

void CFlacFileAudioSink::Write(const IAudioChunk& chunk)
{
    checkOpen();
    if (chunk.HasFormat(m_sampleRate, m_channels)) {
        encode(chunk);
    } else {
        m_converted->ConvertFrom(chunk, m_converter.get());
        encode(*m_converted);
    }
}

void CFlacFileAudioSink::encode(const IAudioChunk& chunk)
{
    Encoder& encoder = *m_encoder;
    const std::int16_t* in = chunk.GetData();
    std::int32_t framesLeft = chunk.GetLength();
    const std::int32_t framesPerCall = kBufferSamples / m_channels;
    while (framesLeft > 0) {
        const std::int32_t frames = std::min(framesLeft, framesPerCall);
        const std::int32_t count = frames * m_channels;
        FLAC__int32* out = encoder.samples.data();
        if (m_bitsPerSample == 16) {
            std::copy_n(in, count, out);
        } else if (m_bitsPerSample < 16) {
            const int shift = 16 - m_bitsPerSample;
            for (std::int32_t i = 0; i < count; ++i) out[i] = in[i] >> shift;
        } else {
            const int shift = m_bitsPerSample - 16;
            for (std::int32_t i = 0; i < count; ++i) out[i] = static_cast<FLAC__int32>(in[i]) * (1 << shift);
        }
        if (FLAC__stream_encoder_process_interleaved(encoder.encoder, out, static_cast<std::uint32_t>(frames)) == 0) {
            throwEncoderError(flacTexts::encoderEncoding);
        }
        in += count;
        framesLeft -= frames;
    }
}

void CFlacFileAudioSink::Finish()
{
    checkOpen();
    m_converted->ConvertRemainder(*m_converter);
    if (m_converted->GetLength() > 0) encode(*m_converted);
    // Encodes the last block, then seeks back to complete the stream header.
    if (FLAC__stream_encoder_finish(m_encoder->encoder) == 0) throwEncoderError(flacTexts::encoderEncoding);
    m_encoder.reset();
    m_stream->flush();
    m_stream->close();
}

void CFlacFileAudioSink::Abort()
{
    discardEncoder();
    try {
        m_stream->close();
    } catch (const fenn::CException& error) {
        logFailure("CFlacFileAudioSink: close", error);
    }
}

void CFlacFileAudioSink::discardEncoder()
{
    if (!m_encoder) return;
    m_encoder->discarded = true;
    m_encoder.reset();
}

}  // namespace tbx
