#pragma once

#include <cstdint>
#include <vector>

#include "foundation/IBase.h"
#include "foundation/P.h"
#include "foundation/String.h"
#include "gui/CColor.h"
#include "gui/CFont.h"
#include "gui/Geometry.h"

namespace fenn::gui {
class CPainter;
class CWindow;
}  // namespace fenn::gui

namespace fenn::gui::skin {

// Pixel margins on the four sides of a rectangle.
struct SkinMargins
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    constexpr int horizontal() const { return left + right; }
    constexpr int vertical() const { return top + bottom; }
    friend bool operator==(const SkinMargins&, const SkinMargins&) = default;
};

// Where a text layer gets its text, font and default colour: the window's
// own (CWindowTextSource) or one tab's (CTabTextSource). Held by the layer
// manager of one window; GUI thread.
class ITextSource : public virtual IBase
{
public:
    virtual String getText() const = 0;
    virtual P<CFont> getFont() const = 0;
    virtual CColor getTextColor() const = 0;
};

// A live layer on one window: where it sits, what it shows now, how its
// animation advances. Made by ILayer::createState and owned by the window's
// CLayerManager. Times are milliseconds of the core window's clock. GUI thread.
class ILayerState : public virtual IBase
{
public:
    // In the window's coordinates.
    virtual CRect getRect() const = 0;
    virtual void setRect(const CRect& rect) = 0;
    virtual void paint(CPainter& painter) = 0;
    // Advances the animation to now; true when the picture changed.
    virtual bool update(std::int64_t now) = 0;
    // When the animation has played to its end (its start for a still picture).
    virtual std::int64_t getEndTime() const = 0;
    // When the picture changes next by itself, or -1 for never.
    virtual std::int64_t getNextChangeTime() const = 0;
};

// A layer definition of a skin: immutable once parsed, shared by every
// window that uses the skin. GUI thread (it touches fonts and images).
class ILayer : public virtual IBase
{
public:
    // Paint order; lower paints first.
    virtual int getOrder() const = 0;
    // Its rectangle in a window of the given size.
    virtual CRect getRect(CSize windowSize) const = 0;
    // The content's size with the layer's pixel margins; minsize wins per
    // dimension where it is set.
    virtual CSize getPreferredSize(const ITextSource& source, double scale) const = 0;
    virtual bool isTextLayer() const = 0;
    // Whether what the layer shows comes from the window property name.
    virtual bool usesProperty(const String& name) const = 0;
    // A live state for the window, its rectangle set for windowSize, its
    // animation starting at now.
    virtual P<ILayerState> createState(CWindow& window, const P<ITextSource>& source, CSize windowSize,
                                       std::int64_t now) const = 0;
};

using LayerList = std::vector<P<ILayer>>;

}  // namespace fenn::gui::skin
