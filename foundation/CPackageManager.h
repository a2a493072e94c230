#pragma once

#include <vector>

#include "foundation/CObject.h"
#include "foundation/IPackage.h"
#include "foundation/TFrailArray.h"

namespace fenn {

// Holds the packages in the order they were added. startAll starts "fenn"
// and then the others in that order; stopAll stops them in reverse. The
// manager listens to its packages and passes their news on to its own
// listeners. Used on the GUI thread.
class CPackageManager : public CObject, public virtual IPackageManager, public virtual IPackageListener
{
public:
    ~CPackageManager() override;

    void addPackage(P<IPackage> package) override;
    void removePackage(IPackage* package) override;
    P<IPackage> getPackage(const String& name) const override;
    void startPackage(IPackage* package) override;
    void stopPackage(IPackage* package) override;
    void startPackageByName(const String& name) override;
    void stopPackageByName(const String& name) override;
    void startAll() override;
    void stopAll() override;

    void addListener(IPackageListener* listener) { m_listeners.add(listener); }
    void addFrailListener(IPackageListener* listener) { m_listeners.addFrail(listener); }
    void removeListener(IPackageListener* listener) { m_listeners.remove(listener); }

    void packageStarted(IPackage* package) override;
    void packageStopped(IPackage* package) override;

private:
    P<IPackage> findChecked(const String& name) const;

    std::vector<P<IPackage>> m_packages;
    TFrailArray<IPackageListener> m_listeners;
};

}  // namespace fenn
