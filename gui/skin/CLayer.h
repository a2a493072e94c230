#pragma once

#include <optional>

#include "foundation/CObject.h"
#include "foundation/CURI.h"
#include "gui/CTextLayout.h"
#include "gui/image/CImageCache.h"
#include "gui/image/IAnimation.h"
#include "gui/skin/ILayer.h"

namespace fenn::gui::skin {

enum class VerticalAlign {
    top,
    center,
    bottom,
};

// What every layer has: paint order, its rectangle relative to the window's
// edges, content alignment and margins, opacity and minimum size. Filled by
// the package parser, then immutable.
struct LayerGeometry
{
    int order = 0;
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    double leftFactor = 0.0;
    double topFactor = 0.0;
    double rightFactor = 0.0;
    double bottomFactor = 0.0;
    TextAlign halign = TextAlign::center;
    VerticalAlign valign = VerticalAlign::center;
    double opacity = 1.0;
    SkinMargins contentMargins;
    // -1 where unset.
    int minWidth = -1;
    int minHeight = -1;
};

// The shared part of the two layer kinds: geometry, rectangle and size.
class CLayer : public CObject, public virtual ILayer
{
public:
    explicit CLayer(const LayerGeometry& geometry) : m_geometry(geometry) {}

    const LayerGeometry& getGeometry() const { return m_geometry; }
    int getOrder() const override { return m_geometry.order; }
    CRect getRect(CSize windowSize) const override;
    CSize getPreferredSize(const ITextSource& source, double scale) const override;
    bool usesProperty(const String&) const override { return false; }

    // Where content of a size sits in area, by the layer's alignment.
    CRect alignContent(const CRect& area, CSize content) const;

protected:
    // The size of what the layer shows, before margins.
    virtual CSize getContentSize(const ITextSource& source, double scale) const = 0;

private:
    LayerGeometry m_geometry;
};

// How an image layer draws its picture.
struct ImageOptions
{
    // Nine-patch margins in pixels of the 1x image; none stretches the whole image.
    std::optional<SkinMargins> scaleMargins;
    // Keep the image's own size and place it by the alignment.
    bool noScale = false;
};

// A layer that shows an image or an animation: from the package's file
// (with its @2x twin when there is one), or from a window property naming
// an image, read when a state is made. The property holds an image object,
// a URI, an absolute path, or a path relative to the package's folder; its
// "<name>@2x" twin is used in frames scaled 1.5 or more when it exists.
class CAnimationLayer : public CLayer
{
public:
    // From a file of the package; highRes may be null.
    CAnimationLayer(const LayerGeometry& geometry, const ImageOptions& options, P<IAnimation> animation,
                    P<IAnimation> highRes);
    // From the window property named uriProperty; frames and delay cut the
    // image the way the package's files are cut. Relative paths resolve
    // against folder; decoded images are kept in cache (may be null).
    CAnimationLayer(const LayerGeometry& geometry, const ImageOptions& options, const String& uriProperty, int frames,
                    int delay, const String& folder, P<CImageCache> cache);

    const ImageOptions& getOptions() const { return m_options; }
    const P<IAnimation>& getAnimation() const { return m_animation; }
    const P<IAnimation>& getHighResAnimation() const { return m_highRes; }
    const String& getURIProperty() const { return m_uriProperty; }

    bool isTextLayer() const override { return false; }
    bool usesProperty(const String& name) const override;
    P<ILayerState> createState(CWindow& window, const P<ITextSource>& source, CSize windowSize,
                               std::int64_t now) const override;
    // The URI a property value names: relative paths are taken from the
    // package's folder.
    CURI resolvePropertyURI(const String& value) const;

protected:
    CSize getContentSize(const ITextSource& source, double scale) const override;

private:
    // The image a property value names, its @2x twin at high scales (ratio
    // 2); null when there is none or it cannot be read.
    P<IImage> readPropertyImage(const CWindow& window, int& ratio) const;
    P<IImage> readImage(const CURI& uri) const;

    ImageOptions m_options;
    P<IAnimation> m_animation;
    P<IAnimation> m_highRes;
    String m_uriProperty;
    int m_frames = 1;
    int m_delay = 0;
    String m_folder;
    P<CImageCache> m_cache;
};

// How a text layer draws its text. Unset colours and font attributes keep
// the window's.
struct TextOptions
{
    std::optional<CColor> color;
    std::optional<CColor> halo;
    std::optional<CColor> shadow;
    int shadowX = 0;
    int shadowY = 1;
    bool multiline = false;
    int lineSpacing = 0;
    std::optional<String> fontName;
    // In points (1/72 inch at 96 pixels per inch).
    std::optional<double> fontSize;
    std::optional<bool> bold;
    bool italics = false;
    bool underline = false;
    bool strikeout = false;
    // False fills the glyphs without antialiasing: every pixel is the
    // text's colour or untouched, for crisp text on patterned images.
    bool antialias = true;
};

class ITextLayer : public virtual ILayer
{
public:
    virtual const TextOptions& getTextOptions() const = 0;
    // The window's font changed as the layer asks.
    virtual P<CFont> makeFont(const P<CFont>& windowFont) const = 0;
    // Gives a layout of that font the layer's line spacing, italics,
    // underline and strike-out, for measuring and drawing alike.
    virtual void styleLayout(CTextLayout& layout) const = 0;
};

// A layer that draws the text of its text source.
class CTextLayer : public CLayer, public virtual ITextLayer
{
public:
    CTextLayer(const LayerGeometry& geometry, const TextOptions& options);

    const TextOptions& getTextOptions() const override { return m_options; }
    P<CFont> makeFont(const P<CFont>& windowFont) const override;
    void styleLayout(CTextLayout& layout) const override;
    bool isTextLayer() const override { return true; }
    P<ILayerState> createState(CWindow& window, const P<ITextSource>& source, CSize windowSize,
                               std::int64_t now) const override;

protected:
    CSize getContentSize(const ITextSource& source, double scale) const override;

private:
    TextOptions m_options;
};

// Cuts a horizontal strip of equal frames into an animation that plays each
// frame for delay milliseconds once and holds the last; null for a frame
// count below 1 or above the image's width (the caller reports it).
P<IAnimation> cutStrip(const P<IImage>& image, int frames, int delay);

}  // namespace fenn::gui::skin
