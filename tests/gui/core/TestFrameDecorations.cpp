// A frame's decorations (blank, resizable, opacity, icon): what the frame
// tells its host, and what the SDL host makes of them.
#include <SDL.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "foundation/posix/CPackage.h"
#include "gui/CFrameWindow.h"
#include "gui/image/CImage.h"
#include "gui/sdl/CSDLFrameHost.h"
#include "gui/sdl/SDLImage.h"

namespace {

using namespace fenn::gui;
using fenn::make;
using fenn::P;

// Records the decorations each time the frame says they changed.
class DecorationRecorder : public fenn::CObject, public virtual IFrameHost
{
public:
    struct Seen
    {
        bool blank;
        bool resizable;
        double opacity;
        IImage* icon;
    };

    explicit DecorationRecorder(CFrameWindow& frame) : m_frame(frame) {}
    void show() override {}
    void hide() override {}
    void setTitle(const char*) override {}
    void setSize(CSize) override {}
    void present(const CRect*, int) override {}
    void startTextInput(const CRect&) override {}
    void stopTextInput() override {}
    void raise() override {}
    void detach() override {}
    void updateDecorations() override
    {
        seen.push_back({m_frame.isBlank(), m_frame.isResizable(), m_frame.getOpacity(), m_frame.getIcon().get()});
    }

    std::vector<Seen> seen;

private:
    CFrameWindow& m_frame;
};

// A 2 by 1 image: opaque red, then blue at half strength.
P<CImage> twoPixelImage()
{
    const std::uint8_t rgba[] = {255, 0, 0, 255, 0, 0, 255, 128};
    return make<CImage>(CSize{2, 1}, rgba);
}

TEST(FrameDecorations, TheHostHearsOfEachChangeOnce)
{
    auto frame = make<CFrameWindow>();
    // Set before there is a host: the host gets them all when it comes.
    frame->setBlank(true);
    frame->setOpacity(0.75);
    auto host = make<DecorationRecorder>(*frame);
    frame->setHost(host);
    ASSERT_EQ(host->seen.size(), 1u);
    EXPECT_TRUE(host->seen[0].blank);
    EXPECT_TRUE(host->seen[0].resizable);
    EXPECT_EQ(host->seen[0].opacity, 0.75);

    const P<CImage> icon = twoPixelImage();
    frame->setResizable(false);
    frame->setIcon(icon);
    frame->setBlank(false);
    ASSERT_EQ(host->seen.size(), 4u);
    EXPECT_FALSE(host->seen[1].resizable);
    EXPECT_EQ(host->seen[2].icon, icon.get());
    EXPECT_FALSE(host->seen[3].blank);
    // The same values again are no change.
    frame->setResizable(false);
    frame->setIcon(icon);
    frame->setOpacity(0.75);
    EXPECT_EQ(host->seen.size(), 4u);

    // Opacity stays between clear and opaque; not a number is opaque.
    frame->setOpacity(-0.5);
    EXPECT_EQ(frame->getOpacity(), 0.0);
    frame->setOpacity(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(frame->getOpacity(), 1.0);
    frame->setHost(nullptr);
}

class SDLFrameDecorations : public ::testing::Test
{
protected:
    fenn::posix::CPlatformSession m_platform;
};

TEST_F(SDLFrameDecorations, TheWindowIsMadeWithTheFramesDecorations)
{
    const struct
    {
        bool blank;
        bool resizable;
    } cases[] = {{false, true}, {true, false}};
    for (const auto& test : cases) {
        auto frame = make<CFrameWindow>();
        frame->setBlank(test.blank);
        frame->setResizable(test.resizable);
        frame->setOpacity(0.5);
        frame->setIcon(twoPixelImage());
        auto host = make<sdl::CSDLFrameHost>(frame.get());
        frame->setHost(host);
        const std::uint32_t flags = SDL_GetWindowFlags(host->getSDLWindow());
        EXPECT_EQ((flags & SDL_WINDOW_BORDERLESS) != 0, test.blank);
        EXPECT_EQ((flags & SDL_WINDOW_RESIZABLE) != 0, test.resizable);
        // Where the driver blends windows, the window has the frame's opacity.
        float opacity = 1.0f;
        ASSERT_EQ(SDL_GetWindowOpacity(host->getSDLWindow(), &opacity), 0);
        if (SDL_SetWindowOpacity(host->getSDLWindow(), 0.5f) == 0) {
            EXPECT_FLOAT_EQ(opacity, 0.5f);
        }
        // Changes after the window is made go through without failing.
        frame->setBlank(!test.blank);
        frame->setResizable(!test.resizable);
        frame->setIcon(twoPixelImage());
        frame->show();
        frame->setHost(nullptr);
    }
}

TEST(SDLImage, SurfacesHaveTheImagesStraightColours)
{
    const sdl::SDLSurfacePointer surface = sdl::toSDLSurface(*twoPixelImage());
    ASSERT_TRUE(surface);
    ASSERT_EQ(surface->w, 2);
    ASSERT_EQ(surface->h, 1);
    ASSERT_EQ(surface->format->format, static_cast<std::uint32_t>(SDL_PIXELFORMAT_ARGB8888));
    std::uint32_t pixels[2];
    std::memcpy(pixels, surface->pixels, sizeof pixels);
    EXPECT_EQ(pixels[0], 0xFFFF0000u);
    // Premultiplied, the blue would be 128; straight it is full again.
    EXPECT_EQ(pixels[1], 0x800000FFu);
    // A clear pixel is clear black whatever its colour bytes said.
    const std::uint8_t clearRGBA[] = {200, 100, 50, 0};
    const sdl::SDLSurfacePointer clear = sdl::toSDLSurface(*make<CImage>(CSize{1, 1}, clearRGBA));
    std::uint32_t clearPixel = 1;
    std::memcpy(&clearPixel, clear->pixels, 4);
    EXPECT_EQ(clearPixel, 0u);
}

}  // namespace
