#include "foundation/CPackageManager.h"

#include <algorithm>

#include "foundation/CError.h"

namespace fenn {

CPackageManager::~CPackageManager()
{
    for (const P<IPackage>& package : m_packages) {
        package->removeListener(this);
        package->setPackageManager(nullptr);
    }
}

void CPackageManager::addPackage(P<IPackage> package)
{
    package->addFrailListener(this);
    package->setPackageManager(this);
    m_packages.push_back(std::move(package));
}

void CPackageManager::removePackage(IPackage* package)
{
    auto it = std::find_if(m_packages.begin(), m_packages.end(),
                           [package](const P<IPackage>& entry) { return entry.get() == package; });
    if (it == m_packages.end()) return;
    P<IPackage> removed = *it;
    m_packages.erase(it);
    removed->removeListener(this);
    removed->setPackageManager(nullptr);
}

P<IPackage> CPackageManager::getPackage(const String& name) const
{
    for (const P<IPackage>& package : m_packages) {
        if (package->getName() == name) return package;
    }
    return nullptr;
}

P<IPackage> CPackageManager::findChecked(const String& name) const
{
    P<IPackage> package = getPackage(name);
    if (!package) throw CError("Package error", String("There is no package '") + name + "'.");
    return package;
}

void CPackageManager::startPackage(IPackage* package)
{
    package->start();
}

void CPackageManager::stopPackage(IPackage* package)
{
    package->stop();
}

void CPackageManager::startPackageByName(const String& name)
{
    findChecked(name)->start();
}

void CPackageManager::stopPackageByName(const String& name)
{
    findChecked(name)->stop();
}

void CPackageManager::startAll()
{
    if (P<IPackage> core = getPackage("fenn")) core->start();
    for (std::size_t i = 0; i < m_packages.size(); ++i) {
        const P<IPackage> package = m_packages[i];
        package->start();
    }
}

void CPackageManager::stopAll()
{
    for (std::size_t i = m_packages.size(); i-- > 0;) {
        const P<IPackage> package = m_packages[i];
        package->stop();
    }
}

void CPackageManager::packageStarted(IPackage* package)
{
    m_listeners.notify([package](IPackageListener& listener) { listener.packageStarted(package); });
}

void CPackageManager::packageStopped(IPackage* package)
{
    m_listeners.notify([package](IPackageListener& listener) { listener.packageStopped(package); });
}

}  // namespace fenn
