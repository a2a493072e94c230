#pragma once

#include "foundation/IBase.h"
#include "foundation/P.h"
#include "foundation/String.h"
#include "gui/image/IImage.h"

namespace fenn::gui {

// Hears that rows of a cell view model changed. Cell views listen to their
// model this way. GUI thread.
class ICellViewModelListener : public virtual IBase
{
public:
    // Passed as rowCount: every row from firstRow on changed, and the number
    // of rows may have changed too (rows were added, removed or replaced).
    static constexpr int kToTheEnd = -1;

    // Rows firstRow .. firstRow + rowCount - 1 show something new.
    virtual void cellViewModelChanged(int firstRow, int rowCount) = 0;
};

// The rows a cell view shows, asked for one visible cell at a time, so
// that a list of a hundred thousand files costs nothing until it is
// painted. Rows and columns count from 0 in the model's own order. A
// model tells its listeners, which it holds frail (each removes itself
// before it goes), when rows change. GUI thread.
class ICellViewModel : public virtual IBase
{
public:
    virtual int getRowCount() const = 0;
    virtual String getCellText(int row, int column) const = 0;
    // The picture of an image cell, or an icon before the text of a text
    // cell; null for none.
    virtual P<IImage> getCellImage(int row, int column) const = 0;
    virtual void addModelListener(ICellViewModelListener* listener) = 0;
    virtual void removeModelListener(ICellViewModelListener* listener) = 0;
};

}  // namespace fenn::gui
