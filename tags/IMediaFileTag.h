#pragma once

#include "foundation/CURI.h"
#include "foundation/IBase.h"
#include "foundation/P.h"
#include "foundation/String.h"

namespace tbx {

// The one view the modules have of a file's tag: seven text fields, each with
// a test of support, and a save. Setting a field changes only the object;
// saveChanges writes the file (through a ".tmp" file, so a failed save leaves
// it as it was). A tag holds its file closed between calls and is used by one
// thread at a time.
class IMediaFileTag : public virtual fenn::IBase
{
public:
    virtual fenn::CURI getFile() const = 0;
    virtual bool hasChanges() const = 0;
    virtual void saveChanges() = 0;

    virtual void setTitle(const fenn::String& title) = 0;
    virtual fenn::String getTitle() const = 0;
    virtual bool supportsTitle() const = 0;
    virtual void setArtist(const fenn::String& artist) = 0;
    virtual fenn::String getArtist() const = 0;
    virtual bool supportsArtist() const = 0;
    virtual void setAlbum(const fenn::String& album) = 0;
    virtual fenn::String getAlbum() const = 0;
    virtual bool supportsAlbum() const = 0;
    // Track number and year travel as text; a missing one is empty, not "0".
    virtual void setTrack(const fenn::String& track) = 0;
    virtual fenn::String getTrack() const = 0;
    virtual bool supportsTrack() const = 0;
    virtual void setYear(const fenn::String& year) = 0;
    virtual fenn::String getYear() const = 0;
    virtual bool supportsYear() const = 0;
    virtual void setGenre(const fenn::String& genre) = 0;
    virtual fenn::String getGenre() const = 0;
    virtual bool supportsGenre() const = 0;
    virtual void setComment(const fenn::String& comment) = 0;
    virtual fenn::String getComment() const = 0;
    virtual bool supportsComment() const = 0;
};

// Makes the tag object of one format's files. Answers by extension only:
// a file of another format gives null.
class IMediaFileTagFactory : public virtual fenn::IBase
{
public:
    virtual fenn::P<IMediaFileTag> createTag(const fenn::CURI& uri) = 0;
};

}  // namespace tbx
