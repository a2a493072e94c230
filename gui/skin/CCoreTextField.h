#pragma once

#include "gui/skin/CCoreWindow.h"
#include "gui/widgets/CTextArea.h"
#include "gui/widgets/CTextField.h"

namespace fenn::gui::skin {

// The field states (normal, hover, disabled) of a window's inputs.
FieldState computeFieldState(const CWindow& window);

// One line of display text drawn by a field skin: the skin's layers, then
// the text in the text layers or, without any, inside objectpos. Owned by
// its parent; GUI thread.
class CCoreTextField : public CTextField
{
public:
    // Throws CError when parent is null or not inside a frame.
    CCoreTextField(CWindow* parent, P<IFieldSkin> skin);

    CCoreWindow& getCore() { return *m_core; }

    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;
    void onMouseEnter() override;
    void onMouseLeave() override;

protected:
    void onResized() override;
    void onFrameChanged() override;
    void onPropertyChanged(const String& name) override { m_core->propertyChanged(name); }

private:
    P<CCoreWindow> m_core;
};

// Several lines of display text drawn by a field skin, wrapped inside
// objectpos when the skin has no text layer. Owned by its parent; GUI thread.
class CCoreTextArea : public CTextArea
{
public:
    // Throws CError when parent is null or not inside a frame.
    CCoreTextArea(CWindow* parent, P<IFieldSkin> skin);

    CCoreWindow& getCore() { return *m_core; }

    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;
    void onMouseEnter() override;
    void onMouseLeave() override;

protected:
    void onResized() override;
    void onFrameChanged() override;
    void onPropertyChanged(const String& name) override { m_core->propertyChanged(name); }

private:
    P<CCoreWindow> m_core;
};

}  // namespace fenn::gui::skin
