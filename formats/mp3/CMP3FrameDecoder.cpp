#include "formats/mp3/CMP3FrameDecoder.h"

#include <mad.h>

#include <algorithm>
#include <numeric>

#include "formats/mp3/CMP3FrameHeader.h"

namespace tbx {

namespace {

// libmad decodes a frame only with this many bytes behind it (MAD_BUFFER_GUARD).
constexpr std::size_t kGuardBytes = MAD_BUFFER_GUARD;
// The bit reservoir reaches back at most 511 bytes (MPEG 1) of main data;
// the frames before the judged one are kept until those behind the oldest
// hold that much, and never fewer than two of them nor more than twelve.
constexpr std::int32_t kReservoirBytes = 511;
constexpr std::size_t kMinimumHistory = 2;
constexpr std::size_t kMaximumHistory = 12;
constexpr std::int32_t kHeaderBytes = 4;
constexpr std::int32_t kCRCBytes = 2;

static_assert(CMP3FrameDecoder::kCRCMismatch == MAD_ERROR_BADCRC);
static_assert(CMP3FrameDecoder::kNotAFrame == MAD_ERROR_LOSTSYNC);

// CRC-16 with the polynomial 0x8005, most significant bit first, over bit
// count bits of data, continuing from crc.
std::uint16_t updateCRC(std::uint16_t crc, const std::uint8_t* data, std::int32_t bits)
{
    for (std::int32_t bit = 0; bit < bits; ++bit) {
        const bool dataBit = ((data[bit / 8] >> (7 - bit % 8)) & 1) != 0;
        const bool topBit = (crc & 0x8000) != 0;
        crc = static_cast<std::uint16_t>(crc << 1);
        if (dataBit != topBit) crc ^= 0x8005;
    }
    return crc;
}

// Bits after the CRC word that the CRC covers; -1 when this code leaves the
// check to libmad.
std::int32_t protectedBits(const CMP3FrameHeader& header)
{
    if (header.layer == 3) {
        const bool mpeg1 = header.version == CMP3FrameHeader::Version::mpeg1;
        const std::int32_t sideInfo = mpeg1 ? (header.channels == 1 ? 17 : 32) : (header.channels == 1 ? 9 : 17);
        return sideInfo * 8;
    }
    if (header.layer == 1) {
        // Four bits of allocation per subband and channel; in joint stereo the
        // subbands from the bound on share one allocation.
        if (header.channels == 1) return 32 * 4;
        const std::int32_t bound =
            header.channelMode == CMP3FrameHeader::ChannelMode::jointStereo ? 4 * (header.modeExtension + 1) : 32;
        return 4 * (2 * bound + (32 - bound));
    }
    return -1;
}

// Main data that a frame offers to the reservoir: its bytes behind header,
// CRC word and side information.
std::int32_t mainDataBytes(const std::vector<std::uint8_t>& frame)
{
    CMP3FrameHeader header;
    if (frame.size() < kHeaderBytes || !CMP3FrameHeader::parse(CMP3FrameHeader::read(frame.data()), header)) return 0;
    const std::int32_t overhead = kHeaderBytes + (header.protectedByCRC ? kCRCBytes : 0) +
                                  (header.layer == 3 ? std::max(0, protectedBits(header) / 8) : 0);
    return std::max(0, static_cast<std::int32_t>(frame.size()) - overhead);
}

// Whether a layer III frame's main data begins in the frames before it: the
// first field of the side information, 9 bits in MPEG 1 and 8 bits otherwise.
bool borrowsFromReservoir(const CMP3FrameHeader& header, const std::uint8_t* frame, std::int32_t length)
{
    if (header.layer != 3) return false;
    const std::int32_t start = kHeaderBytes + (header.protectedByCRC ? kCRCBytes : 0);
    if (length < start + 2) return false;
    const std::uint32_t firstBits = (std::uint32_t{frame[start]} << 8) | frame[start + 1];
    const bool mpeg1 = header.version == CMP3FrameHeader::Version::mpeg1;
    return (mpeg1 ? firstBits >> 7 : firstBits >> 8) != 0;
}

}  // namespace

struct CMP3FrameDecoder::Mad
{
    mad_stream stream;
    mad_frame frame;

    Mad()
    {
        mad_stream_init(&stream);
        mad_frame_init(&frame);
    }
    ~Mad()
    {
        mad_frame_finish(&frame);
        mad_stream_finish(&stream);
    }
    Mad(const Mad&) = delete;
    Mad& operator=(const Mad&) = delete;

    // Decodes the frame that starts at start; 0 or libmad's error.
    std::int32_t decodeAt(const std::uint8_t* start)
    {
        stream.next_frame = start;
        stream.sync = 1;
        if (mad_frame_decode(&frame, &stream) == 0) return 0;
        return stream.error == MAD_ERROR_NONE ? MAD_ERROR_LOSTSYNC : static_cast<std::int32_t>(stream.error);
    }
};

CMP3FrameDecoder::CMP3FrameDecoder() = default;

CMP3FrameDecoder::~CMP3FrameDecoder() = default;

void CMP3FrameDecoder::reset()
{
    m_history.clear();
    m_mad.reset();
}

bool CMP3FrameDecoder::checkCRC(const std::uint8_t* frame, std::int32_t length)
{
    CMP3FrameHeader header;
    if (length < kHeaderBytes || !CMP3FrameHeader::parse(CMP3FrameHeader::read(frame), header)) return false;
    if (!header.protectedByCRC) return true;
    const std::int32_t bits = protectedBits(header);
    if (bits < 0) return true;
    const std::int32_t start = kHeaderBytes + kCRCBytes;
    if (length < start + (bits + 7) / 8) return false;
    std::uint16_t crc = updateCRC(0xFFFF, frame + 2, 16);
    crc = updateCRC(crc, frame + start, bits);
    const auto stored = static_cast<std::uint16_t>((frame[4] << 8) | frame[5]);
    return crc == stored;
}

std::int32_t CMP3FrameDecoder::decodeFrame(const std::uint8_t* frame, std::int32_t length)
{
    CMP3FrameHeader header;
    if (frame == nullptr || length < kHeaderBytes || !CMP3FrameHeader::isSync(frame) ||
        !CMP3FrameHeader::parse(CMP3FrameHeader::read(frame), header))
        return kNotAFrame;
    const bool crcMatches = checkCRC(frame, length);

    // The frames before, then this one, then the guard bytes libmad needs.
    m_buffer.clear();
    for (const auto& previous : m_history) m_buffer.insert(m_buffer.end(), previous.begin(), previous.end());
    const std::size_t judgedOffset = m_buffer.size();
    m_buffer.insert(m_buffer.end(), frame, frame + length);
    m_buffer.insert(m_buffer.end(), kGuardBytes, 0);

    // The reservoir is rebuilt for each call from the frames before, whose
    // own results do not count. Frames that borrow nothing need no history.
    if (!m_mad) m_mad = std::make_unique<Mad>();
    mad_stream_buffer(&m_mad->stream, m_buffer.data(), m_buffer.size());
    m_mad->stream.md_len = 0;
    if (borrowsFromReservoir(header, frame, length)) {
        std::size_t offset = 0;
        for (const auto& previous : m_history) {
            m_mad->decodeAt(m_buffer.data() + offset);
            offset += previous.size();
        }
    }
    const std::int32_t result = m_mad->decodeAt(m_buffer.data() + judgedOffset);

    m_history.emplace_back(frame, frame + length);
    while (m_history.size() > kMinimumHistory) {
        const std::int32_t behindOldest =
            std::accumulate(m_history.begin() + 1, m_history.end(), 0,
                            [](std::int32_t sum, const auto& kept) { return sum + mainDataBytes(kept); });
        if (behindOldest < kReservoirBytes && m_history.size() <= kMaximumHistory) break;
        m_history.pop_front();
    }
    if (!crcMatches) return kCRCMismatch;
    return result;
}

}  // namespace tbx
