#include "gui/skin/CCoreWindow.h"

#include <algorithm>

#include "foundation/CError.h"
#include "foundation/CTimerManager.h"
#include "foundation/IStringLocalizer.h"
#include "foundation/TCast.h"
#include "gui/CFrameWindow.h"
#include "gui/IVirtualWindowParent.h"
#include "gui/skin/CTextSource.h"
#include "gui/skin/SkinTexts.h"

namespace fenn::gui::skin {

namespace {

CCoreWindow::Clock& clock()
{
    static CCoreWindow::Clock current;
    return current;
}

}  // namespace

void CCoreWindow::setClock(Clock newClock)
{
    clock() = std::move(newClock);
}

std::int64_t CCoreWindow::now()
{
    if (clock()) return clock()();
    return CTimerManager::getInstance()->getCurrentTime();
}

void CCoreWindow::checkParent(CWindow* parent)
{
    if (!parent) throw CError(String(), localize(texts::outerWindowHasNoParent));
    for (CWindow* window = parent; window; window = window->getParent()) {
        if (TCast<IVirtualWindowParent>(window)) return;
    }
    throw CError(String(), localize(texts::outerWindowHasNoVirtualWindowParent));
}

CCoreWindow::CCoreWindow(CWindow& window, P<ISkin> skin, int initialState, P<ITextSource> source)
    : m_window(window), m_skin(std::move(skin)),
      m_layers(window, source ? source : P<ITextSource>(make<CWindowTextSource>(window))), m_state(initialState)
{
    m_layers.addLayers(m_skin->getAllLayers());
}

CCoreWindow::~CCoreWindow()
{
    if (m_timer) {
        m_timer->removeListener(this);
        m_timer->stop();
    }
}

void CCoreWindow::ensureStarted()
{
    if (m_started) return;
    // The first live layers wait for the window's first size or paint, when
    // it sits in its frame and knows the frame's scale.
    m_started = true;
    m_layers.updateLayers(m_skin->getStateLayers(m_state), now());
    schedule(now());
}

void CCoreWindow::reset()
{
    if (!m_started) return;
    m_layers.updateLayers({}, now());
    m_started = false;
    // A change under way is not played again: the window shows where it ends.
    if (m_inTransition) m_state = m_skin->getFollowState(m_state);
    m_inTransition = false;
    ensureStarted();
    m_window.invalidate();
}

bool CCoreWindow::applyState(int state, std::int64_t time)
{
    if (state < 0 || state >= m_skin->getStateCount()) return false;
    if (!m_started) {
        // Nothing has been shown yet: the window starts where the change
        // would have ended.
        m_state = m_skin->getFollowState(state);
        return false;
    }
    if (state == m_state) return false;
    const int from = m_state;
    m_state = state;
    m_inTransition = !m_skin->getTransitionLayers(from, state).empty() || m_skin->getFollowState(state) != state;
    m_layers.updateLayers(m_skin->getLayersForChange(from, state), time);
    // A transition of still pictures has played as soon as it starts.
    if (m_inTransition) finishTransition(time);
    schedule(time);
    return true;
}

bool CCoreWindow::finishTransition(std::int64_t time)
{
    if (!m_inTransition || time < m_layers.getEndTime()) return false;
    m_inTransition = false;
    m_state = m_skin->getFollowState(m_state);
    m_layers.updateLayers(m_skin->getStateLayers(m_state), time);
    return true;
}

void CCoreWindow::propertyChanged(const String& name)
{
    if (!m_started) return;
    if (m_layers.refreshLayers(name, now())) {
        schedule(now());
        m_window.invalidate();
    }
}

void CCoreWindow::setState(int state)
{
    ensureStarted();
    if (applyState(state, now())) m_window.invalidate();
}

bool CCoreWindow::syncState(int state)
{
    ensureStarted();
    return applyState(state, now());
}

void CCoreWindow::update(std::int64_t time)
{
    ensureStarted();
    bool changed = m_layers.update(time);
    if (finishTransition(time)) changed = true;
    schedule(time);
    if (changed) m_window.invalidate();
}

void CCoreWindow::schedule(std::int64_t time)
{
    std::int64_t next = m_layers.getNextChangeTime();
    if (m_inTransition) {
        const std::int64_t end = m_layers.getEndTime();
        if (next < 0 || end < next) next = end;
    }
    if (next < 0) {
        if (m_timer) m_timer->stop();
        return;
    }
    // Without the platform's timers (tests off screen) the animations
    // advance only when update is called.
    try {
        if (!m_timer) {
            m_timer = make<posix::CWindowTimer>();
            m_timer->addFrailListener(this);
        }
        m_timer->setInterval(static_cast<std::int32_t>(std::clamp<std::int64_t>(next - time, 1, 1000)));
        m_timer->start();
    } catch (const CException&) {
        m_timer = nullptr;
    }
}

void CCoreWindow::timerFired(posix::CWindowTimer*)
{
    update(now());
}

void CCoreWindow::resize(CSize size)
{
    m_layers.setSize(size);
}

void CCoreWindow::paint(CPainter& painter)
{
    ensureStarted();
    m_layers.paint(painter);
}

CSize CCoreWindow::getPreferredSize(CSize content, LayerSizing sizing) const
{
    const SkinMargins margins = m_skin->getObjectPos();
    CSize size{content.width + margins.horizontal(), content.height + margins.vertical()};
    const CFrameWindow* frame = m_window.getFrame();
    const double scale = frame ? frame->getScaleFactor() : 1.0;
    for (const P<ILayer>& layer : m_skin->getAllLayers()) {
        if (sizing == LayerSizing::imageLayersOnly && layer->isTextLayer()) continue;
        const CSize layerSize = layer->getPreferredSize(*m_layers.getTextSource(), scale);
        size.width = std::max(size.width, layerSize.width);
        size.height = std::max(size.height, layerSize.height);
    }
    return size;
}

CRect CCoreWindow::getContentRect() const
{
    const SkinMargins margins = m_skin->getObjectPos();
    return m_window.getClientRect().inset(margins.left, margins.top, margins.right, margins.bottom);
}

}  // namespace fenn::gui::skin
