#pragma once

#include "foundation/CObject.h"
#include "foundation/String.h"
#include "gui/ITextMetrics.h"

typedef struct _PangoFontDescription PangoFontDescription;
typedef struct _PangoContext PangoContext;

namespace fenn::gui {

enum class FontWeight
{
    normal,
    bold,
};

// A font as pango finds it through fontconfig: a family list, a size in
// device-independent pixels and a weight. Measures text (ITextMetrics) on a
// scratch surface, so sizes are known before any window is painted. Shared
// by the windows that use it; GUI thread.
class CFont : public CObject, public virtual ITextMetrics
{
public:
    // The toolkit's text font: "Sans" (DejaVu Sans where nothing else is
    // configured) at 13 pixels.
    static constexpr double kDefaultPixelSize = 13.0;

    explicit CFont(const String& family = "Sans", double pixelSize = kDefaultPixelSize,
                   FontWeight weight = FontWeight::normal);
    ~CFont() override;
    CFont(const CFont&) = delete;
    CFont& operator=(const CFont&) = delete;

    // The default font, and its bold and larger variants, made once.
    static P<CFont> getDefault();
    static P<CFont> getDefaultBold();

    P<CFont> withWeight(FontWeight weight) const;
    P<CFont> withPixelSize(double pixelSize) const;

    String getFamily() const { return m_family; }
    double getPixelSize() const { return m_pixelSize; }
    FontWeight getWeight() const { return m_weight; }
    const PangoFontDescription* getDescription() const { return m_description; }

    CSize measureText(const String& text) const override;
    int getLineHeight() const override;

private:
    String m_family;
    double m_pixelSize;
    FontWeight m_weight;
    PangoFontDescription* m_description;
    mutable int m_lineHeight = -1;
};

// The pango context that every text of the toolkit is laid out in.
PangoContext* sharedPangoContext();

}  // namespace fenn::gui
