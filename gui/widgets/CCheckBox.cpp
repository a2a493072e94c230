#include "gui/widgets/CCheckBox.h"

#include <cairo.h>

#include "gui/CPainter.h"
#include "gui/CStyle.h"

namespace fenn::gui {

namespace {

// A box with corners this round reads as a check box, not a select field.
constexpr double kBoxRadius = 4.0;

}  // namespace

CCheckBox::CCheckBox() = default;

CCheckBox::CCheckBox(const String& text)
{
    setText(text);
}

void CCheckBox::toggle()
{
    if (!isEnabled()) return;
    setChecked(!isChecked());
    notify({Notification::changed});
}

void CCheckBox::paintIndicator(CPainter& painter, const CRect& box)
{
    const IndicatorColors colors = getIndicatorColors();
    painter.fillRoundedRect(box, kBoxRadius, colors.fill);
    painter.strokeRoundedRect(box, kBoxRadius, colors.border);
    if (!isChecked()) return;
    // The tick: a short stroke down to the bottom third and a long one up
    // to the right, with round ends, sized with the box.
    cairo_t* cr = painter.getCairo();
    const CPainter::CSaved saved = painter.save();
    const double size = box.width;
    cairo_set_source_rgba(cr, colors.mark.red() / 255.0, colors.mark.green() / 255.0, colors.mark.blue() / 255.0,
                          colors.mark.alpha() / 255.0);
    cairo_set_line_width(cr, size * 0.12);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    cairo_move_to(cr, box.x + size * 0.26, box.y + size * 0.52);
    cairo_line_to(cr, box.x + size * 0.43, box.y + size * 0.69);
    cairo_line_to(cr, box.x + size * 0.75, box.y + size * 0.33);
    cairo_stroke(cr);
}

}  // namespace fenn::gui
