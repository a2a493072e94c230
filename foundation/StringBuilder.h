#pragma once

#include <cstdint>
#include <string>

#include "foundation/String.h"

namespace fenn {

// Collects code points and pieces of strings in one encoding and makes a
// String of them. Pieces already in that encoding are copied as bytes.
class CStringBuilder
{
public:
    explicit CStringBuilder(const ICharEncoding& encoding) : m_encoding(encoding) {}

    // Code points the encoding cannot hold are written as its encodeChar
    // writes them, or left out.
    void appendCodePoint(std::uint32_t codePoint);
    void append(const String& text) { append(text, {}, CStringPos::end()); }
    // The code points of text from one position up to another (end: to the end).
    void append(const String& text, CStringPos from, CStringPos to);
    String finish();

private:
    const ICharEncoding& m_encoding;
    std::string m_bytes;
    std::int32_t m_length = 0;
};

// The code point as a no-case comparison sees it.
std::uint32_t foldCodePoint(std::uint32_t codePoint, CaseSensitivity caseSensitivity);

// The encoding that a text built from pieces in a and b is written in: theirs
// when they agree, else one that holds every code point.
const ICharEncoding& commonEncoding(const ICharEncoding& a, const ICharEncoding& b);

}  // namespace fenn
