#include "gui/widgets/CSelectGroup.h"

#include <algorithm>
#include <cstdlib>

#include "gui/layout/CGrowLayout.h"
#include "gui/widgets/CSelectField.h"

namespace fenn::gui {

namespace {

// Select fields in a column sit closer than other controls: they read as one choice.
constexpr int kFieldSpacing = 2;

}  // namespace

CSelectGroup::CSelectGroup()
{
    auto layout = make<CGrowLayout>(Orientation::vertical);
    layout->setSpacing(kFieldSpacing);
    setLayout(layout);
}

P<CSelectField> CSelectGroup::addField(const String& text, const CLayoutParams& params)
{
    auto field = make<CSelectField>(text);
    addChild(field);
    if (const P<ILayout> layout = getLayout()) layout->addItem(field, params);
    return field;
}

void CSelectGroup::collectFields(const CWindow& window, std::vector<CSelectField*>& out) const
{
    for (const P<CWindow>& child : window.getChildren()) {
        if (auto* field = dynamic_cast<CSelectField*>(child.get())) out.push_back(field);
        // A group inside this one keeps its own fields.
        if (!dynamic_cast<CSelectGroup*>(child.get())) collectFields(*child, out);
    }
}

std::vector<CSelectField*> CSelectGroup::getFields() const
{
    std::vector<CSelectField*> fields;
    collectFields(*this, fields);
    return fields;
}

int CSelectGroup::getSelectedIndex() const
{
    const std::vector<CSelectField*> fields = getFields();
    const auto found =
        std::find_if(fields.begin(), fields.end(), [](CSelectField* field) { return field->isChecked(); });
    return found == fields.end() ? -1 : static_cast<int>(found - fields.begin());
}

void CSelectGroup::setSelectedIndex(int index)
{
    const std::vector<CSelectField*> fields = getFields();
    for (int i = 0; i < static_cast<int>(fields.size()); ++i) {
        if (i != index) fields[static_cast<std::size_t>(i)]->setChecked(false);
    }
    if (index >= 0 && index < static_cast<int>(fields.size()))
        fields[static_cast<std::size_t>(index)]->setChecked(true);
}

bool CSelectGroup::moveSelection(CSelectField& field, int step)
{
    const std::vector<CSelectField*> fields = getFields();
    const auto found = std::find(fields.begin(), fields.end(), &field);
    if (found == fields.end() || step == 0) return false;
    const int count = static_cast<int>(fields.size());
    int index = static_cast<int>(found - fields.begin());
    const int direction = step > 0 ? 1 : -1;
    for (int moved = 0, remaining = std::abs(step); remaining > 0 && moved < count; ++moved) {
        index = (index + direction + count) % count;
        CSelectField* candidate = fields[static_cast<std::size_t>(index)];
        // Only fields the user could click count; the field itself ends the round.
        if (candidate == &field) return false;
        if (candidate->isShowing() && candidate->isEnabled()) --remaining;
    }
    CSelectField* target = fields[static_cast<std::size_t>(index)];
    if (target == &field) return false;
    target->select();
    return true;
}

}  // namespace fenn::gui
