#include "formats/vorbis/CVorbisFileAudioSink.h"

#include <algorithm>

#include <ogg/ogg.h>
#include <vorbis/codec.h>
#include <vorbis/vorbisenc.h>

#include "formats/CEncodeSettingsManager.h"
#include "formats/vorbis/CVorbisError.h"
#include "formats/vorbis/VorbisComments.h"
#include "foundation/CLogManager.h"
#include "foundation/CObjectError.h"
#include "foundation/CValueList.h"
#include "foundation/IStream.h"

namespace tbx {

namespace {

// Managed mode never goes below this many bits per second and channel.
constexpr std::int32_t kMinimumBitRatePerChannel = 15000;
// Frames handed to the analysis buffer at a time; the library allocates
// the buffer per call.
constexpr std::int32_t kFramesPerAnalysis = 4096;
// Turns a 16-bit sample into the library's float range of -1.0 to 1.0.
constexpr float kSampleScale = 1.0f / 32768.0f;

// A bit-rate setting: absent, 0 and negative values all mean "none".
std::int32_t readBitRate(const fenn::CValueList& settings, const char* key)
{
    const std::int32_t value = settings.getInt(key, -1);
    return value > 0 ? value : -1;
}

void writePage(fenn::IOutStream& stream, const ogg_page& page)
{
    stream.write(page.header, static_cast<std::int32_t>(page.header_len));
    stream.write(page.body, static_cast<std::int32_t>(page.body_len));
}

}  // namespace

// The states of libvorbis and libogg, cleared in the reverse order of their
// set-up, each only if it was set up.
struct CVorbisFileAudioSink::Encoder
{
    Encoder() = default;
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;
    ~Encoder()
    {
        if (oggReady) ogg_stream_clear(&ogg);
        if (blockReady) vorbis_block_clear(&block);
        if (dspReady) vorbis_dsp_clear(&dsp);
        if (commentReady) vorbis_comment_clear(&comment);
        if (infoReady) vorbis_info_clear(&info);
    }

    vorbis_info info{};
    vorbis_comment comment{};
    vorbis_dsp_state dsp{};
    vorbis_block block{};
    ogg_stream_state ogg{};
    bool infoReady = false;
    bool commentReady = false;
    bool dspReady = false;
    bool blockReady = false;
    bool oggReady = false;
};

CVorbisFileAudioSink::CVorbisFileAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream,
                                           const fenn::CValueList& settings, const fenn::CValueList& tags)
    : m_stream(stream), m_sampleRate(settings.getInt(settingKeys::sampleRate, 44100)),
      m_channels(settings.getInt(settingKeys::channels, 2)),
      m_converted(fenn::make<CAudioChunk>(m_sampleRate, m_channels, 0)), m_converter(fenn::make<CAudioConverter>())
{
    if (!m_stream) throw fenn::CInvalidArgError(this, "CVorbisFileAudioSink", "stream");
    auto encoder = std::make_unique<Encoder>();
    vorbis_info_init(&encoder->info);
    encoder->infoReady = true;

    const std::int32_t qualityIndex = settings.getInt(settingKeys::qualityIndex, 5);
    std::int32_t average = readBitRate(settings, settingKeys::avgBitRate);
    std::int32_t minimum = readBitRate(settings, settingKeys::minBitRate);
    std::int32_t maximum = readBitRate(settings, settingKeys::maxBitRate);
    int result = 0;
    if (average == -1) {
        result =
            vorbis_encode_init_vbr(&encoder->info, m_channels, m_sampleRate, static_cast<float>(qualityIndex / 10.0));
    } else {
        // Managed mode keeps each given rate at or above a floor per channel.
        const std::int32_t floor = kMinimumBitRatePerChannel * m_channels;
        average = std::max(average, floor);
        if (minimum > 0) minimum = std::max(minimum, floor);
        if (maximum > 0) maximum = std::max(maximum, floor);
        result = vorbis_encode_init(&encoder->info, m_channels, m_sampleRate, maximum, average, minimum);
    }
    if (result != 0) throw CVorbisError(result);

    vorbis_comment_init(&encoder->comment);
    encoder->commentReady = true;
    for (const vorbisComments::Comment& comment : vorbisComments::makeComments(tags)) {
        vorbis_comment_add_tag(&encoder->comment, comment.name.c_str(), comment.value.c_str());
    }

    result = vorbis_analysis_init(&encoder->dsp, &encoder->info);
    if (result != 0) throw CVorbisError(result);
    encoder->dspReady = true;
    result = vorbis_block_init(&encoder->dsp, &encoder->block);
    if (result != 0) throw CVorbisError(result);
    encoder->blockReady = true;
    // One logical stream in the file, so its serial number is free to choose.
    ogg_stream_init(&encoder->ogg, 0);
    encoder->oggReady = true;

    ogg_packet identification{};
    ogg_packet comments{};
    ogg_packet codebooks{};
    result = vorbis_analysis_headerout(&encoder->dsp, &encoder->comment, &identification, &comments, &codebooks);
    if (result != 0) throw CVorbisError(result);
    ogg_stream_packetin(&encoder->ogg, &identification);
    ogg_stream_packetin(&encoder->ogg, &comments);
    ogg_stream_packetin(&encoder->ogg, &codebooks);
    m_encoder = std::move(encoder);

    // The headers end their pages, so that the audio starts on a page of its
    // own, as the Ogg Vorbis mapping asks.
    ogg_page page{};
    while (ogg_stream_flush(&m_encoder->ogg, &page) != 0) {
        writePage(*m_stream, page);
    }
}

CVorbisFileAudioSink::~CVorbisFileAudioSink()
{
    // A sink dropped without Finish leaves an incomplete file behind, as Abort does.
    if (m_encoder) closeStream();
}

void CVorbisFileAudioSink::checkOpen() const
{
    if (!m_encoder) throw fenn::CInvalidObjectStateError(this, "the sink is finished");
}

void CVorbisFileAudioSink::Write(const IAudioChunk& chunk)
{
    checkOpen();
    if (chunk.HasFormat(m_sampleRate, m_channels)) {
        encode(chunk);
    } else {
        m_converted->ConvertFrom(chunk, m_converter.get());
        encode(*m_converted);
    }
}

void CVorbisFileAudioSink::encode(const IAudioChunk& chunk)
{
    const std::int16_t* samples = chunk.GetData();
    std::int32_t framesLeft = chunk.GetLength();
    // Zero frames would tell the library that the audio has ended.
    while (framesLeft > 0) {
        const std::int32_t frames = std::min(framesLeft, kFramesPerAnalysis);
        float** buffer = vorbis_analysis_buffer(&m_encoder->dsp, frames);
        for (std::int32_t channel = 0; channel < m_channels; ++channel) {
            float* out = buffer[channel];
            const std::int16_t* in = samples + channel;
            for (std::int32_t frame = 0; frame < frames; ++frame, in += m_channels) out[frame] = *in * kSampleScale;
        }
        const int result = vorbis_analysis_wrote(&m_encoder->dsp, frames);
        if (result != 0) throw CVorbisError(result);
        writeFinishedPackets();
        samples += static_cast<std::ptrdiff_t>(frames) * m_channels;
        framesLeft -= frames;
    }
}

void CVorbisFileAudioSink::writeFinishedPackets()
{
    Encoder& encoder = *m_encoder;
    while (vorbis_analysis_blockout(&encoder.dsp, &encoder.block) == 1) {
        int result = vorbis_analysis(&encoder.block, nullptr);
        if (result == 0) result = vorbis_bitrate_addblock(&encoder.block);
        if (result != 0) throw CVorbisError(result);
        ogg_packet packet{};
        while (vorbis_bitrate_flushpacket(&encoder.dsp, &packet) == 1) {
            ogg_stream_packetin(&encoder.ogg, &packet);
            ogg_page page{};
            while (ogg_stream_pageout(&encoder.ogg, &page) != 0) {
                writePage(*m_stream, page);
            }
        }
    }
}

void CVorbisFileAudioSink::Finish()
{
    checkOpen();
    m_converted->ConvertRemainder(*m_converter);
    if (m_converted->GetLength() > 0) encode(*m_converted);

    const int result = vorbis_analysis_wrote(&m_encoder->dsp, 0);
    if (result != 0) throw CVorbisError(result);
    writeFinishedPackets();
    // The packet that ends the stream has made pageout give the last page;
    // a flush catches anything a library version might still hold.
    ogg_page page{};
    while (ogg_stream_flush(&m_encoder->ogg, &page) != 0) {
        writePage(*m_stream, page);
    }
    m_stream->flush();
    m_stream->close();
    m_encoder.reset();
}

void CVorbisFileAudioSink::Abort()
{
    closeStream();
    m_encoder.reset();
}

void CVorbisFileAudioSink::closeStream()
{
    try {
        m_stream->close();
    } catch (const fenn::CException& error) {
        fenn::CLogManager::getInstance()->error("formats", fenn::String("Exception during 'CVorbisFileAudioSink: "
                                                                        "close': ") +
                                                               error.getDescription());
    }
}

}  // namespace tbx
