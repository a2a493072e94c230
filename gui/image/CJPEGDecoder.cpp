#include "gui/image/CJPEGDecoder.h"

#include <csetjmp>
#include <cstdio>
#include <cstring>

// jpeglib.h needs FILE and size_t declared before it.
#include <jerror.h>
#include <jpeglib.h>

#include "gui/image/CImage.h"

namespace fenn::gui {

namespace {

// Progressive files may hold any number of scans, each a pass over the whole
// coefficient buffer; a hostile file with many thousands of tiny scans would
// keep the decoder busy for minutes. Real encoders write fewer than a dozen.
constexpr int kMaxScans = 1000;

struct ErrorManager
{
    jpeg_error_mgr base;
    std::jmp_buf jump;
    char message[JMSG_LENGTH_MAX];
};

struct ProgressManager
{
    jpeg_progress_mgr base;
    ErrorManager* errors;
};

// What libjpeg and the jump back need, in the frame of decodePixels. As with
// libpng, no object with a destructor lives in the stretch that a longjmp
// may leave.
struct DecodeState
{
    jpeg_decompress_struct info;
    ErrorManager errors;
    ProgressManager progress;
    const std::uint8_t* data;
    std::size_t size;
    RGBAPixels* pixels;
    const char* formatName;
};

[[noreturn]] void jumpBack(ErrorManager& errors)
{
    std::longjmp(errors.jump, 1);
}

[[noreturn]] void onError(j_common_ptr info)
{
    auto& errors = *reinterpret_cast<ErrorManager*>(info->err);
    (*info->err->format_message)(info, errors.message);
    jumpBack(errors);
}

// Warnings about damaged data are passed over, as viewers do, except the end
// of the file: the rest of the image would be made up.
void onMessage(j_common_ptr info, int level)
{
    if (level == -1 && info->err->msg_code == JWRN_JPEG_EOF) onError(info);
}

void onProgress(j_common_ptr info)
{
    auto& progress = *reinterpret_cast<ProgressManager*>(info->progress);
    const auto* decompress = reinterpret_cast<j_decompress_ptr>(info);
    if (decompress->input_scan_number > kMaxScans) {
        std::snprintf(progress.errors->message, sizeof progress.errors->message, "too many scans");
        jumpBack(*progress.errors);
    }
}

std::uint8_t multiplyBytes(unsigned a, unsigned b)
{
    return static_cast<std::uint8_t>((a * b + 127) / 255);
}

void convertRow(const DecodeState& state, const JSAMPLE* source, std::uint8_t* target)
{
    const JDIMENSION width = state.info.output_width;
    switch (state.info.out_color_space) {
    case JCS_GRAYSCALE:
        for (JDIMENSION x = 0; x < width; ++x, target += 4) {
            target[0] = target[1] = target[2] = source[x];
            target[3] = 0xFF;
        }
        break;
    case JCS_CMYK:
        // With an Adobe marker the values are stored inverted (0 is full
        // ink); without one they are plain ink amounts.
        for (JDIMENSION x = 0; x < width; ++x, source += 4, target += 4) {
            const bool inverted = state.info.saw_Adobe_marker;
            const unsigned black = inverted ? source[3] : 255u - source[3];
            for (int channel = 0; channel < 3; ++channel) {
                const unsigned ink = inverted ? source[channel] : 255u - source[channel];
                target[channel] = multiplyBytes(ink, black);
            }
            target[3] = 0xFF;
        }
        break;
    default:
        for (JDIMENSION x = 0; x < width; ++x, source += 3, target += 4) {
            std::memcpy(target, source, 3);
            target[3] = 0xFF;
        }
        break;
    }
}

bool decodeUnderJump(DecodeState& state)
{
    jpeg_decompress_struct& info = state.info;
    if (setjmp(state.errors.jump)) return false;
    jpeg_create_decompress(&info);
    info.progress = &state.progress.base;
    jpeg_mem_src(&info, state.data, static_cast<unsigned long>(state.size));
    jpeg_read_header(&info, TRUE);
    if (info.image_width < 1 || info.image_height < 1 || info.image_width > kMaxImageSide ||
        info.image_height > kMaxImageSide ||
        static_cast<std::int64_t>(info.image_width) * info.image_height * 4 > kMaxImageBytes) {
        std::snprintf(state.errors.message, sizeof state.errors.message, "the image is too large");
        return false;
    }
    switch (info.jpeg_color_space) {
    case JCS_GRAYSCALE:
        info.out_color_space = JCS_GRAYSCALE;
        break;
    case JCS_CMYK:
    case JCS_YCCK:
        info.out_color_space = JCS_CMYK;
        break;
    default:
        info.out_color_space = JCS_RGB;
        break;
    }
    jpeg_start_decompress(&info);
    const int expectedComponents = info.out_color_space == JCS_GRAYSCALE ? 1 : info.out_color_space == JCS_CMYK ? 4 : 3;
    if (info.output_components != expectedComponents) {
        std::snprintf(state.errors.message, sizeof state.errors.message, "unsupported colour layout");
        return false;
    }

    *state.pixels = RGBAPixels::allocate(info.output_width, info.output_height, state.formatName);
    // The row buffer comes from libjpeg's pool, which jpeg_destroy frees.
    JSAMPARRAY row = (*info.mem->alloc_sarray)(reinterpret_cast<j_common_ptr>(&info), JPOOL_IMAGE,
                                               info.output_width * info.output_components, 1);
    while (info.output_scanline < info.output_height) {
        const int y = static_cast<int>(info.output_scanline);
        if (jpeg_read_scanlines(&info, row, 1) != 1) {
            std::snprintf(state.errors.message, sizeof state.errors.message, "no more rows");
            return false;
        }
        convertRow(state, row[0], state.pixels->row(y));
    }
    // jpeg_finish_decompress is left out: it only reads on to the end
    // marker, and a file that lacks one after complete image data still
    // shows.
    return true;
}

struct DecompressStruct
{
    jpeg_decompress_struct& info;
    // Safe on a zeroed structure and on one that failed half way.
    ~DecompressStruct() { jpeg_destroy_decompress(&info); }
};

}  // namespace

bool CJPEGDecoder::recognizes(std::span<const std::uint8_t> head) const
{
    // The start-of-image marker and the first byte of the next marker.
    return head.size() >= 3 && head[0] == 0xFF && head[1] == 0xD8 && head[2] == 0xFF;
}

P<IImage> CJPEGDecoder::decode(std::span<const std::uint8_t> bytes) const
{
    return make<CImage>(decodePixels(bytes, "JPEG"));
}

RGBAPixels CJPEGDecoder::decodePixels(std::span<const std::uint8_t> bytes, const char* formatName)
{
    if (bytes.empty()) throw imageError(formatName, "no JPEG data");
    RGBAPixels pixels;
    DecodeState state;
    std::memset(&state, 0, sizeof state);
    state.data = bytes.data();
    state.size = bytes.size();
    state.pixels = &pixels;
    state.formatName = formatName;
    state.info.err = jpeg_std_error(&state.errors.base);
    state.errors.base.error_exit = onError;
    state.errors.base.emit_message = onMessage;
    state.progress.base.progress_monitor = onProgress;
    state.progress.errors = &state.errors;
    DecompressStruct destroyer{state.info};
    if (!decodeUnderJump(state)) throw imageError(formatName, state.errors.message);
    return pixels;
}

}  // namespace fenn::gui
