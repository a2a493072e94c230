#pragma once

#include <array>

#include "foundation/CObject.h"
#include "tags/IMediaFileTag.h"

namespace tbx {

// The tag of a Windows Media file: ASF attributes, read when the object is
// made. Fields map to title "title", artist "Author", album "WM/AlbumTitle",
// track "WM/TrackNumber", year "WM/Year", genre "WM/Genre" (by name) and
// comment "Description"; a year that FFmpeg wrote as "date" is read too.
//
// saveChanges rewrites the container around the unchanged audio packets
// (libavformat's "asf" muxer, stream copy, no encoding) into a ".tmp" file in
// the file's folder, which replaces the original only once it is complete.
// Every other attribute is kept, as text; streams other than audio (a cover
// picture) are not, as the ASF muxer cannot write them. One thread at a time;
// the file is closed between calls.
class CWMAFileTag : public fenn::CObject, public virtual IMediaFileTag
{
public:
    // Reads the attributes. The stream's errors (a missing file) reach the
    // caller; a file that is no ASF file throws CFileFormatNotSupportedError.
    explicit CWMAFileTag(fenn::CURI file);

    fenn::CURI getFile() const override { return m_file; }
    bool hasChanges() const override { return m_dirty; }
    void saveChanges() override;

    void setTitle(const fenn::String& title) override { setField(Field::title, title); }
    fenn::String getTitle() const override { return getField(Field::title); }
    bool supportsTitle() const override { return true; }
    void setArtist(const fenn::String& artist) override { setField(Field::artist, artist); }
    fenn::String getArtist() const override { return getField(Field::artist); }
    bool supportsArtist() const override { return true; }
    void setAlbum(const fenn::String& album) override { setField(Field::album, album); }
    fenn::String getAlbum() const override { return getField(Field::album); }
    bool supportsAlbum() const override { return true; }
    void setTrack(const fenn::String& track) override { setField(Field::track, track); }
    fenn::String getTrack() const override { return getField(Field::track); }
    bool supportsTrack() const override { return true; }
    void setYear(const fenn::String& year) override { setField(Field::year, year); }
    fenn::String getYear() const override { return getField(Field::year); }
    bool supportsYear() const override { return true; }
    void setGenre(const fenn::String& genre) override { setField(Field::genre, genre); }
    fenn::String getGenre() const override { return getField(Field::genre); }
    bool supportsGenre() const override { return true; }
    void setComment(const fenn::String& comment) override { setField(Field::comment, comment); }
    fenn::String getComment() const override { return getField(Field::comment); }
    bool supportsComment() const override { return true; }

private:
    enum class Field { title, artist, album, track, year, genre, comment };
    static constexpr std::size_t kFieldCount = 7;

    fenn::String getField(Field field) const { return m_fields[static_cast<std::size_t>(field)]; }
    void setField(Field field, const fenn::String& text);
    void writeTemporaryFile(const fenn::CURI& temporary);

    fenn::CURI m_file;
    std::array<fenn::String, kFieldCount> m_fields;
    bool m_dirty = false;
};

}  // namespace tbx
