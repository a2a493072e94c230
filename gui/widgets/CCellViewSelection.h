#pragma once

#include <functional>
#include <vector>

namespace fenn::gui {

// The selected rows of a cell view, by view row. Every change reports the
// runs of rows whose state flipped, so that the view repaints just those
// rows; a bound around the selected rows keeps clearing a single selection
// in a long list from walking every row. Owned by value by its view; GUI
// thread.
class CCellViewSelection
{
public:
    // Told each run of rows, first to last, whose state changed.
    using ChangeHandler = std::function<void(int first, int last)>;

    void setChangeHandler(ChangeHandler handler) { m_onChange = std::move(handler); }

    // Rows at or past count are dropped (and reported).
    void setRowCount(int count);
    int getRowCount() const { return static_cast<int>(m_selected.size()); }
    bool isSelected(int row) const;
    int getCount() const { return m_count; }
    // The selected rows in order.
    std::vector<int> getSelectedRows() const;
    // The first selected row, or -1.
    int getFirst() const;

    // Rows outside 0..getRowCount()-1 are left out.
    void setRange(int first, int last, bool selected);
    void toggle(int row);
    // Exactly the rows first..last (in either order) end up selected.
    void selectOnly(int first, int last);
    void clear();
    // Deselects every row from first on.
    void clearFrom(int first);
    void selectAll();

private:
    // Sets each row of first..last (already within range) and reports the runs that changed.
    void apply(int first, int last, bool selected);

    std::vector<bool> m_selected;
    int m_count = 0;
    // Every selected row lies within low..high (an empty bound when high < low).
    int m_low = 0;
    int m_high = -1;
    ChangeHandler m_onChange;
};

}  // namespace fenn::gui
