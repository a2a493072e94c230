#pragma once

#include "foundation/CObject.h"
#include "gui/skin/ILayer.h"

namespace fenn::gui {
class CTabView;
}

namespace fenn::gui::skin {

// The text, font and text colour of a window. The window owns the layer
// manager that owns this source, so the link back is raw.
class CWindowTextSource : public CObject, public virtual ITextSource
{
public:
    explicit CWindowTextSource(CWindow& window) : m_window(window) {}

    String getText() const override;
    P<CFont> getFont() const override;
    CColor getTextColor() const override;

private:
    CWindow& m_window;
};

// The title of one tab of a tab view, in the view's font and colour. Raw
// link for the same reason as above.
class CTabTextSource : public CObject, public virtual ITextSource
{
public:
    CTabTextSource(CTabView& view, int index) : m_view(view), m_index(index) {}

    int getIndex() const { return m_index; }
    String getText() const override;
    P<CFont> getFont() const override;
    CColor getTextColor() const override;

private:
    CTabView& m_view;
    int m_index;
};

}  // namespace fenn::gui::skin
