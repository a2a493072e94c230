#include "gui/Clipboard.h"

#include "foundation/CObject.h"

namespace fenn::gui {

namespace {

class CMemoryClipboard : public CObject, public virtual IClipboard
{
public:
    String getText() override { return m_text; }
    void setText(const String& text) override { m_text = text; }

private:
    String m_text;
};

P<IClipboard>& installed()
{
    static P<IClipboard> clipboard = make<CMemoryClipboard>();
    return clipboard;
}

}  // namespace

P<IClipboard> getClipboard()
{
    return installed();
}

void setClipboard(P<IClipboard> clipboard)
{
    installed() = clipboard ? std::move(clipboard) : P<IClipboard>(make<CMemoryClipboard>());
}

}  // namespace fenn::gui
