// The input side of CFrameWindow: events from the host or a test reach the
// windows of the tree here, and the frame keeps focus, hover, the pressed
// window, mouse capture and the accelerators.
#include <algorithm>
#include <cctype>
#include <cwctype>

#include "foundation/CObjectError.h"
#include "foundation/CException.h"
#include "gui/CFrameWindow.h"
#include "gui/CToolTip.h"

namespace fenn::gui {

namespace {

struct NamedKey
{
    const char* name;
    Key key;
};

constexpr NamedKey kNamedKeys[] = {
    {"enter", Key::enter},     {"return", Key::enter},      {"escape", Key::escape},   {"esc", Key::escape},
    {"tab", Key::tab},         {"backspace", Key::backspace}, {"delete", Key::deleteKey}, {"del", Key::deleteKey},
    {"insert", Key::insert},   {"left", Key::left},         {"right", Key::right},     {"up", Key::up},
    {"down", Key::down},       {"home", Key::home},         {"end", Key::end},         {"pageup", Key::pageUp},
    {"pagedown", Key::pageDown}, {"space", Key::space},     {"f1", Key::f1},           {"f2", Key::f2},
    {"f3", Key::f3},           {"f4", Key::f4},             {"f5", Key::f5},           {"f6", Key::f6},
    {"f7", Key::f7},           {"f8", Key::f8},             {"f9", Key::f9},           {"f10", Key::f10},
    {"f11", Key::f11},         {"f12", Key::f12},           {"menu", Key::menu},
};

std::string lowerCase(std::string text)
{
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

}  // namespace

CFrameWindow::AcceleratorKey CFrameWindow::parseKeyName(const String& name)
{
    const std::string text = lowerCase(name.toStdString());
    AcceleratorKey parsed;
    std::size_t start = 0;
    while (true) {
        const std::size_t plus = text.find('+', start);
        // A "+" at the very end is the plus key itself.
        if (plus == std::string::npos || plus + 1 == text.size()) break;
        const std::string modifier = text.substr(start, plus - start);
        if (modifier == "ctrl" || modifier == "control") {
            parsed.modifiers |= modifierControl;
        } else if (modifier == "shift") {
            parsed.modifiers |= modifierShift;
        } else if (modifier == "alt") {
            parsed.modifiers |= modifierAlt;
        } else {
            throw CInvalidArgError(nullptr, "addAccelerator", "keyName");
        }
        start = plus + 1;
    }
    const std::string key = text.substr(start);
    for (const NamedKey& named : kNamedKeys) {
        if (key == named.name) {
            parsed.key = named.key;
            return parsed;
        }
    }
    const std::u32string characters = String::copyOf(key).toUTF32();
    if (characters.size() != 1) throw CInvalidArgError(nullptr, "addAccelerator", "keyName");
    parsed.key = Key::character;
    parsed.character = characters[0];
    return parsed;
}

void CFrameWindow::addAccelerator(const String& keyName, std::function<void()> action)
{
    m_accelerators[parseKeyName(keyName)] = std::move(action);
}

void CFrameWindow::removeAccelerator(const String& keyName)
{
    m_accelerators.erase(parseKeyName(keyName));
}

CWindow* CFrameWindow::targetAt(CPoint point) const
{
    return const_cast<CFrameWindow*>(this)->hitTest(point);
}

void CFrameWindow::setHover(CWindow* window)
{
    if (window == m_hover) return;
    const P<CWindow> previous(m_hover);
    m_hover = window;
    hideToolTip();
    m_toolTipOwner = window && !window->getToolTipText().isEmpty() ? window : nullptr;
    if (m_toolTipOwner) {
        restartToolTipTimer();
    } else if (m_toolTipTimer) {
        m_toolTipTimer->stop();
    }
    if (previous) {
        previous->onMouseLeave();
        previous->invalidate();
    }
    if (m_hover) {
        m_hover->onMouseEnter();
        m_hover->invalidate();
    }
}

void CFrameWindow::injectMouseMove(CPoint point, std::uint32_t modifiers)
{
    if (m_inputBlocked) return;
    m_lastPointer = point;
    setHover(targetAt(point));
    const P<CWindow> target(m_capture ? m_capture : m_hover);
    if (!target || !target->isEnabled()) return;
    CMouseEvent event{target->fromFrame(point), MouseButton::none, 0, modifiers};
    target->onMouseMove(event);
}

void CFrameWindow::injectMouseButton(CPoint point, MouseButton button, bool pressed, int clicks,
                                     std::uint32_t modifiers)
{
    if (m_inputBlocked) return;
    m_lastPointer = point;
    if (pressed) {
        hideToolTip();
        m_toolTipOwner = nullptr;
        if (m_focusVisible) {
            m_focusVisible = false;
            if (m_focus) invalidateFrameRect(focusRingRect(m_focus));
        }
        if (!m_popups.empty() && !m_capture) {
            CWindow* hit = targetAt(point);
            const bool inPopup = std::any_of(m_popups.begin(), m_popups.end(),
                                             [&](const P<CWindow>& popup) { return isInSubtree(hit, popup.get()); });
            if (!inPopup) {
                closePopups();
                return;
            }
        }
        const P<CWindow> target(m_capture ? m_capture : targetAt(point));
        if (!target) return;
        setHover(targetAt(point));
        if (button == MouseButton::left) {
            for (CWindow* window = target.get(); window; window = window->getParent()) {
                if (window->isFocusable()) {
                    setFocusWindow(window);
                    break;
                }
            }
            m_pressed = target.get();
            if (!m_capture) {
                m_capture = target.get();
                m_implicitCapture = true;
            }
            target->invalidate();
        }
        for (P<CWindow> window = target; window; window = P<CWindow>(window->getParent())) {
            if (!window->isEnabled()) continue;
            const CMouseEvent event{window->fromFrame(point), button, clicks, modifiers};
            if (window->onMouseDown(event)) break;
        }
        if (clicks == 2 && button == MouseButton::left && target->isEnabled() && target->getFrame() == this)
            target->onDoubleClick({target->fromFrame(point), button, clicks, modifiers});
        return;
    }
    const P<CWindow> target(m_capture ? m_capture : targetAt(point));
    if (target && target->isEnabled()) target->onMouseUp({target->fromFrame(point), button, clicks, modifiers});
    if (button != MouseButton::left) return;
    const P<CWindow> pressedWindow(m_pressed);
    m_pressed = nullptr;
    if (m_implicitCapture) releaseCapture();
    CWindow* under = targetAt(point);
    setHover(under);
    if (pressedWindow) {
        pressedWindow->invalidate();
        if (pressedWindow.get() == under && pressedWindow->isEnabled())
            pressedWindow->onClick({pressedWindow->fromFrame(point), button, clicks, modifiers});
    }
}

void CFrameWindow::injectClick(CPoint point, int clicks)
{
    injectMouseMove(point);
    for (int click = 1; click <= clicks; ++click) {
        injectMouseButton(point, MouseButton::left, true, click);
        injectMouseButton(point, MouseButton::left, false, click);
    }
}

void CFrameWindow::injectWheel(CPoint point, int deltaX, int deltaY, std::uint32_t modifiers)
{
    if (m_inputBlocked) return;
    for (P<CWindow> window(targetAt(point)); window; window = P<CWindow>(window->getParent())) {
        if (!window->isEnabled()) continue;
        if (window->onWheel({window->fromFrame(point), deltaX, deltaY, modifiers})) return;
    }
}

void CFrameWindow::injectKey(const CKeyEvent& event, bool pressed)
{
    if (m_inputBlocked) return;
    if (pressed && event.key == Key::escape && !m_popups.empty() && !isInSubtree(m_focus, m_popups.back().get())) {
        closePopups();
        return;
    }
    for (P<CWindow> window(m_focus); window; window = P<CWindow>(window->getParent())) {
        if (!window->isEnabled()) continue;
        if (pressed ? window->onKeyDown(event) : window->onKeyUp(event)) return;
    }
    if (!pressed) return;
    if (event.key == Key::tab && (event.modifiers & (modifierControl | modifierAlt)) == 0) {
        m_focusVisible = true;
        focusNext((event.modifiers & modifierShift) != 0);
        return;
    }
    const auto found = m_accelerators.find({event.key, event.key == Key::character ? event.character : 0,
                                            event.modifiers});
    if (found != m_accelerators.end()) {
        // The action may remove the accelerator or close the frame.
        const std::function<void()> action = found->second;
        const P<CFrameWindow> keep(this);
        action();
    }
}

void CFrameWindow::injectTextInput(const String& text)
{
    if (m_inputBlocked || !m_focus || !m_focus->isEnabled()) return;
    const P<CWindow> target(m_focus);
    target->onTextInput({text});
}

void CFrameWindow::injectTextEditing(const String& text, int cursor)
{
    if (m_inputBlocked || !m_focus || !m_focus->isEnabled()) return;
    const P<CWindow> target(m_focus);
    target->onTextEditing({text, cursor});
}

void CFrameWindow::injectTyping(const String& text)
{
    for (const char32_t c : text.toUTF32()) {
        CKeyEvent key;
        if (c == U'\n') {
            key.key = Key::enter;
        } else if (c == U'\t') {
            key.key = Key::tab;
        } else {
            key.key = c == U' ' ? Key::space : Key::character;
            key.character = c == U' ' ? 0 : static_cast<char32_t>(std::towlower(static_cast<wint_t>(c)));
        }
        injectKey(key, true);
        if (c != U'\n' && c != U'\t') injectTextInput(String::fromCodePoint(c));
        injectKey(key, false);
    }
}

void CFrameWindow::injectFilesDropped(CPoint point, const std::vector<String>& paths)
{
    if (m_inputBlocked) return;
    for (P<CWindow> window(targetAt(point)); window; window = P<CWindow>(window->getParent())) {
        if (window->isEnabled() && window->onFilesDropped(paths)) return;
    }
}

void CFrameWindow::injectMouseLeft()
{
    setHover(nullptr);
}

void CFrameWindow::restartToolTipTimer()
{
    // Without the platform's timers (tests off screen) tool tips show only
    // when asked for.
    try {
        if (!m_toolTipTimer) {
            m_toolTipTimer = make<posix::CWindowTimer>();
            m_toolTipTimer->setInterval(kToolTipDelay);
            m_toolTipTimer->addFrailListener(this);
        }
        m_toolTipTimer->stop();
        m_toolTipTimer->start();
    } catch (const CException&) {
        m_toolTipTimer = nullptr;
    }
}

void CFrameWindow::timerFired(posix::CWindowTimer* timer)
{
    timer->stop();
    showPendingToolTip();
}

void CFrameWindow::showPendingToolTip()
{
    if (!m_toolTipOwner || m_toolTip || !m_toolTipOwner->isShowing() || m_inputBlocked) return;
    m_toolTip = make<CToolTip>(m_toolTipOwner->getToolTipText());
    const CSize size = m_toolTip->getSize(SizeType::preferred);
    const CRect client = getClientRect();
    // Below the pointer, moved in where it would leave the frame.
    const int x = std::clamp(m_lastPointer.x, 0, std::max(0, client.width - size.width));
    int y = m_lastPointer.y + 20;
    if (y + size.height > client.height) y = std::max(0, m_lastPointer.y - size.height - 4);
    addChild(m_toolTip);
    m_toolTip->setBounds({x, y, size.width, size.height});
}

void CFrameWindow::hideToolTip()
{
    if (!m_toolTip) return;
    const P<CWindow> toolTip = m_toolTip;
    m_toolTip = nullptr;
    removeChild(toolTip.get());
}

void CFrameWindow::setFocusWindow(CWindow* window)
{
    if (window == m_focus) return;
    if (window && !m_open && window->getFrame() == this) {
        m_initialFocus = window;
        return;
    }
    if (window && (window->getFrame() != this || !window->isFocusable())) return;
    const P<CWindow> previous(m_focus);
    if (previous) invalidateFrameRect(focusRingRect(previous.get()));
    m_focus = window;
    if (previous) previous->onFocusOut();
    if (m_focus) {
        invalidateFrameRect(focusRingRect(m_focus));
        const P<CWindow> focused(m_focus);
        focused->onFocusIn();
        for (CWindow* ancestor = focused->getParent(); ancestor && m_focus == focused.get();
             ancestor = ancestor->getParent())
            ancestor->onDescendantFocusIn(*focused);
    }
    updateTextInput();
}

void CFrameWindow::updateTextInput()
{
    const bool wanted = m_focus && m_focus->wantsTextInput();
    if (!m_host) {
        m_textInputActive = wanted;
        return;
    }
    if (wanted) {
        m_host->startTextInput(m_focus->toFrame(m_focus->getTextInputRect()));
    } else if (m_textInputActive) {
        m_host->stopTextInput();
    }
    m_textInputActive = wanted;
}

void CFrameWindow::collectFocusable(CWindow& window, std::vector<CWindow*>& out) const
{
    if (!window.isVisible() || !window.isEnabledSelf()) return;
    if (&window != this && window.isFocusable()) out.push_back(&window);
    for (const P<CWindow>& child : window.getChildren()) collectFocusable(*child, out);
}

void CFrameWindow::focusNext(bool backwards)
{
    std::vector<CWindow*> order;
    collectFocusable(*this, order);
    if (order.empty()) return;
    const auto current = std::find(order.begin(), order.end(), m_focus);
    std::size_t next = 0;
    if (current == order.end()) {
        next = backwards ? order.size() - 1 : 0;
    } else {
        const std::size_t index = static_cast<std::size_t>(current - order.begin());
        next = backwards ? (index + order.size() - 1) % order.size() : (index + 1) % order.size();
    }
    setFocusWindow(order[next]);
    if (m_focus) invalidateFrameRect(focusRingRect(m_focus));
}

bool CFrameWindow::isInSubtree(CWindow* window, CWindow* root) const
{
    for (; window; window = window->getParent()) {
        if (window == root) return true;
    }
    return false;
}

void CFrameWindow::windowDetached(CWindow* root)
{
    windowHidden(root);
}

void CFrameWindow::windowHidden(CWindow* root)
{
    if (isInSubtree(m_toolTipOwner, root)) {
        m_toolTipOwner = nullptr;
        hideToolTip();
    }
    if (isInSubtree(m_focus, root)) setFocusWindow(nullptr);
    if (isInSubtree(m_initialFocus, root) && root != this) m_initialFocus = nullptr;
    if (isInSubtree(m_hover, root)) m_hover = nullptr;
    if (isInSubtree(m_pressed, root)) m_pressed = nullptr;
    if (isInSubtree(m_capture, root)) releaseCapture();
}

}  // namespace fenn::gui
