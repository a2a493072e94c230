#pragma once

#include <memory>

#include "audio/IAudioSource.h"
#include "foundation/CObject.h"
#include "foundation/CURI.h"
#include "foundation/TextKey.h"

namespace fenn {
class CValueList;
}

namespace tbx {

// Reads an audio file through libavformat and libavcodec: the file comes from
// the stream manager, the best audio stream of the file is decoded, and the
// decoder's samples (any width, planar or interleaved, integer or float) are
// narrowed to interleaved 16-bit. One channel stays one; two stay two; more
// are mixed down to two by their positions, with the centre and the rear
// channels at -3 dB and the low-frequency channel left out, scaled so that
// the mix cannot clip.
//
// This class serves the formats beyond the program's own five (AAC and MP4,
// Opus, AIFF, WavPack, Monkey's Audio, Musepack, AC3) under the type name
// "DirectShow", and is the base of the Windows Media source, which names its
// own demuxer and texts. A packet the decoder refuses ends the reading with
// the decoding text: the file is damaged.
//
// Info: "sampleRate", "channels" (of the chunks, 1 or 2), "bitRate" (0 when
// the file does not tell) and "duration" in seconds. Tags: "title",
// "artist", "album", "genre", "date", "tracknumber", "description",
// "copyright" and "encoder", from the file's metadata and the audio stream's
// (Ogg files keep their comments there). Used by one thread at a time.
class CFFmpegFileAudioSource : public fenn::CObject, public virtual IAudioSource
{
public:
    explicit CFFmpegFileAudioSource(const fenn::CURI& uri);
    ~CFFmpegFileAudioSource() override;
    CFFmpegFileAudioSource(const CFFmpegFileAudioSource&) = delete;
    CFFmpegFileAudioSource& operator=(const CFFmpegFileAudioSource&) = delete;

    fenn::String GetTypeName() const override;
    // Throws the stream's errors, CFileFormatNotSupportedError for a file
    // that has no audio stream FFmpeg can decode.
    void Open(std::int32_t purpose, fenn::IBase* context) override;
    fenn::P<fenn::CValueList> GetInfo() override;
    fenn::P<fenn::CValueList> GetTags() override;
    bool Read(IAudioChunk& chunk) override;
    bool IsLive() const override { return false; }
    double GetProgress() const override;
    void Reset() override;
    void Close() override;

protected:
    // demuxers: the libavformat input formats that may claim the files
    // (comma-separated); decodingFailed: the text of a damaged stream.
    CFFmpegFileAudioSource(const fenn::CURI& uri, const char* demuxers, const fenn::TextKey& decodingFailed);

    const fenn::CURI& getURI() const { return m_uri; }
    // Throws the stream's error if a callback caught one, else the text of
    // a damaged stream. A format that knows more about the damage says so.
    [[noreturn]] virtual void throwDecodingError() const;

private:
    struct Decoder;

    // Decodes until the next frame has samples; false at the end.
    bool decodeNext();
    // Reads the next packet of the audio stream into the decoder, or tells
    // the decoder that the stream has ended.
    void feedDecoder();
    void publishFacts();

    fenn::CURI m_uri;
    const char* m_demuxers;
    fenn::TextKey m_decodingFailed;
    std::unique_ptr<Decoder> m_decoder;
    fenn::P<fenn::CValueList> m_info;
    fenn::P<fenn::CValueList> m_tags;
};

}  // namespace tbx
