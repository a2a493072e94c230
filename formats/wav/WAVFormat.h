#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tbx {

// Format tags of the RIFF WAVE "fmt " chunk that the WAV source decodes.
namespace waveFormatTag {
inline constexpr std::uint16_t pcm = 0x0001;
inline constexpr std::uint16_t msADPCM = 0x0002;
inline constexpr std::uint16_t ieeeFloat = 0x0003;
inline constexpr std::uint16_t aLaw = 0x0006;
inline constexpr std::uint16_t muLaw = 0x0007;
inline constexpr std::uint16_t imaADPCM = 0x0011;
inline constexpr std::uint16_t gsm610 = 0x0031;
inline constexpr std::uint16_t mpeg = 0x0050;
inline constexpr std::uint16_t mpegLayer3 = 0x0055;
inline constexpr std::uint16_t extensible = 0xFFFE;
}  // namespace waveFormatTag

// A WAVE format record: the fields of the Windows WAVEFORMATEX, in the
// order of the file's "fmt " chunk, and the bytes behind its 18-byte head.
// A plain value; the WAV source keeps one for the file and one for what
// it delivers.
struct WAVFormat
{
    // Size of the head that every record with an extra-size field has.
    static constexpr std::size_t kHeadSize = 18;

    std::uint16_t formatTag = 0;
    std::uint16_t channels = 0;
    std::uint32_t samplesPerSecond = 0;
    std::uint32_t averageBytesPerSecond = 0;
    std::uint16_t blockAlign = 0;
    std::uint16_t bitsPerSample = 0;
    // The count of extra bytes that the record claims (cbSize).
    std::uint16_t extraSize = 0;
    // The bytes behind the head, as far as the chunk holds them; a damaged
    // record may hold fewer than extraSize claims.
    std::vector<std::uint8_t> extra;

    // Reads a record from the little-endian bytes of a chunk, which must
    // hold at least 16 bytes; what is missing of the head reads as zero.
    static WAVFormat fromBytes(const std::uint8_t* bytes, std::size_t size);

    // A PCM record (tag 1) with block align and average bytes computed.
    static WAVFormat pcmFormat(std::uint16_t channels, std::uint32_t samplesPerSecond, std::uint16_t bitsPerSample);
};

inline WAVFormat WAVFormat::fromBytes(const std::uint8_t* bytes, std::size_t size)
{
    auto u16 = [&](std::size_t at) -> std::uint16_t {
        return at + 2 <= size ? static_cast<std::uint16_t>(bytes[at] | bytes[at + 1] << 8) : 0;
    };
    auto u32 = [&](std::size_t at) -> std::uint32_t {
        return static_cast<std::uint32_t>(u16(at)) | static_cast<std::uint32_t>(u16(at + 2)) << 16;
    };
    WAVFormat format;
    format.formatTag = u16(0);
    format.channels = u16(2);
    format.samplesPerSecond = u32(4);
    format.averageBytesPerSecond = u32(8);
    format.blockAlign = u16(12);
    format.bitsPerSample = u16(14);
    format.extraSize = u16(16);
    if (size > kHeadSize) format.extra.assign(bytes + kHeadSize, bytes + size);
    return format;
}

inline WAVFormat WAVFormat::pcmFormat(std::uint16_t channels, std::uint32_t samplesPerSecond,
                                      std::uint16_t bitsPerSample)
{
    WAVFormat format;
    format.formatTag = waveFormatTag::pcm;
    format.channels = channels;
    format.samplesPerSecond = samplesPerSecond;
    format.bitsPerSample = bitsPerSample;
    format.blockAlign = static_cast<std::uint16_t>(bitsPerSample / 8 * channels);
    format.averageBytesPerSecond = format.blockAlign * samplesPerSecond;
    return format;
}

}  // namespace tbx
