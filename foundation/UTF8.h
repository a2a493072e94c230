#pragma once

#include <cstdint>
#include <string>

namespace fenn::utf8 {

// Decodes the code point at pos. Strict: returns the position after it, or -1
// at invalid data or at the end. Overlong forms led by C0, E0 or F0 are
// invalid; other overlong forms (C1 81) are accepted as they stand.
std::int32_t decodeStrict(const char* data, std::int32_t size, std::int32_t pos, std::uint32_t& codePoint);

// As decodeStrict, but steps over invalid bytes one at a time; -1 only at the end.
std::int32_t decodeLenient(const char* data, std::int32_t size, std::int32_t pos, std::uint32_t& codePoint);

// Appends the encoded form; code points at or above 0x110000 are not written.
void append(std::string& out, std::uint32_t codePoint);

}  // namespace fenn::utf8
