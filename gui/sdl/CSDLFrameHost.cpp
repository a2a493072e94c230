#include "gui/sdl/CSDLFrameHost.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "foundation/CError.h"
#include "gui/CFrameWindow.h"
#include "gui/sdl/SDLImage.h"
#include "gui/sdl/SDLInput.h"

namespace fenn::gui::sdl {

namespace {

// The resolution at which one layout pixel is one device pixel.
constexpr float kBaseDPI = 96.0f;

}  // namespace

double CSDLFrameHost::scaleFactorFor(int displayIndex)
{
    if (const char* gdkScale = std::getenv("GDK_SCALE")) {
        const double scale = std::atof(gdkScale);
        if (scale >= 1.0 && scale <= 4.0) return scale;
    }
    float dpi = 0.0f;
    if (SDL_GetDisplayDPI(displayIndex, &dpi, nullptr, nullptr) != 0 || dpi <= 0.0f) return 1.0;
    return std::clamp(std::round(dpi / kBaseDPI * 4.0) / 4.0, 1.0, 4.0);
}

CSDLFrameHost::CSDLFrameHost(CFrameWindow* frame) : m_frame(frame)
{
    const double scale = scaleFactorFor(0);
    m_frame->setScaleFactor(scale);
    const CSize size = m_frame->getBounds().size();
    std::uint32_t flags = SDL_WINDOW_HIDDEN;
    if (m_frame->isResizable()) flags |= SDL_WINDOW_RESIZABLE;
    if (m_frame->isBlank()) flags |= SDL_WINDOW_BORDERLESS;
    m_window = SDL_CreateWindow(m_frame->getText().c_str(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED,
                                static_cast<int>(std::ceil(size.width * scale)),
                                static_cast<int>(std::ceil(size.height * scale)), flags);
    if (!m_window) throw CError("Platform error", String("No window: ") + String::copyOf(SDL_GetError()));
    m_renderer = SDL_CreateRenderer(m_window, -1, 0);
    if (!m_renderer) m_renderer = SDL_CreateRenderer(m_window, -1, SDL_RENDERER_SOFTWARE);
    if (!m_renderer) {
        SDL_DestroyWindow(m_window);
        throw CError("Platform error", String("No renderer: ") + String::copyOf(SDL_GetError()));
    }
    m_windowId = SDL_GetWindowID(m_window);
    posix::addSDLEventHandler(this);
    updateDecorations();
}

CSDLFrameHost::~CSDLFrameHost()
{
    posix::removeSDLEventHandler(this);
    if (m_texture) SDL_DestroyTexture(m_texture);
    if (m_renderer) SDL_DestroyRenderer(m_renderer);
    if (m_window) SDL_DestroyWindow(m_window);
}

void CSDLFrameHost::detach()
{
    m_frame = nullptr;
    posix::removeSDLEventHandler(this);
}

void CSDLFrameHost::show()
{
    SDL_ShowWindow(m_window);
}

void CSDLFrameHost::hide()
{
    SDL_HideWindow(m_window);
}

void CSDLFrameHost::setTitle(const char* utf8)
{
    SDL_SetWindowTitle(m_window, utf8);
}

void CSDLFrameHost::setSize(CSize size)
{
    if (!m_frame) return;
    const double scale = m_frame->getScaleFactor();
    const int width = static_cast<int>(std::ceil(size.width * scale));
    const int height = static_cast<int>(std::ceil(size.height * scale));
    int current[2] = {0, 0};
    SDL_GetWindowSize(m_window, &current[0], &current[1]);
    if (current[0] == width && current[1] == height) return;
    m_settingSize = true;
    SDL_SetWindowSize(m_window, width, height);
    m_settingSize = false;
}

void CSDLFrameHost::ensureTexture(int width, int height)
{
    if (m_texture && m_textureWidth == width && m_textureHeight == height) return;
    if (m_texture) SDL_DestroyTexture(m_texture);
    m_texture = SDL_CreateTexture(m_renderer, SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_STREAMING, width, height);
    m_textureWidth = width;
    m_textureHeight = height;
}

void CSDLFrameHost::present(const CRect* rects, int count)
{
    if (!m_frame) return;
    cairo_surface_t* buffer = m_frame->getBuffer();
    const int width = cairo_image_surface_get_width(buffer);
    const int height = cairo_image_surface_get_height(buffer);
    const bool fresh = !m_texture || m_textureWidth != width || m_textureHeight != height;
    ensureTexture(width, height);
    if (!m_texture) return;
    const unsigned char* pixels = cairo_image_surface_get_data(buffer);
    const int stride = cairo_image_surface_get_stride(buffer);
    // A new texture gets the whole buffer; otherwise only what was repainted.
    const CRect whole{0, 0, width, height};
    const CRect* updates = fresh ? &whole : rects;
    const int updateCount = fresh ? 1 : count;
    for (int i = 0; i < updateCount; ++i) {
        const CRect area = updates[i].intersected(whole);
        if (area.isEmpty()) continue;
        const SDL_Rect target{area.x, area.y, area.width, area.height};
        SDL_UpdateTexture(m_texture, &target, pixels + static_cast<std::ptrdiff_t>(area.y) * stride + area.x * 4,
                          stride);
    }
    SDL_RenderClear(m_renderer);
    SDL_RenderCopy(m_renderer, m_texture, nullptr, nullptr);
    SDL_RenderPresent(m_renderer);
}

void CSDLFrameHost::startTextInput(const CRect& caret)
{
    if (!m_frame) return;
    const double scale = m_frame->getScaleFactor();
    SDL_Rect rect{static_cast<int>(caret.x * scale), static_cast<int>(caret.y * scale),
                  static_cast<int>(caret.width * scale), static_cast<int>(caret.height * scale)};
    SDL_SetTextInputRect(&rect);
    SDL_StartTextInput();
}

void CSDLFrameHost::stopTextInput()
{
    SDL_StopTextInput();
}

void CSDLFrameHost::raise()
{
    SDL_RaiseWindow(m_window);
}

void CSDLFrameHost::updateDecorations()
{
    if (!m_frame) return;
    // Drivers without decorations (the dummy one of the tests, some
    // Wayland compositors) ignore these; the window then keeps what it was
    // made with.
    SDL_SetWindowBordered(m_window, m_frame->isBlank() ? SDL_FALSE : SDL_TRUE);
    SDL_SetWindowResizable(m_window, m_frame->isResizable() ? SDL_TRUE : SDL_FALSE);
    float opacity = 1.0f;
    if (SDL_GetWindowOpacity(m_window, &opacity) == 0 && opacity != static_cast<float>(m_frame->getOpacity()))
        SDL_SetWindowOpacity(m_window, static_cast<float>(m_frame->getOpacity()));
    // SDL keeps a copy of the icon; a frame that drops its icon keeps the
    // last one shown, as SDL has no way back to the desktop's default.
    const P<IImage>& icon = m_frame->getIcon();
    if (icon && icon != m_icon) {
        const SDLSurfacePointer surface = toSDLSurface(*icon);
        SDL_SetWindowIcon(m_window, surface.get());
        m_icon = icon;
    }
}

CPoint CSDLFrameHost::toLayout(int x, int y) const
{
    const double scale = m_frame ? m_frame->getScaleFactor() : 1.0;
    return {static_cast<int>(std::floor(x / scale)), static_cast<int>(std::floor(y / scale))};
}

bool CSDLFrameHost::handleSDLEvent(const SDL_Event& event)
{
    if (!m_frame) return false;
    // The frame may close and drop its last other reference while it handles the event.
    const P<CFrameWindow> frame(m_frame);
    switch (event.type) {
    case SDL_WINDOWEVENT:
        if (event.window.windowID != m_windowId) return false;
        handleWindowEvent(event.window);
        return true;
    case SDL_MOUSEMOTION:
        if (event.motion.windowID != m_windowId) return false;
        m_lastMouse = toLayout(event.motion.x, event.motion.y);
        frame->injectMouseMove(m_lastMouse, translateModifiers(static_cast<std::uint16_t>(SDL_GetModState())));
        return true;
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
        if (event.button.windowID != m_windowId) return false;
        m_lastMouse = toLayout(event.button.x, event.button.y);
        frame->injectMouseButton(m_lastMouse, translateButton(event.button.button), event.type == SDL_MOUSEBUTTONDOWN,
                                 std::max<int>(1, event.button.clicks),
                                 translateModifiers(static_cast<std::uint16_t>(SDL_GetModState())));
        return true;
    case SDL_MOUSEWHEEL: {
        if (event.wheel.windowID != m_windowId) return false;
        const int sign = event.wheel.direction == SDL_MOUSEWHEEL_FLIPPED ? -1 : 1;
        // SDL counts away from the user as positive; the toolkit counts down as positive.
        frame->injectWheel(m_lastMouse, sign * event.wheel.x, -sign * event.wheel.y,
                           translateModifiers(static_cast<std::uint16_t>(SDL_GetModState())));
        return true;
    }
    case SDL_KEYDOWN:
    case SDL_KEYUP:
        if (event.key.windowID != m_windowId) return false;
        frame->injectKey(translateKey(event.key), event.type == SDL_KEYDOWN);
        return true;
    case SDL_TEXTINPUT:
        if (event.text.windowID != m_windowId) return false;
        frame->injectTextInput(String::copyOf(event.text.text));
        return true;
    case SDL_TEXTEDITING:
        if (event.edit.windowID != m_windowId) return false;
        frame->injectTextEditing(String::copyOf(event.edit.text), event.edit.start);
        return true;
    case SDL_DROPFILE:
        if (event.drop.windowID != m_windowId) return false;
        if (event.drop.file) frame->injectFilesDropped(m_lastMouse, {String::copyOf(event.drop.file)});
        SDL_free(event.drop.file);
        return true;
    default:
        return false;
    }
}

void CSDLFrameHost::handleWindowEvent(const SDL_WindowEvent& event)
{
    const P<CFrameWindow> frame(m_frame);
    switch (event.event) {
    case SDL_WINDOWEVENT_SIZE_CHANGED: {
        if (m_settingSize) break;
        const CPoint size = toLayout(event.data1, event.data2);
        frame->setBounds({0, 0, std::max(1, size.x), std::max(1, size.y)});
        break;
    }
    case SDL_WINDOWEVENT_EXPOSED:
        frame->invalidate();
        // A new texture follows, so the whole buffer is shown again.
        if (m_texture) SDL_DestroyTexture(m_texture);
        m_texture = nullptr;
        break;
    case SDL_WINDOWEVENT_LEAVE:
    case SDL_WINDOWEVENT_FOCUS_LOST:
        frame->injectMouseLeft();
        break;
    case SDL_WINDOWEVENT_CLOSE:
        frame->requestClose();
        break;
    default:
        break;
    }
}

void CSDLFrameHost::afterSDLEvents()
{
    if (!m_frame || !m_frame->isOpen()) return;
    const P<CFrameWindow> frame(m_frame);
    frame->updateAndPaint();
}

}  // namespace fenn::gui::sdl
