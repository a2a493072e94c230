#pragma once

#include <cstdint>

#include "foundation/IBase.h"

namespace fenn {

// How to read and write code points in one encoding. Encodings are
// stateless shared objects. Buffers are (bytes, byte size); positions are
// byte offsets. "Strict" operations stop at invalid data; "lenient" ones step
// over it one code unit at a time, so text with bad bytes stays readable
// and simply has fewer code points.
class ICharEncoding : public virtual IBase
{
public:
    enum class Walk { strict, lenient };

    // Four characters as a little-endian 32-bit word ("UTF8", "UF16"...).
    virtual std::uint32_t getID() const = 0;
    virtual const char* getName() const = 0;
    virtual std::int32_t getMaxCharSize() const = 0;
    // Writes the code point at pos and returns the position after it; returns
    // pos unchanged when it cannot be written or does not fit.
    virtual std::int32_t encodeChar(std::uint32_t codePoint, std::uint8_t* buffer, std::int32_t size,
                                    std::int32_t pos) const = 0;
    // Bytes needed for the code point; 0 if this encoding cannot hold it.
    virtual std::int32_t getEncodedSize(std::uint32_t codePoint) const = 0;
    // Size of the valid code point at pos, or -1.
    virtual std::int32_t getCharSizeAt(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const = 0;
    // Code points from pos to the end, stepping over invalid data.
    virtual std::int32_t countChars(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const = 0;
    // Bytes before the terminator (the encoded code point 0).
    virtual std::int32_t getZeroTerminatedSize(const std::uint8_t* buffer) const = 0;
    // Byte offset of the n-th code point (lenient); size when there are fewer.
    virtual std::int32_t getCharPos(const std::uint8_t* buffer, std::int32_t size, std::int32_t n) const = 0;
    // First offset at or after pos that starts a valid code point, or -1.
    virtual std::int32_t findValidPos(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const = 0;
    // Decodes the code point at pos: the next position, or -1 at invalid data
    // or at the end.
    virtual std::int32_t decodeChar(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                                    std::int32_t pos) const = 0;
    // As decodeChar, but steps over invalid data; -1 only at the end.
    virtual std::int32_t decodeCharLenient(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                                           std::int32_t pos) const = 0;
    // Whether text can be walked backward.
    virtual bool isReversible() const = 0;
    // Offset of the code point before pos, -1 at the start.
    virtual std::int32_t getPrevCharPos(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const = 0;
    // Decodes the code point that ends at pos and returns its offset; -1 at
    // the start or, strictly, at invalid data.
    virtual std::int32_t decodeCharBackward(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                                            std::int32_t pos) const = 0;
    virtual std::int32_t decodeCharBackwardLenient(std::uint32_t& codePoint, const std::uint8_t* buffer,
                                                   std::int32_t size, std::int32_t pos) const = 0;
    // Decodes up to maxChars code points from pos into out, with the offset
    // of each in positions when given; count receives how many. Returns the
    // position after the last one.
    virtual std::int32_t decodeForward(std::uint32_t* out, std::int32_t maxChars, std::int32_t& count,
                                       const std::uint8_t* buffer, std::int32_t size, std::int32_t pos,
                                       std::int32_t* positions, Walk walk) const = 0;
    // Decodes up to maxChars code points backward from pos (the nearest
    // first), with the offset of each in positions when given. Returns the
    // offset of the last one decoded.
    virtual std::int32_t decodeBackward(std::uint32_t* out, std::int32_t maxChars, std::int32_t& count,
                                        const std::uint8_t* buffer, std::int32_t size, std::int32_t pos,
                                        std::int32_t* positions, Walk walk) const = 0;
};

// The identifier of an encoding from its four characters.
constexpr std::uint32_t makeEncodingID(const char (&name)[5])
{
    return static_cast<std::uint32_t>(static_cast<unsigned char>(name[0])) |
           static_cast<std::uint32_t>(static_cast<unsigned char>(name[1])) << 8 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(name[2])) << 16 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(name[3])) << 24;
}

}  // namespace fenn
