#include "gui/skin/CCoreFactories.h"

#include "foundation/TCast.h"
#include "gui/skin/CCoreButton.h"
#include "gui/skin/CCoreCheckBox.h"
#include "gui/skin/CCoreSelectField.h"
#include "gui/skin/CCoreSliderBar.h"
#include "gui/skin/CCoreTabView.h"
#include "gui/skin/CCoreTextField.h"
#include "gui/skin/CSkinManager.h"

namespace fenn::gui::skin {

namespace {

template <class Skin> P<Skin> findSkin(const char* widgetKind, const CValueList& parameters)
{
    const P<ISkinSet> set = CSkinManager::getInstance()->getSkinSet(parameters.getString("skinset", String()));
    if (!set) return nullptr;
    const String id = parameters.getString("skin", set->getDefaultSkinId(widgetKind));
    const P<ISkin> skin = set->getSkin(id);
    return P<Skin>(TCast<Skin>(skin.get()));
}

template <class Window, class Skin>
P<CWindow> makeCoreWindow(const char* widgetKind, CWindow* parent, const CValueList& parameters)
{
    const P<Skin> skin = findSkin<Skin>(widgetKind, parameters);
    if (!skin) return nullptr;
    auto window = make<Window>(parent, skin);
    window->getProperties().merge(parameters);
    parent->addChild(window);
    return window;
}

}  // namespace

P<CWindow> CCoreButtonFactory::operator()(CWindow* parent, const CValueList& parameters) const
{
    return makeCoreWindow<CCoreButton, IButtonSkin>("button", parent, parameters);
}

P<CWindow> CCoreTextFieldFactory::operator()(CWindow* parent, const CValueList& parameters) const
{
    return makeCoreWindow<CCoreTextField, IFieldSkin>("textfield", parent, parameters);
}

P<CWindow> CCoreTextAreaFactory::operator()(CWindow* parent, const CValueList& parameters) const
{
    return makeCoreWindow<CCoreTextArea, IFieldSkin>("textarea", parent, parameters);
}

P<CWindow> CCoreCheckBoxFactory::operator()(CWindow* parent, const CValueList& parameters) const
{
    return makeCoreWindow<CCoreCheckBox, ICheckBoxSkin>("checkbox", parent, parameters);
}

P<CWindow> CCoreSelectFieldFactory::operator()(CWindow* parent, const CValueList& parameters) const
{
    return makeCoreWindow<CCoreSelectField, ISelectFieldSkin>("selectfield", parent, parameters);
}

P<CWindow> CCoreSliderBarFactory::operator()(CWindow* parent, const CValueList& parameters) const
{
    return makeCoreWindow<CCoreSliderBar, ISliderBarSkin>("sliderbar", parent, parameters);
}

P<CWindow> CCoreTabViewFactory::operator()(CWindow* parent, const CValueList& parameters) const
{
    return makeCoreWindow<CCoreTabView, ITabViewSkin>("tabview", parent, parameters);
}

}  // namespace fenn::gui::skin
