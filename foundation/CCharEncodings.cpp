#include "foundation/CCharEncodings.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <cwchar>

#include "foundation/CObjectError.h"
#include "foundation/String.h"
#include "foundation/UTF8.h"

namespace fenn {

// ---- shared operations ----

std::int32_t CCharEncodingBase::countChars(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const
{
    std::int32_t count = 0;
    std::uint32_t codePoint = 0;
    while ((pos = decodeCharLenient(codePoint, buffer, size, pos)) >= 0) ++count;
    return count;
}

std::int32_t CCharEncodingBase::getZeroTerminatedSize(const std::uint8_t* buffer) const
{
    std::int32_t size = 0;
    for (;;) {
        bool zero = true;
        for (std::int32_t i = 0; i < m_unitSize; ++i) zero = zero && buffer[size + i] == 0;
        if (zero) return size;
        size += m_unitSize;
    }
}

std::int32_t CCharEncodingBase::getCharPos(const std::uint8_t* buffer, std::int32_t size, std::int32_t n) const
{
    std::int32_t pos = findValidPos(buffer, size, 0);
    std::uint32_t codePoint = 0;
    for (std::int32_t i = 0; i < n && pos >= 0; ++i) {
        pos = decodeChar(codePoint, buffer, size, pos);
        if (pos >= 0) pos = findValidPos(buffer, size, pos);
    }
    return pos < 0 ? size : pos;
}

std::int32_t CCharEncodingBase::findValidPos(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const
{
    for (; pos >= 0 && pos < size; pos += m_unitSize) {
        if (getCharSizeAt(buffer, size, pos) > 0) return pos;
    }
    return -1;
}

std::int32_t CCharEncodingBase::decodeCharLenient(std::uint32_t& codePoint, const std::uint8_t* buffer,
                                                  std::int32_t size, std::int32_t pos) const
{
    const std::int32_t start = findValidPos(buffer, size, pos);
    return start < 0 ? -1 : decodeChar(codePoint, buffer, size, start);
}

std::int32_t CCharEncodingBase::getPrevCharPos(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const
{
    std::uint32_t codePoint = 0;
    return decodeCharBackwardLenient(codePoint, buffer, size, pos);
}

std::int32_t CCharEncodingBase::decodeCharBackward(std::uint32_t& codePoint, const std::uint8_t* buffer,
                                                   std::int32_t size, std::int32_t pos) const
{
    if (pos > size) return -1;
    for (std::int32_t back = m_unitSize; back <= getMaxCharSize() && pos - back >= 0; back += m_unitSize) {
        const std::int32_t start = pos - back;
        if (getCharSizeAt(buffer, size, start) == back) {
            decodeChar(codePoint, buffer, size, start);
            return start;
        }
    }
    return -1;
}

std::int32_t CCharEncodingBase::decodeCharBackwardLenient(std::uint32_t& codePoint, const std::uint8_t* buffer,
                                                          std::int32_t size, std::int32_t pos) const
{
    for (; pos > 0; pos -= m_unitSize) {
        const std::int32_t start = decodeCharBackward(codePoint, buffer, size, pos);
        if (start >= 0) return start;
    }
    return -1;
}

std::int32_t CCharEncodingBase::decodeForward(std::uint32_t* out, std::int32_t maxChars, std::int32_t& count,
                                              const std::uint8_t* buffer, std::int32_t size, std::int32_t pos,
                                              std::int32_t* positions, Walk walk) const
{
    count = 0;
    while (count < maxChars && pos < size) {
        const std::int32_t start = walk == Walk::lenient ? findValidPos(buffer, size, pos) : pos;
        if (start < 0) return size;
        const std::int32_t next = decodeChar(out[count], buffer, size, start);
        if (next < 0) return start;
        if (positions != nullptr) positions[count] = start;
        ++count;
        pos = next;
    }
    return pos;
}

std::int32_t CCharEncodingBase::decodeBackward(std::uint32_t* out, std::int32_t maxChars, std::int32_t& count,
                                               const std::uint8_t* buffer, std::int32_t size, std::int32_t pos,
                                               std::int32_t* positions, Walk walk) const
{
    count = 0;
    while (count < maxChars && pos > 0) {
        const std::int32_t start = walk == Walk::lenient ? decodeCharBackwardLenient(out[count], buffer, size, pos)
                                                         : decodeCharBackward(out[count], buffer, size, pos);
        if (start < 0) return walk == Walk::lenient ? 0 : pos;
        if (positions != nullptr) positions[count] = start;
        ++count;
        pos = start;
    }
    return pos;
}

String CCharEncodingBase::toString() const
{
    return String(getName());
}

// ---- UTF-8 ----

std::int32_t CUTF8CharEncoding::encodeChar(std::uint32_t codePoint, std::uint8_t* buffer, std::int32_t size,
                                           std::int32_t pos) const
{
    const std::int32_t needed = getEncodedSize(codePoint);
    if (needed == 0 || pos < 0 || size - pos < needed) return pos;
    std::string encoded;
    utf8::append(encoded, codePoint);
    std::memcpy(buffer + pos, encoded.data(), encoded.size());
    return pos + needed;
}

std::int32_t CUTF8CharEncoding::getEncodedSize(std::uint32_t codePoint) const
{
    if (codePoint < 0x80) return 1;
    if (codePoint < 0x800) return 2;
    if (codePoint < 0x10000) return 3;
    if (codePoint < 0x110000) return 4;
    return 0;
}

std::int32_t CUTF8CharEncoding::getCharSizeAt(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const
{
    std::uint32_t codePoint = 0;
    const std::int32_t next = decodeChar(codePoint, buffer, size, pos);
    return next < 0 ? -1 : next - pos;
}

std::int32_t CUTF8CharEncoding::decodeChar(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                                           std::int32_t pos) const
{
    return utf8::decodeStrict(reinterpret_cast<const char*>(buffer), size, pos, codePoint);
}

std::int32_t CUTF8CharEncoding::decodeForward(std::uint32_t* out, std::int32_t maxChars, std::int32_t& count,
                                              const std::uint8_t* buffer, std::int32_t size, std::int32_t pos,
                                              std::int32_t* positions, Walk walk) const
{
    // Most text is ASCII: take it a byte at a time, and decode longer forms
    // in place rather than through the general path.
    count = 0;
    const auto* text = reinterpret_cast<const char*>(buffer);
    while (count < maxChars && pos < size) {
        const std::uint8_t byte = buffer[pos];
        if (byte < 0x80) {
            if (positions != nullptr) positions[count] = pos;
            out[count++] = byte;
            ++pos;
            continue;
        }
        const std::int32_t next = utf8::decodeStrict(text, size, pos, out[count]);
        if (next < 0) {
            if (walk == Walk::strict) return pos;
            ++pos;
            continue;
        }
        if (positions != nullptr) positions[count] = pos;
        ++count;
        pos = next;
    }
    return pos;
}

// ---- UTF-16 ----

namespace {

std::uint16_t readUnit16(const std::uint8_t* buffer, std::int32_t pos)
{
    std::uint16_t unit = 0;
    std::memcpy(&unit, buffer + pos, 2);
    return unit;
}

void writeUnit16(std::uint8_t* buffer, std::int32_t pos, std::uint32_t unit)
{
    const auto value = static_cast<std::uint16_t>(unit);
    std::memcpy(buffer + pos, &value, 2);
}

}  // namespace

std::int32_t CUTF16CharEncoding::encodeChar(std::uint32_t codePoint, std::uint8_t* buffer, std::int32_t size,
                                            std::int32_t pos) const
{
    const std::int32_t needed = getEncodedSize(codePoint);
    if (needed == 0 || pos < 0 || size - pos < needed) return pos;
    if (needed == 2) {
        writeUnit16(buffer, pos, codePoint);
    } else {
        const std::uint32_t value = codePoint - 0x10000;
        writeUnit16(buffer, pos, 0xD800 | (value >> 10));
        writeUnit16(buffer, pos + 2, 0xDC00 | (value & 0x3FF));
    }
    return pos + needed;
}

std::int32_t CUTF16CharEncoding::getEncodedSize(std::uint32_t codePoint) const
{
    if (codePoint >= 0xD800 && codePoint <= 0xDFFF) return 0;
    if (codePoint < 0x10000) return 2;
    if (codePoint <= 0x10FFFF) return 4;
    return 0;
}

std::int32_t CUTF16CharEncoding::getCharSizeAt(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const
{
    if (pos < 0 || size - pos < 2) return -1;
    const std::uint16_t unit = readUnit16(buffer, pos);
    if (unit >= 0xDC00 && unit <= 0xDFFF) return -1;
    if (unit < 0xD800 || unit > 0xDBFF) return 2;
    if (size - pos < 4) return -1;
    const std::uint16_t low = readUnit16(buffer, pos + 2);
    return low >= 0xDC00 && low <= 0xDFFF ? 4 : -1;
}

std::int32_t CUTF16CharEncoding::decodeChar(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                                            std::int32_t pos) const
{
    const std::int32_t length = getCharSizeAt(buffer, size, pos);
    if (length < 0) return -1;
    const std::uint16_t unit = readUnit16(buffer, pos);
    codePoint = length == 2 ? unit : 0x10000 + ((unit - 0xD800u) << 10) + (readUnit16(buffer, pos + 2) - 0xDC00u);
    return pos + length;
}

// ---- UTF-32 ----

std::int32_t CUTF32CharEncoding::encodeChar(std::uint32_t codePoint, std::uint8_t* buffer, std::int32_t size,
                                            std::int32_t pos) const
{
    if (pos < 0 || size - pos < 4) return pos;
    std::memcpy(buffer + pos, &codePoint, 4);
    return pos + 4;
}

std::int32_t CUTF32CharEncoding::getCharSizeAt(const std::uint8_t*, std::int32_t size, std::int32_t pos) const
{
    return pos >= 0 && size - pos >= 4 ? 4 : -1;
}

std::int32_t CUTF32CharEncoding::decodeChar(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                                            std::int32_t pos) const
{
    if (pos < 0 || size - pos < 4) return -1;
    std::memcpy(&codePoint, buffer + pos, 4);
    return pos + 4;
}

// ---- Latin-1 ----

std::int32_t CLatin1CharEncoding::encodeChar(std::uint32_t codePoint, std::uint8_t* buffer, std::int32_t size,
                                             std::int32_t pos) const
{
    if (pos < 0 || pos >= size) return pos;
    buffer[pos] = codePoint <= 0xFF ? static_cast<std::uint8_t>(codePoint) : static_cast<std::uint8_t>('?');
    return pos + 1;
}

std::int32_t CLatin1CharEncoding::decodeChar(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                                             std::int32_t pos) const
{
    if (pos < 0 || pos >= size) return -1;
    codePoint = buffer[pos];
    return pos + 1;
}

// ---- the locale's multibyte text ----

std::int32_t CCPCharEncoding::getMaxCharSize() const
{
    return static_cast<std::int32_t>(MB_CUR_MAX);
}

std::int32_t CCPCharEncoding::encodeChar(std::uint32_t codePoint, std::uint8_t* buffer, std::int32_t size,
                                         std::int32_t pos) const
{
    char encoded[MB_LEN_MAX];
    std::mbstate_t state{};
    const std::size_t length = std::wcrtomb(encoded, static_cast<wchar_t>(codePoint), &state);
    if (length == static_cast<std::size_t>(-1) || pos < 0 || static_cast<std::size_t>(size - pos) < length) return pos;
    std::memcpy(buffer + pos, encoded, length);
    return pos + static_cast<std::int32_t>(length);
}

std::int32_t CCPCharEncoding::getEncodedSize(std::uint32_t codePoint) const
{
    char encoded[MB_LEN_MAX];
    std::mbstate_t state{};
    const std::size_t length = std::wcrtomb(encoded, static_cast<wchar_t>(codePoint), &state);
    return length == static_cast<std::size_t>(-1) ? 0 : static_cast<std::int32_t>(length);
}

std::int32_t CCPCharEncoding::getCharSizeAt(const std::uint8_t* buffer, std::int32_t size, std::int32_t pos) const
{
    std::uint32_t codePoint = 0;
    const std::int32_t next = decodeChar(codePoint, buffer, size, pos);
    return next < 0 ? -1 : next - pos;
}

std::int32_t CCPCharEncoding::decodeChar(std::uint32_t& codePoint, const std::uint8_t* buffer, std::int32_t size,
                                         std::int32_t pos) const
{
    if (pos < 0 || pos >= size) return -1;
    wchar_t wide = 0;
    std::mbstate_t state{};
    const std::size_t length =
        std::mbrtowc(&wide, reinterpret_cast<const char*>(buffer + pos), static_cast<std::size_t>(size - pos), &state);
    if (length == static_cast<std::size_t>(-1) || length == static_cast<std::size_t>(-2)) return -1;
    codePoint = static_cast<std::uint32_t>(wide);
    return pos + (length == 0 ? 1 : static_cast<std::int32_t>(length));
}

namespace {

[[noreturn]] void refuseBackwardWalk(const CCPCharEncoding* encoding, const char* method)
{
    throw CMethodNotImplementedError(encoding, method);
}

}  // namespace

std::int32_t CCPCharEncoding::getPrevCharPos(const std::uint8_t*, std::int32_t, std::int32_t) const
{
    refuseBackwardWalk(this, "getPrevCharPos");
}

std::int32_t CCPCharEncoding::decodeCharBackward(std::uint32_t&, const std::uint8_t*, std::int32_t, std::int32_t) const
{
    refuseBackwardWalk(this, "decodeCharBackward");
}

std::int32_t CCPCharEncoding::decodeCharBackwardLenient(std::uint32_t&, const std::uint8_t*, std::int32_t,
                                                        std::int32_t) const
{
    refuseBackwardWalk(this, "decodeCharBackwardLenient");
}

std::int32_t CCPCharEncoding::decodeBackward(std::uint32_t*, std::int32_t, std::int32_t&, const std::uint8_t*,
                                             std::int32_t, std::int32_t, std::int32_t*, Walk) const
{
    refuseBackwardWalk(this, "decodeBackward");
}

// ---- shared instances ----

const ICharEncoding& getUTF8Encoding()
{
    static const auto* encoding = new CUTF8CharEncoding();
    return *encoding;
}

const ICharEncoding& getUTF16Encoding()
{
    static const auto* encoding = new CUTF16CharEncoding();
    return *encoding;
}

const ICharEncoding& getUTF32Encoding()
{
    static const auto* encoding = new CUTF32CharEncoding();
    return *encoding;
}

const ICharEncoding& getLatin1Encoding()
{
    static const auto* encoding = new CLatin1CharEncoding();
    return *encoding;
}

const ICharEncoding& getCPEncoding()
{
    static const auto* encoding = new CCPCharEncoding();
    return *encoding;
}

const ICharEncoding& getWCharEncoding()
{
    static_assert(sizeof(wchar_t) == 4, "wide text is UTF-32 on this platform");
    return getUTF32Encoding();
}

}  // namespace fenn
