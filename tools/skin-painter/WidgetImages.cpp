// The images of the skinned widgets: buttons and start-screen tiles, fields,
// check boxes and radio buttons, the slider bar and the tab view. Each
// nine-patch image keeps its corners and shadow inside the scale margins that
// skin.xml declares for it, and a plain, solid middle.

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

#include "PaintKit.h"

namespace skinpainter {

namespace {

constexpr int kTransitionFrames = 5;
constexpr int kCheckFrames = 5;

// The look of a card (button or tile) in one state; hover and press fades
// interpolate between two of them.
struct CardLook
{
    Colour fill;
    Colour border;
    Colour shadow;
    double shadowSpread = 0;
    double shadowOffset = 0;
    double lift = 0;  // negative moves the card up

    CardLook mixedWith(const CardLook& other, double amount) const
    {
        const auto mix = [amount](double a, double b) { return a + (b - a) * amount; };
        return {fill.mixedWith(other.fill, amount),     border.mixedWith(other.border, amount),
                shadow.mixedWith(other.shadow, amount), mix(shadowSpread, other.shadowSpread),
                mix(shadowOffset, other.shadowOffset),  mix(lift, other.lift)};
    }
};

void drawCard(Painter& painter, const Box& card, double radius, const CardLook& look)
{
    const Box moved = card.moved(0, look.lift);
    if (look.shadow.alpha > 0 && look.shadowSpread > 0)
        painter.softShadow(moved.moved(0, look.shadowOffset), radius, look.shadowSpread, look.shadow);
    painter.roundedRect(moved.inset(0.5), radius - 0.5);
    painter.fill(look.fill, true);
    painter.stroke(look.border, 1);
}

const CardLook kButtonNormal{palette::controlBackground, palette::border, palette::shadow, 3, 1, 0};
const CardLook kButtonHover{palette::controlHover, palette::borderHover, palette::shadow.withAlpha(0.24), 4, 1.5, 0};
const CardLook kButtonDown{palette::controlPressed, palette::borderHover, palette::shadow.withAlpha(0), 1, 0, 1};
const CardLook kButtonDisabled{
    palette::controlDisabled, palette::borderDisabled, palette::shadow.withAlpha(0), 1, 0, 0};

// The default button of a dialog: the accent fill with white text, darker
// under the mouse and when pressed.
const CardLook kDefaultNormal{palette::accent, palette::accent, palette::shadow, 3, 1, 0};
const CardLook kDefaultHover{palette::accentHover, palette::accentHover, palette::shadow.withAlpha(0.24), 4, 1.5, 0};
const CardLook kDefaultDown{palette::accentPressed, palette::accentPressed, palette::shadow.withAlpha(0), 1, 0, 1};
const CardLook kDefaultDisabled{palette::accent.mixedWith(palette::windowBackground, 0.6),
                                palette::accent.mixedWith(palette::windowBackground, 0.6),
                                palette::shadow.withAlpha(0),
                                1,
                                0,
                                0};

// The start tile lifts a pixel on hover with a wider shadow and an accent
// tint, and sinks a pixel when pressed.
const CardLook kTileNormal{palette::panelBackground, palette::gridLine, palette::shadow, 6, 2, 0};
const CardLook kTileHover{palette::panelBackground.mixedWith(palette::accentSoft, 0.45),
                          palette::accent.mixedWith(palette::white, 0.55),
                          palette::shadow.withAlpha(0.26),
                          8,
                          3,
                          -1};
const CardLook kTileDown{
    palette::accentSoft, palette::accent.mixedWith(palette::white, 0.35), palette::shadow.withAlpha(0.12), 3, 1, 1};
const CardLook kTileDisabled{palette::controlDisabled, palette::borderDisabled, palette::shadow.withAlpha(0), 1, 0, 0};

// Button: 48 x 32 with 8-pixel scale margins; the card leaves one pixel at the
// sides and top and two at the bottom for its shadow.
constexpr int kButtonWidth = 48;
constexpr int kButtonHeight = 32;
// Start tile: 80 x 80; the scale margins (18 at the sides, 16 at the top, 22
// at the bottom) hold the 8-pixel corners and the shadow, which reaches
// further down than up, most of all on the lifted hover card.
constexpr int kTileSize = 80;
constexpr double kTileRadius = 8;
const Box kTileCard{8, 6, kTileSize - 16, kTileSize - 18};

CardLook buttonLook(double hover, double pressed, bool enabled)
{
    if (!enabled) return kButtonDisabled;
    return kButtonNormal.mixedWith(kButtonHover, hover).mixedWith(kButtonDown, pressed);
}

void addCardImages(ImageList& images, const std::string& folder, int width, int height,
                   std::function<void(Painter&, const CardLook&)> draw, const CardLook& normal, const CardLook& hover,
                   const CardLook& down, const CardLook& disabled)
{
    const struct
    {
        const char* name;
        const CardLook* look;
    } states[] = {{"normal", &normal}, {"hover", &hover}, {"down", &down}, {"disabled", &disabled}};
    for (const auto& state : states) {
        const CardLook look = *state.look;
        images.push_back({folder + "/" + state.name, width, height, 1,
                          [draw, look](Painter& painter, int) { draw(painter, look); }});
    }
    const struct
    {
        const char* name;
        const CardLook* from;
        const CardLook* to;
    } fades[] = {{"normal-hover", &normal, &hover}, {"hover-normal", &hover, &normal}};
    for (const auto& fade : fades) {
        const CardLook from = *fade.from;
        const CardLook to = *fade.to;
        images.push_back(
            {folder + "/" + fade.name, width, height, kTransitionFrames, [draw, from, to](Painter& painter, int frame) {
                 draw(painter, from.mixedWith(to, easeInOut(frameProgress(frame, kTransitionFrames))));
             }});
    }
}

// Fields show text quietly: a flat fill a shade off the window, a faint
// outline that firms up under the mouse.
void drawField(Painter& painter, const Colour& fill, const Colour& border)
{
    painter.roundedRect(painter.bounds().inset(0.5), kCornerRadius - 0.5);
    painter.fill(fill, true);
    painter.stroke(border, 1);
}

// The tick of a check box, drawn as far as `progress` along its length so the
// strips can draw it in and take it back out.
void drawTick(Painter& painter, const Box& box, double progress, const Colour& colour)
{
    if (progress <= 0) return;
    const double unit = box.width / 18;
    const double x0 = box.x + 4.5 * unit, y0 = box.y + 9.5 * unit;
    const double x1 = box.x + 7.75 * unit, y1 = box.y + 12.5 * unit;
    const double x2 = box.x + 13.5 * unit, y2 = box.y + 6 * unit;
    const double length = std::hypot(x1 - x0, y1 - y0) + std::hypot(x2 - x1, y2 - y1);
    cairo_t* cairo = painter.cairo();
    cairo_new_path(cairo);
    cairo_move_to(cairo, x0, y0);
    cairo_line_to(cairo, x1, y1);
    cairo_line_to(cairo, x2, y2);
    const double dashes[] = {length * progress, length * 2};
    cairo_set_dash(cairo, dashes, 2, 0);
    painter.stroke(colour, 2 * unit);
    cairo_set_dash(cairo, nullptr, 0, 0);
}

// The colours of a check box or radio button: the accent fill when checked,
// a plain control when not, both dimmed when disabled.
struct MarkColours
{
    Colour onFill;
    Colour offBorder;
    Colour offFill;
};

MarkColours markColours(bool hover, bool enabled)
{
    if (!enabled) {
        return {palette::accent.mixedWith(palette::windowBackground, 0.6), palette::borderDisabled,
                palette::controlDisabled};
    }
    return {hover ? palette::accentHover : palette::accent, hover ? palette::borderHover : palette::border,
            palette::controlBackground};
}

void drawRadio(Painter& painter, const Box& box, double checked, bool hover, bool enabled)
{
    const double radius = box.width / 2;
    const double cx = box.centreX();
    const double cy = box.centreY();
    const auto [onFill, offBorder, offFill] = markColours(hover, enabled);
    if (enabled) painter.softShadow(box.moved(0, 0.5), radius, 1.5, palette::shadow.withAlpha(0.12));
    painter.circle(cx, cy, radius - 0.5);
    painter.fill(offFill.mixedWith(onFill, checked), true);
    painter.stroke(offBorder.mixedWith(onFill, checked), 1);
    if (checked > 0) {
        painter.circle(cx, cy, radius * 0.38 * checked);
        painter.fill(palette::white);
    }
}

constexpr int kBoxImageSize = 20;
const Box kBoxArea{1, 1, 18, 18};

void addToggleImages(ImageList& images, const std::string& folder,
                     void (*draw)(Painter&, const Box&, double, bool, bool))
{
    const struct
    {
        const char* name;
        double checked;
        bool hover;
        bool enabled;
    } states[] = {{"checked_normal", 1, false, true},    {"checked_hover", 1, true, true},
                  {"checked_disabled", 1, false, false}, {"unchecked_normal", 0, false, true},
                  {"unchecked_hover", 0, true, true},    {"unchecked_disabled", 0, false, false}};
    for (const auto& state : states)
        images.push_back(
            {folder + "/" + state.name, kBoxImageSize, kBoxImageSize, 1, [draw, state](Painter& painter, int) {
                 draw(painter, kBoxArea, state.checked, state.hover, state.enabled);
             }});
    // The mark animates in and out; the strips end on the still looks of
    // checked_normal and unchecked_normal, where the engine carries on.
    images.push_back(
        {folder + "/checking", kBoxImageSize, kBoxImageSize, kCheckFrames, [draw](Painter& painter, int frame) {
             draw(painter, kBoxArea, easeInOut(frameProgress(frame, kCheckFrames)), false, true);
         }});
    images.push_back(
        {folder + "/unchecking", kBoxImageSize, kBoxImageSize, kCheckFrames, [draw](Painter& painter, int frame) {
             draw(painter, kBoxArea, 1 - easeInOut(frameProgress(frame, kCheckFrames)), false, true);
         }});
}

// Slider bar: a 6-pixel track with round ends, the accent filler and a
// 24-pixel image holding the 16-pixel round thumb, its shadow and the halo it
// wears while dragged.
constexpr int kTrackWidth = 24;
constexpr int kTrackHeight = 6;
constexpr int kThumbImageSize = 24;

void drawTrack(Painter& painter, const Colour& colour)
{
    painter.roundedRect(painter.bounds(), kTrackHeight / 2.0);
    painter.fill(colour);
}

void drawThumb(Painter& painter, double hover, bool drag, bool enabled)
{
    const double c = kThumbImageSize / 2.0;
    const double radius = 8;
    if (!enabled) {
        painter.circle(c, c, radius - 0.5);
        painter.fill(palette::controlDisabled, true);
        painter.stroke(palette::borderDisabled, 1);
        return;
    }
    if (drag) {
        painter.circle(c, c, radius + 3.5);
        painter.fill(palette::accentSoft);
    }
    painter.softShadow({c - radius, c - radius + 1, 2 * radius, 2 * radius}, radius, 3, palette::shadow.withAlpha(0.3));
    painter.circle(c, c, radius - 0.5);
    painter.fill(palette::white, true);
    // Hover rings the thumb in the accent; dragging adds the halo and a dot.
    painter.stroke(palette::border.mixedWith(palette::accent, drag ? 1 : hover), drag ? 2 : 1 + hover * 0.5);
    if (drag) {
        painter.circle(c, c, 2.5);
        painter.fill(palette::accent);
    }
}

// Tabs: 40 x 30 with margins 8 at the sides and top, 4 at the bottom. Every tab
// reaches one pixel over the page's top border: the active tab covers it with
// its open, white bottom; the others draw the border line themselves.
constexpr int kTabWidth = 40;
constexpr int kTabHeight = 30;

void drawTab(Painter& painter, bool active, bool hover, bool enabled)
{
    const Box bounds = painter.bounds();
    const Box shape = bounds.inset(0.5, active ? 0.5 : 3.5, 0.5, 0);
    Colour fill = active ? palette::panelBackground : hover ? palette::controlHover : palette::headerBackground;
    Colour border = active  ? (hover ? palette::borderHover : palette::border)
                    : hover ? palette::border
                            : palette::border.mixedWith(palette::gridLine, 0.5);
    if (!enabled) {
        fill = palette::controlDisabled;
        border = palette::borderDisabled;
    }
    painter.roundedRect(shape.inset(0, 0, 0, -1), kCornerRadius, kCornerRadius, 0, 0);
    painter.fill(fill);
    cairo_t* cairo = painter.cairo();
    cairo_new_path(cairo);
    cairo_move_to(cairo, shape.x, bounds.bottom());
    cairo_arc(cairo, shape.x + kCornerRadius, shape.y + kCornerRadius, kCornerRadius, std::numbers::pi,
              1.5 * std::numbers::pi);
    cairo_arc(cairo, shape.right() - kCornerRadius, shape.y + kCornerRadius, kCornerRadius, 1.5 * std::numbers::pi,
              2 * std::numbers::pi);
    cairo_line_to(cairo, shape.right(), bounds.bottom());
    painter.stroke(border, 1);
    if (active && enabled) {
        painter.roundedRect({shape.x + 3, shape.y + 0.5, shape.width - 6, 2.5}, 1.25);
        painter.fill(palette::accent);
    }
    if (!active) {
        // The page's top border, which the tab covers.
        cairo_new_path(cairo);
        cairo_rectangle(cairo, 0, bounds.bottom() - 1, bounds.width, 1);
        painter.fill(enabled ? palette::border : palette::borderDisabled);
    }
}

void drawPage(Painter& painter, bool enabled)
{
    painter.roundedRect(painter.bounds().inset(0.5), kCornerRadius - 0.5);
    painter.fill(enabled ? palette::panelBackground : palette::controlDisabled, true);
    painter.stroke(enabled ? palette::border : palette::borderDisabled, 1);
}

}  // namespace

void drawButtonCard(Painter& painter, const Box& box, double hover, double pressed, bool enabled)
{
    drawCard(painter, box.inset(1, 1, 1, 2), kCornerRadius, buttonLook(hover, pressed, enabled));
}

void drawCheckBox(Painter& painter, const Box& box, double checked, bool hover, bool enabled)
{
    const auto [onFill, offBorder, offFill] = markColours(hover, enabled);
    const double radius = 4 * box.width / 18;
    if (enabled) painter.softShadow(box.moved(0, 0.5), radius, 1.5, palette::shadow.withAlpha(0.12));
    painter.roundedRect(box.inset(0.5), radius - 0.5);
    // The fill leads the tick so the tick is drawn on the accent, not on white.
    painter.fill(offFill.mixedWith(onFill, std::min(1.0, checked * 1.6)), true);
    painter.stroke(offBorder.mixedWith(onFill, std::min(1.0, checked * 1.6)), 1);
    drawTick(painter, box, checked, palette::white);
}

void addWidgetImages(ImageList& images)
{
    const auto button = [](Painter& painter, const CardLook& look) {
        drawCard(painter, painter.bounds().inset(1, 1, 1, 2), kCornerRadius, look);
    };
    addCardImages(images, "button", kButtonWidth, kButtonHeight, button, kButtonNormal, kButtonHover, kButtonDown,
                  kButtonDisabled);
    addCardImages(images, "defaultbutton", kButtonWidth, kButtonHeight, button, kDefaultNormal, kDefaultHover,
                  kDefaultDown, kDefaultDisabled);
    const auto tile = [](Painter& painter, const CardLook& look) { drawCard(painter, kTileCard, kTileRadius, look); };
    addCardImages(images, "startbutton", kTileSize, kTileSize, tile, kTileNormal, kTileHover, kTileDown, kTileDisabled);

    const struct
    {
        const char* name;
        Colour fill;
        Colour border;
    } fields[] = {
        {"field/normal", palette::windowBackground.mixedWith(palette::headerBackground, 0.5), palette::gridLine},
        {"field/hover", palette::windowBackground.mixedWith(palette::headerBackground, 0.5), palette::border},
        {"field/disabled", palette::controlDisabled, palette::borderDisabled}};
    for (const auto& field : fields)
        images.push_back(
            {field.name, 24, 24, 1, [field](Painter& painter, int) { drawField(painter, field.fill, field.border); }});

    addToggleImages(images, "checkbox", drawCheckBox);
    addToggleImages(images, "radio", drawRadio);

    images.push_back({"slider/track", kTrackWidth, kTrackHeight, 1, [](Painter& painter, int) {
                          drawTrack(painter, palette::border.mixedWith(palette::windowBackground, 0.35));
                      }});
    images.push_back({"slider/track_disabled", kTrackWidth, kTrackHeight, 1,
                      [](Painter& painter, int) { drawTrack(painter, palette::borderDisabled); }});
    images.push_back({"slider/fill", kTrackWidth, kTrackHeight, 1,
                      [](Painter& painter, int) { drawTrack(painter, palette::accent); }});
    images.push_back({"slider/fill_disabled", kTrackWidth, kTrackHeight, 1, [](Painter& painter, int) {
                          drawTrack(painter, palette::accent.mixedWith(palette::windowBackground, 0.6));
                      }});
    const struct
    {
        const char* name;
        double hover;
        bool drag;
        bool enabled;
    } thumbs[] = {{"slider/thumb_normal", 0, false, true},
                  {"slider/thumb_hover", 1, false, true},
                  {"slider/thumb_drag", 1, true, true},
                  {"slider/thumb_disabled", 0, false, false}};
    for (const auto& thumb : thumbs)
        images.push_back({thumb.name, kThumbImageSize, kThumbImageSize, 1, [thumb](Painter& painter, int) {
                              drawThumb(painter, thumb.hover, thumb.drag, thumb.enabled);
                          }});
    images.push_back({"slider/tick", 3, 5, 1, [](Painter& painter, int) {
                          painter.path("M 1 0 H 2 V 5 H 1 Z");
                          painter.fill(palette::borderHover);
                      }});

    images.push_back({"tabview/page", 32, 32, 1, [](Painter& painter, int) { drawPage(painter, true); }});
    images.push_back({"tabview/page_disabled", 32, 32, 1, [](Painter& painter, int) { drawPage(painter, false); }});
    const struct
    {
        const char* name;
        bool active;
        bool hover;
        bool enabled;
    } tabs[] = {{"tabview/tab_active", true, false, true},
                {"tabview/tab_active_hover", true, true, true},
                {"tabview/tab_inactive", false, false, true},
                {"tabview/tab_inactive_hover", false, true, true},
                {"tabview/tab_disabled", false, false, false}};
    for (const auto& tab : tabs)
        images.push_back({tab.name, kTabWidth, kTabHeight, 1,
                          [tab](Painter& painter, int) { drawTab(painter, tab.active, tab.hover, tab.enabled); }});
}

}  // namespace skinpainter
