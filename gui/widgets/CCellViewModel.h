#pragma once

#include <vector>

#include "foundation/CObject.h"
#include "foundation/TFrailArray.h"
#include "gui/widgets/ICellViewModel.h"

namespace fenn::gui {

// What most cell view models share: the frail list of listeners and no
// images. Subclasses call notifyChanged when their rows change. GUI thread.
class CCellViewModelBase : public CObject, public virtual ICellViewModel
{
public:
    P<IImage> getCellImage(int row, int column) const override;
    void addModelListener(ICellViewModelListener* listener) override;
    void removeModelListener(ICellViewModelListener* listener) override;

protected:
    CCellViewModelBase();
    void notifyChanged(int firstRow, int rowCount);

private:
    P<TFrailArray<ICellViewModelListener>> m_listeners;
};

// Rows of texts held in memory: the model of a cell view that a layout
// file makes, and of short lists the application fills by hand. A cell
// past the end of its row is empty. Owned by whoever set it on a view;
// GUI thread.
class CCellViewListModel : public CCellViewModelBase
{
public:
    int getRowCount() const override { return static_cast<int>(m_rows.size()); }
    String getCellText(int row, int column) const override;

    void addRow(std::vector<String> cells);
    // Throws CInvalidArgError for a row outside 0..getRowCount().
    void insertRow(int row, std::vector<String> cells);
    void removeRow(int row);
    void setCellText(int row, int column, const String& text);
    // Takes row from out of the list and puts it back so that it ends up at
    // index to; the rows between shift by one.
    void moveRow(int from, int to);
    void clear();

private:
    void checkRow(int row, int end, const char* method) const;

    std::vector<std::vector<String>> m_rows;
};

}  // namespace fenn::gui
