#pragma once

#include "gui/CWindow.h"

namespace fenn::gui {

// What check boxes and select fields share: a small indicator (a box or a
// circle) with the window's text beside it, a checked state, and the sizes
// that follow from the two. A click or Space runs activate, which each kind
// defines. Owned by its parent window; GUI thread.
class CIndicatorButton : public CWindow
{
public:
    bool isChecked() const { return m_checked; }
    // Sets the state without telling listeners.
    virtual void setChecked(bool checked);

    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;
    void onClick(const CMouseEvent& event) override;
    bool onKeyDown(const CKeyEvent& event) override;

protected:
    CIndicatorButton();

    // The colours of the indicator in the window's present state.
    struct IndicatorColors
    {
        CColor fill;
        CColor border;
        CColor mark;
    };
    IndicatorColors getIndicatorColors() const;
    // Where the indicator sits, in the window's coordinates.
    CRect getIndicatorRect() const;

    // What a click or Space does.
    virtual void activate() = 0;
    virtual void paintIndicator(CPainter& painter, const CRect& box) = 0;

private:
    bool m_checked = false;
};

}  // namespace fenn::gui
