#pragma once

#include <cstdint>
#include <vector>

#include "audio/CAudioChunk.h"
#include "audio/CAudioConverter.h"
#include "audio/IAudioSource.h"
#include "foundation/CObject.h"
#include "tags/IMusicGenreList.h"

struct lame_global_struct;

namespace fenn {
class CValueList;
class ISeekableOutStream;
}  // namespace fenn

namespace tbx {

class CID3v2Tag;
class IMP3PiggyBackData;

// Encodes 16-bit audio into MPEG 1/2 layer III with LAME. Settings:
// "bitRate" (bits per second, at most 320000; the CBR rate, or the mean
// rate in VBR mode), "vbr" (default true: LAME's average bit rate mode),
// "sampleRate" (absent or -1: the audio is brought to 44100 Hz and LAME
// chooses the output rate) and "channels". Chunks of another format are
// converted through one converter for the whole file.
//
// Around the audio: if the tags (or settings) carry "tbx.mp3.piggyBackData",
// its head is written before the audio and its tail behind it; otherwise an
// ID3v2 tag built from the tag keys goes first. Finish writes LAME's VBR
// header frame over the first audio frame, so players know the length.
// Used by one thread at a time.
class CMP3FileAudioSink : public fenn::CObject, public virtual IAudioSink
{
public:
    static constexpr std::int32_t kMaxBitRateKbps = 320;
    // A single encoder call takes at most this many frames; the output buffer
    // is LAME's worst case for them (1.25 times the samples plus 7200 bytes).
    static constexpr std::int32_t kMaxFramesPerCall = 8000;
    static constexpr std::int32_t kOutputBufferSize = 17200;
    static constexpr std::int32_t kDefaultSampleRate = 44100;
    static constexpr std::int32_t kDefaultChannels = 2;

    // genres turns the "genre" text into an ID3 genre number; without one a
    // list of the program's genres is made.
    CMP3FileAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream, const fenn::CValueList& settings,
                      const fenn::CValueList& tags, fenn::P<IMusicGenreList> genres = nullptr);
    ~CMP3FileAudioSink() override;
    CMP3FileAudioSink(const CMP3FileAudioSink&) = delete;
    CMP3FileAudioSink& operator=(const CMP3FileAudioSink&) = delete;

    void Write(const IAudioChunk& chunk) override;
    void Finish() override;
    void Abort() override;

    // The year that a "date" text names, or -1: the leading digits if they
    // are exactly four, else the last four characters, each only as a
    // number from 1900 to 2100 ("31.12.1999" gives 1999).
    static std::int32_t parseYear(const fenn::String& date);
    // The ID3v2 tag that a sink writes for these tag values.
    static fenn::P<CID3v2Tag> buildTag(const fenn::CValueList& tags, const IMusicGenreList& genres);
    // The bytes that a sink writes around the audio for these values (tags
    // and settings alike): head plus tail of a piggyback object, or the size
    // of the ID3v2 tag built from them.
    static std::int64_t estimateTagBytes(const fenn::CValueList& values);

private:
    void writeHead();
    void encode(const IAudioChunk& chunk);
    void writeEncoded(int bytes);
    void checkOpen() const;
    void closeEncoder();

    fenn::P<fenn::ISeekableOutStream> m_stream;
    lame_global_struct* m_lame = nullptr;
    std::int32_t m_sampleRate = kDefaultSampleRate;
    std::int32_t m_channels = kDefaultChannels;
    fenn::P<IMP3PiggyBackData> m_piggyBack;
    fenn::P<CID3v2Tag> m_tag;
    bool m_headPending = true;
    std::int64_t m_audioStart = 0;
    std::vector<std::uint8_t> m_output;
    // Chunks of another format are converted into m_converted, with one
    // converter for the whole file so that chunk borders do not click.
    fenn::P<CAudioChunk> m_converted;
    fenn::P<CAudioConverter> m_converter;
};

}  // namespace tbx
