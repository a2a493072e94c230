#pragma once

#include "formats/ffmpeg/CFFmpegFileAudioSource.h"

namespace fenn {
class ISeekableInStream;
}

namespace tbx {

// Reads a Windows Media audio file: the ASF container through libavformat,
// the audio with whatever WMA decoder libavcodec has (versions 1 and 2, Pro,
// Lossless, Voice). Samples, info and tags are those of the FFmpeg source;
// the year comes from the "WM/Year" attribute.
//
// A file that ends before the size its header declares fails at the end of
// its audio with a text of its own: the ASF demuxer would otherwise stop
// quietly at the cut. A decoder that refuses a packet fails with the WMA
// decoding text. Used by one thread at a time.
class CWMAFileAudioSource : public CFFmpegFileAudioSource
{
public:
    explicit CWMAFileAudioSource(const fenn::CURI& uri);

    fenn::String GetTypeName() const override;
    void Open(std::int32_t purpose, fenn::IBase* context) override;
    bool Read(IAudioChunk& chunk) override;

    // The file size that the header of an ASF stream declares, read from the
    // stream's start; -1 when the header does not say (a broadcast file, no
    // File Properties object, a header cut short). Leaves the stream's
    // position anywhere.
    static std::int64_t readDeclaredFileSize(fenn::ISeekableInStream& stream);

protected:
    // A file that is shorter than its header says has been cut: that is
    // what a user should hear, whatever the decoder stumbled on.
    [[noreturn]] void throwDecodingError() const override;

private:
    bool isTruncated() const { return m_actualSize >= 0 && m_declaredSize > m_actualSize; }

    std::int64_t m_declaredSize = -1;
    std::int64_t m_actualSize = -1;
};

}  // namespace tbx
