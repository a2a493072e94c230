#pragma once

#include "foundation/CObject.h"
#include "foundation/IStream.h"
#include "tags/CID3v1Tag.h"
#include "tags/CID3v2Tag.h"
#include "tags/IMediaFileTag.h"
#include "tags/IMusicGenreList.h"

namespace tbx {

// The tag of an MP3 file: an ID3v2 tag at the start and perhaps an ID3v1
// record at the end, read when the object is made. Fields map to ID3v2
// frames (title TIT2, artist TPE1, album TALB, track TRCK, year TYER,
// genre TCON by number, comment TIT3); a getter whose frame is empty gives
// the ID3v1 field when the file has a record. Setters change both tags.
//
// saveChanges always rewrites the whole file: the new ID3v2 tag, the audio
// behind the old tag, and the ID3v1 record only when the file had one. The
// copy goes to a ".tmp" file in the file's folder that replaces the
// original only once it is complete. One thread at a time; the file is
// closed between calls.
class CMP3FileTag : public fenn::CObject, public virtual IMediaFileTag
{
public:
    // Reads both tags; the stream's errors (a missing file) reach the caller.
    CMP3FileTag(fenn::CURI file, fenn::P<IMusicGenreList> genres);

    fenn::CURI getFile() const override { return m_file; }
    bool hasChanges() const override { return m_dirty; }
    void saveChanges() override;

    void setTitle(const fenn::String& title) override;
    fenn::String getTitle() const override;
    bool supportsTitle() const override { return true; }
    void setArtist(const fenn::String& artist) override;
    fenn::String getArtist() const override;
    bool supportsArtist() const override { return true; }
    void setAlbum(const fenn::String& album) override;
    fenn::String getAlbum() const override;
    bool supportsAlbum() const override { return true; }
    // The text goes to TRCK as it is; ID3v1 gets the number it begins with.
    void setTrack(const fenn::String& track) override;
    fenn::String getTrack() const override;
    bool supportsTrack() const override { return true; }
    void setYear(const fenn::String& year) override;
    fenn::String getYear() const override;
    bool supportsYear() const override { return true; }
    // A name the genre list does not know clears the genre of both tags.
    void setGenre(const fenn::String& genre) override;
    fenn::String getGenre() const override;
    bool supportsGenre() const override { return true; }
    void setComment(const fenn::String& comment) override;
    fenn::String getComment() const override;
    bool supportsComment() const override { return true; }

    const CID3v2Tag& getID3v2Tag() const { return *m_id3v2; }
    const CID3v1Tag& getID3v1Tag() const { return *m_id3v1; }

private:
    // The frame's text, or fallback when the frame is empty and the file
    // has an ID3v1 record.
    fenn::String getField(ID3FrameId id, const fenn::String& fallback) const;
    void setField(ID3FrameId id, const fenn::String& text);
    // Throws when the file's ID3v2 tag is of a version that cannot be changed.
    void checkChangeable() const;
    fenn::String genreName(std::int32_t number) const;
    void writeTemporaryFile(const fenn::CURI& temporary);

    fenn::P<CID3v2Tag> m_id3v2;
    fenn::P<CID3v1Tag> m_id3v1;
    fenn::CURI m_file;
    fenn::P<IMusicGenreList> m_genres;
    bool m_dirty = false;
};

}  // namespace tbx
