#include "gui/IWindowSystem.h"

#include <cctype>

namespace fenn::gui {

namespace {

std::string key(const String& type)
{
    std::string text = type.toStdString();
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

std::map<std::string, P<IWindowSystem>>& systems()
{
    static std::map<std::string, P<IWindowSystem>> table;
    return table;
}

}  // namespace

P<CWindow> IWindowSystem::createWindow(const String& type, CWindow* parent)
{
    return createWindow(type, parent, *make<CValueList>());
}

void CWindowSystem::registerType(const String& type, Factory factory)
{
    m_factories[key(type)] = [factory = std::move(factory)](CWindow* parent, const CValueList& parameters) {
        P<CWindow> window = factory();
        if (!window) return window;
        window->getProperties().merge(parameters);
        if (parent) parent->addChild(window);
        return window;
    };
}

void CWindowSystem::registerParentedType(const String& type, ParentedFactory factory)
{
    m_factories[key(type)] = std::move(factory);
}

bool CWindowSystem::hasType(const String& type) const
{
    return m_factories.count(key(type)) != 0;
}

P<CWindow> CWindowSystem::createWindow(const String& type, CWindow* parent, const CValueList& parameters)
{
    const auto found = m_factories.find(key(type));
    if (found == m_factories.end()) return nullptr;
    return found->second(parent, parameters);
}

void CWindowSystemRegistry::add(const P<IWindowSystem>& system)
{
    if (system) systems()[system->getId().toStdString()] = system;
}

void CWindowSystemRegistry::remove(const String& id)
{
    systems().erase(id.toStdString());
}

P<IWindowSystem> CWindowSystemRegistry::get(const String& id)
{
    const auto found = systems().find(id.toStdString());
    return found == systems().end() ? nullptr : found->second;
}

}  // namespace fenn::gui
