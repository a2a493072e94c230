#pragma once

#include <functional>
#include <map>
#include <string>

#include "foundation/CObject.h"
#include "foundation/P.h"
#include "foundation/String.h"
#include "foundation/CValueList.h"
#include "gui/CWindow.h"

namespace fenn::gui {

// Makes the windows of a look: the plain toolkit ("default") or a skin
// ("skin"). A type is a layout file's element name in lower case
// ("button", "cellview", "frame"...). GUI thread.
class IWindowSystem : public virtual IBase
{
public:
    virtual String getId() const = 0;
    virtual bool hasType(const String& type) const = 0;
    // A new window of the type, added to parent when one is given; null
    // for a type this system does not make. The parameters are the string
    // values a layout file gives the element (its attributes); a system may
    // read its own from them (a skin reads "skin" and "skinset"), and they
    // end up in the window's properties.
    virtual P<CWindow> createWindow(const String& type, CWindow* parent, const CValueList& parameters) = 0;
    P<CWindow> createWindow(const String& type, CWindow* parent);
};

// A window system from a table of factories, one per type: adding a widget
// type adds a registration.
class CWindowSystem : public CObject, public virtual IWindowSystem
{
public:
    // Makes a bare window; the system copies the parameters into its
    // properties and adds it to the parent.
    using Factory = std::function<P<CWindow>()>;
    // Makes the window from the parent and the parameters and adds it to
    // the parent itself: for windows that need their parent to exist.
    using ParentedFactory = std::function<P<CWindow>(CWindow* parent, const CValueList& parameters)>;

    explicit CWindowSystem(const String& id) : m_id(id) {}

    void registerType(const String& type, Factory factory);
    void registerParentedType(const String& type, ParentedFactory factory);

    String getId() const override { return m_id; }
    bool hasType(const String& type) const override;
    using IWindowSystem::createWindow;
    P<CWindow> createWindow(const String& type, CWindow* parent, const CValueList& parameters) override;

private:
    String m_id;
    std::map<std::string, ParentedFactory> m_factories;
};

// The window systems of the program by id. GUI thread.
class CWindowSystemRegistry
{
public:
    static void add(const P<IWindowSystem>& system);
    static void remove(const String& id);
    // The system with the id, or null.
    static P<IWindowSystem> get(const String& id);
};

}  // namespace fenn::gui
