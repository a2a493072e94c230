#include "formats/ffmpeg/CFFmpegFileAudioSource.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/mem.h>
}

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <vector>

#include "formats/DecodedBlocks.h"
#include "formats/FileTypeIds.h"
#include "formats/ffmpeg/FFmpegIO.h"
#include "formats/ffmpeg/FFmpegLibrary.h"
#include "formats/ffmpeg/FFmpegTexts.h"
#include "foundation/CObjectError.h"
#include "foundation/CURIError.h"
#include "foundation/CValueList.h"
#include "foundation/IStringLocalizer.h"

namespace tbx {

namespace {

// Input formats of the files this source serves under the generic type:
// MP4 and M4A, raw AAC, Ogg (Opus, also Vorbis and FLAC inside), AIFF,
// WavPack, Monkey's Audio, Musepack (7 and 8) and (E-)AC3.
constexpr const char* kGenericDemuxers = "mov,aac,ogg,aiff,wv,ape,mpc,mpc8,ac3,eac3";

// Frames handed out per Read: a fifth of a second at 44100 Hz keeps the
// pump responsive without many small reads.
constexpr std::int32_t kFramesPerRead = 8192;
// The rates that the program's converter takes; others cannot go on to a
// sink or a player.
constexpr int kMinSampleRate = 100;
constexpr int kMaxSampleRate = 500000;
// The gain of the centre and the rear channels in a mix to two: -3 dB.
constexpr float kMinus3dB = 0.70710678f;

struct StereoWeights
{
    float left;
    float right;
};

// Where a channel goes when more than two are mixed to two.
StereoWeights stereoWeights(AVChannel channel)
{
    switch (channel) {
    case AV_CHAN_FRONT_LEFT:
    case AV_CHAN_FRONT_LEFT_OF_CENTER:
    case AV_CHAN_WIDE_LEFT:
    case AV_CHAN_STEREO_LEFT:
    case AV_CHAN_TOP_FRONT_LEFT:
        return {1.0f, 0.0f};
    case AV_CHAN_FRONT_RIGHT:
    case AV_CHAN_FRONT_RIGHT_OF_CENTER:
    case AV_CHAN_WIDE_RIGHT:
    case AV_CHAN_STEREO_RIGHT:
    case AV_CHAN_TOP_FRONT_RIGHT:
        return {0.0f, 1.0f};
    case AV_CHAN_BACK_LEFT:
    case AV_CHAN_SIDE_LEFT:
    case AV_CHAN_TOP_BACK_LEFT:
    case AV_CHAN_SURROUND_DIRECT_LEFT:
        return {kMinus3dB, 0.0f};
    case AV_CHAN_BACK_RIGHT:
    case AV_CHAN_SIDE_RIGHT:
    case AV_CHAN_TOP_BACK_RIGHT:
    case AV_CHAN_SURROUND_DIRECT_RIGHT:
        return {0.0f, kMinus3dB};
    case AV_CHAN_FRONT_CENTER:
    case AV_CHAN_BACK_CENTER:
    case AV_CHAN_TOP_CENTER:
    case AV_CHAN_TOP_FRONT_CENTER:
    case AV_CHAN_TOP_BACK_CENTER:
        return {kMinus3dB, kMinus3dB};
    case AV_CHAN_LOW_FREQUENCY:
    case AV_CHAN_LOW_FREQUENCY_2:
        return {0.0f, 0.0f};
    default:
        return {0.5f, 0.5f};
    }
}

// The sample at one place of a frame as a float of the range -1 to 1.
float sampleAt(const std::uint8_t* at, AVSampleFormat packedFormat)
{
    switch (packedFormat) {
    case AV_SAMPLE_FMT_U8:
        return (static_cast<float>(*at) - 128.0f) / 128.0f;
    case AV_SAMPLE_FMT_S16: {
        std::int16_t value = 0;
        std::memcpy(&value, at, sizeof value);
        return static_cast<float>(value) / 32768.0f;
    }
    case AV_SAMPLE_FMT_S32: {
        std::int32_t value = 0;
        std::memcpy(&value, at, sizeof value);
        return static_cast<float>(static_cast<double>(value) / 2147483648.0);
    }
    case AV_SAMPLE_FMT_S64: {
        std::int64_t value = 0;
        std::memcpy(&value, at, sizeof value);
        return static_cast<float>(static_cast<double>(value) / 9223372036854775808.0);
    }
    case AV_SAMPLE_FMT_FLT: {
        float value = 0;
        std::memcpy(&value, at, sizeof value);
        return value;
    }
    case AV_SAMPLE_FMT_DBL: {
        double value = 0;
        std::memcpy(&value, at, sizeof value);
        return static_cast<float>(value);
    }
    default:
        return 0.0f;
    }
}

std::int16_t toSixteenBits(float value)
{
    // NaN from a damaged float stream becomes silence rather than a trap.
    if (!(value == value)) return 0;
    const float scaled = std::clamp(value * 32768.0f, -32768.0f, 32767.0f);
    return static_cast<std::int16_t>(std::lrint(scaled));
}

}  // namespace

// The demuxer, the decoder and the samples of the last decoded frame.
struct CFFmpegFileAudioSource::Decoder
{
    Decoder(const fenn::CURI& uri, const char* demuxers) : demuxer(uri, demuxers) {}
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder()
    {
        ffmpeg().av_frame_free(&frame);
        ffmpeg().av_packet_free(&packet);
        ffmpeg().avcodec_free_context(&codec);
        ffmpeg().av_channel_layout_uninit(&mixLayout);
    }

    CFFmpegDemuxer demuxer;
    AVCodecContext* codec = nullptr;
    AVPacket* packet = nullptr;
    AVFrame* frame = nullptr;
    int streamIndex = -1;
    bool demuxerAtEnd = false;

    // The last decoded frame as interleaved 16-bit samples, and how much of
    // it is handed out.
    std::vector<std::int16_t> block;
    std::int32_t blockFrames = 0;
    std::int32_t blockOffset = 0;
    std::int32_t blockRate = 0;
    std::int32_t blockChannels = 0;

    // Weights of the mix to two channels (left row, then right row) for
    // mixLayout, and a frame's samples as floats.
    AVChannelLayout mixLayout{};
    std::vector<float> weights;
    std::vector<float> samples;
};

CFFmpegFileAudioSource::CFFmpegFileAudioSource(const fenn::CURI& uri)
    : CFFmpegFileAudioSource(uri, kGenericDemuxers, ffmpegTexts::decoderUnparseable)
{
}

CFFmpegFileAudioSource::CFFmpegFileAudioSource(const fenn::CURI& uri, const char* demuxers,
                                               const fenn::TextKey& decodingFailed)
    : m_uri(uri), m_demuxers(demuxers), m_decodingFailed(decodingFailed)
{
}

CFFmpegFileAudioSource::~CFFmpegFileAudioSource() = default;

fenn::String CFFmpegFileAudioSource::GetTypeName() const
{
    return fileTypeIds::directShow;
}

void CFFmpegFileAudioSource::Open(std::int32_t, fenn::IBase*)
{
    Close();
    auto decoder = std::make_unique<Decoder>(m_uri, m_demuxers);
    AVFormatContext* format = decoder->demuxer.get();
    // Fills in what the headers leave open (raw AAC tells its rate only in
    // its frames); a failure here still leaves the stream to be judged below.
    ffmpeg().avformat_find_stream_info(format, nullptr);
    decoder->demuxer.rethrowStreamError();
    const AVCodec* codec = nullptr;
    decoder->streamIndex = ffmpeg().av_find_best_stream(format, AVMEDIA_TYPE_AUDIO, -1, -1, &codec, 0);
    if (decoder->streamIndex < 0 || codec == nullptr) throw fenn::CFileFormatNotSupportedError(m_uri);
    const AVStream* stream = format->streams[decoder->streamIndex];
    const AVCodecParameters* parameters = stream->codecpar;
    if (parameters->sample_rate < kMinSampleRate || parameters->sample_rate > kMaxSampleRate ||
        parameters->ch_layout.nb_channels < 1) {
        throw fenn::CFileFormatNotSupportedError(m_uri);
    }
    decoder->codec = ffmpeg().avcodec_alloc_context3(codec);
    decoder->packet = ffmpeg().av_packet_alloc();
    decoder->frame = ffmpeg().av_frame_alloc();
    if (decoder->codec == nullptr || decoder->packet == nullptr || decoder->frame == nullptr) throw std::bad_alloc();
    if (ffmpeg().avcodec_parameters_to_context(decoder->codec, parameters) < 0)
        throw fenn::CFileFormatNotSupportedError(m_uri);
    decoder->codec->pkt_timebase = stream->time_base;
    if (ffmpeg().avcodec_open2(decoder->codec, codec, nullptr) < 0) throw fenn::CFileFormatNotSupportedError(m_uri);
    m_decoder = std::move(decoder);
    if (!m_info) publishFacts();
}

void CFFmpegFileAudioSource::publishFacts()
{
    const AVFormatContext* format = m_decoder->demuxer.get();
    const AVStream* stream = format->streams[m_decoder->streamIndex];
    const AVCodecParameters* parameters = stream->codecpar;
    m_info = fenn::make<fenn::CValueList>();
    m_info->setInt("sampleRate", parameters->sample_rate);
    m_info->setInt("channels", parameters->ch_layout.nb_channels == 1 ? 1 : 2);
    const std::int64_t bitRate = parameters->bit_rate > 0 ? parameters->bit_rate : format->bit_rate;
    m_info->setInt("bitRate", static_cast<std::int32_t>(
                                  std::clamp<std::int64_t>(bitRate, 0, std::numeric_limits<std::int32_t>::max())));
    double duration = 0.0;
    if (format->duration != AV_NOPTS_VALUE && format->duration > 0) {
        duration = static_cast<double>(format->duration) / AV_TIME_BASE;
    } else if (stream->duration != AV_NOPTS_VALUE && stream->duration > 0) {
        duration = static_cast<double>(stream->duration) * av_q2d(stream->time_base);
    }
    m_info->setDouble("duration", duration);

    struct Tag
    {
        const char* key;
        std::initializer_list<const char*> names;
    };
    // libavformat gives most formats' fields common names; the ASF year and
    // the Vorbis comment names are read as they stand.
    const Tag tags[] = {
        {"title", {"title"}},
        {"artist", {"artist", "author"}},
        {"album", {"album"}},
        {"genre", {"genre"}},
        {"date", {"WM/Year", "date", "year"}},
        {"tracknumber", {"track", "WM/TrackNumber", "tracknumber"}},
        {"description", {"comment", "description"}},
        {"copyright", {"copyright"}},
        {"encoder", {"encoder", "WM/ToolName"}},
    };
    m_tags = fenn::make<fenn::CValueList>();
    for (const Tag& tag : tags) {
        fenn::String text = ffmpegMetadataText(format->metadata, tag.names);
        if (text.isEmpty()) text = ffmpegMetadataText(stream->metadata, tag.names);
        if (!text.isEmpty()) m_tags->setString(tag.key, text);
    }
}

fenn::P<fenn::CValueList> CFFmpegFileAudioSource::GetInfo()
{
    return m_info ? m_info : fenn::make<fenn::CValueList>();
}

fenn::P<fenn::CValueList> CFFmpegFileAudioSource::GetTags()
{
    return m_tags ? m_tags : fenn::make<fenn::CValueList>();
}

void CFFmpegFileAudioSource::throwDecodingError() const
{
    if (m_decoder) m_decoder->demuxer.rethrowStreamError();
    throw fenn::CError(fenn::String(), fenn::localize(m_decodingFailed));
}

void CFFmpegFileAudioSource::feedDecoder()
{
    Decoder& decoder = *m_decoder;
    for (;;) {
        const int read = ffmpeg().av_read_frame(decoder.demuxer.get(), decoder.packet);
        if (read == AVERROR_EOF) {
            decoder.demuxerAtEnd = true;
            // Lets the decoder hand out what it still holds (the last
            // overlap of a transform codec).
            if (ffmpeg().avcodec_send_packet(decoder.codec, nullptr) < 0) throwDecodingError();
            return;
        }
        if (read < 0) throwDecodingError();
        if (decoder.packet->stream_index != decoder.streamIndex) {
            ffmpeg().av_packet_unref(decoder.packet);
            continue;
        }
        const int sent = ffmpeg().avcodec_send_packet(decoder.codec, decoder.packet);
        ffmpeg().av_packet_unref(decoder.packet);
        if (sent < 0) throwDecodingError();
        return;
    }
}

bool CFFmpegFileAudioSource::decodeNext()
{
    Decoder& decoder = *m_decoder;
    AVFrame* frame = decoder.frame;
    for (;;) {
        const int received = ffmpeg().avcodec_receive_frame(decoder.codec, frame);
        if (received == AVERROR_EOF) return false;
        if (received == AVERROR(EAGAIN)) {
            if (decoder.demuxerAtEnd) return false;
            feedDecoder();
            continue;
        }
        if (received < 0) throwDecodingError();

        const int channels = frame->ch_layout.nb_channels;
        const auto format = static_cast<AVSampleFormat>(frame->format);
        const int frames = frame->nb_samples;
        if (channels < 1 || frames < 0 || frame->sample_rate < kMinSampleRate || frame->sample_rate > kMaxSampleRate ||
            ffmpeg().av_get_bytes_per_sample(format) == 0) {
            ffmpeg().av_frame_unref(frame);
            throwDecodingError();
        }
        const int outChannels = channels == 1 ? 1 : 2;
        if (channels > 2 && ffmpeg().av_channel_layout_compare(&decoder.mixLayout, &frame->ch_layout) != 0) {
            ffmpeg().av_channel_layout_uninit(&decoder.mixLayout);
            AVChannelLayout named{};
            if (frame->ch_layout.order == AV_CHANNEL_ORDER_UNSPEC) {
                ffmpeg().av_channel_layout_default(&named, channels);
            } else if (ffmpeg().av_channel_layout_copy(&named, &frame->ch_layout) < 0) {
                throw std::bad_alloc();
            }
            decoder.weights.assign(static_cast<std::size_t>(2 * channels), 0.0f);
            for (int channel = 0; channel < channels; ++channel) {
                const StereoWeights weights =
                    stereoWeights(ffmpeg().av_channel_layout_channel_from_index(&named, channel));
                decoder.weights[static_cast<std::size_t>(channel)] = weights.left;
                decoder.weights[static_cast<std::size_t>(channels + channel)] = weights.right;
            }
            ffmpeg().av_channel_layout_uninit(&named);
            // Each side is scaled so that inputs at full scale in phase
            // still fit.
            for (int side = 0; side < 2; ++side) {
                float* row = decoder.weights.data() + static_cast<std::ptrdiff_t>(side) * channels;
                float sum = 0.0f;
                for (int channel = 0; channel < channels; ++channel) sum += row[channel];
                if (sum > 1.0f) {
                    for (int channel = 0; channel < channels; ++channel) row[channel] /= sum;
                }
            }
            if (ffmpeg().av_channel_layout_copy(&decoder.mixLayout, &frame->ch_layout) < 0) throw std::bad_alloc();
        }

        const AVSampleFormat packed = ffmpeg().av_get_packed_sample_fmt(format);
        const bool planar = ffmpeg().av_sample_fmt_is_planar(format) != 0;
        const auto width = static_cast<std::size_t>(ffmpeg().av_get_bytes_per_sample(format));
        decoder.block.resize(static_cast<std::size_t>(frames) * outChannels);
        decoder.samples.resize(static_cast<std::size_t>(channels));
        std::int16_t* out = decoder.block.data();
        for (int index = 0; index < frames; ++index) {
            for (int channel = 0; channel < channels; ++channel) {
                const std::uint8_t* at =
                    planar ? frame->extended_data[channel] + static_cast<std::size_t>(index) * width
                           : frame->extended_data[0] + (static_cast<std::size_t>(index) * channels + channel) * width;
                decoder.samples[static_cast<std::size_t>(channel)] = sampleAt(at, packed);
            }
            if (channels <= 2) {
                for (int channel = 0; channel < channels; ++channel)
                    *out++ = toSixteenBits(decoder.samples[static_cast<std::size_t>(channel)]);
                continue;
            }
            for (int side = 0; side < 2; ++side) {
                const float* row = decoder.weights.data() + static_cast<std::ptrdiff_t>(side) * channels;
                float sum = 0.0f;
                for (int channel = 0; channel < channels; ++channel)
                    sum += row[channel] * decoder.samples[static_cast<std::size_t>(channel)];
                *out++ = toSixteenBits(sum);
            }
        }
        decoder.blockFrames = frames;
        decoder.blockOffset = 0;
        decoder.blockRate = frame->sample_rate;
        decoder.blockChannels = outChannels;
        ffmpeg().av_frame_unref(frame);
        if (frames > 0) return true;
    }
}

bool CFFmpegFileAudioSource::Read(IAudioChunk& chunk)
{
    if (!m_decoder) throw fenn::CInvalidObjectStateError(this, "the source is not open");
    return readDecodedBlocks(chunk, *m_decoder, kFramesPerRead, [this] { return decodeNext(); });
}

double CFFmpegFileAudioSource::GetProgress() const
{
    if (!m_decoder) return 0.0;
    const std::int64_t size = m_decoder->demuxer.getSize();
    if (size <= 0) return 0.0;
    return std::clamp(static_cast<double>(m_decoder->demuxer.getPosition()) / static_cast<double>(size), 0.0, 1.0);
}

void CFFmpegFileAudioSource::Reset()
{
    Close();
    Open(0, nullptr);
}

void CFFmpegFileAudioSource::Close()
{
    m_decoder.reset();
}

}  // namespace tbx
