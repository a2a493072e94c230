#include "foundation/UTF8.h"

namespace fenn::utf8 {

std::int32_t decodeStrict(const char* data, std::int32_t size, std::int32_t pos, std::uint32_t& codePoint)
{
    if (pos < 0 || pos >= size) return -1;
    const auto lead = static_cast<std::uint8_t>(data[pos]);
    if (lead < 0x80) {
        codePoint = lead;
        return pos + 1;
    }
    int length = 0;
    std::uint32_t value = 0;
    if ((lead & 0x40) == 0) return -1;  // a bare continuation byte
    if ((lead & 0x20) == 0) {
        length = 2;
        value = lead & 0x1F;
    } else if ((lead & 0x10) == 0) {
        length = 3;
        value = lead & 0x0F;
    } else if ((lead & 0x08) == 0) {
        length = 4;
        value = lead & 0x07;
    } else {
        return -1;
    }
    if (size - pos < length) return -1;
    for (int i = 1; i < length; ++i) {
        const auto next = static_cast<std::uint8_t>(data[pos + i]);
        if ((next & 0xC0) != 0x80) return -1;
        value = (value << 6) | (next & 0x3F);
    }
    // Overlong forms led by C0, E0 and F0 (the leads without payload bits)
    // are refused; other overlong forms, such as C1 81, are taken as they
    // stand. E0 and F0 also lead the shortest forms of U+0800..U+0FFF and
    // U+10000..U+3FFFF, which stay valid.
    if (lead == 0xC0 || (lead == 0xE0 && value < 0x800) || (lead == 0xF0 && value < 0x10000)) return -1;
    if (length == 4 && value >= 0x110000) return -1;
    codePoint = value;
    return pos + length;
}

std::int32_t decodeLenient(const char* data, std::int32_t size, std::int32_t pos, std::uint32_t& codePoint)
{
    while (pos < size) {
        const std::int32_t next = decodeStrict(data, size, pos, codePoint);
        if (next >= 0) return next;
        ++pos;
    }
    return -1;
}

void append(std::string& out, std::uint32_t codePoint)
{
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += static_cast<char>(0xC0 | (codePoint >> 6));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        out += static_cast<char>(0xE0 | (codePoint >> 12));
        out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x110000) {
        out += static_cast<char>(0xF0 | (codePoint >> 18));
        out += static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    }
}

}  // namespace fenn::utf8
