#include "gui/image/CPNGDecoder.h"

#include <png.h>

#include <csetjmp>
#include <cstdio>
#include <cstring>

#include "gui/image/CImage.h"
#include "gui/image/RGBAPixels.h"

namespace fenn::gui {

namespace {

constexpr const char* kFormatName = "PNG";
constexpr std::uint8_t kSignature[8] = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
// Ancillary chunks (text, profiles) larger than this are dropped by libpng
// instead of being inflated into memory.
constexpr png_alloc_size_t kMaxChunkBytes = 8 * 1024 * 1024;

// Everything libpng's callbacks and the jump back need. It lives in the frame
// of decode, outside the stretch that libpng may leave by longjmp; nothing in
// that stretch has a destructor.
struct ReadState
{
    const std::uint8_t* data = nullptr;
    std::size_t size = 0;
    std::size_t pos = 0;
    png_structp png = nullptr;
    png_infop info = nullptr;
    RGBAPixels* pixels = nullptr;
    std::vector<png_bytep>* rows = nullptr;
    char message[160] = {};
};

void failWith(ReadState& state, const char* message)
{
    std::snprintf(state.message, sizeof state.message, "%s", message);
}

void onError(png_structp png, png_const_charp message)
{
    failWith(*static_cast<ReadState*>(png_get_error_ptr(png)), message);
    // Returning would let libpng print the message on stderr before it jumps.
    png_longjmp(png, 1);
}

void onWarning(png_structp, png_const_charp) {}

void readBytes(png_structp png, png_bytep target, png_size_t count)
{
    auto& state = *static_cast<ReadState*>(png_get_io_ptr(png));
    if (count > state.size - state.pos) png_error(png, "the file ends early");
    std::memcpy(target, state.data + state.pos, count);
    state.pos += count;
}

// Asks libpng for RGBA 8 whatever the file holds.
void setTransforms(png_structp png, png_infop info, int colorType, int bitDepth)
{
    const bool hasTransparency = png_get_valid(png, info, PNG_INFO_tRNS) != 0;
    if (colorType == PNG_COLOR_TYPE_PALETTE) png_set_palette_to_rgb(png);
    if (colorType == PNG_COLOR_TYPE_GRAY && bitDepth < 8) png_set_expand_gray_1_2_4_to_8(png);
    if (hasTransparency) png_set_tRNS_to_alpha(png);
    if (bitDepth == 16) png_set_scale_16(png);
    if (colorType == PNG_COLOR_TYPE_GRAY || colorType == PNG_COLOR_TYPE_GRAY_ALPHA) png_set_gray_to_rgb(png);
    if ((colorType & PNG_COLOR_MASK_ALPHA) == 0 && !hasTransparency) png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
    png_set_interlace_handling(png);
}

// Runs libpng under its jump buffer. Returns false with state.message set
// when libpng reports an error or the image is refused.
bool readUnderJump(ReadState& state)
{
    if (setjmp(png_jmpbuf(state.png))) return false;
    png_set_read_fn(state.png, &state, readBytes);
    png_set_user_limits(state.png, kMaxImageSide, kMaxImageSide);
    png_set_chunk_malloc_max(state.png, kMaxChunkBytes);
    png_read_info(state.png, state.info);

    png_uint_32 width = 0;
    png_uint_32 height = 0;
    int bitDepth = 0;
    int colorType = 0;
    png_get_IHDR(state.png, state.info, &width, &height, &bitDepth, &colorType, nullptr, nullptr, nullptr);
    if (static_cast<std::int64_t>(width) * height * 4 > kMaxImageBytes) {
        failWith(state, "the image is too large");
        return false;
    }
    // A file too short to inflate into its rows would still cost the full
    // allocation before libpng finds out.
    const std::int64_t fileRowBytes = static_cast<std::int64_t>(png_get_rowbytes(state.png, state.info)) + 1;
    if (static_cast<std::int64_t>(state.size - state.pos) * kMaxDeflateRatio < fileRowBytes * height) {
        failWith(state, "the file is too short for the image size");
        return false;
    }
    setTransforms(state.png, state.info, colorType, bitDepth);
    png_read_update_info(state.png, state.info);
    if (png_get_channels(state.png, state.info) != 4 || png_get_bit_depth(state.png, state.info) != 8 ||
        png_get_rowbytes(state.png, state.info) != static_cast<png_size_t>(width) * 4) {
        failWith(state, "unsupported pixel layout");
        return false;
    }

    *state.pixels = RGBAPixels::allocate(width, height, kFormatName);
    state.rows->resize(height);
    for (png_uint_32 y = 0; y < height; ++y) (*state.rows)[y] = state.pixels->row(static_cast<int>(y));
    png_read_image(state.png, state.rows->data());
    // The chunks after the image data are not needed, so png_read_end is
    // left out: a file cut off after its last IDAT still shows.
    return true;
}

// Frees libpng's structures however decode is left.
struct ReadStructs
{
    ReadState& state;
    ~ReadStructs() { png_destroy_read_struct(&state.png, &state.info, nullptr); }
};

}  // namespace

bool CPNGDecoder::recognizes(std::span<const std::uint8_t> head) const
{
    return head.size() >= sizeof kSignature && std::memcmp(head.data(), kSignature, sizeof kSignature) == 0;
}

P<IImage> CPNGDecoder::decode(std::span<const std::uint8_t> bytes) const
{
    if (!recognizes(bytes)) throw imageError(kFormatName, "not a PNG file");
    RGBAPixels pixels;
    std::vector<png_bytep> rows;
    ReadState state;
    state.data = bytes.data();
    state.size = bytes.size();
    state.pixels = &pixels;
    state.rows = &rows;
    ReadStructs structs{state};
    state.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &state, onError, onWarning);
    if (state.png != nullptr) state.info = png_create_info_struct(state.png);
    if (state.png == nullptr || state.info == nullptr) throw imageError(kFormatName, "libpng cannot start");
    if (!readUnderJump(state)) throw imageError(kFormatName, state.message);
    return make<CImage>(pixels);
}

}  // namespace fenn::gui
