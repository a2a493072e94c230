#pragma once

#include <memory>

#include "audio/CAudioChunk.h"
#include "audio/CAudioConverter.h"
#include "audio/IAudioSource.h"
#include "foundation/CObject.h"

namespace fenn {
class CValueList;
class ISeekableOutStream;
}  // namespace fenn

namespace tbx {

// Encodes 16-bit audio into an Ogg Vorbis stream through libvorbis and
// libogg, written page by page to the output stream. The format is fixed at
// creation from the settings "sampleRate" (44100), "channels" (2),
// "qualityIndex" (5, quality mode) and "avgBitRate", "minBitRate",
// "maxBitRate" (-1; an average selects managed mode). The tags become the
// comment header. The headers are on the stream when the constructor
// returns; Finish closes the stream. Used by one thread at a time.
class CVorbisFileAudioSink : public fenn::CObject, public virtual IAudioSink
{
public:
    CVorbisFileAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream, const fenn::CValueList& settings,
                         const fenn::CValueList& tags);
    ~CVorbisFileAudioSink() override;
    CVorbisFileAudioSink(const CVorbisFileAudioSink&) = delete;
    CVorbisFileAudioSink& operator=(const CVorbisFileAudioSink&) = delete;

    void Write(const IAudioChunk& chunk) override;
    void Finish() override;
    void Abort() override;

private:
    struct Encoder;

    void encode(const IAudioChunk& chunk);
    // Moves finished blocks through the bit-rate manager into pages.
    void writeFinishedPackets();
    void checkOpen() const;
    void closeStream();

    fenn::P<fenn::ISeekableOutStream> m_stream;
    std::int32_t m_sampleRate;
    std::int32_t m_channels;
    std::unique_ptr<Encoder> m_encoder;
    // Chunks of another format are converted into m_converted, with one
    // converter for the whole file so that chunk borders do not click.
    fenn::P<CAudioChunk> m_converted;
    fenn::P<CAudioConverter> m_converter;
};

}  // namespace tbx
