#include "gui/widgets/CSelectField.h"

#include <algorithm>

#include "gui/CPainter.h"
#include "gui/CStyle.h"
#include "gui/widgets/CSelectGroup.h"

namespace fenn::gui {

CSelectField::CSelectField() = default;

CSelectField::CSelectField(const String& text)
{
    setText(text);
}

CSelectGroup* CSelectField::getGroup() const
{
    for (CWindow* window = getParent(); window; window = window->getParent()) {
        if (auto* group = dynamic_cast<CSelectGroup*>(window)) return group;
    }
    return nullptr;
}

void CSelectField::setChecked(bool checked)
{
    if (checked == isChecked()) return;
    CIndicatorButton::setChecked(checked);
    if (!checked) return;
    if (CSelectGroup* group = getGroup()) {
        for (CSelectField* other : group->getFields()) {
            if (other != this) other->setChecked(false);
        }
    }
}

void CSelectField::select()
{
    if (!isEnabled() || isChecked()) return;
    const P<CSelectField> keep(this);
    CSelectGroup* group = getGroup();
    std::vector<P<CSelectField>> cleared;
    if (group) {
        for (CSelectField* other : group->getFields()) {
            if (other != this && other->isChecked()) cleared.emplace_back(other);
        }
    }
    setChecked(true);
    // A click on a field that was no Tab stop finds no window to focus; the
    // choice takes the focus, as it does when the arrow keys move it.
    setFocus();
    notify({Notification::changed});
    for (const P<CSelectField>& other : cleared) other->notify({Notification::changed});
    if (group) group->notify({Notification::changed, group->getSelectedIndex()});
}

bool CSelectField::isFocusable() const
{
    if (!CIndicatorButton::isFocusable()) return false;
    const CSelectGroup* group = getGroup();
    if (!group) return true;
    // One Tab stop per group: the chosen field, or the first that could take
    // the focus while none is chosen (or the chosen one cannot).
    const std::vector<CSelectField*> fields = group->getFields();
    const auto usable = [](const CSelectField* field) { return field->CIndicatorButton::isFocusable(); };
    const auto chosen = std::find_if(fields.begin(), fields.end(),
                                     [&](const CSelectField* field) { return field->isChecked() && usable(field); });
    if (chosen != fields.end()) return *chosen == this;
    const auto first = std::find_if(fields.begin(), fields.end(), usable);
    return first != fields.end() && *first == this;
}

bool CSelectField::onKeyDown(const CKeyEvent& event)
{
    if (event.modifiers == modifierNone) {
        CSelectGroup* group = getGroup();
        if (group && (event.key == Key::up || event.key == Key::left)) return group->moveSelection(*this, -1);
        if (group && (event.key == Key::down || event.key == Key::right)) return group->moveSelection(*this, 1);
    }
    return CIndicatorButton::onKeyDown(event);
}

void CSelectField::paintIndicator(CPainter& painter, const CRect& box)
{
    const IndicatorColors colors = getIndicatorColors();
    const double round = box.width / 2.0;
    painter.fillRoundedRect(box, round, colors.fill);
    painter.strokeRoundedRect(box, round, colors.border);
    if (!isChecked()) return;
    // The dot: two fifths of the circle, so the accent ring around it stays
    // wide, and of the circle's parity, so that it sits in the middle.
    int dot = std::max(4, box.width * 2 / 5);
    if ((box.width - dot) % 2 != 0) ++dot;
    const CRect centre{box.x + (box.width - dot) / 2, box.y + (box.height - dot) / 2, dot, dot};
    painter.fillRoundedRect(centre, dot / 2.0, colors.mark);
}

}  // namespace fenn::gui
