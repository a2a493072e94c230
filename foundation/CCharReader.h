#pragma once

#include <cstdint>

#include "foundation/ICharEncoding.h"
#include "foundation/IString.h"

namespace fenn {

// A place in a string: index in code points and offset in bytes. Carrying
// both keeps variable-width text cheap to walk. (-1, -1) is the end position
// that searches give when they find nothing.
struct CStringPos
{
    std::int32_t index = 0;
    std::int32_t byteOffset = 0;

    static constexpr CStringPos end() { return {-1, -1}; }
    constexpr bool isEnd() const { return index < 0; }
    friend constexpr bool operator==(const CStringPos&, const CStringPos&) = default;
};

// Walks the code points of a text through a window of 16 decoded code
// points with their offsets, so that a walk costs one call into the encoding
// per 16 code points. Placing the reader inside the current window decodes
// nothing. Never allocates. Invalid data is stepped over.
class CCharReader
{
public:
    static constexpr std::int32_t kWindow = 16;

    explicit CCharReader(const IString& text, CStringPos start = {});

    // The next code point forward; false at the end.
    bool read(std::uint32_t& codePoint)
    {
        if (m_cursor == m_count && !refillForward()) return false;
        codePoint = m_codePoints[m_cursor++];
        return true;
    }
    // The code point before the current position; false at the start.
    bool readBackward(std::uint32_t& codePoint);

    // Where the next forward read starts.
    CStringPos getPos() const { return {m_windowIndex + m_cursor, m_offsets[m_cursor]}; }
    void setPos(CStringPos pos);
    bool isAtEnd() { return m_cursor == m_count && !refillForward(); }

private:
    bool refillForward();
    bool refillBackward();

    const std::uint8_t* m_data;
    std::int32_t m_byteSize;
    const ICharEncoding& m_encoding;
    const IString& m_text;
    std::uint32_t m_codePoints[kWindow];
    std::int32_t m_offsets[kWindow + 1];
    std::int32_t m_windowIndex = 0;  // code point index of m_codePoints[0]
    std::int32_t m_count = 0;
    std::int32_t m_cursor = 0;
};

}  // namespace fenn
