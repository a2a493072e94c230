#pragma once

#include "foundation/String.h"
#include "gui/CColor.h"
#include "gui/CTextLayout.h"
#include "gui/Geometry.h"

typedef struct _cairo cairo_t;
typedef struct _cairo_surface cairo_surface_t;

namespace fenn::gui {

// Paints on a frame's buffer through cairo, in the coordinates of the
// window being painted (the frame sets origin, clip and scale before it
// calls a window's paint). Lives for one paint; GUI thread.
class CPainter
{
public:
    explicit CPainter(cairo_t* cr) : m_cr(cr) {}
    CPainter(const CPainter&) = delete;
    CPainter& operator=(const CPainter&) = delete;

    cairo_t* getCairo() const { return m_cr; }

    // Saves the state; the returned guard restores it when it goes.
    class CSaved
    {
    public:
        explicit CSaved(cairo_t* cr);
        ~CSaved();
        CSaved(const CSaved&) = delete;
        CSaved& operator=(const CSaved&) = delete;

    private:
        cairo_t* m_cr;
    };
    CSaved save() const { return CSaved(m_cr); }
    void clip(const CRect& rect);
    void translate(int dx, int dy);

    void fillRect(const CRect& rect, CColor color);
    void fillRoundedRect(const CRect& rect, double radius, CColor color);
    // A line of the given width along the inside of the rectangle.
    void strokeRoundedRect(const CRect& rect, double radius, CColor color, double lineWidth = 1.0);
    void drawLine(CPoint from, CPoint to, CColor color, double lineWidth = 1.0);
    // A soft shadow under a rounded rectangle, spread pixels wide.
    void drawShadow(const CRect& rect, double radius, int spread, CColor color);

    // One text in rect: single line centred vertically unless wrap is
    // TextWrap::wrap, which breaks lines at rect's width and starts at the top.
    void drawText(const CRect& rect, const String& text, const P<CFont>& font, CColor color,
                  TextAlign align = TextAlign::left, TextWrap wrap = TextWrap::ellipsis);
    void drawLayout(const CTextLayout& layout, CPoint origin, CColor color);

    // Draws a surface scaled into dest.
    void drawSurface(cairo_surface_t* surface, const CRect& dest, double alpha = 1.0);

private:
    void roundedPath(const CRect& rect, double radius, double inset);
    void setColor(CColor color);

    cairo_t* m_cr;
};

}  // namespace fenn::gui
