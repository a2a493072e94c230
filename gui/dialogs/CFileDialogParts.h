#pragma once

// The windows that only the file dialog uses: the listing, the error line
// and the Up button. Owned by the dialog; GUI thread.

#include "foundation/CURI.h"
#include "gui/widgets/CButton.h"
#include "gui/widgets/CCellView.h"

namespace fenn::gui {

// A folder's URI in the one form the dialog compares: a "file" URI
// without a trailing "/" (but "/" itself) and with "." and ".." resolved;
// other URIs as they are.
CURI canonicalFolder(const CURI& folder);
// A place as the path field shows it: the path of a "file" URI, the text
// of another.
String displayPath(const CURI& place);

// The folder listing: a cell view whose name column takes the width that
// the size and date columns leave, with a hint in the middle while there
// are no rows.
class CFolderView : public CCellView
{
public:
    void setEmptyText(const String& text);
    const String& getEmptyText() const { return m_emptyText; }
    void paint(CPainter& painter) override;

protected:
    void onResized() override;

private:
    String m_emptyText;
};

// One line about something that went wrong, on a soft red band with a
// warning mark; the whole text is its tool tip, for when it is cut short.
class CNoticeLine : public CWindow
{
public:
    void setText(const String& text) override;
    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;
};

// A square button with an arrow pointing up.
class CUpButton : public CButton
{
public:
    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;
};

}  // namespace fenn::gui
