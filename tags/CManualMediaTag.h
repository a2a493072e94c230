#pragma once

#include "foundation/CObject.h"
#include "tags/IMediaFileTag.h"

namespace tbx {

// A tag over plain strings with no file behind it, for data that comes from
// a disc database or from the user's typing. Every field is supported,
// saveChanges does nothing and there are never changes to save. The file
// may be the empty URI. One thread at a time.
class CManualMediaTag : public fenn::CObject, public virtual IMediaFileTag
{
public:
    explicit CManualMediaTag(fenn::CURI file = fenn::CURI());

    fenn::CURI getFile() const override { return m_file; }
    bool hasChanges() const override { return false; }
    void saveChanges() override {}

    void setTitle(const fenn::String& title) override { m_title = title; }
    fenn::String getTitle() const override { return m_title; }
    bool supportsTitle() const override { return true; }
    void setArtist(const fenn::String& artist) override { m_artist = artist; }
    fenn::String getArtist() const override { return m_artist; }
    bool supportsArtist() const override { return true; }
    void setAlbum(const fenn::String& album) override { m_album = album; }
    fenn::String getAlbum() const override { return m_album; }
    bool supportsAlbum() const override { return true; }
    void setTrack(const fenn::String& track) override { m_track = track; }
    fenn::String getTrack() const override { return m_track; }
    bool supportsTrack() const override { return true; }
    void setYear(const fenn::String& year) override { m_year = year; }
    fenn::String getYear() const override { return m_year; }
    bool supportsYear() const override { return true; }
    void setGenre(const fenn::String& genre) override { m_genre = genre; }
    fenn::String getGenre() const override { return m_genre; }
    bool supportsGenre() const override { return true; }
    void setComment(const fenn::String& comment) override { m_comment = comment; }
    fenn::String getComment() const override { return m_comment; }
    bool supportsComment() const override { return true; }

private:
    fenn::String m_title;
    fenn::String m_artist;
    fenn::String m_album;
    fenn::String m_track;
    fenn::String m_year;
    fenn::String m_genre;
    fenn::String m_comment;
    fenn::CURI m_file;
};

}  // namespace tbx
