#include <SDL.h>
#include <gtest/gtest.h>

#include <functional>

#include "foundation/ISystem.h"
#include "foundation/posix/CPackage.h"
#include "foundation/posix/CSystem.h"
#include "gui/dialogs/CMessageBox.h"
#include "gui/sdl/CSDLFrameHost.h"
#include "tests/support/gui/GuiTestFrame.h"
#include "tests/support/gui/LaterAction.h"

namespace {

using namespace fenn::gui;
using fenn::make;
using fenn::P;

// The platform's event loop, installed for the test.
class ModalFrames : public ::testing::Test
{
protected:
    ModalFrames() { fenn::setSystem(m_system); }
    ~ModalFrames() override { fenn::setSystem(nullptr); }

    void later(std::function<void()> work) { m_system->postAction(make<tbtest::LaterAction>(std::move(work))); }

    fenn::posix::CPlatformSession m_platform;
    P<fenn::posix::CSystem> m_system = make<fenn::posix::CSystem>();
};

TEST_F(ModalFrames, MessageBoxesAreAnsweredByKeysWhileTheOtherFramesWait)
{
    tbtest::GuiTestFrame main;
    struct Case
    {
        MessageBoxButtons buttons;
        std::vector<CKeyEvent> keys;
        MessageBoxResult expected;
    };
    const Case cases[] = {
        {MessageBoxButtons::ok, {{Key::enter}}, MessageBoxResult::ok},
        {MessageBoxButtons::yesNo, {{Key::enter}}, MessageBoxResult::yes},
        {MessageBoxButtons::yesNo, {{Key::tab}, {Key::space}}, MessageBoxResult::no},
        {MessageBoxButtons::yesNo, {{Key::escape}}, MessageBoxResult::no},
        {MessageBoxButtons::retryCancel, {{Key::escape}}, MessageBoxResult::cancel},
        {MessageBoxButtons::okCancel, {{Key::tab}, {Key::tab}, {Key::enter}}, MessageBoxResult::ok},
    };
    for (const Case& test : cases) {
        auto box = make<CMessageBox>("Question", "Replace the file \"x.wav\"? It will be moved to the Trash.",
                                     test.buttons);
        bool mainBlocked = false;
        later([&] {
            mainBlocked = main.frame().isInputBlocked();
            for (const CKeyEvent& key : test.keys) {
                box->injectKey(key, true);
                box->injectKey(key, false);
            }
        });
        EXPECT_EQ(box->runBox(), test.expected);
        EXPECT_TRUE(mainBlocked);
        EXPECT_FALSE(main.frame().isInputBlocked());
        EXPECT_FALSE(box->isOpen());
    }

    // A click on the second button; the picture of a box for a look.
    auto box = make<CMessageBox>("Delete", "Delete 3 files?", MessageBoxButtons::yesNo);
    later([&] {
        box->updateAndPaint();
        box->writePNG(fenn::String::copyOf(tbtest::testOutputFolder() + "/message-box.png"));
        const CRect no = box->getButtons()[1]->toFrame(box->getButtons()[1]->getClientRect());
        box->injectClick({no.x + no.width / 2, no.y + no.height / 2});
    });
    EXPECT_EQ(box->runBox(), MessageBoxResult::no);
}

TEST_F(ModalFrames, AnSDLWindowShowsTheFrameAndFeedsItsEvents)
{
    auto frame = make<CFrameWindow>();
    auto button = make<CButton>("Press");
    int clicks = 0;
    class Counter : public fenn::CObject, public virtual IWindowListener
    {
    public:
        explicit Counter(int& count) : m_count(count) {}
        void windowNotified(CWindow&, const CNotification& note) override { m_count += note.kind == Notification::clicked; }

    private:
        int& m_count;
    };
    auto counter = make<Counter>(clicks);
    button->addListener(counter.get());
    frame->addChild(button);
    button->setBounds({10, 10, 100, 30});
    frame->setBounds({0, 0, 200, 100});
    auto host = make<sdl::CSDLFrameHost>(frame.get());
    frame->setHost(host);
    frame->show();
    const double scale = frame->getScaleFactor();
    // A press and release on the button, as the window system sends them.
    for (const std::uint32_t type : {SDL_MOUSEBUTTONDOWN, SDL_MOUSEBUTTONUP}) {
        SDL_Event event{};
        event.type = type;
        event.button.windowID = host->getWindowId();
        event.button.button = SDL_BUTTON_LEFT;
        event.button.clicks = 1;
        event.button.x = static_cast<int>(50 * scale);
        event.button.y = static_cast<int>(25 * scale);
        SDL_PushEvent(&event);
    }
    m_system->pump();
    EXPECT_EQ(clicks, 1);
    // The turn's repaint has run: nothing is left dirty.
    EXPECT_FALSE(frame->hasDirtyRects());
    SDL_Event close{};
    close.type = SDL_WINDOWEVENT;
    close.window.event = SDL_WINDOWEVENT_CLOSE;
    close.window.windowID = host->getWindowId();
    SDL_PushEvent(&close);
    m_system->pump();
    EXPECT_FALSE(frame->isOpen());
}

}  // namespace
