#pragma once

#include <vector>

#include "foundation/CObject.h"
#include "foundation/IPackage.h"
#include "foundation/TFrailArray.h"

namespace fenn {

// The bookkeeping of a package: name, version, dependencies, the started
// flag and the listeners. Subclasses do their own work in onStart and onStop.
// Packages are started and stopped on the GUI thread.
class CPackageBase : public CObject, public virtual IPackage
{
public:
    CPackageBase(String name, String version, std::vector<String> dependencies = {});

    String getName() const override { return m_name; }
    String getVersion() const override { return m_version; }
    std::vector<String> getDependencies() const override { return m_dependencies; }
    bool isStarted() const override { return m_started; }
    void start() override;
    void stop() override;
    void addListener(IPackageListener* listener) override { m_listeners.add(listener); }
    void addFrailListener(IPackageListener* listener) override { m_listeners.addFrail(listener); }
    void removeListener(IPackageListener* listener) override { m_listeners.remove(listener); }
    void setPackageManager(IPackageManager* manager) override { m_manager = manager; }

protected:
    virtual void onStart() {}
    virtual void onStop() {}

private:
    String m_name;
    String m_version;
    std::vector<String> m_dependencies;
    IPackageManager* m_manager = nullptr;  // the manager holds the package, not the reverse
    bool m_started = false;
    TFrailArray<IPackageListener> m_listeners;
};

// The framework's own package, "fenn", started before every other.
class CPackage : public CPackageBase
{
public:
    CPackage();
};

}  // namespace fenn
