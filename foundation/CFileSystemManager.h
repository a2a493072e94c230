#pragma once

#include <functional>
#include <mutex>
#include <vector>

#include "foundation/CObject.h"
#include "foundation/IFileSystem.h"
#include "foundation/TFrailArray.h"

namespace fenn {

// The shared file system: it holds the registered file systems and asks
// them from the last added to the first, so a later registration overrides
// an earlier one. A URI operation goes to the first system whose handlesURI
// is true (CURITypeNotSupportedError when none is), a volume-ID operation to
// the first whose handlesVolumeID is true (CInvalidVolumeIDError).
//
// It listens to the volume events of every file system it holds and hands
// them on to its own listeners. Any thread may call it. One mutex guards the
// list and the notifications; the chosen file system does its work after
// the mutex is let go, so a long move does not hold up other callers.
class CFileSystemManager : public CObject, public virtual IFileSystemManager, public virtual IFileSystemVolumeListener
{
public:
    static P<CFileSystemManager> getInstance();

    CFileSystemManager() = default;
    ~CFileSystemManager() override;
    CFileSystemManager(const CFileSystemManager&) = delete;
    CFileSystemManager& operator=(const CFileSystemManager&) = delete;

    bool handlesURI(const CURI& uri) override;
    bool handlesVolumeID(const String& id) override;
    P<IFileObjectCursor> createCursor(const CURI& folder, const String& pattern = "*") override;
    P<IFileObject> getFileObject(const CURI& uri) override;
    P<IFileObject> getFileObjectChecked(const CURI& uri) override;
    void addVolumeListener(IFileSystemVolumeListener* listener) override;
    void addFrailVolumeListener(IFileSystemVolumeListener* listener) override;
    void removeVolumeListener(IFileSystemVolumeListener* listener) override;
    std::int64_t getVolumeFreeSpace(const CURI& uri) override;
    // The volumes of every file system, the last added system's first.
    std::vector<P<IFileSystemVolume>> getVolumes() override;
    P<IFileSystemVolume> getVolumeForURI(const CURI& uri) override;
    P<IFileSystemVolume> getVolume(const String& id) override;
    P<IFileSystemVolume> getVolumeChecked(const String& id) override;
    // Refreshes every file system.
    void refresh() override;
    void createFolder(const CURI& folder) override;
    void deleteFile(const CURI& file) override;
    void deleteFolder(const CURI& folder) override;
    // Goes to the file system of source, which must handle target too.
    void moveFile(const CURI& source, const CURI& target, ExistingTarget existing) override;
    CURI createTemporaryFile(const CURI& folder, const String& stem, const String& extension) override;
    CURI createUniqueFile(const CURI& folder, const String& stem, const String& extension) override;
    void moveToTrash(const CURI& file) override;
    // Changes file without a moment in which it is lost: write fills a new
    // ".tmp" file in file's folder, which then takes file's place. When write
    // or the exchange fails, the temporary file is deleted (a failure of that
    // goes to the log under logName), file stays as it was and the error
    // goes on to the caller.
    void replaceThroughTemporaryFile(const CURI& file, const std::function<void(const CURI& temporary)>& write,
                                     const char* logName);

    void addFileSystem(P<IFileSystem> fileSystem) override;
    void removeFileSystem(IFileSystem* fileSystem) override;

    void volumeAdded(const P<IFileSystemVolume>& volume) override;
    void volumeRemoved(const P<IFileSystemVolume>& volume) override;

private:
    // The registered systems, last added first, as they are now.
    std::vector<P<IFileSystem>> snapshot() const;
    P<IFileSystem> systemForURI(const CURI& uri) const;
    P<IFileSystem> systemForVolumeID(const String& id) const;

    mutable std::recursive_mutex m_mutex;
    std::vector<P<IFileSystem>> m_fileSystems;
    TFrailArray<IFileSystemVolumeListener> m_listeners;
};

}  // namespace fenn
