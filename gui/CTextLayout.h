#pragma once

#include <cstdint>
#include <string>

#include "foundation/P.h"
#include "foundation/String.h"
#include "gui/CFont.h"
#include "gui/Geometry.h"

typedef struct _PangoLayout PangoLayout;
typedef struct _cairo cairo_t;

namespace fenn::gui {

// How text that does not fit its width is treated.
enum class TextWrap
{
    none,
    ellipsis,
    wrap,
};

enum class TextAlign
{
    left,
    center,
    right,
};

// One text laid out in one font by pango: its size, the position of each
// character and the character at a point, for labels and edit fields.
// Indices are character (code point) indices into the text. Owned by its
// user; GUI thread.
class CTextLayout
{
public:
    CTextLayout(P<CFont> font, const String& text);
    ~CTextLayout();
    CTextLayout(const CTextLayout&) = delete;
    CTextLayout& operator=(const CTextLayout&) = delete;

    void setText(const String& text);
    // Limits lines to width pixels (-1: no limit) and says what happens to
    // what does not fit.
    void setWidth(int width, TextWrap wrap);
    void setAlignment(TextAlign align);

    CSize getSize() const;
    int getLineCount() const;
    int getLineHeight() const;
    // The caret rectangle's left edge and line for the character index.
    CRect getCaretRect(int index) const;
    // The character index nearest to a point inside the layout.
    int getIndexAt(CPoint point) const;
    // The index at the start and end of the line that holds index.
    int getLineStart(int index) const;
    int getLineEnd(int index) const;

    // Draws the layout with its top left at origin in the current colour of cr.
    void draw(cairo_t* cr, CPoint origin) const;

    PangoLayout* getPangoLayout() const { return m_layout; }

private:
    int byteIndex(int index) const;
    int characterIndex(int byte) const;

    P<CFont> m_font;
    std::string m_utf8;
    int m_characters = 0;
    PangoLayout* m_layout;
};

}  // namespace fenn::gui
