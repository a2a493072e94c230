#include "PaintKit.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <vector>

namespace skinpainter {

namespace {

constexpr double kPi = 3.14159265358979323846;
// Three box blurs in a row come close to a Gaussian; each box reaches a third
// of the spread, so the three together reach the whole of it.
constexpr int kBlurPasses = 3;

struct CairoDeleter
{
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* cairo) const { cairo_destroy(cairo); }
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
    void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
    void operator()(PangoLayout* layout) const { g_object_unref(layout); }
    void operator()(PangoFontDescription* description) const { pango_font_description_free(description); }
};

template <typename T> using Owned = std::unique_ptr<T, CairoDeleter>;

void setSource(cairo_t* cairo, const Colour& colour)
{
    cairo_set_source_rgba(cairo, colour.red, colour.green, colour.blue, colour.alpha);
}

void addStop(cairo_pattern_t* pattern, double offset, const Colour& colour)
{
    cairo_pattern_add_color_stop_rgba(pattern, offset, colour.red, colour.green, colour.blue, colour.alpha);
}

// One box blur of radius `radius` along rows (step 1) or columns (step
// stride) of an A8 image, rounding to nearest so repeated runs agree.
void boxBlur(std::uint8_t* data, int lineCount, int lineLength, int lineStep, int pixelStep, int radius)
{
    std::vector<int> line(static_cast<std::size_t>(lineLength));
    const int window = 2 * radius + 1;
    for (int lineIndex = 0; lineIndex < lineCount; ++lineIndex) {
        std::uint8_t* start = data + std::ptrdiff_t(lineIndex) * lineStep;
        for (int i = 0; i < lineLength; ++i) line[std::size_t(i)] = start[std::ptrdiff_t(i) * pixelStep];
        int sum = 0;
        for (int i = -radius; i <= radius; ++i)
            if (i >= 0 && i < lineLength) sum += line[std::size_t(i)];
        for (int i = 0; i < lineLength; ++i) {
            start[std::ptrdiff_t(i) * pixelStep] = std::uint8_t((sum + window / 2) / window);
            const int leaving = i - radius;
            const int entering = i + radius + 1;
            if (leaving >= 0) sum -= line[std::size_t(leaving)];
            if (entering < lineLength) sum += line[std::size_t(entering)];
        }
    }
}

void checkStatus(cairo_status_t status, const std::string& what)
{
    if (status != CAIRO_STATUS_SUCCESS) throw std::runtime_error(what + ": " + cairo_status_to_string(status));
}

}  // namespace

Colour Colour::mixedWith(const Colour& other, double amount) const
{
    const auto mix = [amount](double a, double b) { return a + (b - a) * amount; };
    return {mix(red, other.red), mix(green, other.green), mix(blue, other.blue), mix(alpha, other.alpha)};
}

double easeInOut(double t)
{
    t = std::clamp(t, 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

Painter::Painter(cairo_t* cairo, int scale, int width, int height)
    : m_cairo(cairo), m_scale(scale), m_width(width), m_height(height)
{
}

void Painter::roundedRect(const Box& box, double radius)
{
    roundedRect(box, radius, radius, radius, radius);
}

void Painter::roundedRect(const Box& box, double topLeft, double topRight, double bottomRight, double bottomLeft)
{
    // Corners wider than half the box would cross; a radius of 0 is a
    // square corner (cairo_arc then only draws a line to the point).
    const double limit = std::min(box.width, box.height) / 2;
    cairo_new_path(m_cairo);
    const double tl = std::min(topLeft, limit);
    const double tr = std::min(topRight, limit);
    const double br = std::min(bottomRight, limit);
    const double bl = std::min(bottomLeft, limit);
    cairo_new_sub_path(m_cairo);
    cairo_arc(m_cairo, box.right() - tr, box.y + tr, tr, -kPi / 2, 0);
    cairo_arc(m_cairo, box.right() - br, box.bottom() - br, br, 0, kPi / 2);
    cairo_arc(m_cairo, box.x + bl, box.bottom() - bl, bl, kPi / 2, kPi);
    cairo_arc(m_cairo, box.x + tl, box.y + tl, tl, kPi, 3 * kPi / 2);
    cairo_close_path(m_cairo);
}

void Painter::circle(double centreX, double centreY, double radius)
{
    cairo_new_path(m_cairo);
    cairo_arc(m_cairo, centreX, centreY, radius, 0, 2 * kPi);
    cairo_close_path(m_cairo);
}

void Painter::path(std::string_view commands)
{
    std::size_t position = 0;
    const auto skipSeparators = [&] {
        while (position < commands.size() &&
               (commands[position] == ' ' || commands[position] == ',' || commands[position] == '\n'))
            ++position;
    };
    const auto number = [&] {
        skipSeparators();
        double value = 0;
        const char* first = commands.data() + position;
        const char* last = commands.data() + commands.size();
        const auto [end, error] = std::from_chars(first, last, value);
        if (error != std::errc())
            throw std::invalid_argument("icon path: number expected at " + std::to_string(position) + " in \"" +
                                        std::string(commands) + "\"");
        position += std::size_t(end - first);
        return value;
    };

    cairo_new_path(m_cairo);
    while (true) {
        skipSeparators();
        if (position >= commands.size()) break;
        const char command = commands[position++];
        switch (command) {
        case 'M': {
            const double x = number();
            cairo_move_to(m_cairo, x, number());
            break;
        }
        case 'L': {
            const double x = number();
            cairo_line_to(m_cairo, x, number());
            break;
        }
        case 'H': {
            double y = 0;
            cairo_get_current_point(m_cairo, nullptr, &y);
            cairo_line_to(m_cairo, number(), y);
            break;
        }
        case 'V': {
            double x = 0;
            cairo_get_current_point(m_cairo, &x, nullptr);
            cairo_line_to(m_cairo, x, number());
            break;
        }
        case 'C': {
            double values[6];
            for (double& value : values) value = number();
            cairo_curve_to(m_cairo, values[0], values[1], values[2], values[3], values[4], values[5]);
            break;
        }
        case 'A': {
            double values[5];
            for (double& value : values) value = number();
            cairo_arc(m_cairo, values[0], values[1], values[2], values[3] * kPi / 180, values[4] * kPi / 180);
            break;
        }
        case 'Z':
            cairo_close_path(m_cairo);
            break;
        default:
            throw std::invalid_argument("icon path: unknown command '" + std::string(1, command) + "' in \"" +
                                        std::string(commands) + "\"");
        }
    }
}

void Painter::fill(const Colour& colour, bool keep)
{
    setSource(m_cairo, colour);
    keep ? cairo_fill_preserve(m_cairo) : cairo_fill(m_cairo);
}

void Painter::fillVertical(const Box& span, const Colour& top, const Colour& bottom, bool keep)
{
    const Owned<cairo_pattern_t> pattern(cairo_pattern_create_linear(0, span.y, 0, span.bottom()));
    addStop(pattern.get(), 0, top);
    addStop(pattern.get(), 1, bottom);
    cairo_set_source(m_cairo, pattern.get());
    keep ? cairo_fill_preserve(m_cairo) : cairo_fill(m_cairo);
}

void Painter::fillHorizontal(const Box& span, const Colour& left, const Colour& right, bool keep)
{
    const Owned<cairo_pattern_t> pattern(cairo_pattern_create_linear(span.x, 0, span.right(), 0));
    addStop(pattern.get(), 0, left);
    addStop(pattern.get(), 1, right);
    cairo_set_source(m_cairo, pattern.get());
    keep ? cairo_fill_preserve(m_cairo) : cairo_fill(m_cairo);
}

void Painter::stroke(const Colour& colour, double width, bool keep)
{
    setSource(m_cairo, colour);
    cairo_set_line_width(m_cairo, width);
    cairo_set_line_cap(m_cairo, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(m_cairo, CAIRO_LINE_JOIN_ROUND);
    keep ? cairo_stroke_preserve(m_cairo) : cairo_stroke(m_cairo);
}

void Painter::softShadow(const Box& box, double radius, double spread, const Colour& colour)
{
    // The shape is drawn into an alpha-only image of the frame at output
    // resolution, with room around it for the blur to run out, blurred there
    // and used as a mask for the shadow colour.
    const int padding = int(std::ceil(spread)) + 1;
    const int pixelWidth = (m_width + 2 * padding) * m_scale;
    const int pixelHeight = (m_height + 2 * padding) * m_scale;
    const Owned<cairo_surface_t> mask(cairo_image_surface_create(CAIRO_FORMAT_A8, pixelWidth, pixelHeight));
    {
        const Owned<cairo_t> maskCairo(cairo_create(mask.get()));
        cairo_scale(maskCairo.get(), m_scale, m_scale);
        cairo_translate(maskCairo.get(), padding, padding);
        Painter maskPainter(maskCairo.get(), m_scale, m_width, m_height);
        maskPainter.roundedRect(box, radius);
        maskPainter.fill(palette::white);
    }
    cairo_surface_flush(mask.get());
    const int boxRadius = std::max(1, int(std::lround(spread * m_scale / (2 * kBlurPasses))));
    std::uint8_t* data = cairo_image_surface_get_data(mask.get());
    const int stride = cairo_image_surface_get_stride(mask.get());
    for (int pass = 0; pass < kBlurPasses; ++pass) {
        boxBlur(data, pixelHeight, pixelWidth, stride, 1, boxRadius);
        boxBlur(data, pixelWidth, pixelHeight, 1, stride, boxRadius);
    }
    cairo_surface_mark_dirty(mask.get());

    const Owned<cairo_pattern_t> pattern(cairo_pattern_create_for_surface(mask.get()));
    cairo_matrix_t matrix;
    cairo_matrix_init_scale(&matrix, m_scale, m_scale);
    cairo_matrix_translate(&matrix, padding, padding);
    cairo_pattern_set_matrix(pattern.get(), &matrix);
    setSource(m_cairo, colour);
    cairo_mask(m_cairo, pattern.get());
}

double Painter::text(std::string_view text, const Box& box, double pixelSize, FontWeight weight, const Colour& colour,
                     Align horizontal, Align vertical)
{
    const Owned<PangoLayout> layout(pango_cairo_create_layout(m_cairo));
    PangoContext* context = pango_layout_get_context(layout.get());
    // No hinting and unrounded glyph positions: the 2x text is then the 1x
    // text drawn twice as large, and the output does not depend on the
    // desktop's font settings.
    const Owned<cairo_font_options_t> options(cairo_font_options_create());
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(context, options.get());
    pango_context_set_round_glyph_positions(context, FALSE);
    pango_layout_context_changed(layout.get());

    const Owned<PangoFontDescription> font(pango_font_description_new());
    pango_font_description_set_family(font.get(), kFontFamily);
    pango_font_description_set_weight(font.get(), weight == FontWeight::bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
    pango_font_description_set_absolute_size(font.get(), pixelSize * PANGO_SCALE);
    pango_layout_set_font_description(layout.get(), font.get());
    pango_layout_set_text(layout.get(), text.data(), int(text.size()));

    PangoRectangle ink;
    PangoRectangle logical;
    pango_layout_get_extents(layout.get(), &ink, &logical);
    const double width = double(logical.width) / PANGO_SCALE;
    // Vertical placement goes by the ink so capitals sit where they look
    // centred, whatever the font's line gap.
    const double inkTop = double(ink.y) / PANGO_SCALE;
    const double inkHeight = double(ink.height) / PANGO_SCALE;
    const auto place = [](Align align, double start, double room, double size) {
        switch (align) {
        case Align::start:
            return start;
        case Align::end:
            return start + room - size;
        case Align::centre:
            break;
        }
        return start + (room - size) / 2;
    };
    const double x = place(horizontal, box.x, box.width, width);
    const double y = place(vertical, box.y, box.height, inkHeight) - inkTop;
    cairo_move_to(m_cairo, x, y);
    setSource(m_cairo, colour);
    pango_cairo_show_layout(m_cairo, layout.get());
    cairo_new_path(m_cairo);
    return width;
}

void writeImage(const ImageJob& job, const std::string& folder, int scale)
{
    const std::filesystem::path path =
        std::filesystem::path(folder) / (job.name + (scale == 1 ? ".png" : "@" + std::to_string(scale) + "x.png"));
    std::filesystem::create_directories(path.parent_path());

    const Owned<cairo_surface_t> surface(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, job.width * job.frames * scale, job.height * scale));
    checkStatus(cairo_surface_status(surface.get()), job.name);
    const Owned<cairo_t> cairo(cairo_create(surface.get()));
    cairo_scale(cairo.get(), scale, scale);
    for (int frame = 0; frame < job.frames; ++frame) {
        cairo_save(cairo.get());
        cairo_translate(cairo.get(), double(frame) * job.width, 0);
        cairo_rectangle(cairo.get(), 0, 0, job.width, job.height);
        cairo_clip(cairo.get());
        cairo_new_path(cairo.get());
        Painter painter(cairo.get(), scale, job.width, job.height);
        job.draw(painter, frame);
        cairo_restore(cairo.get());
    }
    checkStatus(cairo_status(cairo.get()), job.name);
    cairo_surface_flush(surface.get());
    checkStatus(cairo_surface_write_to_png(surface.get(), path.c_str()), path.string());
}

}  // namespace skinpainter
