#include "gui/CFont.h"

#include <pango/pangocairo.h>

#include <cmath>
#include <mutex>

namespace fenn::gui {

PangoContext* sharedPangoContext()
{
    // One context for measuring and drawing, never changed by a draw: text
    // measures the same before and after it is painted, at every scale.
    // Metrics are not hinted, so sizes scale exactly with the frame.
    static PangoContext* context = [] {
        PangoContext* made = pango_font_map_create_context(pango_cairo_font_map_get_default());
        cairo_font_options_t* options = cairo_font_options_create();
        cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
        cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_SLIGHT);
        cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
        pango_cairo_context_set_font_options(made, options);
        cairo_font_options_destroy(options);
        pango_cairo_context_set_resolution(made, 96.0);
        return made;
    }();
    return context;
}

namespace {

PangoLayout* scratchLayout()
{
    static PangoLayout* layout = pango_layout_new(sharedPangoContext());
    return layout;
}

}  // namespace

CFont::CFont(const String& family, double pixelSize, FontWeight weight)
    : m_family(family), m_pixelSize(pixelSize), m_weight(weight), m_description(pango_font_description_new())
{
    pango_font_description_set_family(m_description, family.c_str());
    pango_font_description_set_absolute_size(m_description, pixelSize * PANGO_SCALE);
    pango_font_description_set_weight(m_description,
                                      weight == FontWeight::bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
}

CFont::~CFont()
{
    pango_font_description_free(m_description);
}

P<CFont> CFont::getDefault()
{
    static const P<CFont> font = make<CFont>();
    return font;
}

P<CFont> CFont::getDefaultBold()
{
    static const P<CFont> font = make<CFont>("Sans", kDefaultPixelSize, FontWeight::bold);
    return font;
}

P<CFont> CFont::withWeight(FontWeight weight) const
{
    return make<CFont>(m_family, m_pixelSize, weight);
}

P<CFont> CFont::withPixelSize(double pixelSize) const
{
    return make<CFont>(m_family, pixelSize, m_weight);
}

CSize CFont::measureText(const String& text) const
{
    PangoLayout* layout = scratchLayout();
    pango_layout_set_font_description(layout, m_description);
    pango_layout_set_width(layout, -1);
    const String utf8 = text.asUTF8();
    pango_layout_set_text(layout, utf8.getData(), utf8.getByteSize());
    int width = 0;
    int height = 0;
    pango_layout_get_pixel_size(layout, &width, &height);
    return {width, height};
}

int CFont::getLineHeight() const
{
    if (m_lineHeight < 0) m_lineHeight = measureText("Xg").height;
    return m_lineHeight;
}

}  // namespace fenn::gui
