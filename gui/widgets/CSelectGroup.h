#pragma once

#include <vector>

#include "gui/CWindow.h"

namespace fenn::gui {

class CSelectField;

// A container whose select fields are mutually exclusive: setting one of
// them clears the others. Its fields are the CSelectField windows of its
// subtree, in tree order, that have no nearer group of their own. It lays
// them out one under the other unless it is given another layout. When the
// user changes the choice it tells listeners Notification::changed with the
// new index. Owned by its parent window; GUI thread.
class CSelectGroup : public CWindow
{
public:
    CSelectGroup();

    // Makes a field with the text and adds it as a child and to the layout.
    P<CSelectField> addField(const String& text, const CLayoutParams& params = {});
    std::vector<CSelectField*> getFields() const;
    // The index of the set field among getFields, or -1.
    int getSelectedIndex() const;
    // Sets the field at index and clears the others (all of them for an
    // index outside the fields); no listener hears it.
    void setSelectedIndex(int index);
    // Moves the choice from field by step fields (wrapping around, skipping
    // fields that cannot take the focus) as the arrow keys do: the new field
    // is set, takes the focus and listeners hear it. False when there is no
    // other field to move to.
    bool moveSelection(CSelectField& field, int step);

private:
    void collectFields(const CWindow& window, std::vector<CSelectField*>& out) const;
};

}  // namespace fenn::gui
