#pragma once

#include <SDL.h>

#include "foundation/CObject.h"
#include "foundation/P.h"
#include "foundation/posix/SDLEventHandlers.h"
#include "gui/IVirtualWindowParent.h"
#include "gui/image/IImage.h"

namespace fenn::gui {
class CFrameWindow;
}

namespace fenn::gui::sdl {

// Shows a frame in an SDL window: the frame's cairo buffer goes to a
// streaming texture (ARGB8888, the same byte order) and the window's events
// come back as the frame's input, scaled from device to layout pixels. The
// frame owns its host and outlives it; the host holds the frame raw. The
// frame's decorations (blank, resizable, opacity, icon) go to the window
// when it is made and whenever they change. GUI thread only.
class CSDLFrameHost : public CObject, public virtual IFrameHost, public posix::ISDLEventHandler
{
public:
    // Creates the SDL window, hidden, with the frame's decorations, and sets
    // the frame's scale factor.
    explicit CSDLFrameHost(CFrameWindow* frame);
    ~CSDLFrameHost() override;
    CSDLFrameHost(const CSDLFrameHost&) = delete;
    CSDLFrameHost& operator=(const CSDLFrameHost&) = delete;

    // Device pixels per layout pixel for this display: GDK_SCALE when set,
    // else the display's DPI over 96 in quarter steps, at least 1.
    static double scaleFactorFor(int displayIndex);

    void show() override;
    void hide() override;
    void setTitle(const char* utf8) override;
    void setSize(CSize size) override;
    void present(const CRect* rects, int count) override;
    void startTextInput(const CRect& caret) override;
    void stopTextInput() override;
    void raise() override;
    void updateDecorations() override;

    bool handleSDLEvent(const SDL_Event& event) override;
    void afterSDLEvents() override;

    SDL_Window* getSDLWindow() const { return m_window; }
    std::uint32_t getWindowId() const { return m_windowId; }
    void detach() override;

private:
    void handleWindowEvent(const SDL_WindowEvent& event);
    CPoint toLayout(int x, int y) const;
    void ensureTexture(int width, int height);

    CFrameWindow* m_frame;
    // The icon last given to the window, so that it is converted once.
    P<IImage> m_icon;
    SDL_Window* m_window = nullptr;
    SDL_Renderer* m_renderer = nullptr;
    SDL_Texture* m_texture = nullptr;
    std::uint32_t m_windowId = 0;
    int m_textureWidth = 0;
    int m_textureHeight = 0;
    CPoint m_lastMouse;
    bool m_settingSize = false;
};

}  // namespace fenn::gui::sdl
