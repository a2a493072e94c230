#include "formats/wav/CWAVFileAudioSource.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string_view>

#include "formats/wav/CWAVCodecDecoder.h"
#include "formats/wav/WAVTexts.h"
#include "foundation/CStreamManager.h"
#include "foundation/CURIError.h"
#include "foundation/CValueList.h"
#include "foundation/IStringLocalizer.h"

namespace tbx {

namespace {

// The "fmt " chunk sizes this reader accepts: the 16 bytes of the PCM
// record up to a record with a generous amount of codec data.
constexpr std::uint32_t kMinFormatChunkSize = 16;
constexpr std::uint32_t kMaxFormatChunkSize = 1984;
// PCM above this rate goes through the decoder.
constexpr std::uint32_t kMaxDirectSampleRate = 44100;
// One read is a sixteenth of a second of the file's bytes, which keeps the
// pump responsive; a damaged header cannot make it larger than this.
constexpr std::int64_t kMaxReadUnit = 1024 * 1024;
// INFO values longer than this are skipped rather than read.
constexpr std::uint32_t kMaxInfoValueBytes = 64 * 1024;

// The LIST INFO items that are read, and the keys under which their text is published.
struct InfoItem
{
    const char* id;
    const char* key;
};
constexpr InfoItem kInfoItems[] = {{"IART", "artist"},      {"ICOP", "copyright"}, {"INAM", "title"},
                                   {"ICMT", "description"}, {"IGNR", "genre"},     {"ICRD", "date"},
                                   {"ISFT", "encoder"}};

bool isId(const std::uint8_t* bytes, const char* id)
{
    return std::memcmp(bytes, id, 4) == 0;
}

bool isIdNoCase(const std::uint8_t* bytes, const char* id)
{
    for (int index = 0; index < 4; ++index) {
        auto lower = [](int c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c; };
        if (lower(bytes[index]) != lower(static_cast<unsigned char>(id[index]))) return false;
    }
    return true;
}

std::uint32_t readLE32(const std::uint8_t* bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
           static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

fenn::CError corruptedError()
{
    return fenn::CError(fenn::String(), fenn::localize(wavTexts::corrupted));
}

// Reads up to size bytes; fewer only at the end of the stream.
std::int32_t readAvailable(fenn::IInStream& stream, std::uint8_t* buffer, std::int32_t size)
{
    std::int32_t done = 0;
    while (done < size) {
        const std::int32_t got = stream.readSome(buffer + done, size - done);
        if (got <= 0) break;
        done += got;
    }
    return done;
}

}  // namespace

CWAVFileAudioSource::CWAVFileAudioSource(const fenn::CURI& uri)
    : m_uri(uri), m_info(fenn::make<fenn::CValueList>()), m_tags(fenn::make<fenn::CValueList>())
{
    Open(0, nullptr);
    Close();
}

CWAVFileAudioSource::~CWAVFileAudioSource()
{
    try {
        Close();
    } catch (const fenn::CException&) {
        // A stream that fails to close has nothing left to lose.
    }
}

void CWAVFileAudioSource::Open(std::int32_t, fenn::IBase*)
{
    Close();
    try {
        m_stream = fenn::CStreamManager::getInstance()->openResetableInStream(m_uri);
        readHeader();
        setUpDecoding();
    } catch (...) {
        Close();
        throw;
    }
    m_fileBytesLeft = m_dataSize;
    if (!m_headerPublished) {
        m_headerPublished = true;
        const double duration = m_fileFormat.averageBytesPerSecond == 0
                                    ? -1.0
                                    : static_cast<double>(m_dataSize / m_fileFormat.averageBytesPerSecond);
        m_info->setDouble("duration", duration);
        m_info->setInt("sampleRate", static_cast<std::int32_t>(m_decodedFormat.samplesPerSecond));
        m_info->setInt("channels", m_decodedFormat.channels);
        m_info->setInt("bitsPerSample", m_decodedFormat.bitsPerSample);
        for (const InfoItem& item : kInfoItems) {
            if (m_tags->hasValue(item.key)) m_info->setString(item.key, m_tags->getString(item.key, fenn::String()));
        }
    }
}

void CWAVFileAudioSource::readHeader()
{
    // Every step of the header reads what it needs in one piece, so a stream
    // that ends within the header is a header that is not whole.
    try {
        walkHeader();
    } catch (const fenn::CEndOfStreamError&) {
        throw fenn::CFileFormatNotSupportedError(m_uri);
    }
}

void CWAVFileAudioSource::walkHeader()
{
    fenn::IResetableInStream& stream = *m_stream;
    std::uint8_t riff[12];
    stream.read(riff, sizeof riff);
    if (!isIdNoCase(riff, "RIFF") || !isIdNoCase(riff + 8, "WAVE")) throw fenn::CFileFormatNotSupportedError(m_uri);

    m_listSeen = false;
    m_factFrames = 0;
    // RIFF chunks are word-aligned in the published layout; this reader takes
    // every size as it stands and does not realign after an odd one.
    auto skipOrNote = [&](const std::uint8_t* header, std::uint32_t size) {
        if (isId(header, "LIST")) {
            readList(size);
        } else if (isId(header, "fact") && size >= 4) {
            // The frame count of compressed content, which ends in a padded block.
            std::uint8_t frames[4];
            stream.read(frames, sizeof frames);
            m_factFrames = readLE32(frames);
            stream.skip(size - 4);
        } else {
            stream.skip(size);
        }
    };

    std::uint8_t header[8];
    for (;;) {
        stream.read(header, sizeof header);
        if (isId(header, "fmt ")) break;
        skipOrNote(header, readLE32(header + 4));
    }
    readFormatChunk(readLE32(header + 4));
    for (;;) {
        stream.read(header, sizeof header);
        if (isIdNoCase(header, "data")) break;
        skipOrNote(header, readLE32(header + 4));
    }
    m_dataSize = readLE32(header + 4);
    if (!m_listSeen) readTrailingList();
}

void CWAVFileAudioSource::readFormatChunk(std::uint32_t size)
{
    if (size < kMinFormatChunkSize || size > kMaxFormatChunkSize) throw fenn::CFileFormatNotSupportedError(m_uri);
    // Room for the extra-size field even when the chunk has none: it reads as zero.
    std::vector<std::uint8_t> record(size + 4, 0);
    m_stream->read(record.data(), 16);
    const auto tag = static_cast<std::uint16_t>(record[0] | record[1] << 8);
    if (tag == waveFormatTag::pcm) {
        // PCM has no codec data; whatever a writer put behind it is ignored.
        m_stream->skip(size - 16);
        m_fileFormat = WAVFormat::fromBytes(record.data(), 16);
    } else {
        m_stream->read(record.data() + 16, static_cast<std::int32_t>(size - 16));
        m_fileFormat = WAVFormat::fromBytes(record.data(), size);
    }
}

void CWAVFileAudioSource::readList(std::uint32_t size)
{
    m_listSeen = true;
    fenn::IResetableInStream& stream = *m_stream;
    if (size < 4) {
        stream.skip(size);
        return;
    }
    std::uint8_t type[4];
    stream.read(type, sizeof type);
    if (!isId(type, "INFO")) {
        stream.skip(size - 4);
        return;
    }
    std::uint32_t left = size - 4;
    // An item needs its 8-byte header and at least one byte of value.
    while (left >= 9) {
        std::uint8_t header[8];
        stream.read(header, sizeof header);
        left -= 8;
        const std::uint32_t itemSize = readLE32(header + 4);
        if (itemSize > left) break;
        if (itemSize == 0) continue;
        const InfoItem* known = nullptr;
        for (const InfoItem& item : kInfoItems) {
            if (isId(header, item.id)) known = &item;
        }
        if (known && itemSize <= kMaxInfoValueBytes) {
            std::vector<char> value(itemSize + 1, '\0');
            stream.read(value.data(), static_cast<std::int32_t>(itemSize));
            // The text ends at the first zero byte, the terminator that most writers add.
            if (!m_headerPublished) m_tags->setString(known->key, fenn::String::copyOfLatin1(value.data()));
        } else {
            stream.skip(itemSize);
        }
        left -= itemSize;
    }
    stream.skip(left);
}

void CWAVFileAudioSource::readTrailingList()
{
    // Writers that learn their tags only at the end put the LIST behind the data.
    fenn::IResetableInStream& stream = *m_stream;
    const fenn::P<fenn::IStreamMarker> dataStart = stream.createMarker();
    stream.skip(m_dataSize);
    std::uint8_t header[8];
    while (readAvailable(stream, header, sizeof header) == sizeof header) {
        const std::uint32_t size = readLE32(header + 4);
        if (isId(header, "LIST")) {
            readList(size);
            break;
        }
        stream.skip(size);
    }
    stream.resetTo(*dataStart);
}

void CWAVFileAudioSource::setUpDecoding()
{
    const WAVFormat& file = m_fileFormat;
    // A rate of 0 would reach every consumer as a division by zero, and a
    // block align of 0 leaves no unit to read by.
    if (file.samplesPerSecond == 0 || file.blockAlign == 0) throw fenn::CFileFormatNotSupportedError(m_uri);

    const bool direct = file.formatTag == waveFormatTag::pcm && (file.channels == 1 || file.channels == 2) &&
                        (file.bitsPerSample == 8 || file.bitsPerSample == 16) &&
                        file.samplesPerSecond <= kMaxDirectSampleRate;
    if (direct) {
        m_decodedFormat = WAVFormat::pcmFormat(file.channels, file.samplesPerSecond, file.bitsPerSample);
    } else {
        WAVFormat suggested;
        if (!CWAVCodecDecoder::suggestFormat(file, suggested)) suggested = WAVFormat::pcmFormat(2, 44100, 16);
        const std::uint16_t channels = suggested.channels == 1 || suggested.channels == 2 ? suggested.channels
                                       : suggested.channels > 2                           ? 2
                                                                                          : 1;
        const std::uint16_t bits = suggested.bitsPerSample == 8 || suggested.bitsPerSample == 16
                                       ? suggested.bitsPerSample
                                   : suggested.bitsPerSample > 8 ? 16
                                                                 : 8;
        m_decodedFormat = WAVFormat::pcmFormat(channels, suggested.samplesPerSecond, bits);
    }

    std::int64_t unit = std::min<std::int64_t>(file.averageBytesPerSecond / 16, kMaxReadUnit);
    // A file shorter than one read needs no larger buffers than its data.
    const std::int64_t wholeData =
        (static_cast<std::int64_t>(m_dataSize) + file.blockAlign - 1) / file.blockAlign * file.blockAlign;
    unit = std::min(unit, wholeData);
    unit -= unit % file.blockAlign;
    if (unit <= file.blockAlign) unit = file.blockAlign;
    m_readUnit = static_cast<std::int32_t>(unit);

    if (direct) {
        // Twice the read unit: room for the widening of 8-bit samples.
        m_decodeBuffer.assign(static_cast<std::size_t>(m_readUnit) * 2, 0);
        m_totalDecodedBytes = m_dataSize;
    } else {
        m_decoder = fenn::make<CWAVCodecDecoder>(file, m_decodedFormat, m_factFrames, m_uri);
        const std::int32_t decodedPerRead = m_decoder->getOutputSize(m_readUnit);
        m_decodeBuffer.assign(static_cast<std::size_t>(decodedPerRead) * 2, 0);
        m_sourceBuffer.assign(static_cast<std::size_t>(m_readUnit) * 2, 0);
        m_totalDecodedBytes = m_decoder->getTotalOutputSize(m_dataSize);
    }
}

void CWAVFileAudioSource::readContent(std::uint8_t* buffer, std::int32_t bytes)
{
    // The data chunk claims more than the file holds.
    if (readAvailable(*m_stream, buffer, bytes) != bytes) throw corruptedError();
}

void CWAVFileAudioSource::refill()
{
    m_availableOffset = 0;
    while (m_available == 0) {
        std::int32_t produced = 0;
        if (m_decoder) {
            refillCompressed(produced);
            if (produced == 0 && m_decoderDrained) return;
        } else {
            if (m_fileBytesLeft == 0) return;
            produced = static_cast<std::int32_t>(std::min<std::uint32_t>(m_readUnit, m_fileBytesLeft));
            readContent(m_decodeBuffer.data(), produced);
            m_fileBytesLeft -= static_cast<std::uint32_t>(produced);
        }
        // A partial frame at the end is dropped.
        produced -= produced % m_decodedFormat.blockAlign;
        if (m_decodedFormat.bitsPerSample == 8) {
            // Widen in place from the back, so that no byte is overwritten before it is read.
            std::uint8_t* bytes = m_decodeBuffer.data();
            for (std::int32_t index = produced - 1; index >= 0; --index) {
                const auto sample = static_cast<std::uint16_t>((bytes[index] - 128) * 256);
                bytes[2 * index] = static_cast<std::uint8_t>(sample & 0xFF);
                bytes[2 * index + 1] = static_cast<std::uint8_t>(sample >> 8);
            }
            produced *= 2;
        }
        m_available = produced;
    }
}

void CWAVFileAudioSource::refillCompressed(std::int32_t& produced)
{
    // The decoder writes into the first half; the second is room for widening 8-bit output.
    const auto capacity = static_cast<std::int32_t>(m_decodeBuffer.size() / 2);
    if (m_fileBytesLeft > 0 || (m_sourceFill > 0 && !m_sourceFinished)) {
        const auto room = static_cast<std::int32_t>(m_sourceBuffer.size()) - m_sourceFill;
        const auto bytes = static_cast<std::int32_t>(
            std::min<std::int64_t>({m_readUnit, static_cast<std::int64_t>(m_fileBytesLeft), room}));
        readContent(m_sourceBuffer.data() + m_sourceFill, bytes);
        m_sourceFill += bytes;
        m_fileBytesLeft -= static_cast<std::uint32_t>(bytes);
        std::int32_t consumed = 0;
        m_decoder->convert(m_sourceBuffer.data(), m_sourceFill, m_decodeBuffer.data(), capacity, consumed, produced);
        if (bytes == 0 && consumed == 0 && produced == 0) {
            // A full buffer that the codec takes nothing from cannot go on;
            // at the end it is a partial block, which is dropped.
            if (m_fileBytesLeft > 0) throw corruptedError();
            m_sourceFinished = true;
        }
        std::memmove(m_sourceBuffer.data(), m_sourceBuffer.data() + consumed,
                     static_cast<std::size_t>(m_sourceFill - consumed));
        m_sourceFill -= consumed;
        return;
    }
    if (m_decoderDrained) return;
    m_decoder->drain(m_decodeBuffer.data(), capacity, produced);
    if (produced == 0) m_decoderDrained = true;
}

bool CWAVFileAudioSource::Read(IAudioChunk& chunk)
{
    if (!m_stream) return false;
    if (m_available == 0) refill();
    if (m_available == 0) return false;

    const std::int32_t frameBytes = m_decodedFormat.channels * 2;
    if (chunk.GetCapacityInBytes() < frameBytes) chunk.ReserveBytes(m_available, false);
    std::int32_t bytes = std::min(chunk.GetCapacityInBytes(), m_available);
    bytes -= bytes % frameBytes;

    const std::uint8_t* from = m_decodeBuffer.data() + m_availableOffset;
    std::int16_t* to = chunk.GetWritableData();
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(to, from, static_cast<std::size_t>(bytes));
    } else {
        for (std::int32_t index = 0; index < bytes / 2; ++index) {
            to[index] = static_cast<std::int16_t>(from[2 * index] | from[2 * index + 1] << 8);
        }
    }
    chunk.SetChannels(m_decodedFormat.channels);
    chunk.SetSampleRate(static_cast<std::int32_t>(m_decodedFormat.samplesPerSecond));
    chunk.SetLength(bytes / frameBytes);
    m_available -= bytes;
    m_availableOffset += bytes;
    m_deliveredBytes += bytes;
    return true;
}

double CWAVFileAudioSource::GetProgress() const
{
    if (m_totalDecodedBytes == 0) return 0.0;
    // Delivered bytes are 16-bit bytes while the total of an 8-bit file
    // counts file bytes, so such a file reports 1 at half its length.
    if (m_deliveredBytes >= m_totalDecodedBytes) return 1.0;
    return static_cast<double>(m_deliveredBytes) / static_cast<double>(m_totalDecodedBytes);
}

fenn::P<fenn::CValueList> CWAVFileAudioSource::GetInfo()
{
    auto info = fenn::make<fenn::CValueList>();
    info->assign(*m_info);
    return info;
}

fenn::P<fenn::CValueList> CWAVFileAudioSource::GetTags()
{
    auto tags = fenn::make<fenn::CValueList>();
    tags->assign(*m_tags);
    return tags;
}

void CWAVFileAudioSource::Reset()
{
    Close();
    Open(0, nullptr);
}

void CWAVFileAudioSource::Close()
{
    fenn::P<fenn::IResetableInStream> stream = std::move(m_stream);
    m_stream = nullptr;
    std::vector<std::uint8_t>().swap(m_decodeBuffer);
    std::vector<std::uint8_t>().swap(m_sourceBuffer);
    m_decoder = nullptr;
    m_available = 0;
    m_availableOffset = 0;
    m_deliveredBytes = 0;
    m_totalDecodedBytes = 0;
    m_sourceFill = 0;
    m_sourceFinished = false;
    m_decoderDrained = false;
    m_fileBytesLeft = 0;
    if (stream) stream->close();
}

}  // namespace tbx
