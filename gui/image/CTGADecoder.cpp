#include "gui/image/CTGADecoder.h"

#include <algorithm>
#include <vector>

#include "gui/image/CImage.h"
#include "gui/image/RGBAPixels.h"

namespace fenn::gui {

namespace {

constexpr const char* kFormatName = "TGA";
constexpr std::size_t kHeaderSize = 18;

enum ImageType : std::uint8_t {
    kColourMapped = 1,
    kTrueColour = 2,
    kGreyscale = 3,
    kColourMappedRLE = 9,
    kTrueColourRLE = 10,
    kGreyscaleRLE = 11
};

// Bits of the image descriptor byte.
constexpr std::uint8_t kAlphaBitsMask = 0x0F;
constexpr std::uint8_t kRightToLeft = 0x10;
constexpr std::uint8_t kTopToBottom = 0x20;
constexpr std::uint8_t kInterleaveMask = 0xC0;
// A run-length packet header: the high bit marks a run, the low seven bits
// hold the pixel count minus one.
constexpr std::uint8_t kRunPacket = 0x80;
constexpr std::size_t kMaxPacketPixels = 128;

struct Header
{
    std::uint8_t idLength = 0;
    std::uint8_t colourMapType = 0;
    std::uint8_t imageType = 0;
    std::uint16_t mapFirst = 0;
    std::uint16_t mapLength = 0;
    std::uint8_t mapEntryBits = 0;
    std::uint16_t width = 0;
    std::uint16_t height = 0;
    std::uint8_t pixelBits = 0;
    std::uint8_t descriptor = 0;

    bool isColourMapped() const { return imageType == kColourMapped || imageType == kColourMappedRLE; }
    bool isGreyscale() const { return imageType == kGreyscale || imageType == kGreyscaleRLE; }
    bool isRunLength() const { return imageType >= kColourMappedRLE; }
};

std::uint16_t readLE16(const std::uint8_t* bytes)
{
    return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

Header parseHeader(const std::uint8_t* bytes)
{
    Header header;
    header.idLength = bytes[0];
    header.colourMapType = bytes[1];
    header.imageType = bytes[2];
    header.mapFirst = readLE16(bytes + 3);
    header.mapLength = readLE16(bytes + 5);
    header.mapEntryBits = bytes[7];
    // Bytes 8 to 11 hold the screen origin, which does not matter here.
    header.width = readLE16(bytes + 12);
    header.height = readLE16(bytes + 14);
    header.pixelBits = bytes[16];
    header.descriptor = bytes[17];
    return header;
}

bool isMapEntrySize(std::uint8_t bits)
{
    return bits == 15 || bits == 16 || bits == 24 || bits == 32;
}

// Null when the header is one this decoder reads, otherwise why not.
const char* findHeaderProblem(const Header& header)
{
    switch (header.imageType) {
    case kColourMapped:
    case kColourMappedRLE:
        if (header.colourMapType != 1) return "a colour-mapped image without a colour map";
        if (header.pixelBits != 8 && header.pixelBits != 16) return "unsupported colour index size";
        break;
    case kTrueColour:
    case kTrueColourRLE:
        if (header.pixelBits != 15 && header.pixelBits != 16 && header.pixelBits != 24 && header.pixelBits != 32) {
            return "unsupported pixel size";
        }
        break;
    case kGreyscale:
    case kGreyscaleRLE:
        if (header.pixelBits != 8 && header.pixelBits != 16) return "unsupported pixel size";
        break;
    default:
        return "unsupported image type";
    }
    if (header.colourMapType > 1) return "unknown colour map type";
    if (header.colourMapType == 1 && !isMapEntrySize(header.mapEntryBits)) return "unsupported colour map entry size";
    if ((header.descriptor & kInterleaveMask) != 0) return "interleaved rows are not supported";
    if (header.width == 0 || header.height == 0) return "the image has no pixels";
    return nullptr;
}

// One colour of 15 or 16 bits: five bits each of red, green and blue and,
// when the descriptor counts alpha bits, an alpha bit at the top.
void convert16(std::uint16_t value, bool withAlpha, std::uint8_t* target)
{
    auto expand = [](unsigned five) { return static_cast<std::uint8_t>(five << 3 | five >> 2); };
    target[0] = expand(value >> 10 & 0x1F);
    target[1] = expand(value >> 5 & 0x1F);
    target[2] = expand(value & 0x1F);
    target[3] = withAlpha && (value & 0x8000) == 0 ? 0 : 0xFF;
}

// A true colour value (or a colour map entry): 15 and 16 bits as above,
// otherwise blue, green, red and for 32 bits alpha.
void convertColour(const std::uint8_t* source, int bits, bool withAlpha, std::uint8_t* target)
{
    if (bits <= 16) return convert16(readLE16(source), bits == 16 && withAlpha, target);
    target[0] = source[2];
    target[1] = source[1];
    target[2] = source[0];
    target[3] = bits == 32 ? source[3] : 0xFF;
}

class Reader
{
public:
    Reader(const Header& header, std::span<const std::uint8_t> bytes, RGBAPixels& pixels)
        : m_header(header), m_bytes(bytes), m_pixels(pixels), m_pixelBytes((header.pixelBits + 7) / 8),
          m_withAlpha((header.descriptor & kAlphaBitsMask) != 0)
    {
    }

    void read()
    {
        std::size_t pos = kHeaderSize + m_header.idLength;
        if (pos > m_bytes.size()) throw imageError(kFormatName, "the file ends in the image ID");
        if (m_header.colourMapType == 1) pos = readColourMap(pos);
        if (m_header.isRunLength()) {
            readRunLength(pos);
        } else {
            readPlain(pos);
        }
        if (!m_sawVisiblePixel) makeOpaque();
    }

private:
    std::size_t readColourMap(std::size_t pos)
    {
        const std::size_t entryBytes = (m_header.mapEntryBits + 7) / 8;
        const std::size_t mapBytes = entryBytes * m_header.mapLength;
        if (mapBytes > m_bytes.size() - pos) throw imageError(kFormatName, "the file ends in the colour map");
        if (m_header.isColourMapped()) {
            m_colourMap.resize(static_cast<std::size_t>(m_header.mapLength) * 4);
            for (std::size_t entry = 0; entry < m_header.mapLength; ++entry) {
                convertColour(m_bytes.data() + pos + entry * entryBytes, m_header.mapEntryBits, m_withAlpha,
                              m_colourMap.data() + entry * 4);
            }
        }
        return pos + mapBytes;
    }

    void readPlain(std::size_t pos)
    {
        const std::size_t needed = m_pixelCount * m_pixelBytes;
        if (needed > m_bytes.size() - pos) throw imageError(kFormatName, "the file ends in the pixel data");
        for (std::size_t index = 0; index < m_pixelCount; ++index) {
            storePixel(index, m_bytes.data() + pos + index * m_pixelBytes);
        }
    }

    void readRunLength(std::size_t pos)
    {
        std::size_t index = 0;
        while (index < m_pixelCount) {
            if (pos >= m_bytes.size()) throw imageError(kFormatName, "the file ends in the pixel data");
            const std::uint8_t packet = m_bytes[pos++];
            const std::size_t count = (packet & 0x7F) + 1u;
            // A packet may go on into the next row, as many writers let it,
            // but not beyond the last pixel.
            if (count > m_pixelCount - index) throw imageError(kFormatName, "a run goes past the last pixel");
            const std::size_t valueBytes = (packet & kRunPacket) != 0 ? m_pixelBytes : m_pixelBytes * count;
            if (valueBytes > m_bytes.size() - pos) throw imageError(kFormatName, "the file ends in the pixel data");
            for (std::size_t step = 0; step < count; ++step, ++index) {
                storePixel(index, m_bytes.data() + pos + ((packet & kRunPacket) != 0 ? 0 : step * m_pixelBytes));
            }
            pos += valueBytes;
        }
    }

    // The pixel with the given place in file order, written to its place in
    // the image by the descriptor's origin bits.
    void storePixel(std::size_t index, const std::uint8_t* source)
    {
        const std::size_t width = m_header.width;
        const std::size_t fileRow = index / width;
        const std::size_t fileColumn = index % width;
        const std::size_t y = (m_header.descriptor & kTopToBottom) != 0 ? fileRow : m_header.height - 1 - fileRow;
        const std::size_t x = (m_header.descriptor & kRightToLeft) != 0 ? width - 1 - fileColumn : fileColumn;
        std::uint8_t* target = m_pixels.bytes.data() + (y * width + x) * 4;
        if (m_header.isColourMapped()) {
            const unsigned value = m_header.pixelBits == 8 ? source[0] : readLE16(source);
            if (value < m_header.mapFirst || value - m_header.mapFirst >= m_header.mapLength) {
                throw imageError(kFormatName, "a colour index lies outside the colour map");
            }
            std::copy_n(m_colourMap.data() + (value - m_header.mapFirst) * 4, 4, target);
        } else if (m_header.isGreyscale()) {
            target[0] = target[1] = target[2] = source[0];
            target[3] = m_header.pixelBits == 16 ? source[1] : 0xFF;
        } else {
            convertColour(source, m_header.pixelBits, m_withAlpha, target);
        }
        if (target[3] != 0) m_sawVisiblePixel = true;
    }

    // Many writers leave the alpha byte (or bit) at zero although the image
    // is meant to be seen: an image whose every pixel would be invisible is
    // taken to have no alpha at all.
    void makeOpaque()
    {
        for (std::size_t index = 0; index < m_pixelCount; ++index) m_pixels.bytes[index * 4 + 3] = 0xFF;
    }

    const Header& m_header;
    std::span<const std::uint8_t> m_bytes;
    RGBAPixels& m_pixels;
    const std::size_t m_pixelBytes;
    const bool m_withAlpha;
    const std::size_t m_pixelCount = static_cast<std::size_t>(m_header.width) * m_header.height;
    std::vector<std::uint8_t> m_colourMap;
    bool m_sawVisiblePixel = false;
};

}  // namespace

bool CTGADecoder::recognizes(std::span<const std::uint8_t> head) const
{
    return head.size() >= kHeaderSize && findHeaderProblem(parseHeader(head.data())) == nullptr;
}

P<IImage> CTGADecoder::decode(std::span<const std::uint8_t> bytes) const
{
    if (bytes.size() < kHeaderSize) throw imageError(kFormatName, "the file ends in the header");
    const Header header = parseHeader(bytes.data());
    if (const char* problem = findHeaderProblem(header)) throw imageError(kFormatName, problem);
    checkImageSize(header.width, header.height, kFormatName);
    // The fewest bytes that could hold the pixels, checked before the image
    // is allocated: every pixel for plain data, for run-length data one
    // packet of at most 128 pixels per header byte and value.
    const std::size_t pixelCount = static_cast<std::size_t>(header.width) * header.height;
    const std::size_t pixelBytes = (header.pixelBits + 7) / 8;
    const std::size_t fewestBytes = header.isRunLength()
                                        ? (pixelCount + kMaxPacketPixels - 1) / kMaxPacketPixels * (1 + pixelBytes)
                                        : pixelCount * pixelBytes;
    if (bytes.size() - kHeaderSize < fewestBytes) throw imageError(kFormatName, "the file ends in the pixel data");
    RGBAPixels pixels = RGBAPixels::allocate(header.width, header.height, kFormatName);
    Reader(header, bytes, pixels).read();
    return make<CImage>(pixels);
}

}  // namespace fenn::gui
