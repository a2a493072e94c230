#include "gui/layout/CTextGUISize.h"

#include <algorithm>

namespace fenn::gui {

CTextGUISize::CTextGUISize(const P<ITextMetrics>& metrics, const String& text, int heightChars, int widthAdd,
                           int heightAdd)
    : m_metrics(metrics), m_text(text), m_heightChars(heightChars), m_widthAdd(widthAdd), m_heightAdd(heightAdd)
{
}

CSize CTextGUISize::getSize() const
{
    const CSize textSize = m_metrics->measureText(m_text);
    int height = textSize.height;
    if (m_heightChars > 0) height = std::max(height, m_heightChars * m_metrics->getLineHeight());
    return {std::max(0, textSize.width + m_widthAdd), std::max(0, height + m_heightAdd)};
}

const String& CTextGUISize::getText() const
{
    return m_text;
}

void CTextGUISize::setText(const String& text)
{
    m_text = text;
}

}  // namespace fenn::gui
