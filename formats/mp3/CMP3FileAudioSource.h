#pragma once

#include <cstdint>

#include "audio/IAudioSource.h"
#include "foundation/CException.h"
#include "foundation/CObject.h"
#include "foundation/CURI.h"
#include "tags/IMusicGenreList.h"

struct mpg123_handle_struct;

namespace fenn {
class CValueList;
class ISeekableInStream;
}  // namespace fenn

namespace tbx {

// Decodes an MPEG audio file with libmpg123, which reads the file through
// the program's own seekable stream (replaced reader callbacks), gapless, at
// the file's own rate and channel count. A stream that changes rate or
// channels hands each part over in chunks of its own format.
//
// The first Open also reads the file's tags (ID3v1, then ID3v2 over it) and
// its head and tail bytes (CMP3PiggyBackData). Info: "sampleRate",
// "channels", "VBR", "bitRate" (bits per second; the mean for VBR files),
// "duration" (seconds, when the decoder knows the length), the tag keys and
// "tbx.mp3.piggyBackData"; the tags list holds the last two groups. Used by
// one thread at a time.
class CMP3FileAudioSource : public fenn::CObject, public virtual IAudioSource
{
public:
    // Bytes that one Read asks of the decoder: one second of 44.1 kHz stereo.
    static constexpr std::int32_t kReadBytes = 44100 * 2 * 2;

    // genres turns the genre numbers of the tags into names; without one a
    // list of the program's genres is made.
    explicit CMP3FileAudioSource(const fenn::CURI& uri, fenn::P<IMusicGenreList> genres = nullptr);
    ~CMP3FileAudioSource() override;
    CMP3FileAudioSource(const CMP3FileAudioSource&) = delete;
    CMP3FileAudioSource& operator=(const CMP3FileAudioSource&) = delete;

    fenn::String GetTypeName() const override;
    void Open(std::int32_t purpose, fenn::IBase* context) override;
    fenn::P<fenn::CValueList> GetInfo() override;
    fenn::P<fenn::CValueList> GetTags() override;
    bool Read(IAudioChunk& chunk) override;
    bool IsLive() const override { return false; }
    double GetProgress() const override;
    void Reset() override;
    void Close() override;

private:
    struct Callbacks;

    // Tags and piggyback data, read once from the stream before the decoder
    // takes it over.
    void readTags();
    void publishInfo();
    void updateFormat();
    // Logs the failure of a reader callback under its name and keeps the
    // first one for fail.
    void recordStreamError(const char* callbackName, const fenn::CException& error);
    // The decoder's failure: a stream error that a callback recorded, else
    // the decode error with code.
    [[noreturn]] void fail(int code);

    fenn::CURI m_uri;
    fenn::P<IMusicGenreList> m_genres;
    fenn::P<fenn::ISeekableInStream> m_stream;
    mpg123_handle_struct* m_handle = nullptr;
    // The failure of a reader callback, thrown again by the call that saw
    // the decoder fail.
    fenn::P<fenn::CException> m_streamError;
    std::int32_t m_sampleRate = 0;
    std::int32_t m_channels = 0;
    bool m_ended = false;
    fenn::P<fenn::CValueList> m_info;
    fenn::P<fenn::CValueList> m_tags;
};

}  // namespace tbx
