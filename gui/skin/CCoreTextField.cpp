#include "gui/skin/CCoreTextField.h"

#include <algorithm>

namespace fenn::gui::skin {

CSize CCoreTextField::computeSize(SizeType type)
{
    const CSize text = CTextField::computeSize(type == SizeType::max ? SizeType::preferred : type);
    const CSize size = getCore().getPreferredSize(text);
    if (type == SizeType::max) return {kUnboundedExtent, size.height};
    return size;
}

CSize CCoreTextArea::computeSize(SizeType type)
{
    if (type == SizeType::max) return {kUnboundedExtent, kUnboundedExtent};
    // The text wraps inside objectpos, so it is measured at the width left there.
    const SkinMargins margins = getCore().getSkin()->getObjectPos();
    CSize text = CTextArea::computeSize(type);
    if (type == SizeType::preferred && getBounds().width > 0)
        text.height = getHeightForWidth(std::max(1, getBounds().width - margins.horizontal()));
    return getCore().getPreferredSize(text, LayerSizing::imageLayersOnly);
}

}  // namespace fenn::gui::skin
