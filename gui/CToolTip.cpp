#include "gui/CToolTip.h"

#include "gui/CPainter.h"
#include "gui/CStyle.h"

namespace fenn::gui {

namespace {

constexpr int kPaddingX = 8;
constexpr int kPaddingY = 5;
// Long tool tips wrap rather than run across the screen.
constexpr int kMaxTextWidth = 320;

}  // namespace

CToolTip::CToolTip(const String& text)
{
    setText(text);
}

CSize CToolTip::computeSize(SizeType)
{
    CTextLayout layout(getFont(), getText());
    layout.setWidth(kMaxTextWidth, TextWrap::wrap);
    const CSize text = layout.getSize();
    return {text.width + 2 * kPaddingX, text.height + 2 * kPaddingY};
}

void CToolTip::paint(CPainter& painter)
{
    const CStyle& style = CStyle::get();
    painter.fillRoundedRect(getClientRect(), 4, style.tooltipBackground);
    painter.drawText(getClientRect().inset(kPaddingX, kPaddingY, kPaddingX, kPaddingY), getText(), getFont(),
                     style.tooltipText, TextAlign::left, TextWrap::wrap);
}

}  // namespace fenn::gui
