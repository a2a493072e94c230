#pragma once

#include <algorithm>
#include <cstddef>

#include "foundation/CValueList.h"
#include "foundation/TCast.h"
#include "gui/skin/CCoreButton.h"
#include "gui/skin/CCoreCheckBox.h"
#include "gui/skin/CCoreSelectField.h"
#include "gui/skin/CCoreSliderBar.h"
#include "gui/skin/CCoreTabView.h"
#include "gui/skin/CCoreTextField.h"

namespace fenn::gui::skin {

// The skin that the creation parameters ask for: from the set "skinset"
// (default: the CSkinManager's default set), the skin "skin" (default: the
// set's skin for widgetKind). Null without a package, set or skin.
P<ISkin> findCoreSkin(const char* widgetKind, const CValueList& parameters);

// A widget kind's name ("button") as a template argument.
template <std::size_t N> struct WidgetKind
{
    // Implicit, so that a string literal names the kind.
    constexpr WidgetKind(const char (&text)[N]) { std::copy_n(text, N, name); }
    char name[N];
};

// The factory of a skinned window, registered with the "skin" window
// system: finds the skin (findCoreSkin for kind), makes the Window, copies
// the parameters into its properties and adds it to the parent. Without a
// skin of the kind Skin it returns null, and the window system makes the
// plain widget instead. A missing or frameless parent throws CError. GUI
// thread.
template <class Window, class Skin, WidgetKind kind> class TCoreWindowFactory
{
public:
    P<CWindow> operator()(CWindow* parent, const CValueList& parameters) const
    {
        const P<ISkin> found = findCoreSkin(kind.name, parameters);
        const P<Skin> skin(TCast<Skin>(found.get()));
        if (!skin) return nullptr;
        auto window = make<Window>(parent, skin);
        window->getProperties().merge(parameters);
        parent->addChild(window);
        return window;
    }
};

using CCoreButtonFactory = TCoreWindowFactory<CCoreButton, IButtonSkin, "button">;
using CCoreTextFieldFactory = TCoreWindowFactory<CCoreTextField, IFieldSkin, "textfield">;
using CCoreTextAreaFactory = TCoreWindowFactory<CCoreTextArea, IFieldSkin, "textarea">;
using CCoreCheckBoxFactory = TCoreWindowFactory<CCoreCheckBox, ICheckBoxSkin, "checkbox">;
using CCoreSelectFieldFactory = TCoreWindowFactory<CCoreSelectField, ISelectFieldSkin, "selectfield">;
using CCoreSliderBarFactory = TCoreWindowFactory<CCoreSliderBar, ISliderBarSkin, "sliderbar">;
using CCoreTabViewFactory = TCoreWindowFactory<CCoreTabView, ITabViewSkin, "tabview">;

}  // namespace fenn::gui::skin
