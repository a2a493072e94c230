#pragma once

#include <cstdint>

namespace tbx {

// The facts of one MPEG audio frame header (ISO/IEC 11172-3 and 13818-3, with
// the unofficial MPEG 2.5 extension): four bytes, read big-endian. A plain
// value; any thread.
struct CMP3FrameHeader
{
    enum class Version : std::int32_t { mpeg25 = 0, mpeg2 = 2, mpeg1 = 3 };
    // The two bits of the header: 0 stereo, 1 joint stereo, 2 dual channel, 3 mono.
    enum class ChannelMode : std::int32_t { stereo = 0, jointStereo = 1, dualChannel = 2, mono = 3 };

    Version version = Version::mpeg1;
    std::int32_t layer = 0;       // 1, 2 or 3
    bool protectedByCRC = false;  // a CRC-16 follows the header
    std::int32_t bitRate = 0;     // bits per second; 0 for the free format
    std::int32_t sampleRate = 0;
    bool padding = false;
    ChannelMode channelMode = ChannelMode::stereo;
    std::int32_t modeExtension = 0;
    std::int32_t channels = 0;
    // Whole frame with header; 0 for the free format, whose length only the
    // next frame's sync tells.
    std::int32_t frameLength = 0;
    std::int32_t samplesPerFrame = 0;

    // The four bytes as one big-endian value.
    static std::uint32_t read(const std::uint8_t* bytes)
    {
        return (std::uint32_t{bytes[0]} << 24) | (std::uint32_t{bytes[1]} << 16) | (std::uint32_t{bytes[2]} << 8) |
               std::uint32_t{bytes[3]};
    }
    // True when the first two bytes are the 11-bit frame sync.
    static bool isSync(const std::uint8_t* bytes) { return bytes[0] == 0xFF && (bytes[1] & 0xE0) == 0xE0; }

    // Fills result from the header bits; false for no sync, a reserved
    // version, layer or sample rate, and the forbidden bit-rate index 15.
    static bool parse(std::uint32_t header, CMP3FrameHeader& result);
};

}  // namespace tbx
