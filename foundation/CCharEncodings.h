#pragma once

#include "foundation/CObject.h"
#include "foundation/ICharEncoding.h"

namespace fenn {

// The operations every encoding shares, written in terms of a few
// primitives: the size of a code unit, getCharSizeAt, decodeChar and
// encodeChar. Subclasses add faster forms where they pay.
class CCharEncodingBase : public CObject, public virtual ICharEncoding
{
public:
    std::int32_t countChars(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const override;
    std::int32_t getZeroTerminatedSize(const std::uint8_t* buffer) const override;
    std::int32_t getCharPos(const std::uint8_t* buffer, std::int32_t size, std::int32_t n) const override;
    std::int32_t findValidPos(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const override;
    std::int32_t decodeCharLenient(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                                   std::int32_t pos) const override;
    bool isReversible() const override { return true; }
    std::int32_t getPrevCharPos(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const override;
    std::int32_t decodeCharBackward(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                                    std::int32_t pos) const override;
    std::int32_t decodeCharBackwardLenient(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                                           std::int32_t pos) const override;
    std::int32_t decodeForward(std::uint32_t* out, std::int32_t maxChars, std::int32_t& count,
                               const std::uint8_t* buffer, std::int32_t size, std::int32_t pos, std::int32_t* positions,
                               Walk walk) const override;
    std::int32_t decodeBackward(std::uint32_t* out, std::int32_t maxChars, std::int32_t& count,
                                const std::uint8_t* buffer, std::int32_t size, std::int32_t pos,
                                std::int32_t* positions, Walk walk) const override;
    String toString() const override;

protected:
    explicit CCharEncodingBase(std::int32_t unitSize) : m_unitSize(unitSize) {}

    // Bytes of one code unit: 1 for byte encodings, 2 for UTF-16, 4 for UTF-32.
    const std::int32_t m_unitSize;
};

class CUTF8CharEncoding : public CCharEncodingBase
{
public:
    CUTF8CharEncoding() : CCharEncodingBase(1) {}
    std::uint32_t getID() const override { return makeEncodingID("UTF8"); }
    const char* getName() const override { return "UTF-8"; }
    std::int32_t getMaxCharSize() const override { return 4; }
    std::int32_t encodeChar(std::uint32_t codePoint, std::uint8_t* buffer, std::int32_t size,
                            std::int32_t pos) const override;
    std::int32_t getEncodedSize(std::uint32_t codePoint) const override;
    std::int32_t getCharSizeAt(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const override;
    std::int32_t decodeChar(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                            std::int32_t pos) const override;
    std::int32_t decodeForward(std::uint32_t* out, std::int32_t maxChars, std::int32_t& count,
                               const std::uint8_t* buffer, std::int32_t size, std::int32_t pos, std::int32_t* positions,
                               Walk walk) const override;
};

// UTF-16 in the machine's byte order.
class CUTF16CharEncoding : public CCharEncodingBase
{
public:
    CUTF16CharEncoding() : CCharEncodingBase(2) {}
    std::uint32_t getID() const override { return makeEncodingID("UF16"); }
    const char* getName() const override { return "UTF-16"; }
    std::int32_t getMaxCharSize() const override { return 4; }
    std::int32_t encodeChar(std::uint32_t codePoint, std::uint8_t* buffer, std::int32_t size,
                            std::int32_t pos) const override;
    std::int32_t getEncodedSize(std::uint32_t codePoint) const override;
    std::int32_t getCharSizeAt(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const override;
    std::int32_t decodeChar(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                            std::int32_t pos) const override;
};

// One 32-bit word per code point in the machine's byte order, unvalidated.
class CUTF32CharEncoding : public CCharEncodingBase
{
public:
    CUTF32CharEncoding() : CCharEncodingBase(4) {}
    std::uint32_t getID() const override { return makeEncodingID("UF32"); }
    const char* getName() const override { return "UTF-32"; }
    std::int32_t getMaxCharSize() const override { return 4; }
    std::int32_t encodeChar(std::uint32_t codePoint, std::uint8_t* buffer, std::int32_t size,
                            std::int32_t pos) const override;
    std::int32_t getEncodedSize(std::uint32_t) const override { return 4; }
    std::int32_t getCharSizeAt(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const override;
    std::int32_t decodeChar(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                            std::int32_t pos) const override;
};

// One byte per code point; a code point above 255 is written as "?".
class CLatin1CharEncoding : public CCharEncodingBase
{
public:
    CLatin1CharEncoding() : CCharEncodingBase(1) {}
    std::uint32_t getID() const override { return makeEncodingID("LAT1"); }
    const char* getName() const override { return "Latin-1"; }
    std::int32_t getMaxCharSize() const override { return 1; }
    std::int32_t encodeChar(std::uint32_t codePoint, std::uint8_t* buffer, std::int32_t size,
                            std::int32_t pos) const override;
    std::int32_t getEncodedSize(std::uint32_t) const override { return 1; }
    std::int32_t getCharSizeAt(const std::uint8_t*, std::int32_t size, std::int32_t pos) const override
    {
        return pos >= 0 && pos < size ? 1 : -1;
    }
    std::int32_t countChars(const std::uint8_t*, std::int32_t size, std::int32_t pos) const override
    {
        return pos < size ? size - pos : 0;
    }
    std::int32_t decodeChar(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                            std::int32_t pos) const override;
};

// The multibyte text of the user's locale (UTF-8 on current systems),
// converted one code point at a time by the C library. It cannot be walked
// backward: those operations throw CMethodNotImplementedError.
class CCPCharEncoding : public CCharEncodingBase
{
public:
    CCPCharEncoding() : CCharEncodingBase(1) {}
    std::uint32_t getID() const override { return makeEncodingID("CDPG"); }
    const char* getName() const override { return "CodePage"; }
    std::int32_t getMaxCharSize() const override;
    std::int32_t encodeChar(std::uint32_t codePoint, std::uint8_t* buffer, std::int32_t size,
                            std::int32_t pos) const override;
    std::int32_t getEncodedSize(std::uint32_t codePoint) const override;
    std::int32_t getCharSizeAt(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const override;
    std::int32_t decodeChar(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                            std::int32_t pos) const override;
    bool isReversible() const override { return false; }
    std::int32_t getPrevCharPos(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const override;
    std::int32_t decodeCharBackward(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                                    std::int32_t pos) const override;
    std::int32_t decodeCharBackwardLenient(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                                           std::int32_t pos) const override;
    std::int32_t decodeBackward(std::uint32_t* out, std::int32_t maxChars, std::int32_t& count,
                                const std::uint8_t* buffer, std::int32_t size, std::int32_t pos,
                                std::int32_t* positions, Walk walk) const override;
};

// The shared instances. They live as long as the process, since any string
// may still be read while the program ends.
const ICharEncoding& getUTF8Encoding();
const ICharEncoding& getUTF16Encoding();
const ICharEncoding& getUTF32Encoding();
const ICharEncoding& getLatin1Encoding();
const ICharEncoding& getCPEncoding();
// The encoding of wchar_t text: UTF-32 on Linux.
const ICharEncoding& getWCharEncoding();

}  // namespace fenn
