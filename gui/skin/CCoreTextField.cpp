#include "gui/skin/CCoreTextField.h"

#include "gui/CPainter.h"
#include "gui/CStyle.h"

namespace fenn::gui::skin {

namespace {

void paintPlainText(CWindow& window, CCoreWindow& core, CPainter& painter, TextWrap wrap)
{
    if (core.getSkin()->hasTextLayer()) return;
    const CStyle& style = CStyle::get();
    const CColor color = window.isEnabled() ? window.getTextColor().value_or(style.text) : style.textDisabled;
    painter.drawText(core.getContentRect(), window.getText(), window.getFont(), color, window.getTextAlign(), wrap);
}

}  // namespace

FieldState computeFieldState(const CWindow& window)
{
    if (!window.isEnabled()) return fieldDisabled;
    return window.isHovered() ? fieldHover : fieldNormal;
}

// ---- CCoreTextField ----

CCoreTextField::CCoreTextField(CWindow* parent, P<IFieldSkin> skin)
{
    CCoreWindow::checkParent(parent);
    m_core = make<CCoreWindow>(*this, skin, fieldNormal);
}

CSize CCoreTextField::computeSize(SizeType type)
{
    const CSize text = CTextField::computeSize(type == SizeType::max ? SizeType::preferred : type);
    const CSize size = m_core->getPreferredSize(text);
    if (type == SizeType::max) return {kUnboundedExtent, size.height};
    return size;
}

void CCoreTextField::paint(CPainter& painter)
{
    m_core->syncState(computeFieldState(*this));
    m_core->paint(painter);
    paintPlainText(*this, *m_core, painter, TextWrap::ellipsis);
}

void CCoreTextField::onMouseEnter()
{
    m_core->setState(computeFieldState(*this));
}

void CCoreTextField::onMouseLeave()
{
    m_core->setState(computeFieldState(*this));
}

void CCoreTextField::onResized()
{
    m_core->resize(getBounds().size());
    CTextField::onResized();
}

void CCoreTextField::onFrameChanged()
{
    m_core->reset();
    CTextField::onFrameChanged();
}

// ---- CCoreTextArea ----

CCoreTextArea::CCoreTextArea(CWindow* parent, P<IFieldSkin> skin)
{
    CCoreWindow::checkParent(parent);
    m_core = make<CCoreWindow>(*this, skin, fieldNormal);
}

CSize CCoreTextArea::computeSize(SizeType type)
{
    if (type == SizeType::max) return {kUnboundedExtent, kUnboundedExtent};
    // The text wraps inside objectpos, so it is measured at the width left there.
    const SkinMargins margins = m_core->getSkin()->getObjectPos();
    CSize text = CTextArea::computeSize(type);
    if (type == SizeType::preferred && getBounds().width > 0)
        text.height = getHeightForWidth(std::max(1, getBounds().width - margins.horizontal()));
    return m_core->getPreferredSize(text, LayerSizing::imageLayersOnly);
}

void CCoreTextArea::paint(CPainter& painter)
{
    m_core->syncState(computeFieldState(*this));
    m_core->paint(painter);
    paintPlainText(*this, *m_core, painter, TextWrap::wrap);
}

void CCoreTextArea::onMouseEnter()
{
    m_core->setState(computeFieldState(*this));
}

void CCoreTextArea::onMouseLeave()
{
    m_core->setState(computeFieldState(*this));
}

void CCoreTextArea::onResized()
{
    m_core->resize(getBounds().size());
    CTextArea::onResized();
}

void CCoreTextArea::onFrameChanged()
{
    m_core->reset();
    CTextArea::onFrameChanged();
}

}  // namespace fenn::gui::skin
