#include "gui/skin/CSkinManager.h"

namespace fenn::gui::skin {

CSkinManager::CSkinManager() : m_cache(make<CImageCache>()) {}

P<CSkinManager> CSkinManager::getInstance()
{
    // Made and used on the GUI thread only.
    static const P<CSkinManager> instance = make<CSkinManager>();
    return instance;
}

void CSkinManager::addParsedPackage(const P<ISkinPackage>& package)
{
    if (!package) return;
    m_packages.push_back(package);
    if (!m_current) m_current = package;
}

void CSkinManager::clear()
{
    m_packages.clear();
    m_current = nullptr;
    m_cache->clear();
}

P<ISkinPackage> CSkinManager::addPackage(const CURI& folder)
{
    String path = folder.getPath();
    if (path.isEmpty()) path = folder.getURI();
    while (path.endsWith("/") && path.getLength() > 1) path = path.left(path.getLength() - 1);
    const P<ISkinPackage> package = make<CSkinPackage>(path, m_cache);
    addParsedPackage(package);
    return package;
}

bool CSkinManager::setCurrentPackage(const String& id)
{
    for (const P<ISkinPackage>& package : m_packages) {
        if (package->getFolder() == id || package->getInfo()->getName() == id) {
            m_current = package;
            return true;
        }
    }
    return false;
}

P<ISkinSet> CSkinManager::getSkinSet(const String& id) const
{
    if (!m_current) return nullptr;
    String wanted = id.isEmpty() ? m_defaultSet : id;
    if (wanted.isEmpty()) {
        const std::vector<String> ids = m_current->getSkinSetIds();
        if (ids.empty()) return nullptr;
        wanted = ids.front();
    }
    return m_current->getSkinSet(wanted);
}

}  // namespace fenn::gui::skin
