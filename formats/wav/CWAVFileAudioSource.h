#pragma once

#include <cstdint>
#include <vector>

#include "audio/IAudioSource.h"
#include "formats/wav/WAVFormat.h"
#include "foundation/CObject.h"
#include "foundation/CURI.h"

namespace fenn {
class CValueList;
class IResetableInStream;
}  // namespace fenn

namespace tbx {

class CWAVCodecDecoder;

// Reads a RIFF WAVE file and delivers interleaved 16-bit PCM. PCM of 8 or
// 16 bits, one or two channels and at most 44100 Hz is read directly; every
// other format goes through CWAVCodecDecoder. The constructor reads the
// header once (which publishes the stream facts and the LIST INFO tags) and
// closes the file again; Open reads it anew and starts at the first sample.
// Header and decoder set-up failures throw CFileFormatNotSupportedError for
// the file, damage found while reading throws CError "The file is
// corrupted.". Used by one thread at a time.
class CWAVFileAudioSource : public fenn::CObject, public virtual IAudioSource
{
public:
    explicit CWAVFileAudioSource(const fenn::CURI& uri);
    ~CWAVFileAudioSource() override;

    fenn::String GetTypeName() const override { return "WAV"; }
    void Open(std::int32_t purpose, fenn::IBase* context) override;
    fenn::P<fenn::CValueList> GetInfo() override;
    fenn::P<fenn::CValueList> GetTags() override;
    bool Read(IAudioChunk& chunk) override;
    bool IsLive() const override { return false; }
    double GetProgress() const override;
    void Reset() override;
    void Close() override;

private:
    void readHeader();
    void walkHeader();
    void readFormatChunk(std::uint32_t size);
    void readList(std::uint32_t size);
    void readTrailingList();
    void setUpDecoding();
    void refill();
    void refillCompressed(std::int32_t& produced);
    void readContent(std::uint8_t* buffer, std::int32_t bytes);

    fenn::CURI m_uri;
    fenn::P<fenn::IResetableInStream> m_stream;
    bool m_headerPublished = false;
    fenn::P<fenn::CValueList> m_info;
    fenn::P<fenn::CValueList> m_tags;

    WAVFormat m_fileFormat;     // the "fmt " chunk as read
    WAVFormat m_decodedFormat;  // what the decode buffer holds: PCM, 1-2 channels, 8 or 16 bits
    std::uint32_t m_dataSize = 0;
    std::uint32_t m_factFrames = 0;
    bool m_listSeen = false;
    std::uint32_t m_fileBytesLeft = 0;
    std::int32_t m_readUnit = 0;
    std::int64_t m_totalDecodedBytes = 0;
    std::vector<std::uint8_t> m_decodeBuffer;
    std::int32_t m_available = 0;
    std::int32_t m_availableOffset = 0;
    std::int64_t m_deliveredBytes = 0;

    // The compressed path only.
    fenn::P<CWAVCodecDecoder> m_decoder;
    std::vector<std::uint8_t> m_sourceBuffer;
    std::int32_t m_sourceFill = 0;
    bool m_sourceFinished = false;
    bool m_decoderDrained = false;
};

}  // namespace tbx
