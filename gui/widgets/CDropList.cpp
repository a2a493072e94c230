#include "gui/widgets/CDropList.h"

#include <cairo.h>

#include <algorithm>

#include "foundation/CObjectError.h"
#include "foundation/CUnicodeData.h"
#include "gui/CFrameWindow.h"
#include "gui/CPainter.h"
#include "gui/CStyle.h"
#include "gui/widgets/CDropListPopup.h"
#include "gui/widgets/CEditField.h"

namespace fenn::gui {

namespace {

// The part of the box at its right end that holds the arrow.
constexpr int kArrowWidth = 28;
constexpr int kMinTextWidth = 60;
// The list stands this far below the box.
constexpr int kListGap = 2;

}  // namespace

CDropList::CDropList()
{
    setFocusable(true);
}

CDropList::~CDropList()
{
    if (m_edit) {
        m_edit->removeListener(this);
        m_edit->setFocusHolder(nullptr);
    }
    if (m_popup) {
        m_popup->detachOwner();
        if (CFrameWindow* frame = m_popup->getFrame()) frame->closePopup(m_popup.get());
    }
}

// ---- entries ----

void CDropList::addEntry(const String& text)
{
    m_entries.push_back(text);
    if (m_edit && m_selected < 0) m_selected = findEntry(m_edit->getText());
    if (m_popup) m_popup->invalidate();
    invalidateLayout();
}

void CDropList::removeAllEntries()
{
    closeList();
    m_entries.clear();
    m_selected = -1;
    if (!m_edit) CWindow::setText(String());
    invalidateLayout();
    invalidate();
}

const String& CDropList::getEntry(int index) const
{
    if (index < 0 || index >= getEntryCount()) throw CInvalidArgError(this, "getEntry", "index");
    return m_entries[static_cast<std::size_t>(index)];
}

void CDropList::setSelectedIndex(int index)
{
    m_selected = index >= 0 && index < getEntryCount() ? index : -1;
    showSelection();
}

void CDropList::setText(const String& text)
{
    m_selected = findEntry(text);
    if (m_edit) {
        m_edit->setText(text);
        CWindow::setText(m_edit->getText());
        return;
    }
    showSelection();
}

int CDropList::findEntry(const String& text) const
{
    const auto found = std::find(m_entries.begin(), m_entries.end(), text);
    return found == m_entries.end() ? -1 : static_cast<int>(found - m_entries.begin());
}

int CDropList::findByFirstLetter(char32_t letter, int after) const
{
    const std::int32_t wanted = CUnicodeData::fold(static_cast<std::int32_t>(letter));
    const int count = getEntryCount();
    // The search starts after the given entry, so the same letter again
    // steps through the entries that start with it.
    for (int step = 1; step <= count; ++step) {
        const int index = (std::max(after, -1) + step + count) % count;
        const String& entry = m_entries[static_cast<std::size_t>(index)];
        if (!entry.isEmpty() && CUnicodeData::fold(static_cast<std::int32_t>(entry.charAtChecked(0))) == wanted)
            return index;
    }
    return -1;
}

void CDropList::showSelection()
{
    const String text = m_selected >= 0 ? m_entries[static_cast<std::size_t>(m_selected)] : String();
    if (m_edit) {
        m_edit->setText(text);
        // A chosen entry is selected, so typing replaces it; without the
        // focus a selection would only show as a grey band.
        if (hasFocus()) m_edit->selectAll();
    }
    CWindow::setText(text);
    invalidate();
}

void CDropList::choose(int index)
{
    if (index < 0 || index >= getEntryCount()) return;
    const bool changed =
        index != m_selected || (m_edit && m_edit->getText() != m_entries[static_cast<std::size_t>(index)]);
    m_selected = index;
    showSelection();
    if (changed) notify({Notification::changed});
}

// ---- editing ----

void CDropList::setEditable(bool editable)
{
    if (editable == isEditable()) return;
    if (editable) {
        m_edit = make<CEditField>();
        m_edit->setFrameStyle(EditFrameStyle::none);
        m_edit->setFocusHolder(this);
        m_edit->setText(getText());
        m_edit->addFrailListener(this);
        addChild(m_edit);
    } else {
        m_edit->removeListener(this);
        m_edit->setFocusHolder(nullptr);
        removeChild(m_edit.get());
        m_edit = nullptr;
        showSelection();
    }
    invalidateLayout();
    invalidate();
}

void CDropList::windowNotified(CWindow& window, const CNotification& notification)
{
    if (&window != m_edit.get() || notification.kind != Notification::changed) return;
    m_selected = findEntry(m_edit->getText());
    CWindow::setText(m_edit->getText());
    if (isListOpen() && m_selected >= 0) m_popup->setHighlight(m_selected);
    notify({Notification::changed});
}

// ---- the list ----

bool CDropList::isListOpen() const
{
    return m_popup && m_popup->getParent() != nullptr;
}

CDropListPopup* CDropList::getPopup() const
{
    return isListOpen() ? m_popup.get() : nullptr;
}

void CDropList::openList()
{
    CFrameWindow* frame = getFrame();
    if (isListOpen() || !frame || !isEnabled() || m_entries.empty()) return;
    if (!m_popup) m_popup = make<CDropListPopup>(this);
    const CRect box = toFrame(getClientRect());
    const CRect room = frame->getClientRect();
    const int margin = CDropListPopup::kShadowMargin;
    CRect rect{box.x - margin, box.bottom() + kListGap, box.width + 2 * margin,
               CDropListPopup::heightFor(getEntryCount())};
    // Where the room below is too small, the list opens above the box if
    // there is room there, else it takes what is left below.
    if (rect.bottom() > room.bottom()) {
        if (box.y - kListGap - rect.height >= 0) {
            rect.y = box.y - kListGap - rect.height;
        } else {
            rect.height = std::max(CDropListPopup::heightFor(1), room.bottom() - rect.y);
        }
    }
    rect.x = std::max(0, std::min(rect.x, room.right() - rect.width));
    frame->openPopup(m_popup, rect);
    m_popup->setHighlight(std::max(0, m_selected));
    invalidate();
}

void CDropList::closeList()
{
    if (!isListOpen()) return;
    if (CFrameWindow* frame = m_popup->getFrame()) frame->closePopup(m_popup.get());
}

void CDropList::chooseFromList(int index)
{
    closeList();
    choose(index);
}

void CDropList::listClosed()
{
    m_pressOpened = false;
    invalidate();
}

void CDropList::onFrameChanged()
{
    if (!getFrame()) closeList();
}

// ---- geometry and painting ----

CSize CDropList::computeSize(SizeType type)
{
    const CStyle& style = CStyle::get();
    const P<CFont> font = getFont();
    const int height = std::max(style.controlHeight, font->getLineHeight() + 10);
    if (type == SizeType::max) return {kUnboundedExtent, height};
    if (type == SizeType::min) return {kMinTextWidth + kArrowWidth, height};
    int widest = kMinTextWidth;
    for (const String& entry : m_entries) widest = std::max(widest, font->measureText(entry).width);
    return {widest + 2 * style.padding + kArrowWidth, height};
}

CRect CDropList::getArrowRect() const
{
    const CRect client = getClientRect();
    return {client.right() - kArrowWidth, 0, kArrowWidth, client.height};
}

void CDropList::layoutChildren()
{
    if (m_edit) {
        const CRect client = getClientRect();
        m_edit->setBounds({1, 1, std::max(0, getArrowRect().x - 1), std::max(0, client.height - 2)});
    }
    CWindow::layoutChildren();
}

void CDropList::paintArrow(CPainter& painter, CColor color) const
{
    const CRect arrow = getArrowRect();
    const double x = arrow.x + arrow.width / 2.0;
    const double y = arrow.y + arrow.height / 2.0;
    cairo_t* cr = painter.getCairo();
    cairo_set_source_rgba(cr, color.red() / 255.0, color.green() / 255.0, color.blue() / 255.0, color.alpha() / 255.0);
    cairo_set_line_width(cr, 1.6);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    cairo_move_to(cr, x - 4, y - 2);
    cairo_line_to(cr, x, y + 2);
    cairo_line_to(cr, x + 4, y - 2);
    cairo_stroke(cr);
}

void CDropList::paint(CPainter& painter)
{
    const CStyle& style = CStyle::get();
    const CRect area = getClientRect();
    const bool enabled = isEnabled();
    const bool open = isListOpen();
    const bool focused = enabled && hasFocus();
    const bool hovered = enabled && isHovered();
    const CRect arrow = getArrowRect();
    if (m_edit) {
        painter.fillRoundedRect(area, style.cornerRadius, enabled ? style.controlBackground : style.controlDisabled);
        if (hovered || open) {
            const CPainter::CSaved saved = painter.save();
            painter.clip(arrow);
            painter.fillRoundedRect(area, style.cornerRadius, open ? style.controlPressed : style.controlHover);
        }
        painter.drawLine({arrow.x, 6}, {arrow.x, area.height - 6}, enabled ? style.border : style.borderDisabled);
    } else {
        CColor fill = style.controlBackground;
        if (!enabled) {
            fill = style.controlDisabled;
        } else if (open || isPressed()) {
            fill = style.controlPressed;
        } else if (hovered) {
            fill = style.controlHover;
        }
        if (enabled) painter.drawShadow(area.inset(1, 1, 1, 2), style.cornerRadius, 2, style.shadow);
        painter.fillRoundedRect(area.inset(0, 0, 0, 1), style.cornerRadius, backColorOr(fill));
        const CRect label{style.padding, 0, arrow.x - style.padding, area.height - 1};
        painter.drawText(label, getText(), getFont(), enabled ? textColorOr(style.text) : style.textDisabled,
                         TextAlign::left, TextWrap::ellipsis);
    }
    const CRect outline = m_edit ? area : area.inset(0, 0, 0, 1);
    if (focused) {
        painter.strokeRoundedRect(outline, style.cornerRadius, style.accentSoft, 3.0);
        painter.strokeRoundedRect(outline, style.cornerRadius, style.accent);
    } else {
        const CColor border = !enabled ? style.borderDisabled : hovered || open ? style.borderHover : style.border;
        painter.strokeRoundedRect(outline, style.cornerRadius, border);
    }
    paintArrow(painter, enabled ? style.textSecondary : style.textDisabled);
}

// ---- input ----

bool CDropList::onMouseDown(const CMouseEvent& event)
{
    if (event.button != MouseButton::left) return false;
    if (isListOpen()) {
        closeList();
        return true;
    }
    openList();
    m_pressOpened = isListOpen();
    return true;
}

bool CDropList::onMouseMove(const CMouseEvent& event)
{
    if (!m_pressOpened || !isListOpen()) return false;
    // Dragging from the box into the open list highlights the entries on the way.
    const CPoint origin = getFrameOrigin();
    const int row = m_popup->rowAt(m_popup->fromFrame({event.position.x + origin.x, event.position.y + origin.y}));
    if (row >= 0) m_popup->setHighlight(row);
    return true;
}

bool CDropList::onMouseUp(const CMouseEvent& event)
{
    if (!m_pressOpened || event.button != MouseButton::left) return false;
    m_pressOpened = false;
    if (!isListOpen()) return true;
    // A release over an entry after dragging there from the box chooses it.
    const CPoint origin = getFrameOrigin();
    const int row = m_popup->rowAt(m_popup->fromFrame({event.position.x + origin.x, event.position.y + origin.y}));
    if (row >= 0) chooseFromList(row);
    return true;
}

bool CDropList::onTextInput(const CTextInputEvent& event)
{
    return m_edit && m_edit->onTextInput(event);
}

bool CDropList::onTextEditing(const CTextEditingEvent& event)
{
    return m_edit && m_edit->onTextEditing(event);
}

void CDropList::onFocusIn()
{
    if (m_edit) m_edit->onFocusIn();
    invalidate();
}

void CDropList::onFocusOut()
{
    if (m_edit) m_edit->onFocusOut();
    closeList();
    invalidate();
}

bool CDropList::wantsTextInput() const
{
    return m_edit && !m_edit->isReadOnly();
}

CRect CDropList::getTextInputRect() const
{
    if (!m_edit) return CWindow::getTextInputRect();
    const CRect bounds = m_edit->getBounds();
    return m_edit->getTextInputRect().translated(bounds.x, bounds.y);
}

bool CDropList::onKeyDown(const CKeyEvent& event)
{
    if (m_edit && m_edit->onKeyDown(event)) return true;
    const std::uint32_t modifiers = event.modifiers;
    const bool alt = modifiers == modifierAlt;
    if ((alt && (event.key == Key::down || event.key == Key::up)) ||
        (event.key == Key::f4 && modifiers == modifierNone)) {
        if (isListOpen()) {
            closeList();
        } else {
            openList();
        }
        return true;
    }
    if (modifiers != modifierNone) return false;
    const int page = CDropListPopup::kMaxVisibleRows - 1;
    const int last = getEntryCount() - 1;
    if (isListOpen()) {
        const int highlight = m_popup->getHighlight();
        switch (event.key) {
        case Key::up:
            m_popup->setHighlight(highlight - 1);
            return true;
        case Key::down:
            m_popup->setHighlight(highlight + 1);
            return true;
        case Key::pageUp:
            m_popup->setHighlight(highlight - page);
            return true;
        case Key::pageDown:
            m_popup->setHighlight(highlight + page);
            return true;
        case Key::home:
        case Key::end:
            if (m_edit) return false;
            m_popup->setHighlight(event.key == Key::home ? 0 : last);
            return true;
        case Key::space:
            if (m_edit) return false;
            [[fallthrough]];
        case Key::enter:
            if (highlight >= 0) {
                chooseFromList(highlight);
            } else {
                closeList();
            }
            return true;
        case Key::tab:
            closeList();
            return false;
        default:
            break;
        }
    } else {
        switch (event.key) {
        case Key::up:
            choose(m_selected < 0 ? 0 : std::max(0, m_selected - 1));
            return true;
        case Key::down:
            choose(std::min(last, m_selected + 1));
            return true;
        case Key::pageUp:
            choose(std::max(0, m_selected - page));
            return true;
        case Key::pageDown:
            choose(std::min(last, std::max(0, m_selected + page)));
            return true;
        case Key::home:
        case Key::end:
            if (m_edit) return false;
            choose(event.key == Key::home ? 0 : last);
            return true;
        case Key::space:
            if (m_edit) return false;
            openList();
            return true;
        default:
            break;
        }
    }
    if (event.key == Key::character && !m_edit) {
        if (isListOpen()) {
            const int found = findByFirstLetter(event.character, m_popup->getHighlight());
            if (found >= 0) m_popup->setHighlight(found);
        } else {
            choose(findByFirstLetter(event.character, m_selected));
        }
        return true;
    }
    return false;
}

}  // namespace fenn::gui
