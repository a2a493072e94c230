#include "formats/wma/CWMAFileAudioSink.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/dict.h>
}

#include <algorithm>
#include <cmath>
#include <iterator>
#include <new>
#include <string>

#include "formats/CEncodeSettingsManager.h"
#include "formats/ffmpeg/FFmpegIO.h"
#include "formats/ffmpeg/FFmpegLibrary.h"
#include "formats/wma/ASFAttributes.h"
#include "formats/wma/WMATexts.h"
#include "foundation/CLogManager.h"
#include "foundation/CObjectError.h"
#include "foundation/CValueList.h"
#include "foundation/IStream.h"
#include "foundation/IStringLocalizer.h"

namespace tbx {

namespace {

// How the settings meet the encoder. wmav2 codes at one constant bit rate
// and has no quality mode, so:
// - "vbrEnabled" true (the default): "vbrQuality" (0.0 to 1.0, default 0.78)
//   takes the bit rate of the nearest quality of the preset table below
//   (0.85 -> 192000, 0.78 -> 160000, 0.65 -> 128000, 0.4 -> 64000,
//   0.3 -> 32000); a quality halfway between two takes the higher rate.
// - "vbrEnabled" false: "cbrBitRate" (default 160000) as it is, kept between
//   24000, the least the encoder takes, and 320000.
// - "sampleRate" (default 44100): the smallest rate of Windows Media audio
//   that is not below it, so no band is lost; 48000, the encoder's highest,
//   for anything above.
// - "channels" (default 2): 1 stays 1, anything else is 2.
struct QualityRate
{
    double quality;
    std::int32_t bitRate;
};
constexpr QualityRate kQualityRates[] = {{0.85, 192000}, {0.78, 160000}, {0.65, 128000}, {0.4, 64000}, {0.3, 32000}};
constexpr bool kDefaultVBREnabled = true;
constexpr double kDefaultVBRQuality = 0.78;
constexpr std::int32_t kDefaultCBRBitRate = 160000;
constexpr std::int32_t kMinBitRate = 24000;
constexpr std::int32_t kMaxBitRate = 320000;
constexpr std::int32_t kSampleRates[] = {8000, 11025, 16000, 22050, 32000, 44100, 48000};
constexpr std::int32_t kDefaultSampleRate = 44100;
constexpr std::int32_t kDefaultChannels = 2;

void logFailure(const char* action, const fenn::CException& error)
{
    fenn::CLogManager::getInstance()->error("formats", fenn::String("Exception during '") + action +
                                                           "': " + error.getDescription());
}

[[noreturn]] void throwEncoderError(const fenn::TextKey& text)
{
    throw fenn::CError(fenn::String(), fenn::localize(text));
}

// A value of the tags as text, whatever its type.
std::string textOf(const fenn::CValueList& tags, const char* key)
{
    const fenn::P<fenn::IBase> value = tags.getValue(key);
    return value ? value->toString().trim().toStdString() : std::string();
}

// The year of a date that starts with one ("2004-05-01" gives "2004"), else
// the text as it stands.
std::string yearOf(const std::string& date)
{
    const bool startsWithYear =
        date.size() >= 4 && std::all_of(date.begin(), date.begin() + 4, [](char c) { return c >= '0' && c <= '9'; });
    return startsWithYear ? date.substr(0, 4) : date;
}

}  // namespace

CWMAFileAudioSink::EncoderSettings CWMAFileAudioSink::chooseEncoderSettings(const fenn::CValueList& settings)
{
    EncoderSettings chosen{};
    if (settings.getBool(settingKeys::vbrEnabled, kDefaultVBREnabled)) {
        const double quality = settings.getDouble(settingKeys::vbrQuality, kDefaultVBRQuality);
        const QualityRate* nearest = &kQualityRates[0];
        for (const QualityRate& entry : kQualityRates) {
            if (std::abs(entry.quality - quality) < std::abs(nearest->quality - quality)) nearest = &entry;
        }
        chosen.bitRate = nearest->bitRate;
    } else {
        chosen.bitRate =
            std::clamp(settings.getInt(settingKeys::cbrBitRate, kDefaultCBRBitRate), kMinBitRate, kMaxBitRate);
    }
    const std::int32_t asked = settings.getInt(settingKeys::sampleRate, kDefaultSampleRate);
    const auto rate = std::lower_bound(std::begin(kSampleRates), std::end(kSampleRates), asked);
    chosen.sampleRate = rate == std::end(kSampleRates) ? kSampleRates[std::size(kSampleRates) - 1] : *rate;
    chosen.channels = settings.getInt(settingKeys::channels, kDefaultChannels) == 1 ? 1 : 2;
    return chosen;
}

void CWMAFileAudioSink::addAttributes(AVDictionary** metadata, const fenn::CValueList& tags)
{
    const auto set = [metadata](const char* name, const std::string& text) {
        if (!text.empty() && ffmpeg().av_dict_set(metadata, name, text.c_str(), 0) < 0) throw std::bad_alloc();
    };
    set(asfAttributes::encodingSettings, asfAttributes::encoderName);
    set(asfAttributes::title, textOf(tags, "title"));
    const std::string artist = textOf(tags, "artist");
    set(asfAttributes::author, artist.empty() ? textOf(tags, "performer") : artist);
    set(asfAttributes::albumTitle, textOf(tags, "album"));
    set(asfAttributes::genre, textOf(tags, "genre"));
    set(asfAttributes::year, yearOf(textOf(tags, "date")));
    set(asfAttributes::trackNumber, textOf(tags, "tracknumber"));
    const std::string description = textOf(tags, "description");
    set(asfAttributes::description, description.empty() ? asfAttributes::defaultDescription : description);
    set(asfAttributes::copyright, textOf(tags, "copyright"));
    set(asfAttributes::publisher, textOf(tags, "organization"));
    set(asfAttributes::isrc, textOf(tags, "isrc"));
}

// The encoder, the muxer and the frame being filled.
struct CWMAFileAudioSink::Encoder
{
    explicit Encoder(fenn::P<fenn::ISeekableOutStream> stream) : muxer(std::move(stream), "asf") {}
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;
    ~Encoder()
    {
        ffmpeg().av_frame_free(&frame);
        ffmpeg().av_packet_free(&packet);
        ffmpeg().avcodec_free_context(&codec);
    }

    // Hands one frame (or null, the end) to the encoder and writes the
    // packets it gives back.
    void send(AVFrame* input)
    {
        if (input != nullptr) {
            input->pts = nextPts;
            nextPts += input->nb_samples;
        }
        if (ffmpeg().avcodec_send_frame(codec, input) < 0) throwEncoderError(wmaTexts::encoderEncoding);
        for (;;) {
            const int received = ffmpeg().avcodec_receive_packet(codec, packet);
            if (received == AVERROR(EAGAIN) || received == AVERROR_EOF) return;
            if (received < 0) throwEncoderError(wmaTexts::encoderEncoding);
            ffmpeg().av_packet_rescale_ts(packet, codec->time_base, stream->time_base);
            packet->stream_index = stream->index;
            // Takes the packet's data and leaves the packet blank.
            if (ffmpeg().av_interleaved_write_frame(muxer.get(), packet) < 0) {
                muxer.rethrowStreamError();
                throwEncoderError(wmaTexts::encoderEncoding);
            }
        }
    }

    // Makes the frame writable again before its first sample: the encoder
    // may still hold a reference to the buffers of the last one.
    void beginFrame()
    {
        if (ffmpeg().av_frame_make_writable(frame) < 0) throw std::bad_alloc();
    }

    // Sends the frame being filled, padded with silence to the encoder's
    // frame size, which it needs for every frame, the last one too.
    void sendPadded()
    {
        for (int channel = 0; channel < codec->ch_layout.nb_channels; ++channel) {
            auto* samples = reinterpret_cast<float*>(frame->extended_data[channel]);
            std::fill(samples + filled, samples + frameSize, 0.0f);
        }
        filled = 0;
        send(frame);
    }

    CFFmpegMuxer muxer;
    AVCodecContext* codec = nullptr;
    AVStream* stream = nullptr;
    AVFrame* frame = nullptr;
    AVPacket* packet = nullptr;
    int frameSize = 0;
    int filled = 0;
    std::int64_t nextPts = 0;
};

CWMAFileAudioSink::CWMAFileAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream, const fenn::CValueList& settings,
                                     const fenn::CValueList& tags)
    : m_stream(stream), m_settings(chooseEncoderSettings(settings)),
      m_converted(fenn::make<CAudioChunk>(m_settings.sampleRate, m_settings.channels, 0)),
      m_converter(fenn::make<CAudioConverter>())
{
    if (!m_stream) throw fenn::CInvalidArgError(this, "CWMAFileAudioSink", "stream");
    auto encoder = std::make_unique<Encoder>(m_stream);
    const AVCodec* codec = ffmpeg().avcodec_find_encoder(AV_CODEC_ID_WMAV2);
    if (codec == nullptr) throwEncoderError(wmaTexts::encoderInit);
    encoder->codec = ffmpeg().avcodec_alloc_context3(codec);
    encoder->frame = ffmpeg().av_frame_alloc();
    encoder->packet = ffmpeg().av_packet_alloc();
    if (encoder->codec == nullptr || encoder->frame == nullptr || encoder->packet == nullptr) throw std::bad_alloc();

    AVCodecContext* context = encoder->codec;
    AVFormatContext* format = encoder->muxer.get();
    // The encoder takes 32-bit float samples, one plane per channel.
    context->sample_fmt = AV_SAMPLE_FMT_FLTP;
    context->sample_rate = m_settings.sampleRate;
    ffmpeg().av_channel_layout_default(&context->ch_layout, m_settings.channels);
    context->bit_rate = m_settings.bitRate;
    context->time_base = AVRational{1, m_settings.sampleRate};
    if ((format->oformat->flags & AVFMT_GLOBALHEADER) != 0) context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    if (ffmpeg().avcodec_open2(context, codec, nullptr) < 0 || context->frame_size < 1) {
        throwEncoderError(wmaTexts::encoderInit);
    }
    encoder->frameSize = context->frame_size;

    encoder->stream = ffmpeg().avformat_new_stream(format, nullptr);
    if (encoder->stream == nullptr) throw std::bad_alloc();
    if (ffmpeg().avcodec_parameters_from_context(encoder->stream->codecpar, context) < 0) throw std::bad_alloc();
    encoder->stream->time_base = context->time_base;
    addAttributes(&format->metadata, tags);

    AVFrame* frame = encoder->frame;
    frame->format = AV_SAMPLE_FMT_FLTP;
    frame->nb_samples = encoder->frameSize;
    frame->sample_rate = m_settings.sampleRate;
    if (ffmpeg().av_channel_layout_copy(&frame->ch_layout, &context->ch_layout) < 0 ||
        ffmpeg().av_frame_get_buffer(frame, 0) < 0) {
        throw std::bad_alloc();
    }

    if (ffmpeg().avformat_write_header(format, nullptr) < 0) {
        encoder->muxer.rethrowStreamError();
        throwEncoderError(wmaTexts::encoderInit);
    }
    // The decoders give out the audio of a packet with the next one, so the
    // first frame of a file is never heard: one frame of silence in front
    // keeps the beginning of the audio.
    encoder->beginFrame();
    encoder->sendPadded();
    m_encoder = std::move(encoder);
}

CWMAFileAudioSink::~CWMAFileAudioSink()
{
    // A sink dropped without Finish leaves an incomplete file behind, as Abort does.
    if (m_encoder) Abort();
}

void CWMAFileAudioSink::checkOpen() const
{
    if (!m_encoder) throw fenn::CInvalidObjectStateError(this, "the sink is finished");
}

void CWMAFileAudioSink::Write(const IAudioChunk& chunk)
{
    checkOpen();
    if (chunk.HasFormat(m_settings.sampleRate, m_settings.channels)) {
        encode(chunk);
    } else {
        m_converted->ConvertFrom(chunk, m_converter.get());
        encode(*m_converted);
    }
}

void CWMAFileAudioSink::encode(const IAudioChunk& chunk)
{
    Encoder& encoder = *m_encoder;
    const std::int32_t channels = m_settings.channels;
    const std::int16_t* in = chunk.GetData();
    std::int32_t framesLeft = chunk.GetLength();
    while (framesLeft > 0) {
        if (encoder.filled == 0) encoder.beginFrame();
        const std::int32_t frames = std::min(framesLeft, encoder.frameSize - encoder.filled);
        for (std::int32_t channel = 0; channel < channels; ++channel) {
            float* out = reinterpret_cast<float*>(encoder.frame->extended_data[channel]) + encoder.filled;
            for (std::int32_t i = 0; i < frames; ++i)
                out[i] = static_cast<float>(in[i * channels + channel]) / 32768.0f;
        }
        in += static_cast<std::ptrdiff_t>(frames) * channels;
        framesLeft -= frames;
        encoder.filled += frames;
        if (encoder.filled == encoder.frameSize) {
            encoder.filled = 0;
            encoder.send(encoder.frame);
        }
    }
}

void CWMAFileAudioSink::Finish()
{
    checkOpen();
    m_converted->ConvertRemainder(*m_converter);
    if (m_converted->GetLength() > 0) encode(*m_converted);
    Encoder& encoder = *m_encoder;
    if (encoder.filled > 0) encoder.sendPadded();
    encoder.send(nullptr);
    if (ffmpeg().av_write_trailer(encoder.muxer.get()) < 0 || !encoder.muxer.finish()) {
        encoder.muxer.rethrowStreamError();
        throwEncoderError(wmaTexts::encoderEncoding);
    }
    m_encoder.reset();
    m_stream->flush();
    m_stream->close();
}

void CWMAFileAudioSink::Abort()
{
    m_encoder.reset();
    try {
        m_stream->close();
    } catch (const fenn::CException& error) {
        logFailure("CWMAFileAudioSink: close", error);
    }
}

}  // namespace tbx
