#pragma once

#include "gui/CPainter.h"
#include "gui/CStyle.h"
#include "gui/Events.h"
#include "gui/layout/ILayoutItem.h"
#include "gui/skin/CCoreWindow.h"

namespace fenn::gui::skin {

// What every skinned window with one skin shares: a plain widget (Base)
// for behaviour and one CCoreWindow for painting and sizing, kept in step
// by the hooks here. The pointer entering or leaving moves the core to the
// state computeState asks for (State is the skin kind's state enum); a new
// size resizes the live layers, a new frame makes them again, and a changed
// property remakes the layers that show it. Owned by its parent; GUI thread.
template <class Base, class State> class TCoreWindow : public Base
{
public:
    CCoreWindow& getCore() { return *m_core; }
    const CCoreWindow& getCore() const { return *m_core; }

    // The state the window's inputs ask for now.
    virtual State computeState() const = 0;

    void onMouseEnter() override { m_core->setState(computeState()); }
    void onMouseLeave() override { m_core->setState(computeState()); }

protected:
    // Throws CError when parent is null or not inside a frame; the caller
    // adds the window to parent.
    TCoreWindow(CWindow* parent, P<ISkin> skin, State initialState)
    {
        CCoreWindow::checkParent(parent);
        m_core = make<CCoreWindow>(*this, std::move(skin), initialState);
    }

    // Paints the skin's layers in the state the inputs ask for, then, when
    // the skin has no text layer, the window's text inside objectpos in its
    // font and colour.
    void paintSkin(CPainter& painter, TextAlign align, TextWrap wrap)
    {
        m_core->syncState(computeState());
        m_core->paint(painter);
        if (m_core->getSkin()->hasTextLayer()) return;
        const CStyle& style = CStyle::get();
        const CColor color = this->isEnabled() ? this->textColorOr(style.text) : style.textDisabled;
        painter.drawText(m_core->getContentRect(), this->getText(), this->getFont(), color, align, wrap);
    }

    void onResized() override
    {
        m_core->resize(this->getBounds().size());
        Base::onResized();
    }

    void onFrameChanged() override
    {
        m_core->reset();
        Base::onFrameChanged();
    }

    void onPropertyChanged(const String& name) override { m_core->propertyChanged(name); }

private:
    P<CCoreWindow> m_core;
};

// A skinned window that is pressed and labelled on one line: buttons, check
// boxes and select fields. A press shows at once; after a release the frame
// clears the pressed window and invalidates it, and paint picks the state
// up. The preferred size is the label's with objectpos (or what the layers
// ask); the window grows sideways only.
template <class Base, class State> class TCorePressWindow : public TCoreWindow<Base, State>
{
public:
    CSize computeSize(SizeType type) override
    {
        const CSize preferred = this->getCore().getPreferredSize(this->getFont()->measureText(this->getText()));
        if (type == SizeType::max) return {kUnboundedExtent, preferred.height};
        return preferred;
    }

    bool onMouseDown(const CMouseEvent& event) override
    {
        this->getCore().setState(this->computeState());
        return Base::onMouseDown(event);
    }

    bool onMouseUp(const CMouseEvent& event) override
    {
        this->invalidate();
        return Base::onMouseUp(event);
    }

protected:
    using TCoreWindow<Base, State>::TCoreWindow;
};

}  // namespace fenn::gui::skin
