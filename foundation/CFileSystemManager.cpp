#include "foundation/CFileSystemManager.h"

#include <algorithm>

#include "foundation/CError.h"
#include "foundation/CLogManager.h"
#include "foundation/CObjectError.h"
#include "foundation/CURIError.h"
#include "foundation/TSingleton.h"

namespace fenn {

P<CFileSystemManager> CFileSystemManager::getInstance()
{
    static TSingleton<CFileSystemManager> instance([] { return make<CFileSystemManager>(); });
    return instance.get();
}

CFileSystemManager::~CFileSystemManager()
{
    // The file systems hold this manager as a frail listener.
    for (const P<IFileSystem>& fileSystem : m_fileSystems) fileSystem->removeVolumeListener(this);
}

void CFileSystemManager::addFileSystem(P<IFileSystem> fileSystem)
{
    if (!fileSystem) throw CInvalidArgError(this, "addFileSystem", "fileSystem");
    std::lock_guard lock(m_mutex);
    fileSystem->addFrailVolumeListener(this);
    m_fileSystems.push_back(std::move(fileSystem));
}

void CFileSystemManager::removeFileSystem(IFileSystem* fileSystem)
{
    P<IFileSystem> removed;
    {
        std::lock_guard lock(m_mutex);
        const auto found =
            std::find_if(m_fileSystems.rbegin(), m_fileSystems.rend(),
                         [fileSystem](const P<IFileSystem>& entry) { return entry.get() == fileSystem; });
        if (found == m_fileSystems.rend()) return;
        removed = *found;
        m_fileSystems.erase(std::next(found).base());
    }
    removed->removeVolumeListener(this);
}

std::vector<P<IFileSystem>> CFileSystemManager::snapshot() const
{
    std::lock_guard lock(m_mutex);
    return std::vector<P<IFileSystem>>(m_fileSystems.rbegin(), m_fileSystems.rend());
}

P<IFileSystem> CFileSystemManager::systemForURI(const CURI& uri) const
{
    for (const P<IFileSystem>& fileSystem : snapshot()) {
        if (fileSystem->handlesURI(uri)) return fileSystem;
    }
    throw CURITypeNotSupportedError(uri);
}

P<IFileSystem> CFileSystemManager::systemForVolumeID(const String& id) const
{
    for (const P<IFileSystem>& fileSystem : snapshot()) {
        if (fileSystem->handlesVolumeID(id)) return fileSystem;
    }
    throw CInvalidVolumeIDError(id);
}

bool CFileSystemManager::handlesURI(const CURI& uri)
{
    const auto systems = snapshot();
    return std::any_of(systems.begin(), systems.end(),
                       [&uri](const P<IFileSystem>& fileSystem) { return fileSystem->handlesURI(uri); });
}

bool CFileSystemManager::handlesVolumeID(const String& id)
{
    const auto systems = snapshot();
    return std::any_of(systems.begin(), systems.end(),
                       [&id](const P<IFileSystem>& fileSystem) { return fileSystem->handlesVolumeID(id); });
}

P<IFileObjectCursor> CFileSystemManager::createCursor(const CURI& folder, const String& pattern)
{
    return systemForURI(folder)->createCursor(folder, pattern);
}

P<IFileObject> CFileSystemManager::getFileObject(const CURI& uri)
{
    return systemForURI(uri)->getFileObject(uri);
}

P<IFileObject> CFileSystemManager::getFileObjectChecked(const CURI& uri)
{
    return systemForURI(uri)->getFileObjectChecked(uri);
}

void CFileSystemManager::addVolumeListener(IFileSystemVolumeListener* listener)
{
    std::lock_guard lock(m_mutex);
    m_listeners.add(listener);
}

void CFileSystemManager::addFrailVolumeListener(IFileSystemVolumeListener* listener)
{
    std::lock_guard lock(m_mutex);
    m_listeners.addFrail(listener);
}

void CFileSystemManager::removeVolumeListener(IFileSystemVolumeListener* listener)
{
    std::lock_guard lock(m_mutex);
    m_listeners.remove(listener);
}

std::int64_t CFileSystemManager::getVolumeFreeSpace(const CURI& uri)
{
    return systemForURI(uri)->getVolumeFreeSpace(uri);
}

std::vector<P<IFileSystemVolume>> CFileSystemManager::getVolumes()
{
    std::vector<P<IFileSystemVolume>> volumes;
    for (const P<IFileSystem>& fileSystem : snapshot()) {
        std::vector<P<IFileSystemVolume>> own = fileSystem->getVolumes();
        volumes.insert(volumes.end(), own.begin(), own.end());
    }
    return volumes;
}

P<IFileSystemVolume> CFileSystemManager::getVolumeForURI(const CURI& uri)
{
    return systemForURI(uri)->getVolumeForURI(uri);
}

P<IFileSystemVolume> CFileSystemManager::getVolume(const String& id)
{
    return systemForVolumeID(id)->getVolume(id);
}

P<IFileSystemVolume> CFileSystemManager::getVolumeChecked(const String& id)
{
    return systemForVolumeID(id)->getVolumeChecked(id);
}

void CFileSystemManager::refresh()
{
    for (const P<IFileSystem>& fileSystem : snapshot()) fileSystem->refresh();
}

void CFileSystemManager::createFolder(const CURI& folder)
{
    systemForURI(folder)->createFolder(folder);
}

void CFileSystemManager::deleteFile(const CURI& file)
{
    systemForURI(file)->deleteFile(file);
}

void CFileSystemManager::deleteFolder(const CURI& folder)
{
    systemForURI(folder)->deleteFolder(folder);
}

void CFileSystemManager::moveFile(const CURI& source, const CURI& target, ExistingTarget existing)
{
    const P<IFileSystem> fileSystem = systemForURI(source);
    if (!fileSystem->handlesURI(target)) throw CURITypeNotSupportedError(target);
    fileSystem->moveFile(source, target, existing);
}

CURI CFileSystemManager::createTemporaryFile(const CURI& folder, const String& stem, const String& extension)
{
    return systemForURI(folder)->createTemporaryFile(folder, stem, extension);
}

void CFileSystemManager::replaceThroughTemporaryFile(const CURI& file,
                                                     const std::function<void(const CURI& temporary)>& write,
                                                     const char* logName)
{
    const CURI temporary = createTemporaryFile(file.getParent(), file.getFileName() + ".", ".tmp");
    try {
        write(temporary);
        moveFile(temporary, file, ExistingTarget::replace);
    } catch (...) {
        try {
            deleteFile(temporary);
        } catch (const CException& error) {
            CLogManager::getInstance()->error(logName, error.getDescription());
        }
        throw;
    }
}

CURI CFileSystemManager::createUniqueFile(const CURI& folder, const String& stem, const String& extension)
{
    return systemForURI(folder)->createUniqueFile(folder, stem, extension);
}

void CFileSystemManager::moveToTrash(const CURI& file)
{
    systemForURI(file)->moveToTrash(file);
}

void CFileSystemManager::volumeAdded(const P<IFileSystemVolume>& volume)
{
    std::lock_guard lock(m_mutex);
    m_listeners.notify([&volume](IFileSystemVolumeListener& listener) { listener.volumeAdded(volume); });
}

void CFileSystemManager::volumeRemoved(const P<IFileSystemVolume>& volume)
{
    std::lock_guard lock(m_mutex);
    m_listeners.notify([&volume](IFileSystemVolumeListener& listener) { listener.volumeRemoved(volume); });
}

}  // namespace fenn
