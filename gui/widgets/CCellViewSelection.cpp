#include "gui/widgets/CCellViewSelection.h"

#include <algorithm>

namespace fenn::gui {

void CCellViewSelection::setRowCount(int count)
{
    count = std::max(0, count);
    if (count < getRowCount()) clearFrom(count);
    m_selected.resize(static_cast<std::size_t>(count), false);
}

bool CCellViewSelection::isSelected(int row) const
{
    return row >= 0 && row < getRowCount() && m_selected[static_cast<std::size_t>(row)];
}

std::vector<int> CCellViewSelection::getSelectedRows() const
{
    std::vector<int> rows;
    rows.reserve(static_cast<std::size_t>(m_count));
    for (int row = m_low; row <= m_high && static_cast<int>(rows.size()) < m_count; ++row) {
        if (m_selected[static_cast<std::size_t>(row)]) rows.push_back(row);
    }
    return rows;
}

int CCellViewSelection::getFirst() const
{
    for (int row = m_low; row <= m_high && m_count > 0; ++row) {
        if (m_selected[static_cast<std::size_t>(row)]) return row;
    }
    return -1;
}

void CCellViewSelection::apply(int first, int last, bool selected)
{
    int runStart = -1;
    for (int row = first; row <= last; ++row) {
        const bool flips = m_selected[static_cast<std::size_t>(row)] != selected;
        if (flips) {
            m_selected[static_cast<std::size_t>(row)] = selected;
            m_count += selected ? 1 : -1;
            if (runStart < 0) runStart = row;
        }
        if ((!flips || row == last) && runStart >= 0) {
            const int runEnd = flips ? row : row - 1;
            if (m_onChange) m_onChange(runStart, runEnd);
            runStart = -1;
        }
    }
    if (m_count == 0) {
        m_low = 0;
        m_high = -1;
    } else if (selected) {
        m_low = m_high < m_low ? first : std::min(m_low, first);
        m_high = std::max(m_high, last);
    }
}

void CCellViewSelection::setRange(int first, int last, bool selected)
{
    if (first > last) std::swap(first, last);
    first = std::max(first, 0);
    last = std::min(last, getRowCount() - 1);
    if (first > last) return;
    // Deselecting only has work where rows are selected.
    if (!selected) {
        first = std::max(first, m_low);
        last = std::min(last, m_high);
        if (first > last) return;
    }
    apply(first, last, selected);
}

void CCellViewSelection::toggle(int row)
{
    if (row < 0 || row >= getRowCount()) return;
    apply(row, row, !m_selected[static_cast<std::size_t>(row)]);
}

void CCellViewSelection::selectOnly(int first, int last)
{
    if (first > last) std::swap(first, last);
    // Rows are deselected before the new ones are selected, so that the
    // bound shrinks to the new rows.
    if (m_high >= m_low) {
        const int low = m_low;
        const int high = m_high;
        if (low < first) apply(low, std::min(high, first - 1), false);
        if (high > last) apply(std::max(low, last + 1), high, false);
    }
    if (m_count > 0) {
        m_low = std::max(m_low, first);
        m_high = std::min(m_high, last);
    }
    setRange(first, last, true);
}

void CCellViewSelection::clear()
{
    if (m_high >= m_low) apply(m_low, m_high, false);
}

void CCellViewSelection::clearFrom(int first)
{
    first = std::max(first, 0);
    if (m_high >= std::max(first, m_low)) apply(std::max(first, m_low), m_high, false);
    if (m_count > 0) m_high = std::min(m_high, first - 1);
}

void CCellViewSelection::selectAll()
{
    setRange(0, getRowCount() - 1, true);
}

}  // namespace fenn::gui
