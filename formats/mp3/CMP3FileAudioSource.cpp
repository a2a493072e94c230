#include "formats/mp3/CMP3FileAudioSource.h"

#include <mpg123.h>

#include <algorithm>
#include <cstdio>
#include <limits>

#include "formats/FileTypeIds.h"
#include "formats/mp3/CMP3PiggyBackData.h"
#include "formats/mp3/MP3Texts.h"
#include "foundation/CBoxedValues.h"
#include "foundation/CLogManager.h"
#include "foundation/CObjectError.h"
#include "foundation/CStreamManager.h"
#include "foundation/CURIError.h"
#include "foundation/CValueList.h"
#include "foundation/IStringLocalizer.h"
#include "foundation/TCast.h"
#include "tags/CID3v1Tag.h"
#include "tags/CID3v2Tag.h"
#include "tags/CMusicGenreList.h"

namespace tbx {

namespace {

// A decoder that returns neither audio nor an end this many times in a row
// is stuck; the loop gives up rather than spin.
constexpr int kMaxEmptyReads = 64;

// The ID3v2 text frames and the tag keys they are published under; TCON
// and the date have rules of their own.
struct TextFrameKey
{
    ID3FrameId frame;
    const char* key;
};
constexpr TextFrameKey kTextFrames[] = {
    {makeID3FrameId("TALB"), "album"},       {makeID3FrameId("TCOP"), "copyright"},
    {makeID3FrameId("TIT2"), "title"},       {makeID3FrameId("TIT3"), "description"},
    {makeID3FrameId("TPE1"), "performer"},   {makeID3FrameId("TPUB"), "organization"},
    {makeID3FrameId("TRCK"), "tracknumber"}, {makeID3FrameId("TSRC"), "isrc"},
    {makeID3FrameId("TSSE"), "encoder"},
};
constexpr ID3FrameId kGenreFrame = makeID3FrameId("TCON");
constexpr ID3FrameId kDateFrame = makeID3FrameId("TDAT");
constexpr ID3FrameId kYearFrame = makeID3FrameId("TYER");

void setIfNotEmpty(fenn::CValueList& list, const char* key, const fenn::String& value)
{
    if (!value.isEmpty()) list.setString(key, value);
}

fenn::String genreName(const IMusicGenreList& genres, std::int32_t number)
{
    const fenn::P<IMusicGenre> genre = genres.findGenreByNumber(number);
    return genre ? genre->getName() : fenn::String();
}

}  // namespace

// The reader callbacks of libmpg123, which behave like POSIX read and lseek
// on the source's stream. A stream error cannot cross the C library: it is
// logged, kept for the caller and reported to the decoder as -1.
struct CMP3FileAudioSource::Callbacks
{
    static mpg123_ssize_t read(void* handle, void* buffer, size_t bytes)
    {
        auto* source = static_cast<CMP3FileAudioSource*>(handle);
        try {
            const auto size =
                static_cast<std::int32_t>(std::min<size_t>(bytes, std::numeric_limits<std::int32_t>::max()));
            return source->m_stream->readSome(buffer, size);
        } catch (const fenn::CException& error) {
            source->recordStreamError("CMP3FileAudioSource: read", error);
        } catch (const std::exception& error) {
            source->recordStreamError("CMP3FileAudioSource: read",
                                      fenn::CError(fenn::String(), fenn::String::copyOf(error.what())));
        }
        return -1;
    }

    static off_t seek(void* handle, off_t offset, int whence)
    {
        auto* source = static_cast<CMP3FileAudioSource*>(handle);
        try {
            fenn::ISeekableInStream& stream = *source->m_stream;
            switch (whence) {
            case SEEK_SET:
                stream.seek(offset);
                break;
            case SEEK_CUR:
                stream.seekRelative(offset);
                break;
            case SEEK_END:
                stream.seek(stream.getSize() + offset);
                break;
            default:
                return -1;
            }
            return static_cast<off_t>(stream.getPos());
        } catch (const fenn::CException& error) {
            source->recordStreamError("CMP3FileAudioSource: seek", error);
        } catch (const std::exception& error) {
            source->recordStreamError("CMP3FileAudioSource: seek",
                                      fenn::CError(fenn::String(), fenn::String::copyOf(error.what())));
        }
        return -1;
    }
};

CMP3FileAudioSource::CMP3FileAudioSource(const fenn::CURI& uri, fenn::P<IMusicGenreList> genres)
    : m_uri(uri), m_genres(genres ? std::move(genres) : fenn::P<IMusicGenreList>(fenn::make<CMusicGenreList>()))
{
}

CMP3FileAudioSource::~CMP3FileAudioSource()
{
    try {
        Close();
    } catch (const fenn::CException& error) {
        fenn::CLogManager::getInstance()->error(
            "formats", fenn::String("Exception during 'CMP3FileAudioSource: close': ") + error.getDescription());
    }
}

fenn::String CMP3FileAudioSource::GetTypeName() const
{
    return fileTypeIds::mp3;
}

void CMP3FileAudioSource::recordStreamError(const char* callbackName, const fenn::CException& error)
{
    fenn::CLogManager::getInstance()->error("formats", fenn::String("Exception during '") + callbackName +
                                                           "': " + error.getDescription());
    if (!m_streamError) m_streamError = error.clone();
}

void CMP3FileAudioSource::fail(int code)
{
    if (m_streamError) {
        const fenn::P<fenn::CException> error = m_streamError;
        m_streamError = nullptr;
        error->raise();
    }
    throw fenn::CError(fenn::String(), fenn::localize(mp3Texts::decodeError).replace("%CODE%", fenn::fromInt(code)));
}

void CMP3FileAudioSource::Open(std::int32_t, fenn::IBase*)
{
    Close();
    try {
        m_stream = fenn::CStreamManager::getInstance()->openSeekableInStream(m_uri);
        if (!m_info) readTags();

        int code = MPG123_OK;
        m_handle = mpg123_new(nullptr, &code);
        if (m_handle == nullptr) fail(code);
        // Flags are added to the library's defaults: setting them outright
        // would drop what the build turns on.
        if (mpg123_param(m_handle, MPG123_ADD_FLAGS, MPG123_QUIET | MPG123_GAPLESS, 0.0) != MPG123_OK)
            fail(mpg123_errcode(m_handle));
        // 16-bit output at the stream's own rate and channel count: nothing
        // is resampled or mixed inside the decoder.
        mpg123_format_none(m_handle);
        const long* rates = nullptr;
        size_t rateCount = 0;
        mpg123_rates(&rates, &rateCount);
        for (size_t i = 0; i < rateCount; ++i)
            mpg123_format(m_handle, rates[i], MPG123_MONO | MPG123_STEREO, MPG123_ENC_SIGNED_16);
        if (mpg123_replace_reader_handle(m_handle, &Callbacks::read, &Callbacks::seek, nullptr) != MPG123_OK ||
            mpg123_open_handle(m_handle, this) != MPG123_OK)
            fail(mpg123_errcode(m_handle));

        long rate = 0;
        int channels = 0;
        int encoding = 0;
        const int result = mpg123_getformat(m_handle, &rate, &channels, &encoding);
        if (result == MPG123_DONE && !m_streamError) throw fenn::CFileFormatNotSupportedError(m_uri);
        if (result != MPG123_OK) fail(result == MPG123_ERR ? mpg123_errcode(m_handle) : result);
        m_sampleRate = static_cast<std::int32_t>(rate);
        m_channels = channels;
        if (m_info->getCount() == 0) publishInfo();
    } catch (...) {
        Close();
        throw;
    }
}

void CMP3FileAudioSource::readTags()
{
    auto tags = fenn::make<fenn::CValueList>();
    auto id3v1 = fenn::make<CID3v1Tag>();
    if (id3v1->read(*m_stream)) {
        setIfNotEmpty(*tags, "title", id3v1->getTitle());
        setIfNotEmpty(*tags, "performer", id3v1->getArtist());
        setIfNotEmpty(*tags, "album", id3v1->getAlbum());
        setIfNotEmpty(*tags, "date", id3v1->getYear());
        setIfNotEmpty(*tags, "description", id3v1->getComment());
        if (id3v1->getTrack() > 0) tags->setString("tracknumber", fenn::fromInt(id3v1->getTrack()));
        setIfNotEmpty(*tags, "genre", genreName(*m_genres, id3v1->getGenre()));
    }

    m_stream->seek(0);
    auto id3v2 = fenn::make<CID3v2Tag>();
    if (id3v2->read(*m_stream) && id3v2->isSupported()) {
        for (const TextFrameKey& entry : kTextFrames) setIfNotEmpty(*tags, entry.key, id3v2->getText(entry.frame));
        const fenn::String date = id3v2->getText(kDateFrame);
        setIfNotEmpty(*tags, "date", date.isEmpty() ? id3v2->getText(kYearFrame) : date);
        const std::int32_t genre = id3v2->getGenreNumber();
        if (genre >= 0) {
            setIfNotEmpty(*tags, "genre", genreName(*m_genres, genre));
        } else {
            // A genre written as text ("Rock") is kept as its name.
            const fenn::String text = id3v2->getText(kGenreFrame);
            const fenn::P<IMusicGenre> known = text.isEmpty() ? nullptr : m_genres->findGenre(text);
            setIfNotEmpty(*tags, "genre", known ? known->getName() : text);
        }
    }

    tags->setValue(kMP3PiggyBackDataKey, CMP3PiggyBackData::collect(*m_stream));
    m_stream->seek(0);
    m_tags = tags;
    m_info = fenn::make<fenn::CValueList>();
}

void CMP3FileAudioSource::publishInfo()
{
    mpg123_frameinfo frame{};
    mpg123_info(m_handle, &frame);
    const off_t length = mpg123_length(m_handle);
    const double duration = length > 0 && m_sampleRate > 0 ? static_cast<double>(length) / m_sampleRate : 0.0;

    std::int32_t bitRate = frame.bitrate * 1000;
    if (frame.vbr == MPG123_ABR && frame.abr_rate > 0) {
        bitRate = frame.abr_rate * 1000;
    } else if (frame.vbr == MPG123_VBR && duration > 0.0) {
        // The mean over the audio: the file less its head and tail.
        std::int64_t audioBytes = m_stream->getSize();
        const auto* piggyBack = fenn::TCast<IMP3PiggyBackData>(m_tags->getValue(kMP3PiggyBackDataKey).get());
        if (piggyBack) audioBytes -= piggyBack->getHeadSize() + piggyBack->getTailSize();
        bitRate = static_cast<std::int32_t>(static_cast<double>(audioBytes) * 8.0 / duration);
    }

    m_info->setInt("sampleRate", m_sampleRate);
    m_info->setInt("channels", m_channels);
    m_info->setBool("VBR", frame.vbr != MPG123_CBR);
    m_info->setInt("bitRate", bitRate);
    if (duration > 0.0) m_info->setDouble("duration", duration);
    const fenn::P<fenn::IConstEnum> names = m_tags->getNames();
    while (names->hasMoreElements()) {
        fenn::PC<fenn::IBase> name;
        names->next(name);
        const fenn::String key(name->toString());
        m_info->setValue(key, m_tags->getValue(key));
    }
}

fenn::P<fenn::CValueList> CMP3FileAudioSource::GetInfo()
{
    auto copy = fenn::make<fenn::CValueList>();
    if (m_info) copy->assign(*m_info);
    return copy;
}

fenn::P<fenn::CValueList> CMP3FileAudioSource::GetTags()
{
    auto copy = fenn::make<fenn::CValueList>();
    if (m_tags) copy->assign(*m_tags);
    return copy;
}

void CMP3FileAudioSource::updateFormat()
{
    long rate = 0;
    int channels = 0;
    int encoding = 0;
    if (mpg123_getformat(m_handle, &rate, &channels, &encoding) != MPG123_OK) fail(mpg123_errcode(m_handle));
    m_sampleRate = static_cast<std::int32_t>(rate);
    m_channels = channels;
}

bool CMP3FileAudioSource::Read(IAudioChunk& chunk)
{
    if (m_handle == nullptr) throw fenn::CInvalidObjectStateError(this, "the source is not open");
    chunk.SetLength(0);
    if (m_ended) return false;
    chunk.ReserveBytes(kReadBytes, false);
    // A whole number of frames for one and for two channels.
    const auto room = static_cast<size_t>(chunk.GetCapacityInBytes() & ~3);
    for (int emptyReads = 0; emptyReads < kMaxEmptyReads; ++emptyReads) {
        size_t done = 0;
        const int result = mpg123_read(m_handle, chunk.GetWritableData(), room, &done);
        if (done > 0) {
            // What came before a format change is still of the old format.
            chunk.SetSampleRate(m_sampleRate);
            chunk.SetChannels(m_channels);
            chunk.SetLength(static_cast<std::int32_t>(done / static_cast<size_t>(m_channels * 2)));
        }
        switch (result) {
        case MPG123_OK:
            break;
        case MPG123_NEW_FORMAT:
            updateFormat();
            break;
        case MPG123_DONE:
            m_ended = true;
            break;
        case MPG123_ERR:
            fail(mpg123_errcode(m_handle));
        default:
            fail(result);
        }
        if (m_streamError) fail(MPG123_ERR_READER);
        if (done > 0) return true;
        if (m_ended) return false;
    }
    fail(MPG123_ERR);
}

double CMP3FileAudioSource::GetProgress() const
{
    if (m_handle == nullptr) return m_ended ? 1.0 : 0.0;
    const off_t position = mpg123_tell(m_handle);
    const off_t length = mpg123_length(m_handle);
    if (position < 0 || length <= 0) return 0.0;
    if (position >= length) return 1.0;
    return static_cast<double>(position) / static_cast<double>(length);
}

void CMP3FileAudioSource::Reset()
{
    Close();
    Open(0, nullptr);
}

void CMP3FileAudioSource::Close()
{
    if (m_handle != nullptr) {
        mpg123_close(m_handle);
        mpg123_delete(m_handle);
        m_handle = nullptr;
    }
    if (m_stream) {
        m_stream->close();
        m_stream = nullptr;
    }
    m_streamError = nullptr;
    m_ended = false;
}

}  // namespace tbx
