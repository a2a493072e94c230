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

// Encodes 16-bit audio into a FLAC stream through libFLAC's stream encoder,
// which writes to the output stream and seeks back at the end to complete
// the stream header. The format is fixed at creation from the settings
// "sampleRate" (44100), "channels" (2) and "bitsPerSample" (16); samples are
// shifted from 16 bits to that width. The tags become the VORBIS_COMMENT
// block, followed by 4096 bytes of padding for later tag edits. Finish closes
// the stream. Used by one thread at a time.
class CFlacFileAudioSink : public fenn::CObject, public virtual IAudioSink
{
public:
    CFlacFileAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream, const fenn::CValueList& settings,
                       const fenn::CValueList& tags);
    ~CFlacFileAudioSink() override;
    CFlacFileAudioSink(const CFlacFileAudioSink&) = delete;
    CFlacFileAudioSink& operator=(const CFlacFileAudioSink&) = delete;

    void Write(const IAudioChunk& chunk) override;
    void Finish() override;
    void Abort() override;

private:
    struct Encoder;

    void encode(const IAudioChunk& chunk);
    void checkOpen() const;
    // Drops the encoder without letting it write anything more.
    void discardEncoder();

    fenn::P<fenn::ISeekableOutStream> m_stream;
    std::int32_t m_sampleRate;
    std::int32_t m_channels;
    std::int32_t m_bitsPerSample;
    std::unique_ptr<Encoder> m_encoder;
    // Chunks of another format are converted into m_converted, with one
    // converter for the whole file so that chunk borders do not click.
    fenn::P<CAudioChunk> m_converted;
    fenn::P<CAudioConverter> m_converter;
};

}  // namespace tbx
