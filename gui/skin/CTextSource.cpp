#include "gui/skin/CTextSource.h"

#include "gui/CStyle.h"
#include "gui/widgets/CTabView.h"

namespace fenn::gui::skin {

namespace {

CColor windowTextColor(const CWindow& window)
{
    const CStyle& style = CStyle::get();
    return window.getTextColor().value_or(window.isEnabled() ? style.text : style.textDisabled);
}

}  // namespace

String CWindowTextSource::getText() const
{
    return m_window.getText();
}

P<CFont> CWindowTextSource::getFont() const
{
    return m_window.getFont();
}

CColor CWindowTextSource::getTextColor() const
{
    return windowTextColor(m_window);
}

String CTabTextSource::getText() const
{
    return m_index < m_view.getPageCount() ? m_view.getPageText(m_index) : String();
}

P<CFont> CTabTextSource::getFont() const
{
    return m_view.getFont();
}

CColor CTabTextSource::getTextColor() const
{
    return windowTextColor(m_view);
}

}  // namespace fenn::gui::skin
