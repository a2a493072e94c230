#include "gui/widgets/CCellViewModel.h"

#include <algorithm>
#include <cstdlib>

#include "foundation/CObjectError.h"

namespace fenn::gui {

CCellViewModelBase::CCellViewModelBase() : m_listeners(make<TFrailArray<ICellViewModelListener>>()) {}

P<IImage> CCellViewModelBase::getCellImage(int, int) const
{
    return nullptr;
}

void CCellViewModelBase::addModelListener(ICellViewModelListener* listener)
{
    m_listeners->addFrail(listener);
}

void CCellViewModelBase::removeModelListener(ICellViewModelListener* listener)
{
    m_listeners->remove(listener);
}

void CCellViewModelBase::notifyChanged(int firstRow, int rowCount)
{
    m_listeners->notify([&](ICellViewModelListener& listener) { listener.cellViewModelChanged(firstRow, rowCount); });
}

void CCellViewListModel::checkRow(int row, int end, const char* method) const
{
    if (row < 0 || row > end) throw CInvalidArgError(this, method, "row");
}

String CCellViewListModel::getCellText(int row, int column) const
{
    if (row < 0 || row >= getRowCount() || column < 0) return {};
    const std::vector<String>& cells = m_rows[static_cast<std::size_t>(row)];
    return static_cast<std::size_t>(column) < cells.size() ? cells[static_cast<std::size_t>(column)] : String();
}

void CCellViewListModel::addRow(std::vector<String> cells)
{
    insertRow(getRowCount(), std::move(cells));
}

void CCellViewListModel::insertRow(int row, std::vector<String> cells)
{
    checkRow(row, getRowCount(), "insertRow");
    m_rows.insert(m_rows.begin() + row, std::move(cells));
    notifyChanged(row, ICellViewModelListener::kToTheEnd);
}

void CCellViewListModel::removeRow(int row)
{
    checkRow(row, getRowCount() - 1, "removeRow");
    m_rows.erase(m_rows.begin() + row);
    notifyChanged(row, ICellViewModelListener::kToTheEnd);
}

void CCellViewListModel::setCellText(int row, int column, const String& text)
{
    checkRow(row, getRowCount() - 1, "setCellText");
    if (column < 0) throw CInvalidArgError(this, "setCellText", "column");
    std::vector<String>& cells = m_rows[static_cast<std::size_t>(row)];
    if (cells.size() <= static_cast<std::size_t>(column)) cells.resize(static_cast<std::size_t>(column) + 1);
    cells[static_cast<std::size_t>(column)] = text;
    notifyChanged(row, 1);
}

void CCellViewListModel::moveRow(int from, int to)
{
    checkRow(from, getRowCount() - 1, "moveRow");
    checkRow(to, getRowCount() - 1, "moveRow");
    if (from == to) return;
    const auto begin = m_rows.begin();
    if (from < to) {
        std::rotate(begin + from, begin + from + 1, begin + to + 1);
    } else {
        std::rotate(begin + to, begin + from, begin + from + 1);
    }
    notifyChanged(std::min(from, to), std::abs(to - from) + 1);
}

void CCellViewListModel::clear()
{
    m_rows.clear();
    notifyChanged(0, ICellViewModelListener::kToTheEnd);
}

}  // namespace fenn::gui
