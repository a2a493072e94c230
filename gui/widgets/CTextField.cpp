#include "gui/widgets/CTextField.h"

#include <algorithm>

#include "gui/CPainter.h"
#include "gui/CStyle.h"

namespace fenn::gui {

namespace {

// Room above and below the line, so that a label beside a control of the
// usual height lines up with that control's text without crowding.
constexpr int kVerticalPadding = 2;

// The text as the one line it shows: line breaks become blanks.
String singleLine(const String& text)
{
    return text.contains("\n") ? text.replace("\r\n", " ").replace("\n", " ") : text;
}

}  // namespace

CTextField::CTextField() = default;

CTextField::CTextField(const String& text)
{
    setText(text);
}

CSize CTextField::computeSize(SizeType type)
{
    const P<CFont> font = getFont();
    const int height = font->getLineHeight() + 2 * kVerticalPadding;
    if (type == SizeType::max) return {kUnboundedExtent, height};
    const int width = font->measureText(singleLine(getText())).width;
    if (type == SizeType::min) return {std::min(width, font->measureText("Xx\u2026").width), height};
    return {width, height};
}

void CTextField::paint(CPainter& painter)
{
    CWindow::paint(painter);
    const CStyle& style = CStyle::get();
    const CColor color = isEnabled() ? textColorOr(style.text) : style.textDisabled;
    painter.drawText(getClientRect(), singleLine(getText()), getFont(), color, getTextAlign(), TextWrap::ellipsis);
}

}  // namespace fenn::gui
