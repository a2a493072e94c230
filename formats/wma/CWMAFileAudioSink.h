#pragma once

#include <memory>

#include "audio/CAudioChunk.h"
#include "audio/CAudioConverter.h"
#include "audio/IAudioSource.h"
#include "foundation/CObject.h"

struct AVDictionary;

namespace fenn {
class CValueList;
class ISeekableOutStream;
}  // namespace fenn

namespace tbx {

// Encodes 16-bit audio into a Windows Media audio file: libavcodec's "wmav2"
// encoder (Windows Media Audio 2) in an ASF container written by
// libavformat's "asf" muxer, which seeks back at the end to complete the
// header. The format is fixed at creation from the settings (see
// chooseEncoderSettings); chunks of another format are converted. The tags
// become ASF attributes, and the file always names this program as its
// encoder. Finish closes the stream. Used by one thread at a time.
class CWMAFileAudioSink : public fenn::CObject, public virtual IAudioSink
{
public:
    // What the encoder is set to.
    struct EncoderSettings
    {
        std::int32_t sampleRate;
        std::int32_t channels;
        std::int32_t bitRate;
    };

    // Throws a CError with the initialisation text when the encoder refuses
    // to start, and the stream's errors.
    CWMAFileAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream, const fenn::CValueList& settings,
                      const fenn::CValueList& tags);
    ~CWMAFileAudioSink() override;
    CWMAFileAudioSink(const CWMAFileAudioSink&) = delete;
    CWMAFileAudioSink& operator=(const CWMAFileAudioSink&) = delete;

    void Write(const IAudioChunk& chunk) override;
    void Finish() override;
    void Abort() override;

    // Maps the WMA settings ("vbrEnabled", "vbrQuality", "cbrBitRate",
    // "sampleRate", "channels") onto what the encoder offers.
    static EncoderSettings chooseEncoderSettings(const fenn::CValueList& settings);
    // Puts the tags into an ASF muxer's metadata under the attribute names.
    static void addAttributes(AVDictionary** metadata, const fenn::CValueList& tags);

private:
    struct Encoder;

    void encode(const IAudioChunk& chunk);
    void checkOpen() const;

    fenn::P<fenn::ISeekableOutStream> m_stream;
    EncoderSettings m_settings;
    std::unique_ptr<Encoder> m_encoder;
    // Chunks of another format are converted into m_converted, with one
    // converter for the whole file so that chunk borders do not click.
    fenn::P<CAudioChunk> m_converted;
    fenn::P<CAudioConverter> m_converter;
};

}  // namespace tbx
