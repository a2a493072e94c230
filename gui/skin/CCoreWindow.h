#pragma once

#include <cstdint>
#include <functional>

#include "foundation/CObject.h"
#include "foundation/posix/CWindowTimer.h"
#include "gui/skin/CLayerManager.h"
#include "gui/skin/ISkin.h"

namespace fenn::gui::skin {

// Which layers a preferred size takes into account.
enum class LayerSizing {
    allLayers,
    // For windows that measure their wrapped text themselves: a text layer
    // would ask for its text on one line.
    imageLayersOnly,
};

// The skin part of a skinned window (CCoreButton, CCoreTextField...): the
// skin, the live layers, the current state and the timing of transitions.
// Each core window derives from its plain widget class for behaviour and
// holds one of these for painting and sizing. The state machine: setState
// shows the layers of the transition (old, new), or the new state's own
// when that transition has none; when the transition's animations have
// played (the longest decides), the window moves to the state the skin
// names as following (normally the same one) and shows that state's own
// layers. A state that the skin makes go on to another ("checking") is a
// transition too, played by its own layers when the change has none. Time
// comes from a clock tests may replace; a window timer asks
// for the next frame while something plays. Owned by its window, which it
// knows by a raw reference; GUI thread.
class CCoreWindow : public CObject, public virtual posix::CWindowTimer::ITimerListener
{
public:
    using Clock = std::function<std::int64_t()>;

    // The clock of every core window, in milliseconds; null restores the
    // process's monotonic clock. Tests set their own and call update.
    static void setClock(Clock clock);
    static std::int64_t now();
    // Throws CError unless parent exists and its chain of parents reaches a
    // window with IVirtualWindowParent (a frame).
    static void checkParent(CWindow* parent);

    // source defaults to the window's own text.
    CCoreWindow(CWindow& window, P<ISkin> skin, int initialState, P<ITextSource> source = nullptr);
    ~CCoreWindow() override;
    CCoreWindow(const CCoreWindow&) = delete;
    CCoreWindow& operator=(const CCoreWindow&) = delete;

    const P<ISkin>& getSkin() const { return m_skin; }
    CLayerManager& getLayerManager() { return m_layers; }
    const CLayerManager& getLayerManager() const { return m_layers; }
    int getState() const { return m_state; }
    bool isInTransition() const { return m_inTransition; }

    // Moves to a state at now() and invalidates the window; nothing happens
    // when the window is in that state already.
    void setState(int state);
    // The same without invalidating, for a window that is being painted.
    // True when the state changed.
    bool syncState(int state);
    // Advances the animations and ends a transition that has played; the
    // window is invalidated when its picture changed.
    void update(std::int64_t now);
    // Makes the live layers again (the frame or its scale changed).
    void reset();
    // The window property name changed: the layers that show it are made
    // again and the window is invalidated.
    void propertyChanged(const String& name);

    // The window's new size.
    void resize(CSize size);
    // Paints the live layers (the window paints text itself when the skin
    // has no text layer).
    void paint(CPainter& painter);
    // The larger of content plus objectpos and every layer's preferred size.
    CSize getPreferredSize(CSize content, LayerSizing sizing = LayerSizing::allLayers) const;
    // The window's area inside objectpos.
    CRect getContentRect() const;

    void timerFired(posix::CWindowTimer* timer) override;

private:
    bool applyState(int state, std::int64_t now);
    bool finishTransition(std::int64_t now);
    void schedule(std::int64_t now);
    void ensureStarted();

    CWindow& m_window;
    P<ISkin> m_skin;
    CLayerManager m_layers;
    int m_state;
    bool m_started = false;
    bool m_inTransition = false;
    P<posix::CWindowTimer> m_timer;
};

}  // namespace fenn::gui::skin
