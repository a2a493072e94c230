#include "tags/CID3v2Tag.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "foundation/CError.h"
#include "foundation/CObjectError.h"
#include "foundation/IStringLocalizer.h"
#include "tags/ID3v2Encoding.h"
#include "tags/TagTexts.h"

namespace tbx {

namespace {

// The frames of version 2.2 and their version 2.3 ids.
struct FrameIdPair
{
    char v22[4];
    char v23[5];
};

constexpr FrameIdPair kFrameIdTable[] = {
    {"BUF", "RBUF"}, {"CNT", "PCNT"}, {"COM", "COMM"}, {"CRA", "AENC"}, {"ETC", "ETCO"}, {"EQU", "EQUA"},
    {"GEO", "GEOB"}, {"IPL", "IPLS"}, {"LNK", "LINK"}, {"MCI", "MCDI"}, {"MLL", "MLLT"}, {"PIC", "APIC"},
    {"POP", "POPM"}, {"REV", "RVRB"}, {"RVA", "RVAD"}, {"SLT", "SYLT"}, {"STC", "SYTC"}, {"TAL", "TALB"},
    {"TBP", "TBPM"}, {"TCM", "TCOM"}, {"TCO", "TCON"}, {"TCR", "TCOP"}, {"TDA", "TDAT"}, {"TDY", "TDLY"},
    {"TEN", "TENC"}, {"TFT", "TFLT"}, {"TIM", "TIME"}, {"TKE", "TKEY"}, {"TLA", "TLAN"}, {"TLE", "TLEN"},
    {"TMT", "TMED"}, {"TOA", "TOPE"}, {"TOF", "TOFN"}, {"TOL", "TOLY"}, {"TOR", "TORY"}, {"TOT", "TOAL"},
    {"TP1", "TPE1"}, {"TP2", "TPE2"}, {"TP3", "TPE3"}, {"TP4", "TPE4"}, {"TPA", "TPOS"}, {"TPB", "TPUB"},
    {"TRC", "TSRC"}, {"TRD", "TRDA"}, {"TRK", "TRCK"}, {"TSI", "TSIZ"}, {"TSS", "TSSE"}, {"TT1", "TIT1"},
    {"TT2", "TIT2"}, {"TT3", "TIT3"}, {"TXT", "TEXT"}, {"TXX", "TXXX"}, {"TYE", "TYER"}, {"UFI", "UFID"},
    {"ULT", "USLT"}, {"WAF", "WOAF"}, {"WAR", "WOAR"}, {"WAS", "WOAS"}, {"WCM", "WCOM"}, {"WCP", "WCOP"},
    {"WPB", "WPUB"}, {"WXX", "WXXX"},
};
static_assert(std::size(kFrameIdTable) == 62);

constexpr ID3FrameId kGenreFrame = makeID3FrameId("TCON");
// The highest number of the ID3v1 genre table.
constexpr std::int32_t kHighestGenreNumber = 147;
// The extended header of version 2.3: a 32-bit size that does not count
// itself, 16 bits of flags, a 32-bit padding size and, with kCRCFlag, a
// 32-bit CRC.
constexpr std::int32_t kExtendedHeaderMinimum = 6;
constexpr std::int32_t kExtendedHeaderWithCRC = 10;
constexpr std::int32_t kExtendedFlagsPos = 4;
constexpr std::int32_t kExtendedPaddingPos = 6;
constexpr std::int32_t kExtendedCRCPos = 10;
// The largest frame a 2.2 frame header's 24-bit size can express.
constexpr std::int32_t kMaxV22FrameSize = 0xFFFFFF;
// Bytes of the body read at a time.
constexpr std::int32_t kReadPieceSize = 1024 * 1024;

std::uint32_t readBigEndian32(const std::uint8_t* bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
           static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

std::uint32_t readBigEndian24(const std::uint8_t* bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) << 16 | static_cast<std::uint32_t>(bytes[1]) << 8 | bytes[2];
}

std::uint16_t readBigEndian16(const std::uint8_t* bytes)
{
    return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}

void writeBigEndian32(std::uint8_t* bytes, std::uint32_t value)
{
    bytes[0] = static_cast<std::uint8_t>(value >> 24);
    bytes[1] = static_cast<std::uint8_t>(value >> 16);
    bytes[2] = static_cast<std::uint8_t>(value >> 8);
    bytes[3] = static_cast<std::uint8_t>(value);
}

void writeBigEndian16(std::uint8_t* bytes, std::uint16_t value)
{
    bytes[0] = static_cast<std::uint8_t>(value >> 8);
    bytes[1] = static_cast<std::uint8_t>(value);
}

// Reads up to size bytes; fewer only at the stream's end.
std::int32_t readUpTo(fenn::IInStream& stream, std::uint8_t* buffer, std::int32_t size)
{
    std::int32_t done = 0;
    while (done < size) {
        const std::int32_t got = stream.readSome(buffer + done, size - done);
        if (got <= 0) break;
        done += got;
    }
    return done;
}

bool isFrameIdChar(std::uint8_t c)
{
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool isValidFrameId(ID3FrameId id)
{
    for (int shift = 24; shift >= 0; shift -= 8) {
        if (!isFrameIdChar(static_cast<std::uint8_t>(id >> shift))) return false;
    }
    return true;
}

}  // namespace

ID3FrameId mapID3v22FrameId(const std::uint8_t* id)
{
    if (id[0] == 0 && id[1] == 0 && id[2] == 0) return 0;
    for (const FrameIdPair& pair : kFrameIdTable) {
        if (std::memcmp(pair.v22, id, 3) == 0) return makeID3FrameId(pair.v23);
    }
    return kUnknownID3FrameId;
}

bool findID3v22FrameId(ID3FrameId id, std::uint8_t* threeBytes)
{
    for (const FrameIdPair& pair : kFrameIdTable) {
        if (makeID3FrameId(pair.v23) == id) {
            std::memcpy(threeBytes, pair.v22, 3);
            return true;
        }
    }
    return false;
}

CID3v2Tag::CID3v2Tag()
{
    resetImage();
}

void CID3v2Tag::resetImage()
{
    std::memset(m_header, 0, sizeof m_header);
    std::memcpy(m_header, "ID3", 3);
    m_header[3] = 3;
    m_body.clear();
    m_usedSize = 0;
    m_paddingSize = 0;
    m_majorVersion = 3;
    m_revision = 0;
    m_flags = 0;
    m_frameHeaderSize = 10;
    m_extendedHeaderPos = -1;
    m_extendedHeaderSize = 0;
    m_extendedFlags = 0;
    m_hasCRC = false;
    m_crc = 0;
    m_firstFrameOffset = 0;
    m_frameCount = 0;
}

bool CID3v2Tag::read(fenn::IResetableInStream& stream)
{
    m_present = false;
    m_damaged = false;
    m_valid = true;
    m_supported = true;
    m_dirty = false;
    resetImage();

    const fenn::P<fenn::IStreamMarker> start = stream.createMarker();
    std::uint8_t header[kHeaderSize];
    if (readUpTo(stream, header, kHeaderSize) < kHeaderSize || std::memcmp(header, "ID3", 3) != 0) {
        stream.resetTo(*start);
        m_dirty = true;
        return false;
    }
    m_present = true;
    std::memcpy(m_header, header, kHeaderSize);
    m_majorVersion = header[3];
    m_revision = header[4];
    m_flags = header[5];
    // Four bytes of seven bits each.
    const std::int32_t size =
        (header[6] & 0x7F) << 21 | (header[7] & 0x7F) << 14 | (header[8] & 0x7F) << 7 | (header[9] & 0x7F);
    m_frameHeaderSize = m_majorVersion < 3 ? 6 : 10;

    bool fits = !stream.isSizeKnown() || stream.getPos() + size <= stream.getSize();
    // Read in pieces, so that a size that a stream of unknown length does
    // not back up costs no more memory than the stream has.
    while (fits && static_cast<std::int32_t>(m_body.size()) < size) {
        const std::size_t done = m_body.size();
        const std::int32_t piece = std::min(size - static_cast<std::int32_t>(done), kReadPieceSize);
        m_body.resize(done + static_cast<std::size_t>(piece));
        fits = readUpTo(stream, m_body.data() + done, piece) == piece;
    }
    if (!fits) {
        m_damaged = true;
        m_valid = false;
        stream.resetTo(*start);
        resetImage();
        m_dirty = true;
        return true;
    }

    // Later versions change the frame layout; their bytes are kept unread.
    if (m_majorVersion > 3) {
        m_supported = false;
        m_usedSize = size;
        return true;
    }
    parseBody();
    if (!m_valid) {
        resetImage();
        m_dirty = true;
    }
    return true;
}

void CID3v2Tag::parseBody()
{
    if ((m_flags & kUnsynchronisationFlag) != 0) {
        id3v2::resynchronise(m_body);
        m_flags &= static_cast<std::uint8_t>(~kUnsynchronisationFlag);
    }
    std::int32_t used = static_cast<std::int32_t>(m_body.size());
    if (m_majorVersion >= 3 && (m_flags & kExtendedHeaderFlag) != 0) {
        if (!parseExtendedHeader()) {
            m_damaged = true;
            m_valid = false;
            return;
        }
        used = static_cast<std::int32_t>(m_body.size()) - m_paddingSize;
    }
    walkFrames(used);
}

bool CID3v2Tag::parseExtendedHeader()
{
    const auto bodySize = static_cast<std::int64_t>(m_body.size());
    if (bodySize < 10) return false;
    const std::int64_t extendedSize = readBigEndian32(m_body.data());
    if (extendedSize > bodySize - 4 || extendedSize < kExtendedHeaderMinimum) return false;
    m_extendedHeaderPos = 0;
    m_extendedHeaderSize = static_cast<std::int32_t>(extendedSize);
    m_extendedFlags = readBigEndian16(m_body.data() + kExtendedFlagsPos);
    std::int64_t padding = readBigEndian32(m_body.data() + kExtendedPaddingPos);
    if (padding + 10 > bodySize) {
        padding = 0;
        writeBigEndian32(m_body.data() + kExtendedPaddingPos, 0);
        m_dirty = true;
    }
    m_paddingSize = static_cast<std::int32_t>(padding);
    if ((m_extendedFlags & kCRCFlag) != 0) {
        if (m_extendedHeaderSize < kExtendedHeaderWithCRC) {
            // Too short to hold the CRC it announces: drop the flag and keep
            // the six bytes that are there for certain.
            m_extendedFlags &= static_cast<std::uint16_t>(~kCRCFlag);
            writeBigEndian16(m_body.data() + kExtendedFlagsPos, m_extendedFlags);
            m_body.erase(m_body.begin() + 4 + kExtendedHeaderMinimum, m_body.begin() + 4 + m_extendedHeaderSize);
            m_extendedHeaderSize = kExtendedHeaderMinimum;
            writeBigEndian32(m_body.data(), kExtendedHeaderMinimum);
            m_damaged = true;
            m_dirty = true;
        } else {
            m_hasCRC = true;
            m_crc = readBigEndian32(m_body.data() + kExtendedCRCPos);
        }
    }
    m_firstFrameOffset = 4 + m_extendedHeaderSize;
    // Padding that reaches into the extended header is as much as there can be.
    const auto room = static_cast<std::int32_t>(m_body.size()) - m_firstFrameOffset;
    if (m_paddingSize > room) {
        m_paddingSize = room;
        writeExtendedPaddingSize();
        m_damaged = true;
        m_dirty = true;
    }
    return true;
}

void CID3v2Tag::walkFrames(std::int32_t used)
{
    std::int32_t offset = m_firstFrameOffset;
    m_frameCount = 0;
    while (offset < used) {
        if (used - offset < m_frameHeaderSize) {
            // Too little left for a frame: nothing more can be read here.
            startPaddingAt(offset);
            return;
        }
        const ID3FrameId id = frameIdAt(offset);
        if (id == 0) {
            startPaddingAt(offset);
            return;
        }
        const std::int64_t dataSize = frameDataSizeAt(offset);
        const std::uint16_t flags = m_majorVersion < 3 ? 0 : readBigEndian16(m_body.data() + offset + 8);
        // The encryption bit is what this walk checks for compressed data's
        // four-byte size; a shorter frame has no room for it.
        if (!isValidFrameId(id) || dataSize > used - offset - m_frameHeaderSize ||
            ((flags & kFrameEncryptedFlag) != 0 && dataSize < 4)) {
            cutAt(offset);
            return;
        }
        ++m_frameCount;
        offset += m_frameHeaderSize + static_cast<std::int32_t>(dataSize);
    }
    m_usedSize = offset;
    m_paddingSize = static_cast<std::int32_t>(m_body.size()) - offset;
}

void CID3v2Tag::startPaddingAt(std::int32_t offset)
{
    m_usedSize = offset;
    m_paddingSize = static_cast<std::int32_t>(m_body.size()) - offset;
    const auto rest = m_body.begin() + offset;
    if (std::any_of(rest, m_body.end(), [](std::uint8_t byte) { return byte != 0; })) {
        std::fill(rest, m_body.end(), 0);
        m_dirty = true;
    }
    if (m_extendedHeaderPos >= 0) writeExtendedPaddingSize();
}

void CID3v2Tag::cutAt(std::int32_t offset)
{
    m_body.resize(static_cast<std::size_t>(offset));
    m_usedSize = offset;
    m_paddingSize = 0;
    if (m_extendedHeaderPos >= 0) writeExtendedPaddingSize();
    m_damaged = true;
    m_dirty = true;
}

ID3FrameId CID3v2Tag::frameIdAt(std::int32_t offset) const
{
    const std::uint8_t* id = m_body.data() + offset;
    return m_majorVersion < 3 ? mapID3v22FrameId(id) : readBigEndian32(id);
}

std::int32_t CID3v2Tag::frameDataSizeAt(std::int32_t offset) const
{
    const std::uint8_t* header = m_body.data() + offset;
    const std::uint32_t size = m_majorVersion < 3 ? readBigEndian24(header + 3) : readBigEndian32(header + 4);
    // Sizes beyond the largest body cannot fit in any tag.
    return static_cast<std::int32_t>(std::min<std::uint32_t>(size, kMaxBodySize + 1u));
}

std::optional<CID3v2Tag::Frame> CID3v2Tag::findFrame(ID3FrameId id) const
{
    if (!m_supported || !isValidFrameId(id)) return std::nullopt;
    std::int32_t offset = m_firstFrameOffset;
    for (std::int32_t index = 0; index < m_frameCount; ++index) {
        const std::int32_t dataSize = frameDataSizeAt(offset);
        if (frameIdAt(offset) == id) {
            Frame frame;
            frame.offset = offset;
            frame.dataSize = dataSize;
            frame.flags = m_majorVersion < 3 ? 0 : readBigEndian16(m_body.data() + offset + 8);
            return frame;
        }
        offset += m_frameHeaderSize + dataSize;
    }
    return std::nullopt;
}

bool CID3v2Tag::getFrameData(const Frame& frame, const std::uint8_t*& data, std::int32_t& size) const
{
    const std::uint8_t* stored = m_body.data() + frame.offset + m_frameHeaderSize;
    if ((frame.flags & kFrameEncryptedFlag) != 0) return false;
    if ((frame.flags & kFrameCompressedFlag) == 0) {
        data = stored;
        size = frame.dataSize;
        return true;
    }
    // Compressed: the inflated size, then zlib data.
    if (frame.dataSize < 4) return false;
    const std::uint32_t inflatedSize = readBigEndian32(stored);
    if (inflatedSize > static_cast<std::uint32_t>(kMaxInflatedFrameSize)) return false;
    if (m_inflated.size() < inflatedSize + 1u) m_inflated.resize(inflatedSize + 1u);
    z_stream zlib{};
    if (inflateInit(&zlib) != Z_OK) return false;
    zlib.next_in = const_cast<Bytef*>(stored + 4);
    zlib.avail_in = static_cast<uInt>(frame.dataSize - 4);
    zlib.next_out = m_inflated.data();
    zlib.avail_out = static_cast<uInt>(inflatedSize);
    const int result = inflate(&zlib, Z_FINISH);
    const auto produced = static_cast<std::int32_t>(zlib.total_out);
    inflateEnd(&zlib);
    if (result != Z_OK && result != Z_STREAM_END) return false;
    data = m_inflated.data();
    size = produced;
    return true;
}

fenn::String CID3v2Tag::getText(ID3FrameId id) const
{
    const std::optional<Frame> frame = findFrame(id);
    const std::uint8_t* data = nullptr;
    std::int32_t size = 0;
    if (!frame || !getFrameData(*frame, data, size)) return fenn::String();
    return id3v2::decodeTextFrame(data, size);
}

std::vector<std::uint8_t> CID3v2Tag::makeFrame(ID3FrameId id, const std::vector<std::uint8_t>& payload) const
{
    const auto payloadSize = static_cast<std::int64_t>(payload.size());
    std::vector<std::uint8_t> frame(static_cast<std::size_t>(m_frameHeaderSize));
    if (m_majorVersion < 3) {
        if (!findID3v22FrameId(id, frame.data())) throw fenn::CInvalidArgError(this, "setText", "id");
        if (payloadSize > kMaxV22FrameSize)
            throw fenn::CError(fenn::String(), fenn::localize(tags::texts::tagTooLarge));
        frame[3] = static_cast<std::uint8_t>(payloadSize >> 16);
        frame[4] = static_cast<std::uint8_t>(payloadSize >> 8);
        frame[5] = static_cast<std::uint8_t>(payloadSize);
    } else {
        writeBigEndian32(frame.data(), id);
        writeBigEndian32(frame.data() + 4, static_cast<std::uint32_t>(payloadSize));
    }
    frame.insert(frame.end(), payload.begin(), payload.end());
    return frame;
}

void CID3v2Tag::setText(ID3FrameId id, const fenn::String& text)
{
    if (!m_supported) throw fenn::CInvalidObjectStateError(this, "a tag of a later version cannot be changed");
    if (!isValidFrameId(id)) throw fenn::CInvalidArgError(this, "setText", "id");
    const std::vector<std::uint8_t> frame = makeFrame(id, id3v2::encodeTextFrame(text));
    if (const std::optional<Frame> existing = findFrame(id)) {
        replaceBytes(existing->offset, m_frameHeaderSize + existing->dataSize, frame);
    } else {
        replaceBytes(m_usedSize, 0, frame);
        ++m_frameCount;
    }
    m_dirty = true;
}

void CID3v2Tag::replaceBytes(std::int32_t offset, std::int32_t oldSize, const std::vector<std::uint8_t>& newBytes)
{
    const auto oldTotal = static_cast<std::int64_t>(m_body.size());
    const std::int64_t newUsed = m_usedSize + static_cast<std::int64_t>(newBytes.size()) - oldSize;
    const std::int64_t newTotal = std::max(oldTotal, newUsed);
    if (newTotal > kMaxBodySize) throw fenn::CError(fenn::String(), fenn::localize(tags::texts::tagTooLarge));
    m_body.erase(m_body.begin() + offset, m_body.begin() + offset + oldSize);
    m_body.insert(m_body.begin() + offset, newBytes.begin(), newBytes.end());
    // The padding behind the frames takes up the difference: it loses bytes
    // from its end, or gains zero bytes there.
    m_body.resize(static_cast<std::size_t>(newTotal), 0);
    std::fill(m_body.begin() + newUsed, m_body.end(), 0);
    m_usedSize = static_cast<std::int32_t>(newUsed);
    m_paddingSize = static_cast<std::int32_t>(newTotal - newUsed);
}

std::int32_t CID3v2Tag::getGenreNumber() const
{
    const std::u32string text = getText(kGenreFrame).toUTF32();
    if (text.empty() || text[0] != U'(') return -1;
    const std::size_t close = text.find(U')');
    if (close == std::u32string::npos || close == 1) return -1;
    std::int32_t number = 0;
    for (std::size_t index = 1; index < close; ++index) {
        if (text[index] < U'0' || text[index] > U'9') return -1;
        number = number * 10 + static_cast<std::int32_t>(text[index] - U'0');
        if (number > kHighestGenreNumber) return -1;
    }
    return number;
}

void CID3v2Tag::setGenreNumber(std::int32_t number)
{
    if (number < 0) {
        setText(kGenreFrame, fenn::String());
        return;
    }
    setText(kGenreFrame, fenn::String("(") + fenn::fromInt(number) + ")");
}

void CID3v2Tag::writeExtendedPaddingSize()
{
    writeBigEndian32(m_body.data() + m_extendedHeaderPos + kExtendedPaddingPos,
                     static_cast<std::uint32_t>(m_paddingSize));
}

void CID3v2Tag::removeCRC()
{
    // The CRC covered the frames as they were read; edited frames would not
    // match it. The four bytes go to the padding, so the tag keeps its size.
    const std::int32_t crcPos = m_extendedHeaderPos + kExtendedCRCPos;
    m_body.erase(m_body.begin() + crcPos, m_body.begin() + crcPos + 4);
    m_body.insert(m_body.end(), 4, 0);
    m_extendedHeaderSize -= 4;
    writeBigEndian32(m_body.data() + m_extendedHeaderPos, static_cast<std::uint32_t>(m_extendedHeaderSize));
    m_extendedFlags &= static_cast<std::uint16_t>(~kCRCFlag);
    writeBigEndian16(m_body.data() + m_extendedHeaderPos + kExtendedFlagsPos, m_extendedFlags);
    m_firstFrameOffset -= 4;
    m_usedSize -= 4;
    m_paddingSize += 4;
    m_hasCRC = false;
    m_crc = 0;
}

std::vector<std::uint8_t> CID3v2Tag::render()
{
    std::vector<std::uint8_t> out(m_header, m_header + kHeaderSize);
    if (!m_supported) {
        out.insert(out.end(), m_body.begin(), m_body.end());
        return out;
    }
    if (m_dirty && m_hasCRC) removeCRC();
    if (m_extendedHeaderPos >= 0) writeExtendedPaddingSize();
    std::uint8_t flags = m_flags;
    if (id3v2::needsUnsynchronisation(m_body)) {
        const std::vector<std::uint8_t> body = id3v2::unsynchronise(m_body);
        out.insert(out.end(), body.begin(), body.end());
        flags |= kUnsynchronisationFlag;
    } else {
        out.insert(out.end(), m_body.begin(), m_body.end());
        flags &= static_cast<std::uint8_t>(~kUnsynchronisationFlag);
    }
    const std::size_t bodySize = out.size() - kHeaderSize;
    if (bodySize > static_cast<std::size_t>(kMaxBodySize))
        throw fenn::CError(fenn::String(), fenn::localize(tags::texts::tagTooLarge));
    m_header[3] = static_cast<std::uint8_t>(m_majorVersion);
    m_header[4] = static_cast<std::uint8_t>(m_revision);
    m_header[5] = m_flags;
    for (int index = 0; index < 4; ++index)
        m_header[6 + index] = static_cast<std::uint8_t>((bodySize >> (7 * (3 - index))) & 0x7F);
    std::copy(m_header, m_header + kHeaderSize, out.begin());
    out[5] = flags;
    return out;
}

void CID3v2Tag::write(fenn::IOutStream& stream)
{
    const std::vector<std::uint8_t> bytes = render();
    stream.write(bytes.data(), static_cast<std::int32_t>(bytes.size()));
}

std::int64_t CID3v2Tag::getSize() const
{
    return kHeaderSize + static_cast<std::int64_t>(m_body.size());
}

}  // namespace tbx
