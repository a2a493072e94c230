#pragma once

#include "foundation/CObject.h"
#include "foundation/P.h"
#include "foundation/String.h"
#include "gui/ITextMetrics.h"
#include "gui/layout/IGUISize.h"

namespace fenn::gui {

// The size of a text in a window's font: the text's extent, at least
// heightChars lines high when heightChars is positive, plus widthAdd and
// heightAdd pixels (room for a frame or a margin around the text). Measured
// anew at every call, so it follows font and language changes. Made by the
// window that reads a size given as text; holds that window's text metrics.
// GUI thread.
class CTextGUISize : public CObject, public virtual IGUISize
{
public:
    CTextGUISize(const P<ITextMetrics>& metrics, const String& text, int heightChars = 0, int widthAdd = 0,
                 int heightAdd = 0);

    CSize getSize() const override;

    const String& getText() const;
    void setText(const String& text);

private:
    P<ITextMetrics> m_metrics;
    String m_text;
    int m_heightChars;
    int m_widthAdd;
    int m_heightAdd;
};

}  // namespace fenn::gui
