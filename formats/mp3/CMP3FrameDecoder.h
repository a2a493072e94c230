#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "foundation/CObject.h"

namespace tbx {

// Tells for one MPEG audio frame whether it decodes: a CRC-16 check of a
// protected frame, then a full decode (without synthesis) by libmad. Layer
// III frames borrow bytes from the frames before them (the bit reservoir),
// so the decoder keeps copies of the frames it was given last and decodes
// them before the new one; only the new one is judged. A checker feeds the
// frames of one stream in order, as CMP3FrameFinder finds them. One object
// per pass; one thread at a time.
class CMP3FrameDecoder : public fenn::CObject
{
public:
    static constexpr std::int32_t kSuccess = 0;
    // Codes other than these two are libmad's error codes.
    static constexpr std::int32_t kCRCMismatch = 0x0201;
    static constexpr std::int32_t kNotAFrame = 0x0101;

    CMP3FrameDecoder();
    ~CMP3FrameDecoder() override;
    CMP3FrameDecoder(const CMP3FrameDecoder&) = delete;
    CMP3FrameDecoder& operator=(const CMP3FrameDecoder&) = delete;

    // kSuccess when the frame decodes without error, otherwise an error code.
    std::int32_t decodeFrame(const std::uint8_t* frame, std::int32_t length);
    // Forgets the frames before, as at the start of a stream.
    void reset();

    // True for a frame without CRC, or one whose CRC-16 (polynomial 0x8005,
    // start value 0xFFFF) over the header's last two bytes and the side
    // information (layer III) or bit allocation (layer I) matches the stored
    // one. Layer II frames are checked by libmad, which knows their
    // allocation tables.
    static bool checkCRC(const std::uint8_t* frame, std::int32_t length);

private:
    struct Mad;

    std::unique_ptr<Mad> m_mad;
    std::deque<std::vector<std::uint8_t>> m_history;
    std::vector<std::uint8_t> m_buffer;
};

}  // namespace tbx
