#include "gui/image/CImageDecoderBase.h"

#include <algorithm>

#include "gui/image/RGBAPixels.h"

namespace fenn::gui {

namespace {

// Files are read in pieces of this size until the stream ends.
constexpr std::int32_t kReadPiece = 64 * 1024;

}  // namespace

P<IImage> CImageDecoderBase::decodeStream(IInStream& stream) const
{
    const std::vector<std::uint8_t> bytes = readImageFile(stream);
    return decode(bytes);
}

std::vector<std::uint8_t> CImageDecoderBase::readImageFile(IInStream& stream)
{
    std::vector<std::uint8_t> bytes;
    for (;;) {
        const std::size_t filled = bytes.size();
        bytes.resize(filled + kReadPiece);
        const std::int32_t got = stream.readSome(bytes.data() + filled, kReadPiece);
        bytes.resize(filled + static_cast<std::size_t>(std::max(got, 0)));
        if (got <= 0) return bytes;
        if (static_cast<std::int64_t>(bytes.size()) > kMaxEncodedImageBytes) {
            throw imageError("image", "the file is too large");
        }
    }
}

}  // namespace fenn::gui
