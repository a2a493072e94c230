#pragma once

#include <array>
#include <cstdint>

#include "foundation/CObject.h"
#include "foundation/IStream.h"

namespace tbx {

// The ID3v1 record: 128 bytes at the end of a file, "TAG" and five text
// fields (title, artist, album and comment of 30 bytes, year of 4) in
// Latin-1, with the track number at offset 126 when the byte before it is
// zero (the ID3v1.1 form) and the genre number at offset 127. Held as
// strings and two numbers; a track of 0 means none, a genre outside the
// genre table (255 in files) means none. One thread at a time.
class CID3v1Tag : public fenn::CObject
{
public:
    static constexpr std::int32_t kSize = 128;
    // The genre byte of a record without genre.
    static constexpr std::int32_t kNoGenre = 255;

    // Reads the stream's last 128 bytes and returns to where the stream was.
    // Returns whether they hold a record; without one the fields are empty.
    bool read(fenn::ISeekableInStream& stream);
    // Writes the 128 bytes at the stream's position. The comment is cut to
    // 28 bytes so that the track number always has its place.
    void write(fenn::IOutStream& stream) const;
    // The record as written by write.
    std::array<std::uint8_t, kSize> render() const;
    // Fills the fields from a 128-byte record; false (and nothing changed)
    // when it does not begin with "TAG".
    bool parse(const std::uint8_t* record);

    // Empties every field and marks the record absent.
    void clear();

    bool isPresent() const { return m_present; }
    void setPresent(bool present) { m_present = present; }

    fenn::String getTitle() const { return m_title; }
    void setTitle(const fenn::String& title) { m_title = title; }
    fenn::String getArtist() const { return m_artist; }
    void setArtist(const fenn::String& artist) { m_artist = artist; }
    fenn::String getAlbum() const { return m_album; }
    void setAlbum(const fenn::String& album) { m_album = album; }
    fenn::String getYear() const { return m_year; }
    void setYear(const fenn::String& year) { m_year = year; }
    fenn::String getComment() const { return m_comment; }
    void setComment(const fenn::String& comment) { m_comment = comment; }
    // 0 for no track; the record holds 1 to 255.
    std::int32_t getTrack() const { return m_track; }
    void setTrack(std::int32_t track) { m_track = track; }
    // -1 or kNoGenre for no genre.
    std::int32_t getGenre() const { return m_genre; }
    void setGenre(std::int32_t genre) { m_genre = genre; }

private:
    fenn::String m_title;
    fenn::String m_artist;
    fenn::String m_album;
    fenn::String m_year;
    fenn::String m_comment;
    std::int32_t m_track = 0;
    std::int32_t m_genre = kNoGenre;
    bool m_present = false;
};

}  // namespace tbx
