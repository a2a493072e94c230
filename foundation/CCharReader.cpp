#include "foundation/CCharReader.h"

#include <algorithm>

namespace fenn {

CCharReader::CCharReader(const IString& text, CStringPos start)
    : m_data(reinterpret_cast<const std::uint8_t*>(text.getData())), m_byteSize(text.getByteSize()),
      m_encoding(text.getEncoding()), m_text(text)
{
    setPos(start);
}

void CCharReader::setPos(CStringPos pos)
{
    if (pos.isEnd()) pos = {m_text.getLength(), m_byteSize};
    if (m_count > 0 && pos.index >= m_windowIndex && pos.index <= m_windowIndex + m_count &&
        m_offsets[pos.index - m_windowIndex] == pos.byteOffset) {
        m_cursor = pos.index - m_windowIndex;
        return;
    }
    m_windowIndex = pos.index;
    m_count = 0;
    m_cursor = 0;
    m_offsets[0] = pos.byteOffset;
}

bool CCharReader::refillForward()
{
    const std::int32_t index = m_windowIndex + m_count;
    const std::int32_t pos = m_offsets[m_count];
    if (pos >= m_byteSize) {
        if (m_text.getKnownLength() < 0) m_text.setKnownLength(index);
        return false;
    }
    std::int32_t count = 0;
    const std::int32_t end = m_encoding.decodeForward(m_codePoints, kWindow, count, m_data, m_byteSize, pos, m_offsets,
                                                      ICharEncoding::Walk::lenient);
    m_windowIndex = index;
    m_count = count;
    m_cursor = 0;
    m_offsets[count] = count == 0 ? m_byteSize : end;
    if (count == 0) {
        if (m_text.getKnownLength() < 0) m_text.setKnownLength(index);
        return false;
    }
    return true;
}

bool CCharReader::readBackward(std::uint32_t& codePoint)
{
    if (m_cursor == 0 && !refillBackward()) return false;
    codePoint = m_codePoints[--m_cursor];
    return true;
}

bool CCharReader::refillBackward()
{
    const std::int32_t index = m_windowIndex + m_cursor;
    const std::int32_t pos = m_offsets[m_cursor];
    if (pos <= 0 || index <= 0) return false;
    std::uint32_t codePoints[kWindow];
    std::int32_t offsets[kWindow];
    std::int32_t count = 0;
    m_encoding.decodeBackward(codePoints, std::min(kWindow, index), count, m_data, m_byteSize, pos, offsets,
                              ICharEncoding::Walk::lenient);
    if (count == 0) return false;
    for (std::int32_t i = 0; i < count; ++i) {
        m_codePoints[i] = codePoints[count - 1 - i];
        m_offsets[i] = offsets[count - 1 - i];
    }
    m_offsets[count] = pos;
    m_windowIndex = index - count;
    m_count = count;
    m_cursor = count;
    return true;
}

}  // namespace fenn
