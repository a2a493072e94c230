#include "gui/image/CJNGDecoder.h"

#include <zlib.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "gui/image/CImage.h"
#include "gui/image/CJPEGDecoder.h"

namespace fenn::gui {

namespace {

constexpr const char* kFormatName = "JNG";
constexpr std::uint8_t kSignature[8] = {0x8B, 'J', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
constexpr std::uint32_t kHeaderLength = 16;
// Length, type and CRC around each chunk's data.
constexpr std::size_t kChunkFrameSize = 12;
// Chunk lengths are limited to 31 bits in the PNG chunk layout.
constexpr std::uint32_t kMaxChunkLength = 0x7FFFFFFF;

enum ColourType : std::uint8_t { kGrey = 8, kColour = 10, kGreyAlpha = 12, kColourAlpha = 14 };
enum SampleDepth : std::uint8_t { kEightBit = 8, kTwelveBit = 12, kEightAndTwelveBit = 20 };
constexpr std::uint8_t kJPEGCompression = 8;
enum AlphaCompression : std::uint8_t { kAlphaPNG = 0, kAlphaJPEG = 8 };

struct Header
{
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint8_t colourType = 0;
    std::uint8_t sampleDepth = 0;
    std::uint8_t alphaDepth = 0;
    std::uint8_t alphaCompression = 0;

    bool hasAlpha() const { return colourType == kGreyAlpha || colourType == kColourAlpha; }
};

// The data of the chunks, joined per kind.
struct Streams
{
    Header header;
    std::vector<std::uint8_t> jpeg;
    std::vector<std::uint8_t> alphaDeflated;
    std::vector<std::uint8_t> alphaJPEG;
};

[[noreturn]] void structureError(const std::string& details)
{
    throw format::mng::CMNGError(String::copyOf("JNG: " + details));
}

std::uint32_t readBE32(const std::uint8_t* bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
           static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

bool isLetter(std::uint8_t byte)
{
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

Header parseHeader(const std::uint8_t* data, std::uint32_t length)
{
    if (length != kHeaderLength) structureError("JHDR has the wrong length");
    Header header;
    header.width = readBE32(data);
    header.height = readBE32(data + 4);
    header.colourType = data[8];
    header.sampleDepth = data[9];
    const std::uint8_t compression = data[10];
    const std::uint8_t interlace = data[11];
    header.alphaDepth = data[12];
    header.alphaCompression = data[13];
    const std::uint8_t alphaFilter = data[14];
    const std::uint8_t alphaInterlace = data[15];

    checkImageSize(header.width, header.height, kFormatName);
    if (header.colourType != kGrey && header.colourType != kColour && !header.hasAlpha()) {
        structureError("unknown colour type");
    }
    if (header.sampleDepth != kEightBit && header.sampleDepth != kTwelveBit &&
        header.sampleDepth != kEightAndTwelveBit) {
        structureError("unknown sample depth");
    }
    if (header.sampleDepth == kTwelveBit) throw imageError(kFormatName, "12-bit JPEG data is not supported");
    if (compression != kJPEGCompression) structureError("unknown compression method");
    if (interlace != 0 && interlace != 8) structureError("unknown interlace method");
    if (header.hasAlpha()) {
        const std::uint8_t depth = header.alphaDepth;
        if (depth != 1 && depth != 2 && depth != 4 && depth != 8 && depth != 16) structureError("bad alpha depth");
        if (header.alphaCompression != kAlphaPNG && header.alphaCompression != kAlphaJPEG) {
            structureError("unknown alpha compression method");
        }
        if (header.alphaCompression == kAlphaJPEG && depth != 8) structureError("JPEG alpha must be 8 bits deep");
        if (alphaFilter != 0 || alphaInterlace != 0) structureError("unsupported alpha filter or interlace method");
    } else if (header.alphaDepth != 0) {
        structureError("alpha depth in an image without alpha");
    }
    return header;
}

Streams readChunks(std::span<const std::uint8_t> bytes)
{
    Streams streams;
    bool seenHeader = false;
    bool seenSeparator = false;
    std::size_t pos = sizeof kSignature;
    for (;;) {
        if (bytes.size() - pos < kChunkFrameSize) structureError("the file ends before IEND");
        const std::uint32_t length = readBE32(bytes.data() + pos);
        const std::uint8_t* type = bytes.data() + pos + 4;
        if (length > kMaxChunkLength || length > bytes.size() - pos - kChunkFrameSize) {
            structureError("a chunk goes past the end of the file");
        }
        if (!isLetter(type[0]) || !isLetter(type[1]) || !isLetter(type[2]) || !isLetter(type[3])) {
            structureError("a chunk type is not made of letters");
        }
        const std::string name(reinterpret_cast<const char*>(type), 4);
        const std::uint8_t* data = type + 4;
        // The CRC covers the type and the data.
        const uLong crc = crc32(crc32(0, Z_NULL, 0), type, length + 4);
        if (crc != readBE32(data + length)) structureError("bad CRC in chunk " + name);
        pos += kChunkFrameSize + length;

        if (!seenHeader) {
            if (name != "JHDR") structureError("the first chunk is not JHDR");
            streams.header = parseHeader(data, length);
            seenHeader = true;
            continue;
        }
        const Header& header = streams.header;
        if (name == "JDAT") {
            if (!seenSeparator) streams.jpeg.insert(streams.jpeg.end(), data, data + length);
        } else if (name == "IDAT") {
            if (!header.hasAlpha() || header.alphaCompression != kAlphaPNG) structureError("unexpected IDAT");
            streams.alphaDeflated.insert(streams.alphaDeflated.end(), data, data + length);
        } else if (name == "JDAA") {
            if (!header.hasAlpha() || header.alphaCompression != kAlphaJPEG) structureError("unexpected JDAA");
            streams.alphaJPEG.insert(streams.alphaJPEG.end(), data, data + length);
        } else if (name == "JSEP") {
            if (header.sampleDepth != kEightAndTwelveBit) structureError("unexpected JSEP");
            seenSeparator = true;
        } else if (name == "IEND") {
            return streams;
        } else if (name == "JHDR") {
            structureError("a second JHDR");
        } else if ((type[0] & 0x20) == 0) {
            // A critical chunk (upper-case first letter) that is not known
            // here changes how the image must be read.
            structureError("unknown critical chunk " + name);
        }
    }
}

std::vector<std::uint8_t> inflateAlpha(const std::vector<std::uint8_t>& deflated, std::size_t expectedSize)
{
    if (static_cast<std::int64_t>(deflated.size()) * kMaxDeflateRatio < static_cast<std::int64_t>(expectedSize)) {
        throw imageError(kFormatName, "the alpha data ends early");
    }
    std::vector<std::uint8_t> inflated(expectedSize);
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK) throw imageError(kFormatName, "zlib cannot start");
    stream.next_in = const_cast<Bytef*>(deflated.data());
    stream.avail_in = static_cast<uInt>(deflated.size());
    stream.next_out = inflated.data();
    stream.avail_out = static_cast<uInt>(expectedSize);
    int result = Z_OK;
    do {
        result = inflate(&stream, Z_FINISH);
    } while (result == Z_OK);
    inflateEnd(&stream);
    // Z_BUF_ERROR with every byte delivered means there is more data than
    // the image needs, which is passed over.
    if (result != Z_STREAM_END && result != Z_BUF_ERROR) throw imageError(kFormatName, "damaged alpha data");
    if (stream.avail_out != 0) throw imageError(kFormatName, "the alpha data ends early");
    return inflated;
}

std::uint8_t paeth(int left, int up, int upLeft)
{
    const int estimate = left + up - upLeft;
    const int toLeft = std::abs(estimate - left);
    const int toUp = std::abs(estimate - up);
    const int toUpLeft = std::abs(estimate - upLeft);
    if (toLeft <= toUp && toLeft <= toUpLeft) return static_cast<std::uint8_t>(left);
    return static_cast<std::uint8_t>(toUp <= toUpLeft ? up : upLeft);
}

// Undoes the PNG row filters in place. Each row is a filter type byte and
// rowBytes bytes; bytesPerSample is the distance to the "left" byte.
void unfilterRows(std::vector<std::uint8_t>& rows, std::size_t rowBytes, std::size_t height, std::size_t bytesPerSample)
{
    const std::vector<std::uint8_t> zeroRow(rowBytes, 0);
    const std::uint8_t* prior = zeroRow.data();
    for (std::size_t y = 0; y < height; ++y) {
        std::uint8_t* row = rows.data() + y * (rowBytes + 1);
        const std::uint8_t filter = row[0];
        ++row;
        for (std::size_t i = 0; i < rowBytes; ++i) {
            const int left = i >= bytesPerSample ? row[i - bytesPerSample] : 0;
            const int upLeft = i >= bytesPerSample ? prior[i - bytesPerSample] : 0;
            int predictor = 0;
            switch (filter) {
            case 0:
                break;
            case 1:
                predictor = left;
                break;
            case 2:
                predictor = prior[i];
                break;
            case 3:
                predictor = (left + prior[i]) / 2;
                break;
            case 4:
                predictor = paeth(left, prior[i], upLeft);
                break;
            default:
                throw imageError(kFormatName, "unknown alpha row filter");
            }
            row[i] = static_cast<std::uint8_t>(row[i] + predictor);
        }
        prior = row;
    }
}

// Puts the alpha channel of IDAT chunks into the pixels' alpha bytes.
void applyDeflatedAlpha(const Streams& streams, RGBAPixels& pixels)
{
    const std::size_t width = streams.header.width;
    const std::size_t height = streams.header.height;
    const unsigned depth = streams.header.alphaDepth;
    const std::size_t rowBytes = (width * depth + 7) / 8;
    std::vector<std::uint8_t> rows = inflateAlpha(streams.alphaDeflated, height * (rowBytes + 1));
    unfilterRows(rows, rowBytes, height, depth == 16 ? 2 : 1);
    const unsigned maxValue = (1u << depth) - 1;
    for (std::size_t y = 0; y < height; ++y) {
        const std::uint8_t* row = rows.data() + y * (rowBytes + 1) + 1;
        std::uint8_t* target = pixels.row(static_cast<int>(y)) + 3;
        for (std::size_t x = 0; x < width; ++x, target += 4) {
            if (depth == 16) {
                const unsigned value = static_cast<unsigned>(row[2 * x]) << 8 | row[2 * x + 1];
                *target = static_cast<std::uint8_t>((value * 255 + 32767) / 65535);
            } else if (depth == 8) {
                *target = row[x];
            } else {
                const std::size_t bit = x * depth;
                const unsigned value = row[bit / 8] >> (8 - depth - bit % 8) & maxValue;
                *target = static_cast<std::uint8_t>(value * 255 / maxValue);
            }
        }
    }
}

void checkSize(const RGBAPixels& pixels, const Header& header, const char* what)
{
    if (static_cast<std::uint32_t>(pixels.width) != header.width ||
        static_cast<std::uint32_t>(pixels.height) != header.height) {
        structureError(std::string(what) + " differs in size from JHDR");
    }
}

}  // namespace

bool CJNGDecoder::recognizes(std::span<const std::uint8_t> head) const
{
    return head.size() >= sizeof kSignature && std::memcmp(head.data(), kSignature, sizeof kSignature) == 0;
}

P<IImage> CJNGDecoder::decode(std::span<const std::uint8_t> bytes) const
{
    if (!recognizes(bytes)) throw imageError(kFormatName, "not a JNG file");
    const Streams streams = readChunks(bytes);
    if (streams.jpeg.empty()) structureError("no JDAT chunk");
    RGBAPixels pixels = CJPEGDecoder::decodePixels(streams.jpeg, kFormatName);
    checkSize(pixels, streams.header, "the JPEG image");
    if (streams.header.hasAlpha()) {
        if (streams.header.alphaCompression == kAlphaPNG) {
            if (streams.alphaDeflated.empty()) structureError("no IDAT chunk for the alpha channel");
            applyDeflatedAlpha(streams, pixels);
        } else {
            if (streams.alphaJPEG.empty()) structureError("no JDAA chunk for the alpha channel");
            const RGBAPixels alpha = CJPEGDecoder::decodePixels(streams.alphaJPEG, kFormatName);
            checkSize(alpha, streams.header, "the JPEG alpha channel");
            for (std::size_t index = 0; index < pixels.bytes.size(); index += 4) {
                pixels.bytes[index + 3] = alpha.bytes[index];
            }
        }
    }
    return make<CImage>(pixels);
}

}  // namespace fenn::gui
