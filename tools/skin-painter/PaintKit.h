#pragma once

// The drawing kit shared by every image of the default skin: the palette of the
// toolkit's plain look, a painter over cairo with the shapes the skin is made of
// (rounded rectangles, soft shadows, gradients, icons from short path strings,
// text through pango) and the list of images the painter program writes.
//
// Every drawing function works in the logical pixels of the 1x image; the same
// function draws the @2x image on a surface scaled by two, so both resolutions
// come from the same shapes and the 2x one is never an upscale.

#include <cairo.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace skinpainter {

struct Colour
{
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    Colour withAlpha(double alpha) const { return {red, green, blue, alpha}; }
    // The colour `amount` of the way (0..1) towards `other`, alpha included.
    Colour mixedWith(const Colour& other, double amount) const;
};

constexpr Colour rgb(int red, int green, int blue, int alpha = 255)
{
    return {red / 255.0, green / 255.0, blue / 255.0, alpha / 255.0};
}

// The colours of gui/CStyle.h, the plain widgets' look, so that a skinned
// widget sits well beside a plain one. Keep the two in step.
namespace palette {
inline constexpr Colour windowBackground = rgb(244, 245, 248);
inline constexpr Colour panelBackground = rgb(255, 255, 255);
inline constexpr Colour text = rgb(30, 33, 38);
inline constexpr Colour textSecondary = rgb(96, 103, 114);
inline constexpr Colour textDisabled = rgb(160, 165, 173);
inline constexpr Colour border = rgb(206, 211, 219);
inline constexpr Colour borderHover = rgb(150, 158, 170);
inline constexpr Colour borderDisabled = rgb(224, 227, 232);
inline constexpr Colour controlBackground = rgb(255, 255, 255);
inline constexpr Colour controlHover = rgb(240, 243, 247);
inline constexpr Colour controlPressed = rgb(226, 231, 238);
inline constexpr Colour controlDisabled = rgb(246, 247, 249);
inline constexpr Colour accent = rgb(37, 99, 235);
inline constexpr Colour accentHover = rgb(29, 84, 207);
inline constexpr Colour accentPressed = rgb(24, 70, 176);
inline constexpr Colour accentText = rgb(255, 255, 255);
inline constexpr Colour accentSoft = rgb(219, 231, 253);
inline constexpr Colour headerBackground = rgb(242, 244, 247);
inline constexpr Colour gridLine = rgb(232, 235, 240);
inline constexpr Colour shadow = rgb(15, 23, 42, 40);
inline constexpr Colour white = rgb(255, 255, 255);
// The level meter's scale, the only colours outside the one accent.
inline constexpr Colour meterGreen = rgb(34, 197, 94);
inline constexpr Colour meterYellow = rgb(234, 179, 8);
inline constexpr Colour meterRed = rgb(220, 38, 38);
}  // namespace palette

inline constexpr double kCornerRadius = 6;
inline constexpr const char* kFontFamily = "DejaVu Sans";

struct Box
{
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double right() const { return x + width; }
    double bottom() const { return y + height; }
    double centreX() const { return x + width / 2; }
    double centreY() const { return y + height / 2; }
    Box inset(double left, double top, double right, double bottom) const
    {
        return {x + left, y + top, width - left - right, height - top - bottom};
    }
    Box inset(double all) const { return inset(all, all, all, all); }
    Box moved(double dx, double dy) const { return {x + dx, y + dy, width, height}; }
};

enum class FontWeight { normal, bold };
enum class Align { start, centre, end };

// Draws on one frame of one image. The cairo context is already scaled to the
// output resolution and clipped to the frame; the painter only adds shapes.
class Painter
{
public:
    Painter(cairo_t* cairo, int scale, int width, int height);

    cairo_t* cairo() const { return m_cairo; }
    int scale() const { return m_scale; }
    Box bounds() const { return {0, 0, double(m_width), double(m_height)}; }

    // Paths: each starts a new path.
    void roundedRect(const Box& box, double radius);
    void roundedRect(const Box& box, double topLeft, double topRight, double bottomRight, double bottomLeft);
    void circle(double centreX, double centreY, double radius);
    // Absolute path commands in the icon's 1x pixels: "M x y", "L x y",
    // "H x", "V y", "C x1 y1 x2 y2 x y", "A cx cy r degrees0 degrees1" (an arc,
    // clockwise) and "Z". Throws std::invalid_argument on anything else, so a
    // typo in an icon stops the program rather than drawing half a shape.
    void path(std::string_view commands);

    // Painting the current path; "keep" variants leave it for another pass.
    void fill(const Colour& colour, bool keep = false);
    void fillVertical(const Box& span, const Colour& top, const Colour& bottom, bool keep = false);
    void fillHorizontal(const Box& span, const Colour& left, const Colour& right, bool keep = false);
    void stroke(const Colour& colour, double width, bool keep = false);

    // A blurred, offset copy of a rounded rectangle under where it will be
    // drawn: `spread` is how far the blur reaches past the rectangle.
    void softShadow(const Box& box, double radius, double spread, const Colour& colour);

    // One line of text placed in `box` by the alignments; returns its width.
    double text(std::string_view text, const Box& box, double pixelSize, FontWeight weight, const Colour& colour,
                Align horizontal = Align::centre, Align vertical = Align::centre);

private:
    cairo_t* m_cairo;
    int m_scale;
    int m_width;
    int m_height;
};

// One image of the skin: its path below the skin folder without ".png", its
// size at 1x and, for a strip of animation frames laid side by side, the frame
// count. `draw` paints frame `frame` (0..frames-1) into a frame-sized box.
struct ImageJob
{
    std::string name;
    int width = 0;
    int height = 0;
    int frames = 1;
    std::function<void(Painter& painter, int frame)> draw;
};

using ImageList = std::vector<ImageJob>;

// Fraction 0..1 reached by frame `frame` of a strip of `frames`: the last frame
// shows the end state exactly, because a strip holds its last frame.
inline double frameProgress(int frame, int frames)
{
    return double(frame + 1) / frames;
}
// A soft start and end for animation frames.
double easeInOut(double t);

// Draws `job` at `scale` (1 or 2) and writes "<folder>/<name>.png" or
// "<name>@2x.png", making the folders it needs. Throws std::runtime_error when
// cairo cannot draw or write.
void writeImage(const ImageJob& job, const std::string& folder, int scale);

// The image groups, one per source file.
void addWidgetImages(ImageList& images);
void addStartScreenImages(ImageList& images);
void addEditorImages(ImageList& images);
void addSplashImages(ImageList& images);

// Drawing shared between groups: the skin's button card and check box, reused
// by the preview picture of the package.
void drawButtonCard(Painter& painter, const Box& box, double hover, double pressed, bool enabled);
void drawCheckBox(Painter& painter, const Box& box, double checked, bool hover, bool enabled);
// The wave motif of the splash, preview and wizard band: a few soft sine
// curves across `box`, fading out towards its left end when `fadeIn` is set.
void drawWaves(Painter& painter, const Box& box, const Colour& colour, bool fadeIn);

}  // namespace skinpainter
