#pragma once

#include <memory>

#include "audio/IAudioSource.h"
#include "foundation/CObject.h"
#include "foundation/CURI.h"

namespace fenn {
class CValueList;
}

namespace tbx {

// Reads an Ogg Vorbis file through vorbisfile, which reaches the file through
// a seekable stream of the stream manager. Each Read gives 16-bit samples of
// one logical stream; a chained file whose links differ in rate or channels
// shows this on the chunks. Files of more than two channels are refused.
// Info: "sampleRate", "channels", "bitRate" (the nominal rate, -1 or 0 when
// the file has none), "minBitRate", "maxBitRate", "duration", "encoder" (the
// vendor text of the encoding library). Tags: every comment under its name
// in lower case. Used by one thread at a time.
class CVorbisFileAudioSource : public fenn::CObject, public virtual IAudioSource
{
public:
    explicit CVorbisFileAudioSource(const fenn::CURI& uri);
    ~CVorbisFileAudioSource() override;
    CVorbisFileAudioSource(const CVorbisFileAudioSource&) = delete;
    CVorbisFileAudioSource& operator=(const CVorbisFileAudioSource&) = delete;

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
    struct Decoder;

    // Decodes at most bytes of 16-bit samples into buffer, passing over
    // holes; 0 at the end. link is the chain link the samples belong to.
    long decodeInto(char* buffer, int bytes, int& link);
    void publishFacts();

    fenn::CURI m_uri;
    std::unique_ptr<Decoder> m_decoder;
    fenn::P<fenn::CValueList> m_info;
    fenn::P<fenn::CValueList> m_tags;
};

}  // namespace tbx
