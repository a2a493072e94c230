#include "tests/gui/image/ImageTestSupport.h"

#include <png.h>
#include <zlib.h>

#include <csetjmp>
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

namespace imagetest {

namespace {

void appendToBytes(png_structp png, png_bytep data, png_size_t length)
{
    auto* bytes = static_cast<Bytes*>(png_get_io_ptr(png));
    bytes->insert(bytes->end(), data, data + length);
}

void flushNothing(png_structp) {}

// The libpng calls under setjmp; rowPointers and the output are made by
// the caller, so nothing here has a destructor to skip.
bool writePNG(const PNGParameters& params, png_bytep* rowPointers, Bytes* output)
{
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_set_write_fn(png, output, appendToBytes, flushNothing);
    png_set_IHDR(png, info, params.width, params.height, params.bitDepth, params.colourType,
                 params.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    if (!params.palette.empty()) {
        png_color colours[256];
        const int count = static_cast<int>(params.palette.size() / 3);
        for (int index = 0; index < count; ++index) {
            colours[index] = {params.palette[index * 3], params.palette[index * 3 + 1], params.palette[index * 3 + 2]};
        }
        png_set_PLTE(png, info, colours, count);
    }
    if (!params.paletteAlpha.empty()) {
        png_set_tRNS(png, info, params.paletteAlpha.data(), static_cast<int>(params.paletteAlpha.size()), nullptr);
    }
    if (params.transparentGrey >= 0) {
        png_color_16 grey{};
        grey.gray = static_cast<png_uint_16>(params.transparentGrey);
        png_set_tRNS(png, info, nullptr, 0, &grey);
    }
    png_set_rows(png, info, rowPointers);
    png_write_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

}  // namespace

Bytes encodePNG(const PNGParameters& params)
{
    std::vector<png_bytep> rowPointers;
    for (const Bytes& row : params.rows) rowPointers.push_back(const_cast<png_bytep>(row.data()));
    Bytes output;
    if (static_cast<int>(params.rows.size()) != params.height || !writePNG(params, rowPointers.data(), &output)) {
        ADD_FAILURE() << "libpng could not write the test image";
        return {};
    }
    return output;
}

Bytes encodeJPEG(const JPEGParameters& params)
{
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* buffer = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &buffer, &size);
    info.image_width = static_cast<JDIMENSION>(params.width);
    info.image_height = static_cast<JDIMENSION>(params.height);
    info.input_components = params.components;
    info.in_color_space = static_cast<J_COLOR_SPACE>(params.colourSpace);
    jpeg_set_defaults(&info);
    if (params.storedColourSpace != JCS_UNKNOWN)
        jpeg_set_colorspace(&info, static_cast<J_COLOR_SPACE>(params.storedColourSpace));
    jpeg_set_quality(&info, params.quality, TRUE);
    // Full-resolution chroma keeps sharp colour edges inside the tolerance.
    for (int component = 0; component < info.num_components; ++component) {
        info.comp_info[component].h_samp_factor = 1;
        info.comp_info[component].v_samp_factor = 1;
    }
    if (params.progressive) jpeg_simple_progression(&info);
    info.write_Adobe_marker = params.adobeMarker ? TRUE : FALSE;
    jpeg_start_compress(&info, TRUE);
    const std::size_t rowBytes = static_cast<std::size_t>(params.width) * params.components;
    while (info.next_scanline < info.image_height) {
        JSAMPROW row = const_cast<JSAMPROW>(params.samples.data() + info.next_scanline * rowBytes);
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    Bytes output(buffer, buffer + size);
    jpeg_destroy_compress(&info);
    std::free(buffer);
    return output;
}

void appendBE32(Bytes& bytes, std::uint32_t value)
{
    for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

void appendChunk(Bytes& file, const std::string& type, const Bytes& data)
{
    appendBE32(file, static_cast<std::uint32_t>(data.size()));
    Bytes typeAndData(type.begin(), type.end());
    typeAndData.insert(typeAndData.end(), data.begin(), data.end());
    file.insert(file.end(), typeAndData.begin(), typeAndData.end());
    appendBE32(file, static_cast<std::uint32_t>(crc32(0, typeAndData.data(), static_cast<uInt>(typeAndData.size()))));
}

Bytes deflate(const Bytes& bytes)
{
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    Bytes output(size);
    EXPECT_EQ(compress2(output.data(), &size, bytes.data(), static_cast<uLong>(bytes.size()), 9), Z_OK);
    output.resize(size);
    return output;
}

std::uint8_t gradientSample(int x, int y, int channel)
{
    switch (channel) {
    case 0:
        return static_cast<std::uint8_t>(x * 16);
    case 1:
        return static_cast<std::uint8_t>(y * 16);
    default:
        return static_cast<std::uint8_t>((x + y) * 8);
    }
}

RGBA pixelAt(const fenn::gui::IImage& image, int x, int y)
{
    const std::uint32_t word = image.getPixel(x, y);
    const int alpha = static_cast<int>(word >> 24);
    auto unpremultiply = [alpha](std::uint32_t value) {
        return alpha == 0 ? 0 : static_cast<int>((value * 255 + alpha / 2) / static_cast<std::uint32_t>(alpha));
    };
    return {unpremultiply(word >> 16 & 0xFF), unpremultiply(word >> 8 & 0xFF), unpremultiply(word & 0xFF), alpha};
}

std::ostream& operator<<(std::ostream& stream, const RGBA& pixel)
{
    return stream << "rgba(" << pixel.red << ", " << pixel.green << ", " << pixel.blue << ", " << pixel.alpha << ")";
}

std::uint32_t premultiplied(const RGBA& pixel)
{
    auto scale = [&pixel](int colour) { return static_cast<std::uint32_t>((colour * pixel.alpha + 127) / 255); };
    return static_cast<std::uint32_t>(pixel.alpha) << 24 | scale(pixel.red) << 16 | scale(pixel.green) << 8 |
           scale(pixel.blue);
}

::testing::AssertionResult pixelsMatch(const fenn::gui::IImage& image, const std::function<RGBA(int, int)>& expected,
                                       int tolerance)
{
    for (int y = 0; y < image.getHeight(); ++y) {
        for (int x = 0; x < image.getWidth(); ++x) {
            const std::uint32_t actual = image.getPixel(x, y);
            const RGBA wanted = expected(x, y);
            const std::uint32_t wantedWord = premultiplied(wanted);
            bool close = (actual >> 24) == (wantedWord >> 24);
            for (int shift = 0; shift < 24; shift += 8) {
                const int difference =
                    static_cast<int>(actual >> shift & 0xFF) - static_cast<int>(wantedWord >> shift & 0xFF);
                close = close && std::abs(difference) <= tolerance;
            }
            if (!close) {
                return ::testing::AssertionFailure()
                       << "pixel (" << x << ", " << y << ") is " << pixelAt(image, x, y) << ", expected " << wanted;
            }
        }
    }
    return ::testing::AssertionSuccess();
}

}  // namespace imagetest
