#include "formats/wav/CWAVFileAudioSink.h"

#include <bit>
#include <cstring>

#include "audio/CAudioChunk.h"
#include "audio/CAudioConverter.h"
#include "foundation/CMemoryIOStream.h"
#include "foundation/CValueList.h"
#include "foundation/StreamErrors.h"

namespace tbx {

namespace {

// The conversion target holds one second of CD audio.
constexpr std::int32_t kConvertedChunkFrames = 44100;
constexpr std::int32_t kHeaderSize = 44;
constexpr std::uint16_t kPCMFormatTag = 1;

constexpr const char* kSoftwareName = "Quorrel Tonebench 3";
constexpr const char* kDefaultComment = "Encoded with Quorrel Tonebench 3.";

// The INFO items in the order they are written, with their tag keys; an
// item without key or with a default is always written.
struct InfoItem
{
    const char* id;
    const char* key;
    const char* defaultValue;
};
constexpr InfoItem kInfoItems[] = {{"ISFT", nullptr, kSoftwareName},
                                   {"IART", "artist", nullptr},
                                   {"ICOP", "copyright", nullptr},
                                   {"INAM", "title", nullptr},
                                   {"ICMT", "description", kDefaultComment},
                                   {"IGNR", "genre", nullptr},
                                   {"ICRD", "date", nullptr}};

void putLE16(std::uint8_t* to, std::uint32_t value)
{
    to[0] = static_cast<std::uint8_t>(value);
    to[1] = static_cast<std::uint8_t>(value >> 8);
}

void putLE32(std::uint8_t* to, std::uint32_t value)
{
    putLE16(to, value & 0xFFFF);
    putLE16(to + 2, value >> 16);
}

void writeLE32(fenn::IOutStream& stream, std::uint32_t value)
{
    std::uint8_t bytes[4];
    putLE32(bytes, value);
    stream.write(bytes, sizeof bytes);
}

}  // namespace

CWAVFileAudioSink::CWAVFileAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream, const fenn::CValueList& settings,
                                     const fenn::CValueList& tags)
    : m_stream(stream), m_uri(stream->getURI()), m_sampleRate(settings.getInt("sampleRate", 44100)),
      m_channels(settings.getInt("channels", 2)),
      // Samples are written as 8 or 16 bits; the header says what the data is.
      m_bitsPerSample(settings.getInt("bitsPerSample", 16) == 8 ? 8 : 16),
      m_converted(fenn::make<CAudioChunk>(m_sampleRate, m_channels, kConvertedChunkFrames)),
      m_converter(fenn::make<CAudioConverter>()), m_tags(fenn::make<fenn::CValueList>())
{
    m_tags->assign(tags);
    // Throws CInvalidArgError for a rate or channel count that no audio can have.
    m_converter->SetOutputRate(m_sampleRate);
    m_converter->SetOutputChannels(m_channels);
    writeHeader();
}

CWAVFileAudioSink::~CWAVFileAudioSink()
{
    try {
        Abort();
    } catch (const fenn::CException&) {
        // A stream that fails to close has nothing left to lose.
    }
}

void CWAVFileAudioSink::writeHeader()
{
    const std::int64_t start = m_stream->getPos();
    const auto blockAlign = static_cast<std::uint32_t>(m_bitsPerSample / 8 * m_channels);
    std::uint8_t header[kHeaderSize] = {};
    std::memcpy(header, "RIFF", 4);
    std::memcpy(header + 8, "WAVE", 4);
    std::memcpy(header + 12, "fmt ", 4);
    putLE32(header + 16, 16);
    putLE16(header + 20, kPCMFormatTag);
    putLE16(header + 22, static_cast<std::uint32_t>(m_channels));
    putLE32(header + 24, static_cast<std::uint32_t>(m_sampleRate));
    putLE32(header + 28, blockAlign * static_cast<std::uint32_t>(m_sampleRate));
    putLE16(header + 32, blockAlign);
    putLE16(header + 34, static_cast<std::uint32_t>(m_bitsPerSample));
    std::memcpy(header + 36, "data", 4);
    m_stream->write(header, kHeaderSize);
    m_riffSizePosition = start + 4;
    m_dataSizePosition = start + 40;
    m_dataStart = start + kHeaderSize;
}

void CWAVFileAudioSink::Write(const IAudioChunk& chunk)
{
    if (m_closed) fenn::throwStreamClosed(m_uri);
    if (chunk.HasFormat(m_sampleRate, m_channels)) {
        writeSamples(chunk.GetData(), chunk.GetLength(), chunk.GetChannels());
    } else {
        m_converted->ConvertFrom(chunk, m_converter.get());
        writeSamples(m_converted->GetData(), m_converted->GetLength(), m_converted->GetChannels());
    }
}

void CWAVFileAudioSink::writeSamples(const std::int16_t* samples, std::int32_t frames, std::int32_t channels)
{
    const std::int32_t count = frames * channels;
    if (count <= 0) return;
    if (m_bitsPerSample == 8) {
        // The high byte made unsigned: no dither, no rounding.
        if (m_narrowBuffer.size() < static_cast<std::size_t>(count)) m_narrowBuffer.resize(count);
        for (std::int32_t index = 0; index < count; ++index) {
            m_narrowBuffer[index] = static_cast<std::uint8_t>((static_cast<std::uint16_t>(samples[index]) >> 8) + 128);
        }
        m_stream->write(m_narrowBuffer.data(), count);
    } else if constexpr (std::endian::native == std::endian::little) {
        m_stream->write(samples, count * 2);
    } else {
        if (m_narrowBuffer.size() < static_cast<std::size_t>(count) * 2) m_narrowBuffer.resize(count * 2);
        for (std::int32_t index = 0; index < count; ++index) {
            putLE16(m_narrowBuffer.data() + 2 * index, static_cast<std::uint16_t>(samples[index]));
        }
        m_stream->write(m_narrowBuffer.data(), count * 2);
    }
}

void CWAVFileAudioSink::Finish()
{
    if (m_closed) return;
    m_converted->ConvertRemainder(*m_converter);
    writeSamples(m_converted->GetData(), m_converted->GetLength(), m_converted->GetChannels());

    const std::int64_t endOfData = m_stream->getPos();
    writeInfoList();
    const std::int64_t end = m_stream->getPos();
    // Sizes of more than 4 GiB do not fit the fields; they keep their low 32 bits.
    m_stream->seek(m_dataSizePosition);
    writeLE32(*m_stream, static_cast<std::uint32_t>(endOfData - m_dataStart));
    m_stream->seek(m_riffSizePosition);
    writeLE32(*m_stream, static_cast<std::uint32_t>(end - m_riffSizePosition - 4));
    m_stream->seek(end);
    m_closed = true;

    fenn::P<fenn::ISeekableOutStream> stream = std::move(m_stream);
    m_stream = nullptr;
    std::vector<std::uint8_t>().swap(m_narrowBuffer);
    stream->close();
}

void CWAVFileAudioSink::writeInfoList()
{
    // The published layout pads odd chunks to a word; this writer does not,
    // neither behind the samples nor behind an INFO value.
    fenn::ISeekableOutStream& stream = *m_stream;
    stream.write("LIST", 4);
    const std::int64_t sizePosition = stream.getPos();
    writeLE32(stream, 0);
    stream.write("INFO", 4);
    for (const InfoItem& item : kInfoItems) {
        fenn::String value;
        if (item.key && m_tags->hasValue(item.key)) {
            value = m_tags->getString(item.key, fenn::String());
        } else if (item.defaultValue) {
            value = item.defaultValue;
        } else {
            continue;
        }
        const fenn::String latin1 = value.asLatin1();
        stream.write(item.id, 4);
        writeLE32(stream, static_cast<std::uint32_t>(latin1.getByteSize()));
        stream.write(latin1.getData(), latin1.getByteSize());
    }
    const std::int64_t end = stream.getPos();
    stream.seek(sizePosition);
    writeLE32(stream, static_cast<std::uint32_t>(end - sizePosition - 4));
    stream.seek(end);
}

void CWAVFileAudioSink::Abort()
{
    m_closed = true;
    std::vector<std::uint8_t>().swap(m_narrowBuffer);
    if (!m_stream) return;
    fenn::P<fenn::ISeekableOutStream> stream = std::move(m_stream);
    m_stream = nullptr;
    stream->close();
}

std::int64_t CWAVFileAudioSink::measureHeaderAndTag(const fenn::CValueList& settings, const fenn::CValueList& tags)
{
    auto block = fenn::make<fenn::CMemoryBlock>();
    auto sink = fenn::make<CWAVFileAudioSink>(fenn::make<fenn::CMemoryIOStream>(block), settings, tags);
    sink->Finish();
    return block->getSize();
}

}  // namespace tbx
