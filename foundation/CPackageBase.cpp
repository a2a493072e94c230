#include "foundation/CPackageBase.h"

#include "foundation/CError.h"

namespace fenn {

CPackageBase::CPackageBase(String name, String version, std::vector<String> dependencies)
    : m_name(std::move(name)), m_version(std::move(version)), m_dependencies(std::move(dependencies))
{
}

void CPackageBase::start()
{
    if (m_started) return;
    for (const String& dependency : m_dependencies) {
        if (m_manager == nullptr || !m_manager->getPackage(dependency))
            throw CError("Package error", String("The package '") + m_name + "' needs the package '" + dependency +
                                              "', which is not there.");
        m_manager->startPackageByName(dependency);
    }
    onStart();
    m_started = true;
    m_listeners.notify([this](IPackageListener& listener) { listener.packageStarted(this); });
}

void CPackageBase::stop()
{
    if (!m_started) return;
    onStop();
    m_started = false;
    m_listeners.notify([this](IPackageListener& listener) { listener.packageStopped(this); });
}

CPackage::CPackage() : CPackageBase("fenn", "1.0") {}

}  // namespace fenn
