#include "gui/skin/CWindowSystem.h"

#include "gui/sdl/DefaultWindowSystem.h"
#include "gui/skin/CCoreFactories.h"

namespace fenn::gui::skin {

CWindowSystem::CWindowSystem() : fenn::gui::CWindowSystem("skin")
{
    registerParentedType("button", CCoreButtonFactory());
    registerParentedType("textfield", CCoreTextFieldFactory());
    registerParentedType("textarea", CCoreTextAreaFactory());
    registerParentedType("checkbox", CCoreCheckBoxFactory());
    registerParentedType("selectfield", CCoreSelectFieldFactory());
    registerParentedType("sliderbar", CCoreSliderBarFactory());
    registerParentedType("tabview", CCoreTabViewFactory());
}

P<IWindowSystem> CWindowSystem::getDelegate() const
{
    if (P<IWindowSystem> registered = CWindowSystemRegistry::get("default")) return registered;
    if (!m_ownDefault) m_ownDefault = sdl::createDefaultWindowSystem();
    return m_ownDefault;
}

bool CWindowSystem::hasType(const String& type) const
{
    return fenn::gui::CWindowSystem::hasType(type) || getDelegate()->hasType(type);
}

P<CWindow> CWindowSystem::createWindow(const String& type, CWindow* parent, const CValueList& parameters)
{
    if (fenn::gui::CWindowSystem::hasType(type)) {
        if (P<CWindow> window = fenn::gui::CWindowSystem::createWindow(type, parent, parameters)) return window;
    }
    return getDelegate()->createWindow(type, parent, parameters);
}

}  // namespace fenn::gui::skin
