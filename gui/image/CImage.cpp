#include "gui/image/CImage.h"

#include <cstring>

#include "foundation/CObjectError.h"
#include "gui/image/RGBAPixels.h"

namespace fenn::gui {

namespace {

constexpr const char* kFormatName = "image";

// Straight RGBA to premultiplied native-endian ARGB32, rounding to nearest.
std::uint32_t premultiply(const std::uint8_t* rgba)
{
    const std::uint32_t alpha = rgba[3];
    auto scale = [alpha](std::uint32_t colour) { return (colour * alpha + 127) / 255; };
    return alpha << 24 | scale(rgba[0]) << 16 | scale(rgba[1]) << 8 | scale(rgba[2]);
}

}  // namespace

CImage::CImage(CSize size) : m_size(size)
{
    createSurface();
}

CImage::CImage(CSize size, std::span<const std::uint8_t> rgba, std::size_t rowBytes) : m_size(size)
{
    checkImageSize(size.width, size.height, kFormatName);
    const std::size_t packedRow = static_cast<std::size_t>(size.width) * 4;
    if (rowBytes == 0) rowBytes = packedRow;
    if (rowBytes < packedRow || rgba.size() < rowBytes * static_cast<std::size_t>(size.height - 1) + packedRow) {
        throw CInvalidArgError(this, "CImage", "rgba");
    }
    createSurface();
    for (int y = 0; y < size.height; ++y) {
        const std::uint8_t* source = rgba.data() + rowBytes * static_cast<std::size_t>(y);
        std::uint8_t* target = m_pixels + static_cast<std::size_t>(m_stride) * static_cast<std::size_t>(y);
        for (int x = 0; x < size.width; ++x) {
            const std::uint32_t word = premultiply(source + x * 4);
            std::memcpy(target + x * 4, &word, 4);
        }
    }
    cairo_surface_mark_dirty(m_surface);
    m_hasAlpha = findAlpha();
}

CImage::CImage(const RGBAPixels& pixels) : CImage({pixels.width, pixels.height}, pixels.bytes) {}

CImage::~CImage()
{
    if (m_surface != nullptr) cairo_surface_destroy(m_surface);
}

void CImage::createSurface()
{
    checkImageSize(m_size.width, m_size.height, kFormatName);
    m_surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, m_size.width, m_size.height);
    if (cairo_surface_status(m_surface) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(m_surface);
        m_surface = nullptr;
        throw imageError(kFormatName, "cairo cannot make a surface of this size");
    }
    // cairo clears a new image surface to transparent black.
    m_pixels = cairo_image_surface_get_data(m_surface);
    m_stride = cairo_image_surface_get_stride(m_surface);
}

std::uint32_t CImage::getPixel(int x, int y) const
{
    if (x < 0 || x >= m_size.width) throw CInvalidArgError(this, "getPixel", "x");
    if (y < 0 || y >= m_size.height) throw CInvalidArgError(this, "getPixel", "y");
    std::uint32_t word = 0;
    std::memcpy(&word, m_pixels + static_cast<std::size_t>(m_stride) * static_cast<std::size_t>(y) + x * 4, 4);
    return word;
}

std::uint8_t* CImage::getMutablePixels()
{
    cairo_surface_flush(m_surface);
    return m_pixels;
}

void CImage::markDirty()
{
    cairo_surface_mark_dirty(m_surface);
    m_hasAlpha = findAlpha();
}

bool CImage::findAlpha() const
{
    for (int y = 0; y < m_size.height; ++y) {
        const std::uint8_t* row = m_pixels + static_cast<std::size_t>(m_stride) * static_cast<std::size_t>(y);
        for (int x = 0; x < m_size.width; ++x) {
            std::uint32_t word = 0;
            std::memcpy(&word, row + x * 4, 4);
            if (word >> 24 != 0xFF) return true;
        }
    }
    return false;
}

String CImage::toString() const
{
    return "CImage " + fromInt(m_size.width) + "x" + fromInt(m_size.height);
}

}  // namespace fenn::gui
