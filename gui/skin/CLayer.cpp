#include "gui/skin/CLayer.h"

#include <pango/pango.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>

#include "foundation/CException.h"
#include "foundation/TCast.h"
#include "gui/CFrameWindow.h"
#include "gui/CWindow.h"
#include "gui/image/CAnimation.h"
#include "gui/image/CImage.h"
#include "gui/image/CImageDecoderRegistry.h"
#include "gui/image/CStillAnimation.h"
#include "gui/skin/CLayerState.h"

namespace fenn::gui::skin {

namespace {

// Frames at this scale factor and above use the @2x images.
constexpr double kHighResScale = 1.5;

// "dir/name.png" -> "dir/name@2x.png"; empty when the name has no extension.
String highResName(const String& path)
{
    const std::string text = path.toStdString();
    const std::size_t dot = text.rfind('.');
    const std::size_t slash = text.rfind('/');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return String();
    return String::copyOf(text.substr(0, dot) + "@2x" + text.substr(dot));
}

}  // namespace

CRect CLayer::getRect(CSize windowSize) const
{
    const LayerGeometry& g = m_geometry;
    const int x0 = g.left + static_cast<int>(std::lround(g.leftFactor * windowSize.width));
    const int y0 = g.top + static_cast<int>(std::lround(g.topFactor * windowSize.height));
    const int x1 = windowSize.width - (g.right + static_cast<int>(std::lround(g.rightFactor * windowSize.width)));
    const int y1 = windowSize.height - (g.bottom + static_cast<int>(std::lround(g.bottomFactor * windowSize.height)));
    return {x0, y0, std::max(0, x1 - x0), std::max(0, y1 - y0)};
}

CSize CLayer::getPreferredSize(const ITextSource& source, double scale) const
{
    const LayerGeometry& g = m_geometry;
    const CSize content = getContentSize(source, scale);
    // Only the fixed offsets of a layer anchored to both sides add to its
    // size; a layer placed by factors takes its share of whatever it gets.
    const int fixedX = g.leftFactor == 0.0 && g.rightFactor == 0.0 ? g.left + g.right : 0;
    const int fixedY = g.topFactor == 0.0 && g.bottomFactor == 0.0 ? g.top + g.bottom : 0;
    CSize size{std::max(0, content.width + g.contentMargins.horizontal() + fixedX),
               std::max(0, content.height + g.contentMargins.vertical() + fixedY)};
    if (g.minWidth >= 0) size.width = g.minWidth;
    if (g.minHeight >= 0) size.height = g.minHeight;
    return size;
}

CRect CLayer::alignContent(const CRect& area, CSize content) const
{
    int x = area.x;
    if (m_geometry.halign == TextAlign::center)
        x += (area.width - content.width) / 2;
    else if (m_geometry.halign == TextAlign::right)
        x += area.width - content.width;
    int y = area.y;
    if (m_geometry.valign == VerticalAlign::center)
        y += (area.height - content.height) / 2;
    else if (m_geometry.valign == VerticalAlign::bottom)
        y += area.height - content.height;
    return {x, y, content.width, content.height};
}

// ---- CAnimationLayer ----

CAnimationLayer::CAnimationLayer(const LayerGeometry& geometry, const ImageOptions& options, P<IAnimation> animation,
                                 P<IAnimation> highRes)
    : CLayer(geometry), m_options(options), m_animation(std::move(animation)), m_highRes(std::move(highRes))
{
}

CAnimationLayer::CAnimationLayer(const LayerGeometry& geometry, const ImageOptions& options, const String& uriProperty,
                                 int frames, int delay, const String& folder, P<CImageCache> cache)
    : CLayer(geometry), m_options(options), m_uriProperty(uriProperty), m_frames(frames), m_delay(delay),
      m_folder(folder), m_cache(std::move(cache))
{
}

bool CAnimationLayer::usesProperty(const String& name) const
{
    return !m_uriProperty.isEmpty() && m_uriProperty == name;
}

CURI CAnimationLayer::resolvePropertyURI(const String& value) const
{
    if (value.startsWith("/")) return CURI::fromPath(value);
    const CURI uri(value);
    // A one-letter "scheme" is no scheme here; nothing on this system names
    // files that way, so such a value is a relative path with a colon.
    if (uri.hasScheme() && uri.getScheme().getLength() > 1) return uri;
    std::error_code error;
    const std::filesystem::path path = std::filesystem::absolute((m_folder + "/" + value).toStdString(), error);
    return CURI::fromPath(String::copyOf(error ? (m_folder + "/" + value).toStdString() : path.string()));
}

P<IImage> CAnimationLayer::readImage(const CURI& uri) const
{
    const String id = uri.toString();
    if (m_cache) {
        if (P<IImage> cached = m_cache->get(id)) return cached;
    }
    const P<IImage> image = decodeImage(uri);
    if (m_cache && image) m_cache->put(id, image);
    return image;
}

P<IImage> CAnimationLayer::readPropertyImage(const CWindow& window, int& ratio) const
{
    ratio = 1;
    CWindow& source = const_cast<CWindow&>(window);
    const P<IBase> value = source.getProperties().getValue(m_uriProperty);
    if (!value) return nullptr;
    // The application may hand over a decoded image rather than its name.
    if (IImage* image = TCast<IImage>(value.get())) return P<IImage>(image);
    const String text = source.getProperties().getString(m_uriProperty, String());
    if (text.isEmpty()) return nullptr;
    const CURI uri = resolvePropertyURI(text);
    const CFrameWindow* frame = window.getFrame();
    if (frame && frame->getScaleFactor() >= kHighResScale) {
        const String twin = highResName(uri.toString());
        if (!twin.isEmpty()) {
            try {
                if (P<IImage> large = readImage(CURI(twin))) {
                    ratio = 2;
                    return large;
                }
            } catch (const CException&) {
                // No twin, or one that cannot be read: the 1x image serves.
            }
        }
    }
    return readImage(uri);
}

CSize CAnimationLayer::getContentSize(const ITextSource&, double) const
{
    if (!m_animation) return {};
    return m_animation->getFrame(0)->getSize();
}

P<ILayerState> CAnimationLayer::createState(CWindow& window, const P<ITextSource>&, CSize windowSize,
                                            std::int64_t now) const
{
    P<IAnimation> animation = m_animation;
    int ratio = 1;
    const CFrameWindow* frame = window.getFrame();
    if (m_highRes && frame && frame->getScaleFactor() >= kHighResScale) {
        animation = m_highRes;
        ratio = 2;
    }
    if (!m_uriProperty.isEmpty()) {
        // The property comes from the application or a layout file: an image
        // that cannot be read leaves the layer empty rather than failing the
        // window that shows it.
        try {
            const P<IImage> image = readPropertyImage(window, ratio);
            animation = image ? cutStrip(image, m_frames, m_delay) : nullptr;
        } catch (const CException&) {
            animation = nullptr;
            ratio = 1;
        }
    }
    return make<CAnimationLayerState>(P<const CAnimationLayer>(this), animation, ratio, getRect(windowSize), now);
}

// ---- CTextLayer ----

CTextLayer::CTextLayer(const LayerGeometry& geometry, const TextOptions& options) : CLayer(geometry), m_options(options)
{
}

P<CFont> CTextLayer::makeFont(const P<CFont>& windowFont) const
{
    if (!m_options.fontName && !m_options.fontSize && !m_options.bold) return windowFont;
    const String family = m_options.fontName.value_or(windowFont->getFamily());
    const double size = m_options.fontSize ? *m_options.fontSize * 96.0 / 72.0 : windowFont->getPixelSize();
    const FontWeight weight =
        m_options.bold ? (*m_options.bold ? FontWeight::bold : FontWeight::normal) : windowFont->getWeight();
    return make<CFont>(family, size, weight);
}

void CTextLayer::styleLayout(CTextLayout& layout) const
{
    PangoLayout* pango = layout.getPangoLayout();
    pango_layout_set_spacing(pango, m_options.lineSpacing * PANGO_SCALE);
    PangoAttrList* attributes = pango_attr_list_new();
    // Attributes without a range cover the whole text.
    if (m_options.italics) pango_attr_list_insert(attributes, pango_attr_style_new(PANGO_STYLE_ITALIC));
    if (m_options.underline) pango_attr_list_insert(attributes, pango_attr_underline_new(PANGO_UNDERLINE_SINGLE));
    if (m_options.strikeout) pango_attr_list_insert(attributes, pango_attr_strikethrough_new(TRUE));
    pango_layout_set_attributes(pango, attributes);
    pango_attr_list_unref(attributes);
}

CSize CTextLayer::getContentSize(const ITextSource& source, double) const
{
    const String text = source.getText();
    if (text.isEmpty()) return {};
    CTextLayout layout(makeFont(source.getFont()), text);
    styleLayout(layout);
    return layout.getSize();
}

P<ILayerState> CTextLayer::createState(CWindow&, const P<ITextSource>& source, CSize windowSize, std::int64_t now) const
{
    return make<CTextLayerState>(P<const CTextLayer>(this), source, getRect(windowSize), now);
}

// ---- strips ----

P<IAnimation> cutStrip(const P<IImage>& image, int frames, int delay)
{
    if (!image || frames < 1 || frames > image->getWidth() || delay < 0) return nullptr;
    if (frames == 1) return make<CStillAnimation>(image);
    const int width = image->getWidth() / frames;
    const int height = image->getHeight();
    P<CAnimation> animation;
    for (int index = 0; index < frames; ++index) {
        auto frame = make<CImage>(CSize{width, height});
        std::uint8_t* target = frame->getMutablePixels();
        const std::uint8_t* source = image->getPixels();
        for (int row = 0; row < height; ++row) {
            std::memcpy(target + static_cast<std::size_t>(row) * frame->getStride(),
                        source + static_cast<std::size_t>(row) * image->getStride() +
                            static_cast<std::size_t>(index) * width * 4,
                        static_cast<std::size_t>(width) * 4);
        }
        frame->markDirty();
        if (!animation)
            animation = make<CAnimation>(frame, delay, 1);
        else
            animation->addFrame(frame, delay);
    }
    return animation;
}

}  // namespace fenn::gui::skin
