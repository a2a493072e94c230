#include "tags/ID3v2Encoding.h"

#include <algorithm>
#include <string>

namespace tbx::id3v2 {

namespace {

// Text encoding bytes of text frames.
constexpr std::uint8_t kEncodingLatin1 = 0;
constexpr std::uint8_t kEncodingUTF16 = 1;

// A 0xFF followed by 0x00 or by a byte with its top three bits set, or a
// 0xFF at the very end, would read as (part of) an MPEG sync pattern.
bool needsZeroAfter(const std::vector<std::uint8_t>& bytes, std::size_t index)
{
    if (bytes[index] != 0xFF) return false;
    if (index + 1 == bytes.size()) return true;
    const std::uint8_t next = bytes[index + 1];
    return next == 0x00 || (next & 0xE0) == 0xE0;
}

fenn::String decodeLatin1(const std::uint8_t* data, std::int32_t size)
{
    const char* text = reinterpret_cast<const char*>(data);
    const std::size_t used = std::find(text, text + size, '\0') - text;
    return fenn::String::copyOfLatin1(std::string_view(text, used)).trim();
}

// UTF-16 text as this system writes and reads it. The units are taken in
// the machine's order (little-endian). Behind 0xFF 0xFE they are swapped
// when any of them has a non-zero high byte, which repairs big-endian Latin
// text behind a little-endian mark; behind 0xFE 0xFF they are taken as
// they are, because the writer marks its little-endian text so.
fenn::String decodeUTF16(const std::uint8_t* data, std::int32_t size)
{
    std::int32_t count = (size - 1) / 2;
    const std::uint8_t* units = data + 1;
    bool swap = false;
    if (count >= 1 && units[0] == 0xFF && units[1] == 0xFE) {
        units += 2;
        --count;
        for (std::int32_t index = 0; index < count && !swap; ++index) swap = units[2 * index + 1] != 0;
    } else if (count >= 1 && units[0] == 0xFE && units[1] == 0xFF) {
        units += 2;
        --count;
    }
    std::u16string text;
    text.reserve(static_cast<std::size_t>(count));
    for (std::int32_t index = 0; index < count; ++index) {
        const std::uint8_t low = units[2 * index];
        const std::uint8_t high = units[2 * index + 1];
        const auto unit = static_cast<char16_t>(swap ? (low << 8 | high) : (high << 8 | low));
        if (unit == 0) break;
        text.push_back(unit);
    }
    return fenn::String::copyOfUTF16(text).trim();
}

}  // namespace

void resynchronise(std::vector<std::uint8_t>& bytes)
{
    std::size_t out = 0;
    for (std::size_t in = 0; in < bytes.size(); ++in) {
        bytes[out++] = bytes[in];
        if (bytes[in] == 0xFF && in + 1 < bytes.size() && bytes[in + 1] == 0x00) ++in;
    }
    bytes.resize(out);
}

bool needsUnsynchronisation(const std::vector<std::uint8_t>& bytes)
{
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        if (needsZeroAfter(bytes, index)) return true;
    }
    return false;
}

std::vector<std::uint8_t> unsynchronise(const std::vector<std::uint8_t>& bytes)
{
    std::vector<std::uint8_t> out;
    out.reserve(bytes.size() + bytes.size() / 16 + 1);
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        out.push_back(bytes[index]);
        if (needsZeroAfter(bytes, index)) out.push_back(0x00);
    }
    return out;
}

fenn::String decodeTextFrame(const std::uint8_t* data, std::int32_t size)
{
    if (size <= 0) return fenn::String();
    if (data[0] == kEncodingLatin1) return decodeLatin1(data + 1, size - 1);
    return decodeUTF16(data, size);
}

std::vector<std::uint8_t> encodeTextFrame(const fenn::String& text)
{
    const std::u32string codePoints = text.toUTF32();
    const bool latin1 = std::all_of(codePoints.begin(), codePoints.end(), [](char32_t c) { return c <= 0x100; });
    std::vector<std::uint8_t> payload;
    if (latin1) {
        payload.push_back(kEncodingLatin1);
        for (const char32_t c : codePoints) {
            if (c != 0x100) payload.push_back(static_cast<std::uint8_t>(c));
        }
        payload.push_back(0);
        return payload;
    }
    payload = {kEncodingUTF16, 0xFE, 0xFF};
    auto pushUnit = [&payload](std::uint32_t unit) {
        payload.push_back(static_cast<std::uint8_t>(unit));
        payload.push_back(static_cast<std::uint8_t>(unit >> 8));
    };
    for (const char32_t c : codePoints) {
        if (c >= 0x10000) {
            pushUnit(0xD800 + ((c - 0x10000) >> 10));
            pushUnit(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            pushUnit(c);
        }
    }
    pushUnit(0);
    return payload;
}

}  // namespace tbx::id3v2
