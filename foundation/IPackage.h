#pragma once

#include "foundation/IBase.h"
#include "foundation/P.h"
#include <vector>

#include "foundation/String.h"

namespace fenn {

class IPackage;
class IPackageManager;

class IPackageListener : public virtual IBase
{
public:
    virtual void packageStarted(IPackage* package) = 0;
    virtual void packageStopped(IPackage* package) = 0;
};

// A part of the framework with a start and a stop. A package starts the
// packages it depends on, by name, before itself.
class IPackage : public virtual IBase
{
public:
    virtual String getName() const = 0;
    virtual String getVersion() const = 0;
    // Names of the packages that must run before this one.
    virtual std::vector<String> getDependencies() const = 0;
    virtual bool isStarted() const = 0;
    virtual void start() = 0;
    virtual void stop() = 0;
    virtual void addListener(IPackageListener* listener) = 0;
    virtual void addFrailListener(IPackageListener* listener) = 0;
    virtual void removeListener(IPackageListener* listener) = 0;
    // Called by the manager that the package is added to; null when removed.
    virtual void setPackageManager(IPackageManager* manager) = 0;
};

class IPackageManager : public virtual IBase
{
public:
    virtual void addPackage(P<IPackage> package) = 0;
    virtual void removePackage(IPackage* package) = 0;
    // The package of that name, or null.
    virtual P<IPackage> getPackage(const String& name) const = 0;
    virtual void startPackage(IPackage* package) = 0;
    virtual void stopPackage(IPackage* package) = 0;
    virtual void startPackageByName(const String& name) = 0;
    virtual void stopPackageByName(const String& name) = 0;
    virtual void startAll() = 0;
    virtual void stopAll() = 0;
};

}  // namespace fenn
