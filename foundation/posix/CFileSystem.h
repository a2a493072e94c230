#pragma once

#include <dirent.h>

#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "foundation/CObject.h"
#include "foundation/IFileSystem.h"
#include "foundation/TFrailArray.h"
#include "foundation/posix/CMountTable.h"

namespace fenn::posix {

class CFileSystem;

// Hands each volume event to the listeners of one file system. The file
// system and its volumes hold it; it holds nobody back.
class CVolumeListenerList : public CObject, public virtual IFileSystemVolumeListener
{
public:
    void add(IFileSystemVolumeListener* listener);
    void addFrail(IFileSystemVolumeListener* listener);
    void remove(IFileSystemVolumeListener* listener);

    void volumeAdded(const P<IFileSystemVolume>& volume) override;
    void volumeRemoved(const P<IFileSystemVolume>& volume) override;

private:
    std::mutex m_mutex;  // guards the list, not the calls
    TFrailArray<IFileSystemVolumeListener> m_listeners;
};

// One mount of the system: the id is "osfs:" and the mount point
// ("osfs:/media/usb"), the name the mount point's last folder ("/" for the
// root), the root URI the mount point as a folder URI.
class CFileSystemVolume : public CObject, public virtual IFileSystemVolume
{
public:
    static constexpr const char* kIDPrefix = "osfs:";
    static constexpr const char* kType = "DiskDrive";

    CFileSystemVolume(CMountEntry mount, P<CVolumeListenerList> listener);

    String getID() override;
    String getName() override;
    CURI getRootURI() override;
    String getType() override { return kType; }
    P<IFileSystemVolumeListener> getListener() override;

    const CMountEntry& getMount() const { return m_mount; }
    // The kernel's name of the file system ("ext4", "tmpfs", "vfat").
    String getFileSystemType() const;

private:
    CMountEntry m_mount;
    P<CVolumeListenerList> m_listener;
};

// A file, folder or other entry on disk, with its facts as they were when
// the object was made. It holds its file system.
class CFileSystemFileObject : public CObject, public virtual IFileObject
{
public:
    CFileSystemFileObject(P<CFileSystem> fileSystem, CURI uri, std::string path, FileObjectInfo info);

    bool isFolder() override { return m_info.isFolder; }
    bool isFile() override { return m_info.isFile; }
    bool isFolderLike() override { return m_info.isFolder; }
    CURI getURI() override { return m_uri; }
    String getURIForDisplay() override;
    String getName() override { return m_info.name; }
    std::int64_t getSize() override { return m_info.size; }
    FileTime getCreationTime() override { return m_info.creationTime; }
    FileTime getLastWriteTime() override { return m_info.lastWriteTime; }
    FileTime getLastAccessTime() override { return m_info.lastAccessTime; }
    // The creation time cannot be set on Linux and is passed over.
    void setTimes(FileTime creationTime, FileTime lastWriteTime, FileTime lastAccessTime) override;
    std::uint32_t getAttributes() override { return m_info.attributes; }
    // Read-only clears every write permission, its absence gives the owner
    // write permission. Hidden follows from the name ("." in front), which
    // this does not change, so that bit is passed over.
    void setAttributes(std::uint32_t attributes) override;
    P<IFileSystemVolume> getVolume() override;
    FileObjectInfo getInfo() override { return m_info; }
    P<IFileObjectCursor> getCursor(const String& pattern = "*") override;

private:
    void reload();

    P<CFileSystem> m_fileSystem;
    CURI m_uri;
    std::string m_path;
    FileObjectInfo m_info;
};

// Walks one folder with opendir and readdir; names are matched with
// fnmatch, without special rules for a leading dot, so "*" lists hidden
// entries too. Entries that vanish during the walk are passed over.
class CFileSystemFolderCursor : public CObject, public virtual IFileObjectCursor
{
public:
    // Throws CFileNotFoundError for a missing folder and CFileError
    // ("The file object is not a folder.") for anything else that is there.
    CFileSystemFolderCursor(P<CFileSystem> fileSystem, const CURI& folder, const String& pattern);
    ~CFileSystemFolderCursor() override;
    CFileSystemFolderCursor(const CFileSystemFolderCursor&) = delete;
    CFileSystemFolderCursor& operator=(const CFileSystemFolderCursor&) = delete;

    bool next() override;
    void reset() override;

    bool isFolder() override { return current().isFolder(); }
    bool isFile() override { return current().isFile(); }
    bool isFolderLike() override { return current().isFolderLike(); }
    CURI getURI() override { return current().getURI(); }
    String getURIForDisplay() override { return current().getURIForDisplay(); }
    String getName() override { return current().getName(); }
    std::int64_t getSize() override { return current().getSize(); }
    FileTime getCreationTime() override { return current().getCreationTime(); }
    FileTime getLastWriteTime() override { return current().getLastWriteTime(); }
    FileTime getLastAccessTime() override { return current().getLastAccessTime(); }
    void setTimes(FileTime creationTime, FileTime lastWriteTime, FileTime lastAccessTime) override
    {
        current().setTimes(creationTime, lastWriteTime, lastAccessTime);
    }
    std::uint32_t getAttributes() override { return current().getAttributes(); }
    void setAttributes(std::uint32_t attributes) override { current().setAttributes(attributes); }
    P<IFileSystemVolume> getVolume() override { return current().getVolume(); }
    FileObjectInfo getInfo() override { return current().getInfo(); }
    P<IFileObjectCursor> getCursor(const String& pattern = "*") override { return current().getCursor(pattern); }

private:
    CFileSystemFileObject& current();

    P<CFileSystem> m_fileSystem;
    CURI m_folder;
    std::string m_path;
    std::string m_pattern;
    DIR* m_directory = nullptr;
    P<CFileSystemFileObject> m_current;
};

// The file system of the operating system: "file" URIs and URIs without a
// scheme, and the volumes "osfs:" + mount point.
//
// Volumes come from /proc/self/mountinfo, which stays open. The kernel
// marks the open file when a mount comes or goes (poll reports POLLPRI);
// refresh looks at that mark, and when it is set reads the table again and
// tells the listeners what changed. Nothing looks by itself: the volume
// queries here refresh first, and whoever shows volumes calls refresh
// (through CFileSystemManager) from a timer on the GUI thread to hear about
// changes between queries. Events come on the thread that refreshes.
//
// Moves use rename within a volume and copy and delete across volumes
// (also for folders, entry by entry). Any thread may call; one mutex
// guards the volume list.
class CFileSystem : public CObject, public virtual IFileSystem
{
public:
    CFileSystem();
    ~CFileSystem() override;
    CFileSystem(const CFileSystem&) = delete;
    CFileSystem& operator=(const CFileSystem&) = delete;

    bool handlesURI(const CURI& uri) override;
    bool handlesVolumeID(const String& id) override;
    P<IFileObjectCursor> createCursor(const CURI& folder, const String& pattern = "*") override;
    P<IFileObject> getFileObject(const CURI& uri) override;
    P<IFileObject> getFileObjectChecked(const CURI& uri) override;
    void addVolumeListener(IFileSystemVolumeListener* listener) override;
    void addFrailVolumeListener(IFileSystemVolumeListener* listener) override;
    void removeVolumeListener(IFileSystemVolumeListener* listener) override;
    std::int64_t getVolumeFreeSpace(const CURI& uri) override;
    std::vector<P<IFileSystemVolume>> getVolumes() override;
    // The mount that holds the place (or the nearest folder above it that
    // exists): the one of the same device, the longest matching mount point
    // among several.
    P<IFileSystemVolume> getVolumeForURI(const CURI& uri) override;
    P<IFileSystemVolume> getVolume(const String& id) override;
    P<IFileSystemVolume> getVolumeChecked(const String& id) override;
    void refresh() override;
    void createFolder(const CURI& folder) override;
    void deleteFile(const CURI& file) override;
    void deleteFolder(const CURI& folder) override;
    void moveFile(const CURI& source, const CURI& target, ExistingTarget existing) override;
    CURI createTemporaryFile(const CURI& folder, const String& stem, const String& extension) override;
    CURI createUniqueFile(const CURI& folder, const String& stem, const String& extension) override;
    // The freedesktop.org trash through GIO: the home trash under
    // $XDG_DATA_HOME/Trash for files on the home folder's device, the
    // volume's own ".Trash-<uid>" elsewhere. A volume where GIO finds or
    // makes no trash gives CFileError.
    void moveToTrash(const CURI& file) override;

    // The POSIX path of a URI that this file system serves; other URIs
    // throw CURITypeNotSupportedError.
    std::string toPath(const CURI& uri);

private:
    struct VolumeChanges
    {
        std::vector<P<IFileSystemVolume>> added;
        std::vector<P<IFileSystemVolume>> removed;
    };
    // Takes a new table of mounts, under the mutex, and gives what changed.
    VolumeChanges takeMounts(const CMountTable& mounts);
    // Tells the listeners, without the mutex.
    void notify(const VolumeChanges& changes);
    // Creates the first name of nameFor(0), nameFor(1)... up to attempts
    // that does not exist yet.
    CURI createNewFile(const CURI& folder, const std::function<std::string(int)>& nameFor, int attempts);

    std::recursive_mutex m_mutex;
    int m_mountInfo = -1;
    std::vector<P<CFileSystemVolume>> m_volumes;
    CMountTable m_mounts;
    P<CVolumeListenerList> m_listeners;
};

}  // namespace fenn::posix
