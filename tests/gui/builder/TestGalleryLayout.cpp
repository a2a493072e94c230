#include <chrono>
#include <thread>

#include "foundation/CPackageManager.h"
#include "foundation/Core.h"
#include "foundation/ISystem.h"
#include "foundation/posix/CPackage.h"
#include "gui/CPackage.h"
#include "gui/IWindowListener.h"
#include "gui/skin/CCoreButton.h"
#include "gui/skin/CPackage.h"
#include "gui/skin/CSkinManager.h"
#include "gui/widgets/CCellView.h"
#include "gui/widgets/CEditField.h"
#include "gui/widgets/CTabView.h"
#include "tests/gui/builder/BuilderTestSupport.h"
#include "tests/gui/gallery/Gallery.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using tbtest::BuilderTest;

using GalleryLayout = BuilderTest;

// Whether two rectangles share any pixel.
bool overlap(const CRect& a, const CRect& b)
{
    return !a.intersected(b).isEmpty();
}

TEST_F(GalleryLayout, BuildsIntoATestFrameAsATidyDialog)
{
    m_builder->loadFile(tbtest::galleryLayoutURI());
    // The frame's file, its content piece and the nested values piece.
    EXPECT_EQ(m_builder->getDocumentCount(), 3);
    tbtest::GuiTestFrame frame(1024, 768);
    tbtest::buildGalleryContent(*m_builder, frame.frame());
    frame.render();

    // Everything inside the frame and nothing on top of its neighbours.
    const char* controls[] = {"convert", "cancel",        "disabledButton", "normalise",    "keep",     "cueSheet",
                              "quality", "format",        "pattern",        "disabledList", "artist",   "search",
                              "source",  "disabledField", "notes",          "description",  "progress", "volume",
                              "play",    "cover",         "wave",           "tabs"};
    std::vector<CRect> placed;
    for (const char* id : controls) {
        const fenn::P<CWindow> window = m_builder->getWindow(id);
        ASSERT_TRUE(window) << id;
        const CRect bounds = window->toFrame(window->getClientRect());
        EXPECT_FALSE(bounds.isEmpty()) << id;
        EXPECT_TRUE(frame.frame().getClientRect().intersected(bounds) == bounds) << id;
        for (const CRect& other : placed) EXPECT_FALSE(overlap(bounds, other)) << id;
        placed.push_back(bounds);
    }
    // The button row shares one size.
    EXPECT_EQ(m_builder->getWindow("convert")->getBounds().size(), m_builder->getWindow("cancel")->getBounds().size());
    EXPECT_EQ(m_builder->getWindow("convert")->getBounds().size(),
              m_builder->getWindow("disabledButton")->getBounds().size());
    // The list fills the tab's page and got its rows from the gallery code.
    auto* tracks = dynamic_cast<CCellView*>(m_builder->getWindow("tracks").get());
    ASSERT_NE(tracks, nullptr);
    EXPECT_EQ(tracks->getRowCount(), 200);
    EXPECT_GT(tracks->getBounds().height, 100);

    // Typing reaches the field that was clicked.
    auto* artist = dynamic_cast<CEditField*>(m_builder->getWindow("artist").get());
    frame.frame().injectClick(frame.centreOf(*artist));
    frame.frame().injectKey({Key::home}, true);
    frame.frame().injectTyping("The ");
    EXPECT_EQ(artist->getText(), "The Quorrel Ensemble");
    frame.render();
    frame.writePNG("gallery-default");
}

class ClickRecorder : public fenn::CObject, public virtual IWindowListener
{
public:
    void windowNotified(CWindow&, const CNotification& notification) override
    {
        if (notification.kind == Notification::clicked) ++count;
    }
    int count = 0;
};

// The same file through the skin's window system with the shipped skin:
// the buttons, fields, check boxes, sliders and tabs come out skinned and
// the dialog keeps its arrangement.
TEST_F(GalleryLayout, BuildsWithTheShippedSkin)
{
    // The packages started as the program starts them: the skin package
    // registers its window system, and the skin's fades run on the loop's
    // timers, so the picture is taken when they have played.
    fenn::posix::CPlatformSession platform;
    const fenn::P<fenn::CPackageManager> packages = fenn::startCore();
    packages->addPackage(fenn::make<fenn::posix::CPackage>());
    packages->addPackage(fenn::make<fenn::gui::CPackage>());
    packages->addPackage(fenn::make<fenn::gui::skin::CPackage>());
    packages->startAll();
    struct StopPackages
    {
        fenn::CPackageManager& packages;
        ~StopPackages() { packages.stopAll(); }
    } stopPackages{*packages};
    tbtest::loadDefaultSkin();
    const fenn::P<IWindowSystem> skinSystem = CWindowSystemRegistry::get("skin");
    ASSERT_TRUE(skinSystem);
    m_builder->setDefaultWindowSystem(skinSystem);
    m_builder->loadFile(tbtest::galleryLayoutURI());
    for (const double scale : {1.0, 2.0}) {
        tbtest::GuiTestFrame frame(1024, 768, scale);
        tbtest::buildGalleryContent(*m_builder, frame.frame());
        frame.render();
        EXPECT_NE(dynamic_cast<fenn::gui::skin::CCoreButton*>(m_builder->getWindow("convert").get()), nullptr);
        std::vector<CRect> placed;
        for (const char* id : {"convert", "cancel", "normalise", "quality", "artist", "notes", "volume", "tabs"}) {
            const fenn::P<CWindow> window = m_builder->getWindow(id);
            ASSERT_TRUE(window) << id;
            const CRect bounds = window->toFrame(window->getClientRect());
            EXPECT_FALSE(bounds.isEmpty()) << id;
            for (const CRect& other : placed) EXPECT_FALSE(overlap(bounds, other)) << id;
            placed.push_back(bounds);
        }
        // A click on a skinned button still reaches its listeners.
        const auto clicks = fenn::make<ClickRecorder>();
        const fenn::P<CWindow> convert = m_builder->getWindow("convert");
        convert->addListener(clicks.get());
        frame.frame().injectClick(frame.centreOf(*convert));
        EXPECT_EQ(clicks->count, 1);
        convert->removeListener(clicks.get());
        frame.frame().injectMouseMove(frame.centreOf(*m_builder->getWindow("cancel")));
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        fenn::getSystem()->pump();
        frame.render();
        frame.writePNG(scale == 1.0 ? "gallery-skin" : "gallery-skin@2x");
    }
}

}  // namespace
