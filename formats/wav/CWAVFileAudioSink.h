#pragma once

#include <cstdint>
#include <vector>

#include "audio/IAudioSource.h"
#include "foundation/CObject.h"
#include "foundation/CURI.h"
#include "foundation/P.h"

namespace fenn {
class CValueList;
class ISeekableOutStream;
}  // namespace fenn

namespace tbx {

class CAudioChunk;
class CAudioConverter;

// Writes 16-bit PCM chunks as a RIFF WAVE file of 8 or 16 bits. The header
// is written at once with sizes of 0; Finish writes a LIST INFO chunk
// behind the samples and patches the sizes, Abort leaves them 0. Chunks of
// another rate or channel count are converted through one converter kept
// for the whole file. Created open by the WAV output file type; used by one
// thread at a time.
class CWAVFileAudioSink : public fenn::CObject, public virtual IAudioSink
{
public:
    // settings: "sampleRate" (44100), "channels" (2), "bitsPerSample" (16;
    // 8 writes unsigned bytes, anything else 16 bits). tags: the value list
    // of tag data whose keys become INFO items.
    CWAVFileAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream, const fenn::CValueList& settings,
                      const fenn::CValueList& tags);
    ~CWAVFileAudioSink() override;

    void Write(const IAudioChunk& chunk) override;
    void Finish() override;
    void Abort() override;

    // The bytes that a sink with these settings and tags writes around its
    // samples: header and LIST INFO.
    static std::int64_t measureHeaderAndTag(const fenn::CValueList& settings, const fenn::CValueList& tags);

private:
    void writeHeader();
    void writeSamples(const std::int16_t* samples, std::int32_t frames, std::int32_t channels);
    void writeInfoList();

    fenn::P<fenn::ISeekableOutStream> m_stream;
    fenn::CURI m_uri;
    std::int64_t m_riffSizePosition = 0;
    std::int64_t m_dataSizePosition = 0;
    std::int64_t m_dataStart = 0;
    std::int32_t m_sampleRate;
    std::int32_t m_channels;
    std::int32_t m_bitsPerSample;
    bool m_closed = false;
    fenn::P<CAudioChunk> m_converted;
    fenn::P<CAudioConverter> m_converter;
    std::vector<std::uint8_t> m_narrowBuffer;
    fenn::P<fenn::CValueList> m_tags;
};

}  // namespace tbx
