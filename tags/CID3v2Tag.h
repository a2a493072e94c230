#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "foundation/CObject.h"
#include "foundation/IStream.h"

namespace tbx {

// A frame id as four bytes, the first in the highest ("TIT2" is 0x54495432).
using ID3FrameId = std::uint32_t;

constexpr ID3FrameId makeID3FrameId(const char (&id)[5])
{
    return static_cast<ID3FrameId>(static_cast<std::uint8_t>(id[0])) << 24 |
           static_cast<ID3FrameId>(static_cast<std::uint8_t>(id[1])) << 16 |
           static_cast<ID3FrameId>(static_cast<std::uint8_t>(id[2])) << 8 |
           static_cast<ID3FrameId>(static_cast<std::uint8_t>(id[3]));
}

// The four-character id of a version 2.2 id ("TT2" gives "TIT2"), 0 for an
// id of three zero bytes, and kUnknownID3FrameId for an id the table lacks.
inline constexpr ID3FrameId kUnknownID3FrameId = 0xFFFFFFFF;
ID3FrameId mapID3v22FrameId(const std::uint8_t* id);
// The three bytes of the version 2.2 id of a four-character id; false when
// the table has none.
bool findID3v22FrameId(ID3FrameId id, std::uint8_t* threeBytes);

// One ID3v2 tag as an in-memory byte image that is edited in place, so that
// every frame this class does not interpret stays byte for byte as it was.
// Reads versions 2.2 and 2.3; a 2.4 tag is recognised and kept as read but
// none of its frames can be read or changed. A new tag is an empty 2.3.0
// tag. Used by one thread at a time.
//
// The image holds the body without unsynchronisation: read takes it back,
// and write applies it when the bytes need it. Text frames are written in
// Latin-1 when they can be, else as UTF-16 little-endian behind the bytes
// 0xFE 0xFF; reading undoes exactly that (see getText).
class CID3v2Tag : public fenn::CObject
{
public:
    static constexpr std::int32_t kHeaderSize = 10;
    // The largest body the header's 28-bit size can express.
    static constexpr std::int32_t kMaxBodySize = 0x0FFFFFFF;
    // A compressed frame that claims more is not inflated.
    static constexpr std::int32_t kMaxInflatedFrameSize = 16 * 1024 * 1024;
    // Header flags.
    static constexpr std::uint8_t kUnsynchronisationFlag = 0x80;
    static constexpr std::uint8_t kExtendedHeaderFlag = 0x40;
    // Extended header flag: a CRC-32 follows the padding size.
    static constexpr std::uint16_t kCRCFlag = 0x8000;
    // Frame format flags (the second flag byte).
    static constexpr std::uint16_t kFrameCompressedFlag = 0x0080;
    static constexpr std::uint16_t kFrameEncryptedFlag = 0x0040;

    CID3v2Tag();

    // Reads a tag at the stream's position and returns whether one is
    // there. Without a tag, and with a tag that runs past the stream's end,
    // the stream returns to where it was; otherwise it is left behind the
    // tag. A tag that cannot be used (isValid false) leaves a new, empty
    // image behind. Damage is reported by the flags, never thrown; only the
    // stream's own failures are.
    bool read(fenn::IResetableInStream& stream);
    // Writes header and body (unsynchronised when the bytes need it).
    void write(fenn::IOutStream& stream);
    // The bytes that write writes.
    std::vector<std::uint8_t> render();
    // The header and the image of the body (frames and padding).
    std::int64_t getSize() const;

    // The text of a text frame; empty when the frame is missing, cannot be
    // read or the tag is not supported.
    fenn::String getText(ID3FrameId id) const;
    // Replaces the frame's text, or adds the frame behind the last one. The
    // tag's total size never shrinks: freed bytes become padding. A 2.2 tag
    // stores the frame under its 2.2 id; an id without one throws
    // CInvalidArgError. A tag that is not supported throws
    // CInvalidObjectStateError.
    void setText(ID3FrameId id, const fenn::String& text);
    // The number n of a TCON that begins "(n)" with n from 0 to 147, else -1.
    std::int32_t getGenreNumber() const;
    // Writes "(n)" to TCON; -1 writes an empty TCON.
    void setGenreNumber(std::int32_t number);

    bool isPresent() const { return m_present; }
    bool isDamaged() const { return m_damaged; }
    bool isValid() const { return m_valid; }
    bool isSupported() const { return m_supported; }
    bool isDirty() const { return m_dirty; }

    std::int32_t getMajorVersion() const { return m_majorVersion; }
    std::int32_t getRevision() const { return m_revision; }
    std::uint8_t getFlags() const { return m_flags; }
    std::int32_t getFrameCount() const { return m_frameCount; }
    std::int32_t getPaddingSize() const { return m_paddingSize; }
    bool hasExtendedHeader() const { return m_extendedHeaderPos >= 0; }
    bool hasCRC() const { return m_hasCRC; }
    std::uint32_t getCRC() const { return m_crc; }

private:
    struct Frame
    {
        std::int32_t offset = 0;  // of the frame header in the body
        std::int32_t dataSize = 0;
        std::uint16_t flags = 0;
    };

    // Back to a new, empty 2.3.0 image; the state flags stay.
    void resetImage();
    // Steps 6 on of reading: unsynchronisation, extended header, frames.
    void parseBody();
    bool parseExtendedHeader();
    void walkFrames(std::int32_t used);
    // Marks the rest of the body from offset on as padding, cleared to zero.
    void startPaddingAt(std::int32_t offset);
    void cutAt(std::int32_t offset);

    ID3FrameId frameIdAt(std::int32_t offset) const;
    std::int32_t frameDataSizeAt(std::int32_t offset) const;
    std::optional<Frame> findFrame(ID3FrameId id) const;
    // The frame's data, inflated when it is compressed; false when it cannot
    // be read (encrypted, or damaged compressed data).
    bool getFrameData(const Frame& frame, const std::uint8_t*& data, std::int32_t& size) const;
    std::vector<std::uint8_t> makeFrame(ID3FrameId id, const std::vector<std::uint8_t>& payload) const;
    // Puts newBytes in place of the oldSize bytes at offset; padding takes
    // up the difference as far as it can.
    void replaceBytes(std::int32_t offset, std::int32_t oldSize, const std::vector<std::uint8_t>& newBytes);
    void removeCRC();
    void writeExtendedPaddingSize();

    std::uint8_t m_header[kHeaderSize] = {};
    // Extended header, frames and padding; m_usedSize bytes of it are not padding.
    std::vector<std::uint8_t> m_body;
    std::int32_t m_usedSize = 0;
    std::int32_t m_paddingSize = 0;

    bool m_present = false;
    bool m_damaged = false;
    bool m_valid = true;
    bool m_supported = true;
    bool m_dirty = false;

    std::int32_t m_majorVersion = 3;
    std::int32_t m_revision = 0;
    std::uint8_t m_flags = 0;
    std::int32_t m_frameHeaderSize = 10;

    std::int32_t m_extendedHeaderPos = -1;
    std::int32_t m_extendedHeaderSize = 0;
    std::uint16_t m_extendedFlags = 0;
    bool m_hasCRC = false;
    std::uint32_t m_crc = 0;

    std::int32_t m_firstFrameOffset = 0;
    std::int32_t m_frameCount = 0;

    // Inflated data of the frame read last; it only grows.
    mutable std::vector<std::uint8_t> m_inflated;
};

}  // namespace tbx
