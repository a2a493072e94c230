#pragma once

#include <functional>
#include <map>
#include <vector>

#include "foundation/posix/CWindowTimer.h"
#include "gui/CWindow.h"
#include "gui/IVirtualWindowParent.h"
#include "gui/image/IImage.h"

namespace fenn::gui {

// What closing a frame does.
enum class CloseAction {
    // The frame is hidden; its owner decides what follows.
    hide,
    // Closing ends the application's event loop.
    exit,
};

// The outline of a shaped frame ("shape" in layout files): the frame's
// pixels where the image's alpha lies below the threshold are left
// transparent. The image covers the frame at its own size from the top
// left, or, adapted to the window size, stretched over it as a nine-patch
// whose margins keep their size.
struct CFrameShape
{
    P<IImage> image;
    bool adaptToWindowSize = false;
    int alphaThreshold = 128;
    int marginLeft = 0;
    int marginTop = 0;
    int marginRight = 0;
    int marginBottom = 0;
};

// A top-level window: the root of a window tree, with the double buffer the
// tree paints into and the input state of the tree (focus, hover, the
// pressed window, mouse capture, accelerators). A host of the platform
// (gui/sdl) shows the buffer and feeds events in through the inject
// operations; without a host the frame works the same off screen. Windows
// are laid out and dirty rectangles repainted once per loop turn
// (updateAndPaint). GUI thread only.
class CFrameWindow : public CWindow,
                     public virtual IVirtualWindowParent,
                     public virtual posix::CWindowTimer::ITimerListener
{
public:
    CFrameWindow();
    ~CFrameWindow() override;

    void setHost(P<IFrameHost> host);
    // Makes the hosts of frames shown without one; the window system of
    // the platform installs it. Without a factory frames stay off screen.
    using HostFactory = std::function<P<IFrameHost>(CFrameWindow& frame)>;
    static void setHostFactory(HostFactory factory);
    P<IFrameHost> getHost() const { return m_host; }

    // ---- showing and closing ----
    void show();
    void hide();
    bool isOpen() const { return m_open; }
    // The user's request to close: listeners hear closeRequested, then
    // the frame closes unless one of them called vetoClose.
    void requestClose();
    void vetoClose() { m_closeVetoed = true; }
    // Closes without asking: hides the frame and does its close action.
    virtual void close();
    void setCloseAction(CloseAction action) { m_closeAction = action; }
    CloseAction getCloseAction() const { return m_closeAction; }
    void setText(const String& text) override;
    // Sizes the frame to its preferred size.
    void pack();
    // A shape without an image gives the frame back its rectangle.
    void setShape(const CFrameShape& shape);
    const CFrameShape& getShape() const { return m_shape; }
    void setScaleFactor(double scale);

    // ---- the platform window's decorations ----
    // A blank frame has no title bar and no border; a frame that is not
    // resizable keeps the size its owner gives it; the opacity runs from 0
    // (clear) to 1 (values outside are clamped) and is ignored where the
    // platform cannot blend windows; the icon stands for the window in the
    // desktop's task bar and switcher. The host applies them when it gets
    // the frame and whenever one changes.
    void setBlank(bool blank);
    bool isBlank() const { return m_blank; }
    void setResizable(bool resizable);
    bool isResizable() const { return m_resizable; }
    void setOpacity(double opacity);
    double getOpacity() const { return m_opacity; }
    void setIcon(P<IImage> icon);
    const P<IImage>& getIcon() const { return m_icon; }

    // ---- IVirtualWindowParent ----
    cairo_surface_t* getBuffer() const override { return m_buffer; }
    double getScaleFactor() const override { return m_scale; }
    void invalidateFrameRect(const CRect& rect) override;
    void captureMouse(CWindow* window) override;
    void releaseCapture() override;

    // ---- layout and painting ----
    void requestLayout() { m_layoutPending = true; }
    bool isLayoutPending() const { return m_layoutPending; }
    // Lays out the whole tree if something asked for it.
    void updateLayout();
    // Lays out, repaints what is dirty and shows it through the host;
    // returns the repainted rectangles in device pixels.
    std::vector<CRect> updateAndPaint();
    bool hasDirtyRects() const { return !m_dirty.empty(); }
    // Writes the buffer as it stands to a PNG file; false if that failed.
    bool writePNG(const String& path) const;

    // ---- input, in the frame's coordinates ----
    void injectMouseMove(CPoint point, std::uint32_t modifiers = modifierNone);
    void injectMouseButton(CPoint point, MouseButton button, bool pressed, int clicks = 1,
                           std::uint32_t modifiers = modifierNone);
    void injectWheel(CPoint point, int deltaX, int deltaY, std::uint32_t modifiers = modifierNone);
    void injectKey(const CKeyEvent& event, bool pressed);
    void injectTextInput(const String& text);
    void injectTextEditing(const String& text, int cursor);
    void injectFilesDropped(CPoint point, const std::vector<String>& paths);
    // The pointer left the frame, or the frame lost the keyboard.
    void injectMouseLeft();
    // A press, a release and (for clicks) the click of the left button.
    void injectClick(CPoint point, int clicks = 1);
    // Types text as key and text events, character by character.
    void injectTyping(const String& text);

    // ---- focus, hover, pressed ----
    CWindow* getFocusWindow() const { return m_focus; }
    void setFocusWindow(CWindow* window);
    // Moves the focus along the Tab order (the tree, depth first).
    void focusNext(bool backwards);
    // Whether the keyboard was used last, which shows the focus ring.
    bool isFocusVisible() const { return m_focusVisible; }
    CWindow* getHoverWindow() const { return m_hover; }
    CWindow* getPressedWindow() const { return m_pressed; }
    CWindow* getCaptureWindow() const { return m_capture; }

    // ---- accelerators ----
    // Binds a key ("F1", "Enter", "Escape", "Ctrl+S", "Alt+F4"; names in any
    // case) to an action run when no window used the key. Throws
    // CInvalidArgError for a name it does not know.
    void addAccelerator(const String& keyName, std::function<void()> action);
    void removeAccelerator(const String& keyName);

    // ---- pop-ups ----
    // Shows a window above everything else at rect (frame coordinates): a
    // drop list's list, a menu, a tool tip. A press outside every pop-up
    // closes them all (listeners hear closed) and is not passed on.
    void openPopup(const P<CWindow>& popup, const CRect& rect);
    void closePopup(CWindow* popup);
    void closePopups();
    bool hasPopups() const { return !m_popups.empty(); }

    // ---- tool tips ----
    // The pointer has rested on a window with a tool tip text for this long
    // when its tool tip shows.
    static constexpr int kToolTipDelay = 600;
    // Shows the tool tip of the window under the pointer now; the frame's
    // timer calls it after the delay.
    void showPendingToolTip();
    CWindow* getToolTip() const { return m_toolTip.get(); }
    void timerFired(posix::CWindowTimer* timer) override;

    // ---- modality ----
    // A frame beneath a modal frame takes no input.
    void setInputBlocked(bool blocked) { m_inputBlocked = blocked; }
    bool isInputBlocked() const { return m_inputBlocked; }

    // The frames that exist now, in the order they were made.
    static std::vector<CFrameWindow*> getOpenFrames();

    // Told by windows of the tree.
    void windowDetached(CWindow* root);
    void windowHidden(CWindow* root);

    void paint(CPainter& painter) override;

protected:
    void onResized() override;

private:
    struct AcceleratorKey
    {
        Key key = Key::other;
        char32_t character = 0;
        std::uint32_t modifiers = 0;
        friend auto operator<=>(const AcceleratorKey&, const AcceleratorKey&) = default;
    };
    static AcceleratorKey parseKeyName(const String& name);

    void allocateBuffer();
    void paintRect(const CRect& rect);
    void paintWindow(CWindow& window, CPainter& painter, CPoint origin, const CRect& clip);
    void paintFocusRing(CPainter& painter);
    void applyShape(const CRect& deviceRect);
    CRect focusRingRect(CWindow* window) const;
    void layoutTree(CWindow& window);
    CWindow* targetAt(CPoint point) const;
    void setHover(CWindow* window);
    void hideToolTip();
    void restartToolTipTimer();
    void updateTextInput();
    bool isInSubtree(CWindow* window, CWindow* root) const;
    void collectFocusable(CWindow& window, std::vector<CWindow*>& out) const;

    P<IFrameHost> m_host;
    cairo_surface_t* m_buffer = nullptr;
    double m_scale = 1.0;
    std::vector<CRect> m_dirty;
    bool m_layoutPending = true;
    bool m_open = false;
    bool m_closeVetoed = false;
    CloseAction m_closeAction = CloseAction::hide;
    bool m_inputBlocked = false;
    bool m_focusVisible = false;
    bool m_textInputActive = false;
    CWindow* m_focus = nullptr;
    // The focus asked for before the frame was shown; it is given on show.
    CWindow* m_initialFocus = nullptr;
    CWindow* m_hover = nullptr;
    CWindow* m_pressed = nullptr;
    CWindow* m_capture = nullptr;
    bool m_implicitCapture = false;
    std::map<AcceleratorKey, std::function<void()>> m_accelerators;
    std::vector<P<CWindow>> m_popups;
    P<CWindow> m_toolTip;
    CWindow* m_toolTipOwner = nullptr;
    CPoint m_lastPointer;
    P<posix::CWindowTimer> m_toolTipTimer;
    CFrameShape m_shape;
    bool m_blank = false;
    bool m_resizable = true;
    double m_opacity = 1.0;
    P<IImage> m_icon;
};

}  // namespace fenn::gui
