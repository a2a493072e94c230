#include "tags/CMP3FileTag.h"

#include <algorithm>
#include <vector>

#include "foundation/CFileSystemManager.h"
#include "foundation/CLogManager.h"
#include "foundation/CStreamManager.h"
#include "foundation/IStringLocalizer.h"
#include "tags/TagTexts.h"

namespace tbx {

namespace {

constexpr ID3FrameId kTitleFrame = makeID3FrameId("TIT2");
constexpr ID3FrameId kArtistFrame = makeID3FrameId("TPE1");
constexpr ID3FrameId kAlbumFrame = makeID3FrameId("TALB");
constexpr ID3FrameId kTrackFrame = makeID3FrameId("TRCK");
constexpr ID3FrameId kYearFrame = makeID3FrameId("TYER");
constexpr ID3FrameId kGenreFrame = makeID3FrameId("TCON");
constexpr ID3FrameId kCommentFrame = makeID3FrameId("TIT3");

// Bytes moved per read and write while the audio is copied.
constexpr std::int32_t kCopyBlockSize = 256 * 1024;

const char* const kCopyLogName = "CMP3FileTag: copyStreamData";
const char* const kSaveLogName = "CMP3FileTag: saveChanges";

// The number that the text begins with ("3" of "3/12"), 0 when it begins
// with something else or the number does not fit in a byte.
std::int32_t leadingTrackNumber(const fenn::String& text)
{
    std::int32_t number = 0;
    bool any = false;
    for (const char32_t c : text.trim().toUTF32()) {
        if (c < U'0' || c > U'9') break;
        number = number * 10 + static_cast<std::int32_t>(c - U'0');
        if (number > 255) return 0;
        any = true;
    }
    return any ? number : 0;
}

void copyStreamData(fenn::IInStream& source, fenn::IOutStream& target, std::int64_t count)
{
    std::vector<std::uint8_t> block(static_cast<std::size_t>(kCopyBlockSize));
    try {
        while (count > 0) {
            const auto piece = static_cast<std::int32_t>(std::min<std::int64_t>(count, kCopyBlockSize));
            source.read(block.data(), piece);
            target.write(block.data(), piece);
            count -= piece;
        }
    } catch (const fenn::CStreamError& error) {
        fenn::CLogManager::getInstance()->error(kCopyLogName, error.getDescription());
        throw;
    }
}

// Closes the streams of a save on every way out.
class StreamCloser
{
public:
    explicit StreamCloser(std::vector<fenn::P<fenn::IStreamBase>> streams) : m_streams(std::move(streams)) {}
    ~StreamCloser()
    {
        for (const fenn::P<fenn::IStreamBase>& stream : m_streams) {
            try {
                stream->close();
            } catch (const fenn::CException& error) {
                fenn::CLogManager::getInstance()->error(kSaveLogName, error.getDescription());
            }
        }
    }
    StreamCloser(const StreamCloser&) = delete;
    StreamCloser& operator=(const StreamCloser&) = delete;

private:
    std::vector<fenn::P<fenn::IStreamBase>> m_streams;
};

}  // namespace

CMP3FileTag::CMP3FileTag(fenn::CURI file, fenn::P<IMusicGenreList> genres)
    : m_id3v2(fenn::make<CID3v2Tag>()), m_id3v1(fenn::make<CID3v1Tag>()), m_file(std::move(file)),
      m_genres(std::move(genres))
{
    const fenn::P<fenn::ISeekableInStream> stream = fenn::CStreamManager::getInstance()->openSeekableInStream(m_file);
    const StreamCloser closer({stream});
    m_id3v1->read(*stream);
    m_id3v2->read(*stream);
}

void CMP3FileTag::checkChangeable() const
{
    if (m_id3v2->isPresent() && !m_id3v2->isSupported()) {
        throw fenn::CFileError(m_file, fenn::localize(tags::texts::tagVersionNotSupported)
                                           .replace("%VERSION%", fenn::fromInt(m_id3v2->getMajorVersion())));
    }
}

fenn::String CMP3FileTag::getField(ID3FrameId id, const fenn::String& fallback) const
{
    const fenn::String text = m_id3v2->getText(id);
    if (text.isEmpty() && m_id3v1->isPresent()) return fallback;
    return text;
}

void CMP3FileTag::setField(ID3FrameId id, const fenn::String& text)
{
    checkChangeable();
    m_id3v2->setText(id, text);
    m_dirty = true;
}

fenn::String CMP3FileTag::getTitle() const
{
    return getField(kTitleFrame, m_id3v1->getTitle());
}

void CMP3FileTag::setTitle(const fenn::String& title)
{
    setField(kTitleFrame, title);
    m_id3v1->setTitle(title);
}

fenn::String CMP3FileTag::getArtist() const
{
    return getField(kArtistFrame, m_id3v1->getArtist());
}

void CMP3FileTag::setArtist(const fenn::String& artist)
{
    setField(kArtistFrame, artist);
    m_id3v1->setArtist(artist);
}

fenn::String CMP3FileTag::getAlbum() const
{
    return getField(kAlbumFrame, m_id3v1->getAlbum());
}

void CMP3FileTag::setAlbum(const fenn::String& album)
{
    setField(kAlbumFrame, album);
    m_id3v1->setAlbum(album);
}

fenn::String CMP3FileTag::getTrack() const
{
    const std::int32_t track = m_id3v1->getTrack();
    return getField(kTrackFrame, track > 0 ? fenn::fromInt(track) : fenn::String());
}

void CMP3FileTag::setTrack(const fenn::String& track)
{
    setField(kTrackFrame, track);
    m_id3v1->setTrack(leadingTrackNumber(track));
}

fenn::String CMP3FileTag::getYear() const
{
    return getField(kYearFrame, m_id3v1->getYear());
}

void CMP3FileTag::setYear(const fenn::String& year)
{
    setField(kYearFrame, year);
    m_id3v1->setYear(year);
}

fenn::String CMP3FileTag::genreName(std::int32_t number) const
{
    const fenn::P<IMusicGenre> genre = m_genres->findGenreByNumber(number);
    return genre ? genre->getName() : fenn::String();
}

// TCON holds "(n)" as this class writes it, often followed by the name. A
// TCON of a name alone, as other programs write it, gives the list's name
// of that genre, or the text as it is when the list does not know it.
fenn::String CMP3FileTag::getGenre() const
{
    const std::int32_t number = m_id3v2->getGenreNumber();
    if (number >= 0) return genreName(number);
    const fenn::String text = m_id3v2->getText(kGenreFrame);
    if (!text.isEmpty()) {
        const fenn::P<IMusicGenre> genre = m_genres->findGenre(text);
        return genre ? genre->getName() : text;
    }
    return m_id3v1->isPresent() ? genreName(m_id3v1->getGenre()) : fenn::String();
}

void CMP3FileTag::setGenre(const fenn::String& genre)
{
    checkChangeable();
    const fenn::P<IMusicGenre> found = m_genres->findGenre(genre.trim());
    const std::int32_t number = found ? found->getNumber() : -1;
    m_id3v2->setGenreNumber(number);
    m_id3v1->setGenre(number);
    m_dirty = true;
}

fenn::String CMP3FileTag::getComment() const
{
    return getField(kCommentFrame, m_id3v1->getComment());
}

void CMP3FileTag::setComment(const fenn::String& comment)
{
    setField(kCommentFrame, comment);
    m_id3v1->setComment(comment);
}

void CMP3FileTag::saveChanges()
{
    if (!m_dirty) return;
    fenn::CFileSystemManager::getInstance()->replaceThroughTemporaryFile(
        m_file, [this](const fenn::CURI& temporary) { writeTemporaryFile(temporary); }, kSaveLogName);
    m_dirty = false;
}

void CMP3FileTag::writeTemporaryFile(const fenn::CURI& temporary)
{
    const fenn::P<fenn::CStreamManager> streams = fenn::CStreamManager::getInstance();
    const fenn::P<fenn::ISeekableInStream> original = streams->openSeekableInStream(m_file);
    const StreamCloser closeOriginal({original});
    const fenn::P<fenn::IOutStream> target = streams->openOutStream(
        temporary, fenn::StreamShare::exclusive, fenn::StreamCreate::createEmpty, fenn::DeleteOnClose::no);
    const StreamCloser closeTarget({target});

    // Reading the old tag leaves the stream at the audio behind it.
    auto oldTag = fenn::make<CID3v2Tag>();
    oldTag->read(*original);
    m_id3v2->write(*target);
    const std::int64_t end = original->getSize() - (m_id3v1->isPresent() ? CID3v1Tag::kSize : 0);
    copyStreamData(*original, *target, std::max<std::int64_t>(0, end - original->getPos()));
    if (m_id3v1->isPresent()) m_id3v1->write(*target);
    target->flush();
    target->close();
}

}  // namespace tbx
