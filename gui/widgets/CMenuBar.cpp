#include "gui/widgets/CMenuBar.h"

#include <cwctype>

#include "gui/CFrameWindow.h"
#include "gui/CPainter.h"
#include "gui/CStyle.h"

namespace fenn::gui {

namespace {

constexpr int kBarHeight = 32;
constexpr int kTitlePadding = 12;
constexpr int kStart = 4;

}  // namespace

CMenuBar::CMenuBar() = default;

int CMenuBar::addMenu(const String& title, const P<CMenu>& menu)
{
    m_menus.push_back({title, menu});
    invalidateLayout();
    invalidate();
    onFrameChanged();
    return getMenuCount() - 1;
}

CSize CMenuBar::computeSize(SizeType type)
{
    int width = kStart;
    for (int i = 0; i < getMenuCount(); ++i) width += getTitleRect(i).width;
    if (type == SizeType::max) return {kUnboundedExtent, kBarHeight};
    return {width, kBarHeight};
}

CRect CMenuBar::getTitleRect(int index) const
{
    int x = kStart;
    for (int i = 0; i < getMenuCount(); ++i) {
        const int width = getFont()->measureText(m_menus[static_cast<std::size_t>(i)].title).width + 2 * kTitlePadding;
        if (i == index) return {x, 3, width, kBarHeight - 6};
        x += width;
    }
    return {};
}

int CMenuBar::titleAt(CPoint point) const
{
    for (int i = 0; i < getMenuCount(); ++i) {
        const CRect rect = getTitleRect(i);
        if (point.x >= rect.x && point.x < rect.right() && point.y >= 0 && point.y < getBounds().height) return i;
    }
    return -1;
}

void CMenuBar::openMenu(int index)
{
    CFrameWindow* frame = getFrame();
    if (!frame) return;
    if (m_popup) {
        const P<CMenuPopup> previous = m_popup;
        m_popup = nullptr;
        previous->closeSubmenu();
        frame->closePopup(previous.get());
    }
    if (m_open >= 0) invalidate(getTitleRect(m_open));
    m_open = index >= 0 && index < getMenuCount() ? index : -1;
    if (m_open < 0) return;
    invalidate(getTitleRect(m_open));
    m_popup = make<CMenuPopup>(m_menus[static_cast<std::size_t>(m_open)].menu, this, nullptr);
    const CRect title = toFrame(getTitleRect(m_open));
    m_popup->open(*frame, {title.x, toFrame(getClientRect()).bottom() - 2});
}

void CMenuBar::openAdjacentMenu(int direction)
{
    if (getMenuCount() == 0) return;
    const int from = m_open < 0 ? 0 : m_open;
    openMenu(((from + direction) % getMenuCount() + getMenuCount()) % getMenuCount());
    if (m_popup) m_popup->setCurrentItem(0);
}

void CMenuBar::menuClosed()
{
    if (m_popup) m_popup = nullptr;
    if (m_open >= 0) invalidate(getTitleRect(m_open));
    m_open = -1;
}

bool CMenuBar::onMouseDown(const CMouseEvent& event)
{
    if (event.button != MouseButton::left) return false;
    const int index = titleAt(event.position);
    // A press outside the open pop-up closes the menus before it gets here
    // (the frame's rule for pop-ups), so a press on a title always opens.
    openMenu(index == m_open ? -1 : index);
    return true;
}

bool CMenuBar::onMouseMove(const CMouseEvent& event)
{
    const int index = titleAt(event.position);
    if (m_open >= 0 && index >= 0 && index != m_open) openMenu(index);
    if (index != m_hover) {
        if (m_hover >= 0) invalidate(getTitleRect(m_hover));
        m_hover = index;
        if (m_hover >= 0) invalidate(getTitleRect(m_hover));
    }
    return true;
}

void CMenuBar::onMouseLeave()
{
    if (m_hover >= 0) invalidate(getTitleRect(m_hover));
    m_hover = -1;
}

void CMenuBar::onFrameChanged()
{
    CFrameWindow* frame = getFrame();
    if (!frame) return;
    frame->addAccelerator("F10", [this] { openAdjacentMenu(0); });
    for (int i = 0; i < getMenuCount(); ++i) {
        const std::u32string title = m_menus[static_cast<std::size_t>(i)].title.toUTF32();
        if (title.empty() || !std::iswalnum(static_cast<wint_t>(title[0]))) continue;
        const String key = String("Alt+") + String::fromCodePoint(std::towlower(static_cast<wint_t>(title[0])));
        frame->addAccelerator(key, [this, i] {
            openMenu(i);
            if (m_popup) m_popup->setCurrentItem(0);
        });
    }
}

void CMenuBar::paint(CPainter& painter)
{
    const CStyle& style = CStyle::get();
    painter.fillRect(getClientRect(), backColorOr(style.panelBackground));
    painter.drawLine({0, getBounds().height - 1}, {getBounds().width, getBounds().height - 1}, style.border);
    for (int i = 0; i < getMenuCount(); ++i) {
        const CRect rect = getTitleRect(i);
        if (i == m_open) {
            painter.fillRoundedRect(rect, 5, style.accentSoft);
        } else if (i == m_hover && isEnabled()) {
            painter.fillRoundedRect(rect, 5, style.controlHover);
        }
        painter.drawText(rect, m_menus[static_cast<std::size_t>(i)].title, getFont(),
                         isEnabled() ? style.text : style.textDisabled, TextAlign::center);
    }
}

}  // namespace fenn::gui
