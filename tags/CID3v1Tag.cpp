#include "tags/CID3v1Tag.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>

namespace tbx {

namespace {

// Offsets and lengths of the fields in the record.
constexpr std::int32_t kTitleOffset = 3;
constexpr std::int32_t kArtistOffset = 33;
constexpr std::int32_t kAlbumOffset = 63;
constexpr std::int32_t kYearOffset = 93;
constexpr std::int32_t kCommentOffset = 97;
constexpr std::int32_t kTextLength = 30;
constexpr std::int32_t kYearLength = 4;
constexpr std::int32_t kCommentLengthWithTrack = 28;
constexpr std::int32_t kTrackMarkerOffset = 125;
constexpr std::int32_t kTrackOffset = 126;
constexpr std::int32_t kGenreOffset = 127;

// A field's text: Latin-1 up to the first zero byte, without surrounding blanks.
fenn::String readField(const std::uint8_t* record, std::int32_t offset, std::int32_t length)
{
    const char* start = reinterpret_cast<const char*>(record + offset);
    const std::size_t used = std::find(start, start + length, '\0') - start;
    return fenn::String::copyOfLatin1(std::string_view(start, used)).trim();
}

// Writes text in Latin-1, cut to length; characters beyond Latin-1 become '?'.
void writeField(std::uint8_t* record, std::int32_t offset, std::int32_t length, const fenn::String& text)
{
    std::int32_t position = 0;
    for (const char32_t codePoint : text.toUTF32()) {
        if (position == length) break;
        record[offset + position++] = codePoint <= 0xFF ? static_cast<std::uint8_t>(codePoint) : '?';
    }
}

}  // namespace

bool CID3v1Tag::read(fenn::ISeekableInStream& stream)
{
    clear();
    const std::int64_t size = stream.getSize();
    if (size < kSize) return false;
    const std::int64_t position = stream.getPos();
    std::array<std::uint8_t, kSize> record{};
    stream.seek(size - kSize);
    try {
        stream.read(record.data(), kSize);
    } catch (...) {
        stream.seek(position);
        throw;
    }
    stream.seek(position);
    return parse(record.data());
}

void CID3v1Tag::clear()
{
    m_title = m_artist = m_album = m_year = m_comment = fenn::String();
    m_track = 0;
    m_genre = kNoGenre;
    m_present = false;
}

bool CID3v1Tag::parse(const std::uint8_t* record)
{
    // Some writers put the id in lower case.
    if (std::toupper(record[0]) != 'T' || std::toupper(record[1]) != 'A' || std::toupper(record[2]) != 'G')
        return false;
    m_title = readField(record, kTitleOffset, kTextLength);
    m_artist = readField(record, kArtistOffset, kTextLength);
    m_album = readField(record, kAlbumOffset, kTextLength);
    m_year = readField(record, kYearOffset, kYearLength);
    m_comment = readField(record, kCommentOffset, kTextLength);
    m_track = record[kTrackMarkerOffset] == 0 && record[kTrackOffset] != 0 ? record[kTrackOffset] : 0;
    m_genre = record[kGenreOffset];
    m_present = true;
    return true;
}

std::array<std::uint8_t, CID3v1Tag::kSize> CID3v1Tag::render() const
{
    std::array<std::uint8_t, kSize> record{};
    std::memcpy(record.data(), "TAG", 3);
    writeField(record.data(), kTitleOffset, kTextLength, m_title);
    writeField(record.data(), kArtistOffset, kTextLength, m_artist);
    writeField(record.data(), kAlbumOffset, kTextLength, m_album);
    writeField(record.data(), kYearOffset, kYearLength, m_year);
    writeField(record.data(), kCommentOffset, kCommentLengthWithTrack, m_comment);
    record[kTrackMarkerOffset] = 0;
    record[kTrackOffset] = static_cast<std::uint8_t>(m_track >= 0 && m_track <= 255 ? m_track : 0);
    record[kGenreOffset] = static_cast<std::uint8_t>(m_genre >= 0 && m_genre <= 255 ? m_genre : kNoGenre);
    return record;
}

void CID3v1Tag::write(fenn::IOutStream& stream) const
{
    const std::array<std::uint8_t, kSize> record = render();
    stream.write(record.data(), kSize);
}

}  // namespace tbx
