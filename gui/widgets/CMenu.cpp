#include "gui/widgets/CMenu.h"

#include <cairo.h>

#include <algorithm>
#include <cwctype>

#include "foundation/CObjectError.h"
#include "gui/CFrameWindow.h"
#include "gui/CPainter.h"
#include "gui/CStyle.h"
#include "gui/widgets/CMenuBar.h"

namespace fenn::gui {

namespace {

constexpr int kItemHeight = 28;
constexpr int kSeparatorHeight = 9;
constexpr int kPadding = 6;
// Room at the left for a check mark, and at the right for a sub-menu arrow.
constexpr int kCheckWidth = 26;
constexpr int kArrowWidth = 22;
constexpr int kShortcutGap = 32;
constexpr int kMinWidth = 160;

}  // namespace

int CMenu::addItem(const String& text, std::function<void()> action, const String& shortcut)
{
    m_items.push_back({text, shortcut, std::move(action), nullptr});
    return getItemCount() - 1;
}

int CMenu::addSubmenu(const String& text, const P<CMenu>& submenu)
{
    m_items.push_back({text, String(), nullptr, submenu});
    return getItemCount() - 1;
}

void CMenu::addSeparator()
{
    CMenuItem item;
    item.separator = true;
    item.enabled = false;
    m_items.push_back(item);
}

void CMenu::setEnabled(int index, bool enabled)
{
    if (index < 0 || index >= getItemCount()) throw CInvalidArgError(this, "setEnabled", "index");
    m_items[static_cast<std::size_t>(index)].enabled = enabled && !m_items[static_cast<std::size_t>(index)].separator;
}

void CMenu::setChecked(int index, bool checked)
{
    if (index < 0 || index >= getItemCount()) throw CInvalidArgError(this, "setChecked", "index");
    m_items[static_cast<std::size_t>(index)].checked = checked;
}

const CMenuItem& CMenu::getItem(int index) const
{
    if (index < 0 || index >= getItemCount()) throw CInvalidArgError(this, "getItem", "index");
    return m_items[static_cast<std::size_t>(index)];
}

void CMenu::popup(CFrameWindow& frame, CPoint point)
{
    make<CMenuPopup>(P<CMenu>(this), nullptr, nullptr)->open(frame, point);
}

CMenuPopup::CMenuPopup(P<CMenu> menu, CMenuBar* bar, CMenuPopup* parentPopup)
    : m_menu(std::move(menu)), m_bar(bar), m_parentPopup(parentPopup)
{
    if (!m_menu) throw CInvalidArgError(this, "CMenuPopup", "menu");
    setFocusable(true);
}

int CMenuPopup::rowHeight(int index) const
{
    return m_menu->getItem(index).separator ? kSeparatorHeight : kItemHeight;
}

CSize CMenuPopup::computeSize(SizeType)
{
    const P<CFont> font = getFont();
    int textWidth = 0;
    int shortcutWidth = 0;
    int height = 2 * kPadding;
    for (int i = 0; i < m_menu->getItemCount(); ++i) {
        const CMenuItem& item = m_menu->getItem(i);
        height += rowHeight(i);
        if (item.separator) continue;
        textWidth = std::max(textWidth, font->measureText(item.text).width);
        if (!item.shortcut.isEmpty()) shortcutWidth = std::max(shortcutWidth, font->measureText(item.shortcut).width);
    }
    const int width = kCheckWidth + textWidth + (shortcutWidth > 0 ? kShortcutGap + shortcutWidth : 0) +
                      kArrowWidth + 2 * kPadding;
    return {std::max(kMinWidth, width), height};
}

CRect CMenuPopup::getItemRect(int index) const
{
    int y = kPadding;
    for (int i = 0; i < index; ++i) y += rowHeight(i);
    return {kPadding, y, getBounds().width - 2 * kPadding, rowHeight(index)};
}

int CMenuPopup::itemAt(CPoint point) const
{
    for (int i = 0; i < m_menu->getItemCount(); ++i) {
        if (getItemRect(i).contains(point)) return i;
    }
    return -1;
}

void CMenuPopup::setCurrentItem(int index)
{
    if (index == m_current) return;
    if (m_current >= 0 && m_current < m_menu->getItemCount()) invalidate(getItemRect(m_current));
    m_current = index;
    if (m_current >= 0) invalidate(getItemRect(m_current));
}

int CMenuPopup::step(int from, int direction) const
{
    const int count = m_menu->getItemCount();
    for (int n = 1; n <= count; ++n) {
        const int index = ((from + direction * n) % count + count) % count;
        if (m_menu->getItem(index).enabled) return index;
    }
    return -1;
}

void CMenuPopup::open(CFrameWindow& frame, CPoint point)
{
    const CSize size = getSize(SizeType::preferred);
    const CRect client = frame.getClientRect();
    const int x = std::clamp(point.x, 0, std::max(0, client.width - size.width));
    const int y = std::clamp(point.y, 0, std::max(0, client.height - size.height));
    // A sub-menu gives the keyboard back to its parent menu itself; holding
    // the parent here would make a cycle with the parent's hold on it.
    if (!m_parentPopup) m_previousFocus = P<CWindow>(frame.getFocusWindow());
    frame.openPopup(P<CWindow>(this), {x, y, size.width, size.height});
    setFocus();
}

void CMenuPopup::onFrameChanged()
{
    if (getParent()) return;
    if (m_bar && !m_parentPopup && m_bar->getOpenPopup() == this) m_bar->menuClosed();
    if (!m_previousFocus) return;
    const P<CWindow> previous = m_previousFocus;
    m_previousFocus = nullptr;
    if (previous->getFrame()) previous->setFocus();
}

void CMenuPopup::closeSubmenu()
{
    if (!m_submenu) return;
    m_submenu->closeSubmenu();
    if (CFrameWindow* frame = getFrame()) frame->closePopup(m_submenu.get());
    m_submenu = nullptr;
    setFocus();
}

void CMenuPopup::activate(int index)
{
    if (index < 0 || index >= m_menu->getItemCount()) return;
    const CMenuItem& item = m_menu->getItem(index);
    if (!item.enabled) return;
    CFrameWindow* frame = getFrame();
    if (!frame) return;
    if (item.submenu) {
        closeSubmenu();
        m_submenu = make<CMenuPopup>(item.submenu, m_bar, this);
        const CRect rect = toFrame(getItemRect(index));
        m_submenu->open(*frame, {toFrame(getClientRect()).right() - 4, rect.y - kPadding});
        m_submenu->setCurrentItem(m_submenu->step(-1, 1));
        return;
    }
    // Every menu closes before the action runs, so an action may open a dialog.
    const std::function<void()> action = item.action;
    const P<CMenuPopup> keep(this);
    frame->closePopups();
    if (action) action();
}

bool CMenuPopup::onMouseMove(const CMouseEvent& event)
{
    const int index = itemAt(event.position);
    if (index >= 0 && m_menu->getItem(index).enabled) setCurrentItem(index);
    return true;
}

void CMenuPopup::onMouseLeave()
{
    if (!m_submenu) setCurrentItem(-1);
}

void CMenuPopup::onClick(const CMouseEvent& event)
{
    activate(itemAt(event.position));
}

bool CMenuPopup::onMouseUp(const CMouseEvent& event)
{
    // A press on a menu bar title, dragged into the menu and released on an
    // item, chooses it.
    if (event.button == MouseButton::left && m_bar && m_bar->isPressed()) activate(itemAt(event.position));
    return true;
}

bool CMenuPopup::onKeyDown(const CKeyEvent& event)
{
    switch (event.key) {
    case Key::up:
        setCurrentItem(step(m_current < 0 ? 0 : m_current, -1));
        return true;
    case Key::down:
        setCurrentItem(step(m_current, 1));
        return true;
    case Key::home:
        setCurrentItem(step(-1, 1));
        return true;
    case Key::end:
        setCurrentItem(step(0, -1));
        return true;
    case Key::enter:
    case Key::space:
        activate(m_current);
        return true;
    case Key::right:
        if (m_current >= 0 && m_menu->getItem(m_current).submenu) {
            activate(m_current);
        } else if (m_bar) {
            m_bar->openAdjacentMenu(1);
        }
        return true;
    case Key::left:
        if (m_parentPopup) {
            m_parentPopup->closeSubmenu();
        } else if (m_bar) {
            m_bar->openAdjacentMenu(-1);
        }
        return true;
    case Key::escape:
        if (m_parentPopup) {
            m_parentPopup->closeSubmenu();
        } else if (CFrameWindow* frame = getFrame()) {
            const P<CMenuPopup> keep(this);
            frame->closePopups();
        }
        return true;
    case Key::character: {
        const int count = m_menu->getItemCount();
        for (int n = 1; n <= count; ++n) {
            const int index = (std::max(m_current, -1) + n + count) % count;
            const CMenuItem& item = m_menu->getItem(index);
            const std::u32string text = item.text.toUTF32();
            if (item.enabled && !text.empty() &&
                std::towlower(static_cast<wint_t>(text[0])) == static_cast<wint_t>(event.character)) {
                setCurrentItem(index);
                return true;
            }
        }
        return true;
    }
    default:
        // Menus keep every key while they are open.
        return true;
    }
}

void CMenuPopup::paint(CPainter& painter)
{
    const CStyle& style = CStyle::get();
    const CRect area = getClientRect();
    painter.fillRoundedRect(area, 8, style.panelBackground);
    painter.strokeRoundedRect(area, 8, style.border);
    const P<CFont> font = getFont();
    for (int i = 0; i < m_menu->getItemCount(); ++i) {
        const CMenuItem& item = m_menu->getItem(i);
        const CRect row = getItemRect(i);
        if (item.separator) {
            painter.drawLine({row.x + 6, row.y + row.height / 2}, {row.right() - 6, row.y + row.height / 2},
                             style.gridLine);
            continue;
        }
        const bool current = i == m_current && item.enabled;
        if (current) painter.fillRoundedRect(row, 5, style.accent);
        const CColor text = !item.enabled ? style.textDisabled : current ? style.accentText : style.text;
        const CColor secondary = !item.enabled ? style.textDisabled : current ? style.accentText : style.textSecondary;
        if (item.checked) {
            cairo_t* cr = painter.getCairo();
            cairo_set_source_rgba(cr, text.red() / 255.0, text.green() / 255.0, text.blue() / 255.0, 1.0);
            cairo_set_line_width(cr, 1.8);
            const double x = row.x + 8;
            const double y = row.y + row.height / 2.0;
            cairo_move_to(cr, x, y);
            cairo_line_to(cr, x + 4, y + 4);
            cairo_line_to(cr, x + 11, y - 5);
            cairo_stroke(cr);
        }
        const CRect label = row.inset(kCheckWidth, 0, kArrowWidth, 0);
        painter.drawText(label, item.text, font, text, TextAlign::left, TextWrap::ellipsis);
        if (!item.shortcut.isEmpty()) painter.drawText(label, item.shortcut, font, secondary, TextAlign::right);
        if (item.submenu) {
            cairo_t* cr = painter.getCairo();
            cairo_set_source_rgba(cr, secondary.red() / 255.0, secondary.green() / 255.0, secondary.blue() / 255.0,
                                  1.0);
            cairo_set_line_width(cr, 1.5);
            const double x = row.right() - 13;
            const double y = row.y + row.height / 2.0;
            cairo_move_to(cr, x, y - 4);
            cairo_line_to(cr, x + 4, y);
            cairo_line_to(cr, x, y + 4);
            cairo_stroke(cr);
        }
    }
}

}  // namespace fenn::gui
