#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "foundation/CObject.h"
#include "gui/image/IImage.h"

namespace fenn::gui {

struct RGBAPixels;

// The image of the toolkit: a cairo ARGB32 image surface and the facts about
// it. Made blank (transparent black, to be drawn into through getSurface) or
// from straight RGBA bytes, which it premultiplies. Sizes outside 1 pixel to
// the decoders' limits (RGBAPixels.h) and surfaces cairo cannot make throw
// CImageConversionError. Ownership and threads as IImage.
class CImage : public CObject, public virtual IImage
{
public:
    explicit CImage(CSize size);
    // rgba holds height rows of width * 4 bytes (red, green, blue, alpha),
    // rowBytes apart; 0 means width * 4. Too few bytes throw CInvalidArgError.
    CImage(CSize size, std::span<const std::uint8_t> rgba, std::size_t rowBytes = 0);
    explicit CImage(const RGBAPixels& pixels);
    ~CImage() override;

    CImage(const CImage&) = delete;
    CImage& operator=(const CImage&) = delete;

    int getWidth() const override { return m_size.width; }
    int getHeight() const override { return m_size.height; }
    CSize getSize() const override { return m_size; }
    int getStride() const override { return m_stride; }
    const std::uint8_t* getPixels() const override { return m_pixels; }
    std::uint32_t getPixel(int x, int y) const override;
    bool hasAlpha() const override { return m_hasAlpha; }
    cairo_surface_t* getSurface() const override { return m_surface; }

    // The pixels for writing by hand. Call markDirty afterwards, so that
    // cairo drops what it cached and hasAlpha is worked out again.
    std::uint8_t* getMutablePixels();
    void markDirty();

    String toString() const override;

private:
    void createSurface();
    // Whether any pixel's alpha is below 255.
    bool findAlpha() const;

    CSize m_size;
    cairo_surface_t* m_surface = nullptr;
    std::uint8_t* m_pixels = nullptr;
    int m_stride = 0;
    bool m_hasAlpha = true;
};

}  // namespace fenn::gui
