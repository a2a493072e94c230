#pragma once

#include "foundation/P.h"
#include "gui/CColor.h"
#include "gui/CFont.h"

namespace fenn::gui {

// The plain look of the toolkit's own widgets: a light theme with one accent
// colour, rounded corners and soft shadows. Widgets take every colour and
// measure from here, so the whole look changes in one place. One shared
// instance; GUI thread.
struct CStyle
{
    CColor windowBackground{244, 245, 248};
    CColor panelBackground{255, 255, 255};
    CColor text{30, 33, 38};
    CColor textSecondary{96, 103, 114};
    CColor textDisabled{160, 165, 173};
    CColor border{206, 211, 219};
    CColor borderHover{150, 158, 170};
    CColor borderDisabled{224, 227, 232};
    CColor controlBackground{255, 255, 255};
    CColor controlHover{240, 243, 247};
    CColor controlPressed{226, 231, 238};
    CColor controlDisabled{246, 247, 249};
    CColor accent{37, 99, 235};
    CColor accentHover{29, 84, 207};
    CColor accentPressed{24, 70, 176};
    CColor accentText{255, 255, 255};
    CColor accentSoft{219, 231, 253};
    CColor focusRing{37, 99, 235, 110};
    CColor selectionBackground{37, 99, 235};
    CColor selectionText{255, 255, 255};
    CColor selectionInactive{214, 219, 227};
    CColor evenRow{255, 255, 255};
    CColor oddRow{248, 249, 251};
    CColor headerBackground{242, 244, 247};
    CColor gridLine{232, 235, 240};
    CColor shadow{15, 23, 42, 40};
    CColor tooltipBackground{38, 42, 51};
    CColor tooltipText{248, 249, 251};
    // Messages about something that went wrong: the text and its soft background.
    CColor errorText{185, 28, 28};
    CColor errorBackground{254, 242, 242};

    int cornerRadius = 6;
    int padding = 8;
    int spacing = 8;
    int controlHeight = 30;
    int focusRingWidth = 2;
    int scrollBarWidth = 12;
    int checkBoxSize = 18;

    P<CFont> font = CFont::getDefault();
    P<CFont> boldFont = CFont::getDefaultBold();

    static const CStyle& get();
};

}  // namespace fenn::gui
