#pragma once

#include <cstdint>
#include <vector>

#include "formats/wav/WAVFormat.h"
#include "foundation/CObject.h"
#include "foundation/CURI.h"

struct AVCodecContext;
struct AVCodecParserContext;
struct AVFrame;
struct AVPacket;

namespace tbx {

// Decodes the content of a WAV file whose format the WAV source does not
// read directly (compressed formats, float, PCM of more than 16 bits or
// 44100 Hz, WAVE_FORMAT_EXTENSIBLE) into 8- or 16-bit PCM, through the
// libavcodec decoder that the format tag names. It serves the WAV source
// as a stream converter: the source hands it the file's bytes as they come,
// it takes whole blocks and hands back decoded bytes. Owned by one source
// and used by one thread at a time.
class CWAVCodecDecoder : public fenn::CObject
{
public:
    // The PCM format that content of format file decodes to: the file's
    // channels and rate, 8 bits for 8-bit PCM and 16 bits for the rest.
    // False when no decoder knows the format.
    static bool suggestFormat(const WAVFormat& file, WAVFormat& decoded);

    // A decoder from file's content to decoded, which has 1 or 2 channels
    // and 8 or 16 bits. factFrames is the frame count of the file's "fact"
    // chunk, 0 when there is none; block codecs pad their last block, and
    // their output is cut to this count. Throws
    // CFileFormatNotSupportedError for uri when the decoder cannot be set up.
    CWAVCodecDecoder(const WAVFormat& file, const WAVFormat& decoded, std::uint32_t factFrames, const fenn::CURI& uri);
    ~CWAVCodecDecoder() override;
    CWAVCodecDecoder(const CWAVCodecDecoder&) = delete;
    CWAVCodecDecoder& operator=(const CWAVCodecDecoder&) = delete;

    // Decoded bytes that inputBytes of content normally give, whole frames,
    // at least one frame: the size of the source's decode buffer for one read.
    std::int32_t getOutputSize(std::int32_t inputBytes) const;
    // Decoded bytes that the whole content of contentBytes gives, cut to the
    // fact chunk; an estimate for codecs whose frames vary in size.
    std::int64_t getTotalOutputSize(std::int64_t contentBytes) const;

    // Decodes the whole blocks at the front of input and writes up to
    // capacity bytes of whole decoded frames to output. consumed tells the
    // input bytes taken (the rest waits for more input), produced the bytes
    // written. Output that does not fit is kept for the next call, and no
    // more input is taken while that much is kept. A block the decoder
    // refuses throws CError "The file is corrupted.".
    void convert(const std::uint8_t* input, std::int32_t inputBytes, std::uint8_t* output, std::int32_t capacity,
                 std::int32_t& consumed, std::int32_t& produced);
    // After the last input: writes what the decoder still holds, as
    // convert does; produced 0 means that nothing is left.
    void drain(std::uint8_t* output, std::int32_t capacity, std::int32_t& produced);

private:
    enum class Packets {
        frames,  // sample codecs: any number of whole frames per packet
        block,   // block codecs: one block align per packet
        parsed   // frame streams (MPEG audio): a parser cuts the packets
    };

    void decodePacket(const std::uint8_t* data, std::int32_t size);
    void receiveFrames();
    void appendFrame(const AVFrame& frame);
    std::int32_t takePending(std::uint8_t* output, std::int32_t capacity);
    std::int32_t outputFrameBytes() const { return m_outputChannels * m_outputBitsPerSample / 8; }
    // Decoded frames of inputBytes where the codec does not fix them, from
    // the header's byte rate.
    std::int64_t estimatedFrames(std::int64_t inputBytes) const;

    WAVFormat m_file;
    std::int32_t m_outputChannels;
    std::int32_t m_outputBitsPerSample;
    Packets m_packets = Packets::block;
    std::int32_t m_packetUnit = 0;       // bytes of one frame or block
    std::int64_t m_samplesPerBlock = 0;  // block codecs with fixed blocks, else 0
    bool m_trimToFact = false;
    std::int64_t m_framesLeft = -1;  // frames still allowed out; -1 for no limit
    bool m_flushed = false;

    AVCodecContext* m_context = nullptr;
    AVCodecParserContext* m_parser = nullptr;
    AVPacket* m_packet = nullptr;
    AVFrame* m_frame = nullptr;

    std::vector<std::uint8_t> m_pending;
    std::size_t m_pendingOffset = 0;
};

}  // namespace tbx
