// The splash picture, the package's preview picture and the wave motif they
// share with the wizard band and the program icon.

#include <cmath>
#include <numbers>

#include "PaintKit.h"

namespace skinpainter {

namespace {

constexpr int kSplashWidth = 480;
constexpr int kSplashHeight = 300;
// The splash's bottom band stays plain: the program writes its loading message
// there.
constexpr int kSplashBandHeight = 20;

struct Wave
{
    double amplitude;  // of half the box height
    double cycles;     // across the box
    double phase;      // radians
    double width;
    double alpha;
};

// Three curves of different pitch under one envelope that swells in the
// middle, read as a sound wave rather than as a plain sine.
constexpr Wave kWaves[] = {{1.0, 2.25, 0.0, 2.0, 1.0}, {0.7, 3.1, 1.9, 1.5, 0.55}, {0.45, 1.6, 3.7, 1.0, 0.35}};
constexpr int kWaveSamplesPerPixel = 1;

void traceWave(cairo_t* cairo, const Box& box, const Wave& wave)
{
    const int samples = int(box.width) * kWaveSamplesPerPixel;
    cairo_new_path(cairo);
    for (int sample = 0; sample <= samples; ++sample) {
        const double u = double(sample) / samples;
        const double envelope = 0.25 + 0.75 * std::sin(std::numbers::pi * u);
        const double y = box.centreY() + wave.amplitude * envelope * box.height / 2 *
                                             std::sin(2 * std::numbers::pi * wave.cycles * u + wave.phase);
        const double x = box.x + u * box.width;
        sample == 0 ? cairo_move_to(cairo, x, y) : cairo_line_to(cairo, x, y);
    }
}

void drawSplash(Painter& painter)
{
    cairo_t* cairo = painter.cairo();
    const Box bounds = painter.bounds();
    const Box picture = bounds.inset(0, 0, 0, kSplashBandHeight);
    cairo_rectangle(cairo, picture.x, picture.y, picture.width, picture.height);
    painter.fillVertical(picture, palette::white, palette::accentSoft.mixedWith(palette::white, 0.35));

    // A translucent swell of accent behind the lines, wider than the picture
    // so it runs off both sides.
    cairo_new_path(cairo);
    cairo_move_to(cairo, 0, picture.bottom());
    for (int x = 0; x <= kSplashWidth; x += 2) {
        const double u = double(x) / kSplashWidth;
        cairo_line_to(cairo, x, 212 - 26 * std::sin(2 * std::numbers::pi * (0.8 * u + 0.1)) - 10 * u);
    }
    cairo_line_to(cairo, kSplashWidth, picture.bottom());
    cairo_close_path(cairo);
    painter.fill(palette::accent.withAlpha(0.07));

    drawWaves(painter, {150, 150, 330, 90}, palette::accent.withAlpha(0.85), true);

    const double titleWidth =
        painter.text("Tonebench", {40, 62, 400, 48}, 40, FontWeight::bold, palette::text, Align::start, Align::start);
    painter.text("3", {40 + titleWidth + 10, 62, 60, 48}, 40, FontWeight::bold, palette::accent, Align::start,
                 Align::start);
    painter.roundedRect({42, 122, 36, 3}, 1.5);
    painter.fill(palette::accent);
    painter.text("by Quorrel", {42, 136, 300, 20}, 15, FontWeight::normal, palette::textSecondary, Align::start,
                 Align::start);

    cairo_new_path(cairo);
    cairo_rectangle(cairo, 0, picture.bottom(), bounds.width, kSplashBandHeight);
    painter.fill(palette::windowBackground);
    cairo_rectangle(cairo, 0, picture.bottom(), bounds.width, 1);
    painter.fill(palette::border);
}

// The preview: a small window with the skin's button, check box, slider and
// field, to show the package in a skin chooser.
void drawPreview(Painter& painter)
{
    cairo_t* cairo = painter.cairo();
    const Box bounds = painter.bounds();
    cairo_rectangle(cairo, 0, 0, bounds.width, bounds.height);
    painter.fill(palette::windowBackground);

    const Box panel = bounds.inset(12, 10, 12, 14);
    painter.softShadow(panel.moved(0, 2), 8, 6, palette::shadow);
    painter.roundedRect(panel.inset(0.5), 7.5);
    painter.fill(palette::panelBackground, true);
    painter.stroke(palette::gridLine, 1);

    const Box band{panel.x + 1, panel.y + 1, panel.width - 2, 30};
    painter.roundedRect(band, 7, 7, 0, 0);
    painter.fillVertical(band, palette::panelBackground, palette::accentSoft.mixedWith(palette::white, 0.45));
    drawWaves(painter, band.inset(70, 6, 8, 6), palette::accent.withAlpha(0.6), true);
    painter.text("Default", band.inset(12, 0, 0, 0), 12, FontWeight::bold, palette::text, Align::start);

    const Box checkBox{panel.x + 14, panel.y + 46, 16, 16};
    drawCheckBox(painter, checkBox, 1, false, true);
    painter.text("Option", {checkBox.right() + 7, checkBox.y, 80, checkBox.height}, 11, FontWeight::normal,
                 palette::text, Align::start);

    const Box track{panel.x + 14, panel.y + 79, panel.width - 28, 4};
    painter.roundedRect(track, 2);
    painter.fill(palette::border.mixedWith(palette::windowBackground, 0.35));
    const double thumbX = track.x + track.width * 0.6;
    painter.roundedRect({track.x, track.y, thumbX - track.x, track.height}, 2);
    painter.fill(palette::accent);
    painter.softShadow({thumbX - 6, track.centreY() - 5, 12, 12}, 6, 2, palette::shadow.withAlpha(0.3));
    painter.circle(thumbX, track.centreY(), 5.5);
    painter.fill(palette::white, true);
    painter.stroke(palette::border, 1);

    const Box button{panel.right() - 88, panel.bottom() - 36, 76, 28};
    drawButtonCard(painter, button, 0, 0, true);
    painter.text("Button", button.inset(0, 0, 0, 1), 11, FontWeight::normal, palette::text);
}

}  // namespace

void drawWaves(Painter& painter, const Box& box, const Colour& colour, bool fadeIn)
{
    cairo_t* cairo = painter.cairo();
    for (const Wave& wave : kWaves) {
        traceWave(cairo, box, wave);
        const Colour strong = colour.withAlpha(colour.alpha * wave.alpha);
        cairo_pattern_t* pattern = cairo_pattern_create_linear(box.x, 0, box.right(), 0);
        cairo_pattern_add_color_stop_rgba(pattern, 0, strong.red, strong.green, strong.blue, fadeIn ? 0 : strong.alpha);
        cairo_pattern_add_color_stop_rgba(pattern, fadeIn ? 0.45 : 0, strong.red, strong.green, strong.blue,
                                          strong.alpha);
        cairo_pattern_add_color_stop_rgba(pattern, 1, strong.red, strong.green, strong.blue, strong.alpha);
        cairo_set_source(cairo, pattern);
        cairo_pattern_destroy(pattern);
        cairo_set_line_width(cairo, wave.width);
        cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
        cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
        cairo_stroke(cairo);
    }
}

void addSplashImages(ImageList& images)
{
    images.push_back({"splash", kSplashWidth, kSplashHeight, 1, [](Painter& painter, int) { drawSplash(painter); }});
    images.push_back({"preview", 240, 150, 1, [](Painter& painter, int) { drawPreview(painter); }});
}

}  // namespace skinpainter
