// The images the program's modules load by name: the module backdrop, the
// level meter, the round buttons of list rows, the wave editor's backgrounds
// and split marker, and the wizard's caption band.

#include <cmath>
#include <string>

#include "PaintKit.h"

namespace skinpainter {

namespace {

// Level meter: two bars side by side. Each bar has a lamp at the top that
// the overdrive overlay lights, and below it a column of segments coloured
// green, then yellow, then red towards full scale.
constexpr int kMeterWidth = 36;
constexpr int kMeterHeight = 160;
constexpr double kMeterBarWidth = 11;
constexpr double kMeterBarX[] = {5, 20};
constexpr double kMeterLampTop = 5;
constexpr double kMeterLampHeight = 6;
constexpr double kMeterSegmentsTop = 15;
constexpr double kMeterSegmentsBottom = kMeterHeight - 5;
constexpr double kMeterSegmentPitch = 3;  // a 2-pixel segment and a 1-pixel gap
// Where the yellow and red parts start, as fractions of the scale from the
// bottom: about -12 dB and -3 dB on the usual meter scale.
constexpr double kMeterYellowFrom = 0.62;
constexpr double kMeterRedFrom = 0.86;

Colour meterColour(double fraction)
{
    if (fraction >= kMeterRedFrom) return palette::meterRed;
    if (fraction >= kMeterYellowFrom) {
        const double t = (fraction - kMeterYellowFrom) / (kMeterRedFrom - kMeterYellowFrom);
        return palette::meterYellow.mixedWith(palette::meterRed, t * t * 0.5);
    }
    return palette::meterGreen.mixedWith(palette::meterYellow, std::pow(fraction / kMeterYellowFrom, 3) * 0.4);
}

void drawMeterBackground(Painter& painter)
{
    painter.roundedRect(painter.bounds().inset(0.5), kCornerRadius - 0.5);
    painter.fill(palette::panelBackground, true);
    painter.stroke(palette::border, 1);
    const double span = kMeterSegmentsBottom - kMeterSegmentsTop;
    for (double x : kMeterBarX) {
        painter.roundedRect({x - 1, kMeterLampTop - 1, kMeterBarWidth + 2, kMeterSegmentsBottom - kMeterLampTop + 2},
                            3);
        painter.fill(palette::headerBackground);
        painter.roundedRect({x, kMeterLampTop, kMeterBarWidth, kMeterLampHeight}, 2);
        painter.fill(palette::meterRed.withAlpha(0.18));
        for (double y = kMeterSegmentsBottom - 2; y >= kMeterSegmentsTop; y -= kMeterSegmentPitch) {
            const double fraction = (kMeterSegmentsBottom - y) / span;
            cairo_new_path(painter.cairo());
            cairo_rectangle(painter.cairo(), x, y, kMeterBarWidth, 2);
            painter.fill(meterColour(fraction));
        }
    }
    // Scale marks between the bars at every quarter.
    for (int quarter = 0; quarter <= 4; ++quarter) {
        const double y =
            std::round(kMeterSegmentsBottom - quarter * (kMeterSegmentsBottom - kMeterSegmentsTop) / 4) - 1;
        cairo_new_path(painter.cairo());
        cairo_rectangle(painter.cairo(), 17, y, 2, 1);
        painter.fill(palette::borderHover);
    }
}

void drawOverdrive(Painter& painter)
{
    for (double x : kMeterBarX) {
        const Box lamp{x, kMeterLampTop, kMeterBarWidth, kMeterLampHeight};
        painter.softShadow(lamp, 2, 3, palette::meterRed.withAlpha(0.55));
        painter.roundedRect(lamp, 2);
        painter.fillVertical(lamp, palette::meterRed.mixedWith(palette::white, 0.25), palette::meterRed);
    }
}

// Round list-row buttons: 22 x 22 with a 20-pixel circle.
constexpr int kListButtonSize = 22;
enum class ListButtonState { normal, down, disabled };

void drawListButton(Painter& painter, ListButtonState state, bool stop)
{
    const double c = kListButtonSize / 2.0;
    Colour fill = palette::controlBackground;
    Colour border = palette::border;
    Colour glyph = palette::accent;
    if (state == ListButtonState::down) {
        fill = palette::accent;
        border = palette::accentPressed;
        glyph = palette::accentText;
    } else if (state == ListButtonState::disabled) {
        fill = palette::controlDisabled;
        border = palette::borderDisabled;
        glyph = palette::textDisabled;
    }
    if (state == ListButtonState::normal) painter.softShadow({1, 1.5, 20, 20}, 10, 2, palette::shadow.withAlpha(0.2));
    painter.circle(c, c + (state == ListButtonState::down ? 0.5 : 0), 9.5);
    painter.fill(fill, true);
    painter.stroke(border, 1);
    if (stop)
        painter.roundedRect({c - 3.5, c - 3.5, 7, 7}, 1.5);
    else
        painter.path("M 9 6.8 C 9 6.2 9.6 5.9 10.1 6.2 L 15.6 10.4 C 16 10.7 16 11.3 15.6 11.6 L 10.1 15.8 "
                     "C 9.6 16.1 9 15.8 9 15.2 Z");
    painter.fill(glyph);
}

// The wave editor: the main area is 64 pixels wide and repeats sideways; it
// carries the zero line and the half-scale lines of each channel's view.
constexpr int kEditorTileWidth = 64;
constexpr int kEditorMainHeight = 128;
constexpr int kEditorHeadHeight = 24;

void drawEditorMain(Painter& painter)
{
    cairo_t* cairo = painter.cairo();
    cairo_new_path(cairo);
    cairo_rectangle(cairo, 0, 0, kEditorTileWidth, kEditorMainHeight);
    painter.fill(palette::panelBackground);
    cairo_rectangle(cairo, 0, kEditorMainHeight / 2, kEditorTileWidth, 1);
    painter.fill(palette::border);
    for (double y : {kEditorMainHeight / 4.0, kEditorMainHeight * 3 / 4.0}) {
        for (int x = 0; x < kEditorTileWidth; x += 4) cairo_rectangle(cairo, x, y, 2, 1);
        painter.fill(palette::gridLine);
    }
    cairo_rectangle(cairo, 0, 0, 1, kEditorMainHeight);
    painter.fill(palette::gridLine.withAlpha(0.6));
}

void drawEditorHead(Painter& painter)
{
    cairo_t* cairo = painter.cairo();
    const Box bounds = painter.bounds();
    cairo_new_path(cairo);
    cairo_rectangle(cairo, 0, 0, bounds.width, bounds.height);
    painter.fillVertical(bounds, palette::panelBackground, palette::headerBackground);
    cairo_rectangle(cairo, 0, bounds.height - 1, bounds.width, 1);
    painter.fill(palette::border);
    // Ruler ticks: a long one at the start of the tile, a middle one at its
    // half and short ones every eight pixels; the numbers are drawn at run time.
    for (int x = 0; x < kEditorTileWidth; x += 8) {
        const double length = x == 0 ? 10 : x == kEditorTileWidth / 2 ? 6 : 3;
        cairo_rectangle(cairo, x, bounds.height - 1 - length, 1, length);
    }
    painter.fill(palette::borderHover);
}

// The split marker: a 1-pixel accent line down the middle of an 11-pixel
// column under a flag; 16 pixels of flag, then a plain line that stretches.
void drawSplitMarker(Painter& painter)
{
    const Box bounds = painter.bounds();
    cairo_t* cairo = painter.cairo();
    cairo_new_path(cairo);
    cairo_rectangle(cairo, 5, 8, 1, bounds.height - 8);
    painter.fill(palette::accent);
    painter.softShadow({1, 1.5, 9, 11}, 2.5, 1.5, palette::shadow.withAlpha(0.35));
    painter.path("M 1 3 C 1 1.9 1.9 1 3 1 H 8 C 9.1 1 10 1.9 10 3 V 9 L 5.5 13 L 1 9 Z");
    painter.fill(palette::accent, true);
    painter.stroke(palette::accentPressed, 0.75);
    cairo_new_path(cairo);
    cairo_rectangle(cairo, 3.5, 4, 4, 1);
    cairo_rectangle(cairo, 3.5, 6.5, 4, 1);
    painter.fill(palette::white.withAlpha(0.85));
}

// The wizard's caption band: a soft accent wash with a hairline under it. The
// left image repeats; the right end carries the same wash and a fading wave.
constexpr int kCaptionHeight = 56;

void drawCaptionBand(Painter& painter)
{
    const Box bounds = painter.bounds();
    cairo_t* cairo = painter.cairo();
    cairo_new_path(cairo);
    cairo_rectangle(cairo, 0, 0, bounds.width, bounds.height);
    painter.fillVertical(bounds, palette::panelBackground, palette::accentSoft.mixedWith(palette::white, 0.45));
    cairo_rectangle(cairo, 0, bounds.height - 1, bounds.width, 1);
    painter.fill(palette::border);
}

}  // namespace

void addEditorImages(ImageList& images)
{
    images.push_back({"images/bg_modules", 320, 240, 1, [](Painter& painter, int) {
                          const Box bounds = painter.bounds();
                          cairo_rectangle(painter.cairo(), 0, 0, bounds.width, bounds.height);
                          painter.fillVertical(bounds, palette::windowBackground.mixedWith(palette::white, 0.5),
                                               palette::windowBackground);
                          drawWaves(painter, bounds.inset(0, 150, 0, 20), palette::accent.withAlpha(0.07), true);
                      }});

    images.push_back({"images/levelmeter/volume_bg", kMeterWidth, kMeterHeight, 1,
                      [](Painter& painter, int) { drawMeterBackground(painter); }});
    images.push_back({"images/levelmeter/overdrive", kMeterWidth, kMeterHeight, 1,
                      [](Painter& painter, int) { drawOverdrive(painter); }});

    const struct
    {
        const char* name;
        ListButtonState state;
    } listStates[] = {
        {"normal", ListButtonState::normal}, {"down", ListButtonState::down}, {"disabled", ListButtonState::disabled}};
    for (const bool stop : {false, true})
        for (const auto& state : listStates)
            images.push_back(
                {std::string("images/list_buttons/") + (stop ? "listStopButton_" : "listPlayButton_") + state.name,
                 kListButtonSize, kListButtonSize, 1,
                 [stop, state = state.state](Painter& painter, int) { drawListButton(painter, state, stop); }});

    images.push_back({"images/bg_cutmerge_main", kEditorTileWidth, kEditorMainHeight, 1,
                      [](Painter& painter, int) { drawEditorMain(painter); }});
    images.push_back({"images/bg_cutmerge_head", kEditorTileWidth, kEditorHeadHeight, 1,
                      [](Painter& painter, int) { drawEditorHead(painter); }});
    images.push_back({"images/splitmarker", 11, 48, 1, [](Painter& painter, int) { drawSplitMarker(painter); }});

    images.push_back(
        {"images/wizard/caption_left", 64, kCaptionHeight, 1, [](Painter& painter, int) { drawCaptionBand(painter); }});
    images.push_back({"images/wizard/caption_right", 200, kCaptionHeight, 1, [](Painter& painter, int) {
                          drawCaptionBand(painter);
                          drawWaves(painter, painter.bounds().inset(0, 10, 12, 12), palette::accent.withAlpha(0.5),
                                    true);
                      }});
}

}  // namespace skinpainter
