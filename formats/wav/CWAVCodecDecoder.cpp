#include "formats/wav/CWAVCodecDecoder.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/channel_layout.h>
#include <libavutil/samplefmt.h>
}

#include "formats/ffmpeg/FFmpegLibrary.h"
#include "formats/wav/WAVTexts.h"
#include "foundation/CURIError.h"
#include "foundation/IStringLocalizer.h"

namespace tbx {

namespace {

// Decode buffers stay below this size whatever a damaged header claims.
constexpr std::int64_t kMaxOutputBytes = 4 * 1024 * 1024;
// One MPEG audio frame holds at most this many frames of samples.
constexpr std::int64_t kMaxFramesPerMPEGFrame = 1152;
// Frames per byte assumed for buffer sizes when the header gives no
// average byte rate (4-bit ADPCM of one channel gives 2).
constexpr double kFallbackFramesPerByte = 4.0;
// Estimates of frames stop here (about three years at 96000 Hz).
constexpr double kMaxEstimatedFrames = 1e13;
// How far a flushed parser is asked for the frames it holds.
constexpr int kMaxParserFlushes = 16;

// WAVE_FORMAT_EXTENSIBLE names its real format by a GUID whose first four
// bytes are the format tag and whose other twelve are these.
constexpr std::uint8_t kSubFormatBaseGUID[12] = {0x00, 0x00, 0x10, 0x00, 0x80, 0x00,
                                                 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};
// The fields that WAVE_FORMAT_EXTENSIBLE adds behind the head: valid bits,
// channel mask and the sub-format GUID.
constexpr std::size_t kExtensibleSize = 22;
constexpr std::size_t kSubFormatOffset = 6;

// Block sizes and samples of IMA ADPCM by bits per sample, 2 to 5, as
// libavcodec counts them.
constexpr int kIMABlockBytes[] = {4, 12, 4, 20};
constexpr int kIMABlockSamples[] = {16, 32, 8, 32};

struct CodecChoice
{
    AVCodecID id = AV_CODEC_ID_NONE;
    std::uint16_t tag = 0;           // the real tag, also behind WAVE_FORMAT_EXTENSIBLE
    std::size_t extradataStart = 0;  // where the codec's own bytes begin in WAVFormat::extra
};

AVCodecID pcmCodec(std::uint16_t bits)
{
    if (bits == 0 || bits > 64) return AV_CODEC_ID_NONE;
    switch ((bits + 7) / 8) {
    case 1:
        return AV_CODEC_ID_PCM_U8;
    case 2:
        return AV_CODEC_ID_PCM_S16LE;
    case 3:
        return AV_CODEC_ID_PCM_S24LE;
    case 4:
        return AV_CODEC_ID_PCM_S32LE;
    case 8:
        return AV_CODEC_ID_PCM_S64LE;
    default:
        return AV_CODEC_ID_NONE;
    }
}

AVCodecID codecForTag(std::uint16_t tag, std::uint16_t bits)
{
    switch (tag) {
    case waveFormatTag::pcm:
        return pcmCodec(bits);
    case waveFormatTag::ieeeFloat:
        return bits == 32 ? AV_CODEC_ID_PCM_F32LE : bits == 64 ? AV_CODEC_ID_PCM_F64LE : AV_CODEC_ID_NONE;
    case waveFormatTag::aLaw:
        return AV_CODEC_ID_PCM_ALAW;
    case waveFormatTag::muLaw:
        return AV_CODEC_ID_PCM_MULAW;
    case waveFormatTag::msADPCM:
        return AV_CODEC_ID_ADPCM_MS;
    case waveFormatTag::imaADPCM:
        return bits >= 2 && bits <= 5 ? AV_CODEC_ID_ADPCM_IMA_WAV : AV_CODEC_ID_NONE;
    case waveFormatTag::gsm610:
        return AV_CODEC_ID_GSM_MS;
    case waveFormatTag::mpeg:
        return AV_CODEC_ID_MP2;
    case waveFormatTag::mpegLayer3:
        return AV_CODEC_ID_MP3;
    default:
        return AV_CODEC_ID_NONE;
    }
}

CodecChoice chooseCodec(const WAVFormat& file)
{
    CodecChoice choice;
    choice.tag = file.formatTag;
    if (file.formatTag == waveFormatTag::extensible) {
        if (file.extraSize < kExtensibleSize || file.extra.size() < kExtensibleSize) return choice;
        const std::uint8_t* guid = file.extra.data() + kSubFormatOffset;
        if (guid[2] != 0 || guid[3] != 0 || std::memcmp(guid + 4, kSubFormatBaseGUID, sizeof kSubFormatBaseGUID) != 0)
            return choice;
        choice.tag = static_cast<std::uint16_t>(guid[0] | guid[1] << 8);
        if (choice.tag == waveFormatTag::extensible) return choice;
        choice.extradataStart = kExtensibleSize;
    }
    choice.id = codecForTag(choice.tag, file.bitsPerSample);
    return choice;
}

bool isSampleCodec(AVCodecID id)
{
    switch (id) {
    case AV_CODEC_ID_PCM_U8:
    case AV_CODEC_ID_PCM_S16LE:
    case AV_CODEC_ID_PCM_S24LE:
    case AV_CODEC_ID_PCM_S32LE:
    case AV_CODEC_ID_PCM_S64LE:
    case AV_CODEC_ID_PCM_F32LE:
    case AV_CODEC_ID_PCM_F64LE:
    case AV_CODEC_ID_PCM_ALAW:
    case AV_CODEC_ID_PCM_MULAW:
        return true;
    default:
        return false;
    }
}

fenn::CError corruptedError()
{
    return fenn::CError(fenn::String(), fenn::localize(wavTexts::corrupted));
}

// One sample of a decoded frame as signed 16 bits, converted as libavcodec's
// own sample converter does it, so that the result matches other programs
// that decode with libavcodec.
std::int16_t sampleAsInt16(AVSampleFormat packedFormat, const std::uint8_t* sample)
{
    switch (packedFormat) {
    case AV_SAMPLE_FMT_U8:
        return static_cast<std::int16_t>((sample[0] - 0x80) * 256);
    case AV_SAMPLE_FMT_S16: {
        std::int16_t value;
        std::memcpy(&value, sample, sizeof value);
        return value;
    }
    case AV_SAMPLE_FMT_S32: {
        std::int32_t value;
        std::memcpy(&value, sample, sizeof value);
        return static_cast<std::int16_t>(value >> 16);
    }
    case AV_SAMPLE_FMT_S64: {
        std::int64_t value;
        std::memcpy(&value, sample, sizeof value);
        return static_cast<std::int16_t>(value >> 48);
    }
    case AV_SAMPLE_FMT_FLT: {
        float value;
        std::memcpy(&value, sample, sizeof value);
        const long scaled = std::lrint(value * 32768.0f);
        return static_cast<std::int16_t>(std::clamp<long>(scaled, -32768, 32767));
    }
    case AV_SAMPLE_FMT_DBL: {
        double value;
        std::memcpy(&value, sample, sizeof value);
        const long long scaled = std::llrint(value * 32768.0);
        return static_cast<std::int16_t>(std::clamp<long long>(scaled, -32768, 32767));
    }
    default:
        return 0;
    }
}

}  // namespace

bool CWAVCodecDecoder::suggestFormat(const WAVFormat& file, WAVFormat& decoded)
{
    const CodecChoice choice = chooseCodec(file);
    if (choice.id == AV_CODEC_ID_NONE || file.channels == 0) return false;
    const std::uint16_t bits = choice.id == AV_CODEC_ID_PCM_U8 ? 8 : 16;
    decoded = WAVFormat::pcmFormat(file.channels, file.samplesPerSecond, bits);
    return true;
}

CWAVCodecDecoder::CWAVCodecDecoder(const WAVFormat& file, const WAVFormat& decoded, std::uint32_t factFrames,
                                   const fenn::CURI& uri)
    : m_file(file), m_outputChannels(decoded.channels), m_outputBitsPerSample(decoded.bitsPerSample)
{
    const CodecChoice choice = chooseCodec(file);
    const AVCodec* codec = choice.id == AV_CODEC_ID_NONE ? nullptr : ffmpeg().avcodec_find_decoder(choice.id);
    const bool usable = codec != nullptr && file.channels > 0 && file.samplesPerSecond > 0 &&
                        file.samplesPerSecond <= INT32_MAX && (m_outputChannels == 1 || m_outputChannels == 2) &&
                        (m_outputBitsPerSample == 8 || m_outputBitsPerSample == 16);
    if (!usable) throw fenn::CFileFormatNotSupportedError(uri);

    if (isSampleCodec(choice.id)) {
        m_packets = Packets::frames;
        m_packetUnit = file.channels * ffmpeg().av_get_bits_per_sample(choice.id) / 8;
    } else if (choice.id == AV_CODEC_ID_MP3 || choice.id == AV_CODEC_ID_MP2) {
        m_packets = Packets::parsed;
        m_packetUnit = 1;
        m_trimToFact = true;
    } else {
        m_packets = Packets::block;
        m_packetUnit = file.blockAlign;
        m_trimToFact = true;
        const int channels = file.channels;
        if (choice.id == AV_CODEC_ID_ADPCM_MS && file.blockAlign > 6 * channels) {
            m_samplesPerBlock = (file.blockAlign - 6 * channels) * 2 / channels;
        } else if (choice.id == AV_CODEC_ID_ADPCM_IMA_WAV && file.blockAlign >= 4 * channels) {
            const int bits = file.bitsPerSample - 2;
            m_samplesPerBlock =
                1 + (file.blockAlign - 4 * channels) / (kIMABlockBytes[bits] * channels) * kIMABlockSamples[bits];
        } else if (choice.id == AV_CODEC_ID_GSM_MS) {
            m_samplesPerBlock = 320;
        }
    }
    if (m_packetUnit <= 0) throw fenn::CFileFormatNotSupportedError(uri);
    if (m_trimToFact && factFrames > 0) m_framesLeft = factFrames;

    bool opened = false;
    m_context = ffmpeg().avcodec_alloc_context3(codec);
    m_packet = ffmpeg().av_packet_alloc();
    m_frame = ffmpeg().av_frame_alloc();
    if (m_context && m_packet && m_frame) {
        m_context->sample_rate = static_cast<int>(file.samplesPerSecond);
        ffmpeg().av_channel_layout_default(&m_context->ch_layout, file.channels);
        m_context->block_align = file.blockAlign;
        m_context->bits_per_coded_sample = file.bitsPerSample;
        m_context->bit_rate = static_cast<std::int64_t>(file.averageBytesPerSecond) * 8;
        const std::size_t extraEnd = std::min<std::size_t>(file.extra.size(), file.extraSize);
        if (extraEnd > choice.extradataStart) {
            const std::size_t size = extraEnd - choice.extradataStart;
            m_context->extradata = static_cast<std::uint8_t*>(ffmpeg().av_mallocz(size + AV_INPUT_BUFFER_PADDING_SIZE));
            if (m_context->extradata) {
                std::memcpy(m_context->extradata, file.extra.data() + choice.extradataStart, size);
                m_context->extradata_size = static_cast<int>(size);
            }
        }
        opened = ffmpeg().avcodec_open2(m_context, codec, nullptr) >= 0;
        if (opened && m_packets == Packets::parsed) {
            m_parser = ffmpeg().av_parser_init(choice.id);
            opened = m_parser != nullptr;
        }
    }
    if (!opened) {
        ffmpeg().av_parser_close(m_parser);
        ffmpeg().av_frame_free(&m_frame);
        ffmpeg().av_packet_free(&m_packet);
        ffmpeg().avcodec_free_context(&m_context);
        throw fenn::CFileFormatNotSupportedError(uri);
    }
}

CWAVCodecDecoder::~CWAVCodecDecoder()
{
    ffmpeg().av_parser_close(m_parser);
    ffmpeg().av_frame_free(&m_frame);
    ffmpeg().av_packet_free(&m_packet);
    ffmpeg().avcodec_free_context(&m_context);
}

std::int64_t CWAVCodecDecoder::estimatedFrames(std::int64_t inputBytes) const
{
    const double framesPerByte = m_file.averageBytesPerSecond == 0
                                     ? kFallbackFramesPerByte
                                     : static_cast<double>(m_file.samplesPerSecond) / m_file.averageBytesPerSecond;
    // A damaged header can claim any ratio; the estimate stays countable.
    return static_cast<std::int64_t>(std::min(std::ceil(inputBytes * framesPerByte), kMaxEstimatedFrames));
}

std::int32_t CWAVCodecDecoder::getOutputSize(std::int32_t inputBytes) const
{
    std::int64_t frames;
    if (m_packets == Packets::frames) {
        frames = inputBytes / m_packetUnit;
    } else if (m_samplesPerBlock > 0) {
        frames = inputBytes / m_packetUnit * m_samplesPerBlock;
    } else {
        frames = estimatedFrames(inputBytes);
        if (m_packets == Packets::parsed) frames = std::max(frames, kMaxFramesPerMPEGFrame);
    }
    const std::int64_t frameBytes = outputFrameBytes();
    frames = std::clamp<std::int64_t>(frames, 1, kMaxOutputBytes / frameBytes);
    return static_cast<std::int32_t>(frames * frameBytes);
}

std::int64_t CWAVCodecDecoder::getTotalOutputSize(std::int64_t contentBytes) const
{
    std::int64_t frames;
    if (m_packets == Packets::frames) {
        frames = contentBytes / m_packetUnit;
    } else if (m_samplesPerBlock > 0) {
        frames = contentBytes / m_packetUnit * m_samplesPerBlock;
    } else {
        frames = estimatedFrames(contentBytes);
    }
    if (m_framesLeft >= 0) {
        // The fact chunk is exact where the estimate is not.
        frames = m_samplesPerBlock > 0 ? std::min(frames, m_framesLeft) : m_framesLeft;
    }
    return frames * outputFrameBytes();
}

void CWAVCodecDecoder::convert(const std::uint8_t* input, std::int32_t inputBytes, std::uint8_t* output,
                               std::int32_t capacity, std::int32_t& consumed, std::int32_t& produced)
{
    consumed = 0;
    if (m_framesLeft == 0) {
        // All that the fact chunk announces is out; the rest is padding.
        consumed = inputBytes - inputBytes % m_packetUnit;
    } else if (m_packets == Packets::parsed) {
        // The parser may read a little beyond the bytes it is given.
        std::vector<std::uint8_t> padded(static_cast<std::size_t>(inputBytes) + AV_INPUT_BUFFER_PADDING_SIZE);
        std::memcpy(padded.data(), input, static_cast<std::size_t>(inputBytes));
        while (consumed < inputBytes && m_pending.size() - m_pendingOffset < static_cast<std::size_t>(capacity)) {
            std::uint8_t* packet = nullptr;
            int packetSize = 0;
            const int used =
                ffmpeg().av_parser_parse2(m_parser, m_context, &packet, &packetSize, padded.data() + consumed,
                                          inputBytes - consumed, AV_NOPTS_VALUE, AV_NOPTS_VALUE, 0);
            if (used < 0) throw corruptedError();
            consumed += used;
            if (packetSize > 0) {
                decodePacket(packet, packetSize);
            } else if (used == 0) {
                break;
            }
        }
    } else {
        while (m_pending.size() - m_pendingOffset < static_cast<std::size_t>(capacity)) {
            std::int32_t units = (inputBytes - consumed) / m_packetUnit;
            if (units == 0) break;
            if (m_packets == Packets::block) units = 1;
            decodePacket(input + consumed, units * m_packetUnit);
            consumed += units * m_packetUnit;
        }
    }
    produced = takePending(output, capacity);
}

void CWAVCodecDecoder::drain(std::uint8_t* output, std::int32_t capacity, std::int32_t& produced)
{
    if (!m_flushed) {
        m_flushed = true;
        if (m_framesLeft != 0) {
            if (m_parser) {
                for (int flush = 0; flush < kMaxParserFlushes; ++flush) {
                    std::uint8_t* packet = nullptr;
                    int packetSize = 0;
                    ffmpeg().av_parser_parse2(m_parser, m_context, &packet, &packetSize, nullptr, 0, AV_NOPTS_VALUE,
                                              AV_NOPTS_VALUE, 0);
                    if (packetSize <= 0) break;
                    decodePacket(packet, packetSize);
                }
            }
            if (ffmpeg().avcodec_send_packet(m_context, nullptr) >= 0) receiveFrames();
        }
    }
    produced = takePending(output, capacity);
}

void CWAVCodecDecoder::decodePacket(const std::uint8_t* data, std::int32_t size)
{
    // Decoders may read a little beyond a packet: av_new_packet adds zeroed padding.
    if (ffmpeg().av_new_packet(m_packet, size) < 0) throw std::bad_alloc();
    std::memcpy(m_packet->data, data, static_cast<std::size_t>(size));
    int result = ffmpeg().avcodec_send_packet(m_context, m_packet);
    if (result == AVERROR(EAGAIN)) {
        receiveFrames();
        result = ffmpeg().avcodec_send_packet(m_context, m_packet);
    }
    ffmpeg().av_packet_unref(m_packet);
    if (result < 0) {
        // MPEG audio decoders find their way back to the next good frame;
        // a damaged frame costs that frame only.
        if (m_packets == Packets::parsed && result == AVERROR_INVALIDDATA) return;
        throw corruptedError();
    }
    receiveFrames();
}

void CWAVCodecDecoder::receiveFrames()
{
    for (;;) {
        const int result = ffmpeg().avcodec_receive_frame(m_context, m_frame);
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return;
        if (result < 0) {
            if (m_packets == Packets::parsed && result == AVERROR_INVALIDDATA) return;
            throw corruptedError();
        }
        appendFrame(*m_frame);
        ffmpeg().av_frame_unref(m_frame);
    }
}

void CWAVCodecDecoder::appendFrame(const AVFrame& frame)
{
    std::int64_t frames = frame.nb_samples;
    if (m_framesLeft >= 0) {
        frames = std::min(frames, m_framesLeft);
        m_framesLeft -= frames;
    }
    const int inputChannels = frame.ch_layout.nb_channels;
    if (frames <= 0 || inputChannels <= 0) return;

    const auto format = static_cast<AVSampleFormat>(frame.format);
    const AVSampleFormat packedFormat = ffmpeg().av_get_packed_sample_fmt(format);
    const bool planar = ffmpeg().av_sample_fmt_is_planar(format) != 0;
    const std::size_t sampleBytes = static_cast<std::size_t>(ffmpeg().av_get_bytes_per_sample(format));
    if (sampleBytes == 0) throw corruptedError();

    if (m_pendingOffset > 0) {
        m_pending.erase(m_pending.begin(), m_pending.begin() + static_cast<std::ptrdiff_t>(m_pendingOffset));
        m_pendingOffset = 0;
    }
    const std::size_t start = m_pending.size();
    m_pending.resize(start + static_cast<std::size_t>(frames * outputFrameBytes()));
    std::uint8_t* out = m_pending.data() + start;

    for (std::int64_t index = 0; index < frames; ++index) {
        for (std::int32_t channel = 0; channel < m_outputChannels; ++channel) {
            // Mono fills both sides of stereo; of more channels the first two are taken.
            const int from = std::min(channel, inputChannels - 1);
            const std::uint8_t* sample =
                planar ? frame.extended_data[from] + static_cast<std::size_t>(index) * sampleBytes
                       : frame.extended_data[0] +
                             (static_cast<std::size_t>(index) * static_cast<std::size_t>(inputChannels) +
                              static_cast<std::size_t>(from)) *
                                 sampleBytes;
            if (m_outputBitsPerSample == 8) {
                *out++ = packedFormat == AV_SAMPLE_FMT_U8
                             ? sample[0]
                             : static_cast<std::uint8_t>((sampleAsInt16(packedFormat, sample) >> 8) + 128);
            } else {
                const auto value = static_cast<std::uint16_t>(sampleAsInt16(packedFormat, sample));
                *out++ = static_cast<std::uint8_t>(value & 0xFF);
                *out++ = static_cast<std::uint8_t>(value >> 8);
            }
        }
    }
}

std::int32_t CWAVCodecDecoder::takePending(std::uint8_t* output, std::int32_t capacity)
{
    const std::size_t frameBytes = static_cast<std::size_t>(outputFrameBytes());
    const std::size_t room = static_cast<std::size_t>(std::max(capacity, 0)) / frameBytes * frameBytes;
    const std::size_t bytes = std::min(room, m_pending.size() - m_pendingOffset);
    if (bytes == 0) return 0;
    std::memcpy(output, m_pending.data() + m_pendingOffset, bytes);
    m_pendingOffset += bytes;
    if (m_pendingOffset == m_pending.size()) {
        m_pending.clear();
        m_pendingOffset = 0;
    }
    return static_cast<std::int32_t>(bytes);
}

}  // namespace tbx
