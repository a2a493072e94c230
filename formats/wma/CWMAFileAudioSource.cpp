#include "formats/wma/CWMAFileAudioSource.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "formats/FileTypeIds.h"
#include "formats/wma/WMATexts.h"
#include "foundation/CLogManager.h"
#include "foundation/CStreamManager.h"
#include "foundation/IStream.h"
#include "foundation/IStringLocalizer.h"

namespace tbx {

namespace {

using GUID = std::array<std::uint8_t, 16>;

// The objects of the ASF header, as the published ASF format document lays
// them out: a GUID and a 64-bit little-endian size (which counts these 24
// bytes) in front of every object.
constexpr GUID kHeaderObject = {0x30, 0x26, 0xB2, 0x75, 0x8E, 0x66, 0xCF, 0x11,
                                0xA6, 0xD9, 0x00, 0xAA, 0x00, 0x62, 0xCE, 0x6C};
constexpr GUID kFilePropertiesObject = {0xA1, 0xDC, 0xAB, 0x8C, 0x47, 0xA9, 0xCF, 0x11,
                                        0x8E, 0xE4, 0x00, 0xC0, 0x0C, 0x20, 0x53, 0x65};
constexpr std::int64_t kObjectHeaderSize = 24;
// The Header Object adds its object count and two reserved bytes.
constexpr std::int64_t kHeaderObjectSize = kObjectHeaderSize + 6;
// In the File Properties object: the file size behind the file id, the
// flags behind sizes, dates, counts and durations; 104 bytes in all.
constexpr std::int64_t kFileSizeOffset = 40;
constexpr std::int64_t kFlagsOffset = 88;
constexpr std::int64_t kFilePropertiesSize = 104;
// A broadcast file is written while it plays: its size fields are not set.
constexpr std::uint32_t kBroadcastFlag = 0x01;
// Real headers have a dozen objects; a longer walk means a damaged header.
constexpr int kMaxHeaderObjects = 1024;

std::uint64_t littleEndian(const std::uint8_t* bytes, int count)
{
    std::uint64_t value = 0;
    for (int i = count - 1; i >= 0; --i) value = (value << 8) | bytes[i];
    return value;
}

}  // namespace

CWMAFileAudioSource::CWMAFileAudioSource(const fenn::CURI& uri)
    : CFFmpegFileAudioSource(uri, "asf", wmaTexts::decoderUnparseable)
{
}

fenn::String CWMAFileAudioSource::GetTypeName() const
{
    return fileTypeIds::wma;
}

std::int64_t CWMAFileAudioSource::readDeclaredFileSize(fenn::ISeekableInStream& stream)
{
    if (!stream.isSizeKnown()) return -1;
    const std::int64_t streamSize = stream.getSize();
    if (streamSize < kHeaderObjectSize) return -1;
    std::uint8_t bytes[kObjectHeaderSize];
    stream.seek(0);
    stream.read(bytes, kObjectHeaderSize);
    if (std::memcmp(bytes, kHeaderObject.data(), kHeaderObject.size()) != 0) return -1;
    const std::uint64_t headerSize = littleEndian(bytes + 16, 8);
    const std::int64_t headerEnd =
        static_cast<std::int64_t>(std::min(headerSize, static_cast<std::uint64_t>(streamSize)));
    std::int64_t position = kHeaderObjectSize;
    for (int object = 0; object < kMaxHeaderObjects && position + kObjectHeaderSize <= headerEnd; ++object) {
        stream.seek(position);
        stream.read(bytes, kObjectHeaderSize);
        const std::uint64_t size = littleEndian(bytes + 16, 8);
        if (size < static_cast<std::uint64_t>(kObjectHeaderSize) ||
            size > static_cast<std::uint64_t>(headerEnd - position)) {
            return -1;
        }
        if (std::memcmp(bytes, kFilePropertiesObject.data(), kFilePropertiesObject.size()) == 0) {
            if (size < static_cast<std::uint64_t>(kFilePropertiesSize)) return -1;
            std::uint8_t field[8];
            stream.seek(position + kFlagsOffset);
            stream.read(field, 4);
            if ((littleEndian(field, 4) & kBroadcastFlag) != 0) return -1;
            stream.seek(position + kFileSizeOffset);
            stream.read(field, 8);
            const std::uint64_t fileSize = littleEndian(field, 8);
            if (fileSize == 0 || fileSize > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
                return -1;
            }
            return static_cast<std::int64_t>(fileSize);
        }
        position += static_cast<std::int64_t>(size);
    }
    return -1;
}

void CWMAFileAudioSource::Open(std::int32_t purpose, fenn::IBase* context)
{
    m_declaredSize = -1;
    m_actualSize = -1;
    CFFmpegFileAudioSource::Open(purpose, context);
    try {
        const fenn::P<fenn::ISeekableInStream> stream =
            fenn::CStreamManager::getInstance()->openSeekableInStream(getURI());
        try {
            m_actualSize = stream->isSizeKnown() ? stream->getSize() : -1;
            m_declaredSize = readDeclaredFileSize(*stream);
        } catch (...) {
            stream->close();
            throw;
        }
        stream->close();
    } catch (...) {
        Close();
        throw;
    }
}

bool CWMAFileAudioSource::Read(IAudioChunk& chunk)
{
    if (CFFmpegFileAudioSource::Read(chunk)) return true;
    // The ASF demuxer stops quietly where a file is cut.
    if (isTruncated()) throwDecodingError();
    return false;
}

void CWMAFileAudioSource::throwDecodingError() const
{
    if (!isTruncated()) CFFmpegFileAudioSource::throwDecodingError();
    fenn::CLogManager::getInstance()->warning(
        "formats", fenn::String("CWMAFileAudioSource: the header declares ") + fenn::fromInt(m_declaredSize) +
                       " bytes, the file has " + fenn::fromInt(m_actualSize) + ": '" + getURI().getRawURI() + "'");
    throw fenn::CError(fenn::String(), fenn::localize(wmaTexts::decoderTruncated));
}

}  // namespace tbx
