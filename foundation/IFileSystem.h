#pragma once

#include <cstdint>
#include <vector>

#include "foundation/CURI.h"
#include "foundation/CURIError.h"
#include "foundation/IBase.h"
#include "foundation/P.h"
#include "foundation/String.h"

// Files, folders and volumes, reached by URI. A file system serves the URIs
// of its schemes; the shared CFileSystemManager asks the registered file
// systems in turn, so a new kind of place is added by registering one
// object. Failures are CFileError and its children, carrying the URI.

namespace fenn {

class IFileObjectCursor;
class IFileSystemVolume;

// Milliseconds since 1970-01-01 00:00 UTC; kUnknownFileTime where the file
// system keeps no such time. setTimes leaves a time that is given as
// kUnknownFileTime as it is.
using FileTime = std::int64_t;
inline constexpr FileTime kUnknownFileTime = -1;

// The bits of getAttributes and setAttributes.
enum FileAttribute : std::uint32_t {
    fileAttributeHidden = 1u << 0,
    fileAttributeReadOnly = 1u << 1,
};

// What a file object knows about itself, in one piece.
struct FileObjectInfo
{
    String name;
    bool isFolder = false;
    bool isFile = false;
    std::int64_t size = 0;
    FileTime creationTime = kUnknownFileTime;
    FileTime lastWriteTime = kUnknownFileTime;
    FileTime lastAccessTime = kUnknownFileTime;
    std::uint32_t attributes = 0;
};

// A file or folder at one place. Its facts are those of the moment it was
// made (or of the cursor's step); setTimes and setAttributes change the
// place and the facts together.
class IFileObject : public virtual IBase
{
public:
    virtual bool isFolder() = 0;
    virtual bool isFile() = 0;
    // A folder, or something that can be walked like one.
    virtual bool isFolderLike() = 0;
    virtual CURI getURI() = 0;
    // The place as the user reads it (a path for files on disk).
    virtual String getURIForDisplay() = 0;
    virtual String getName() = 0;
    // Bytes of a file; 0 for a folder.
    virtual std::int64_t getSize() = 0;
    virtual FileTime getCreationTime() = 0;
    virtual FileTime getLastWriteTime() = 0;
    virtual FileTime getLastAccessTime() = 0;
    virtual void setTimes(FileTime creationTime, FileTime lastWriteTime, FileTime lastAccessTime) = 0;
    // FileAttribute bits.
    virtual std::uint32_t getAttributes() = 0;
    virtual void setAttributes(std::uint32_t attributes) = 0;
    virtual P<IFileSystemVolume> getVolume() = 0;
    virtual FileObjectInfo getInfo() = 0;
    // Walks this folder's entries whose names match pattern ("*" for all).
    // Throws CFileError when this is no folder.
    virtual P<IFileObjectCursor> getCursor(const String& pattern = "*") = 0;
};

// Walks the entries of one folder. It starts before the first entry: next
// steps to an entry and is false when there are no more; reset goes back to
// the start. The IFileObject operations describe the current entry and
// throw CInvalidObjectStateError when there is none. One thread at a time.
class IFileObjectCursor : public virtual IFileObject
{
public:
    virtual bool next() = 0;
    virtual void reset() = 0;
};

class IFileSystemVolumeListener;

// A mounted volume. IDs are unique within the file systems of one manager.
class IFileSystemVolume : public virtual IBase
{
public:
    virtual String getID() = 0;
    virtual String getName() = 0;
    // The top folder, as a URI ending in "/".
    virtual CURI getRootURI() = 0;
    // The device class ("DiskDrive" for the volumes of the system's disks).
    virtual String getType() = 0;
    // The listener that hears about this volume: its file system's
    // forwarding list, which hands each event to that file system's
    // listeners.
    virtual P<IFileSystemVolumeListener> getListener() = 0;
};

// Told when volumes come and go, on the thread that noticed it (see
// IFileSystem::refresh).
class IFileSystemVolumeListener : public virtual IBase
{
public:
    virtual void volumeAdded(const P<IFileSystemVolume>& volume) = 0;
    virtual void volumeRemoved(const P<IFileSystemVolume>& volume) = 0;
};

// How moveFile treats an existing target.
enum class ExistingTarget { fail, replace };

// One kind of place. The URI operations throw CURITypeNotSupportedError for
// URIs that handlesURI refuses, CFileNotFoundError for places that do not
// exist, and CFileError for other failures.
class IFileSystem : public virtual IBase
{
public:
    virtual bool handlesURI(const CURI& uri) = 0;
    virtual bool handlesVolumeID(const String& id) = 0;
    // Walks the folder's entries whose names match pattern ("*", "*.wav").
    virtual P<IFileObjectCursor> createCursor(const CURI& folder, const String& pattern = "*") = 0;
    // Null when nothing is at the place.
    virtual P<IFileObject> getFileObject(const CURI& uri) = 0;
    virtual P<IFileObject> getFileObjectChecked(const CURI& uri) = 0;
    virtual void addVolumeListener(IFileSystemVolumeListener* listener) = 0;
    virtual void addFrailVolumeListener(IFileSystemVolumeListener* listener) = 0;
    virtual void removeVolumeListener(IFileSystemVolumeListener* listener) = 0;
    // The bytes that the user may still write on the volume of uri.
    virtual std::int64_t getVolumeFreeSpace(const CURI& uri) = 0;
    virtual std::vector<P<IFileSystemVolume>> getVolumes() = 0;
    // The volume that holds uri; null when there is none.
    virtual P<IFileSystemVolume> getVolumeForURI(const CURI& uri) = 0;
    // Null for an unknown id; the checked form throws CInvalidVolumeIDError.
    virtual P<IFileSystemVolume> getVolume(const String& id) = 0;
    virtual P<IFileSystemVolume> getVolumeChecked(const String& id) = 0;
    // Looks whether volumes have come or gone since the last look and tells
    // the volume listeners, on the calling thread.
    virtual void refresh() = 0;

    // Makes the folder and any missing folders above it; an existing folder
    // is no error.
    virtual void createFolder(const CURI& folder) = 0;
    virtual void deleteFile(const CURI& file) = 0;
    // Removes an empty folder.
    virtual void deleteFolder(const CURI& folder) = 0;
    // Moves a file or folder. The target names the new place itself, not
    // the folder to move into.
    virtual void moveFile(const CURI& source, const CURI& target, ExistingTarget existing) = 0;
    // Creates a new, empty file named stem, a random part and extension
    // (".tmp") in folder, and returns its URI.
    virtual CURI createTemporaryFile(const CURI& folder, const String& stem, const String& extension) = 0;
    // Creates a new, empty file named stem + extension in folder, or, when
    // that exists, stem + " (2)" + extension, " (3)" and so on.
    virtual CURI createUniqueFile(const CURI& folder, const String& stem, const String& extension) = 0;
    // Moves a file or folder to the user's trash, from where the user can
    // bring it back. Where the place has no trash this throws CFileError and
    // leaves the file where it is: it never deletes instead. A file system
    // without a trash keeps this answer.
    virtual void moveToTrash(const CURI& file)
    {
        throw CFileError(file, String("Cannot move '%URI%' to the trash: this place has no trash."));
    }
};

// The file system of all file systems: it adds and removes the others.
class IFileSystemManager : public virtual IFileSystem
{
public:
    virtual void addFileSystem(P<IFileSystem> fileSystem) = 0;
    virtual void removeFileSystem(IFileSystem* fileSystem) = 0;
};

}  // namespace fenn
