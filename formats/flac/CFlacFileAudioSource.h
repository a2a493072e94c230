#pragma once

#include <memory>

#include "audio/IAudioSource.h"
#include "foundation/CObject.h"
#include "foundation/CURI.h"

namespace fenn {
class CValueList;
}

namespace tbx {

// Reads a FLAC file through libFLAC's stream decoder, which reaches the file
// through a seekable stream of the stream manager. Samples of other widths
// than 16 bits are shifted to 16 bits; files of more than two channels are
// refused. A stream that the decoder finds damaged, or that ends before the
// sample count of its header, fails with one of the decoder's error texts.
// Info: "sampleRate", "channels", "bitsPerSample", "duration", "encoder"
// (the vendor text of the comment block). Tags: every comment under its name
// in lower case. Used by one thread at a time.
class CFlacFileAudioSource : public fenn::CObject, public virtual IAudioSource
{
public:
    explicit CFlacFileAudioSource(const fenn::CURI& uri);
    ~CFlacFileAudioSource() override;
    CFlacFileAudioSource(const CFlacFileAudioSource&) = delete;
    CFlacFileAudioSource& operator=(const CFlacFileAudioSource&) = delete;

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

    // Decodes the next block into the decoder's buffer; false at the end.
    bool decodeNext();
    // Throws the error that the decoder's reports and state stand for.
    [[noreturn]] void throwDecoderError() const;
    void publishFacts();

    fenn::CURI m_uri;
    std::unique_ptr<Decoder> m_decoder;
    fenn::P<fenn::CValueList> m_info;
    fenn::P<fenn::CValueList> m_tags;
};

}  // namespace tbx
