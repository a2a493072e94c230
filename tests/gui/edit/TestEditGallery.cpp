#include <gtest/gtest.h>

#include "foundation/TCast.h"
#include "gui/IWindowSystem.h"
#include "gui/widgets/CDropList.h"
#include "gui/widgets/CEditArea.h"
#include "gui/widgets/CEditField.h"
#include "gui/widgets/WidgetRegistration.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using fenn::make;
using fenn::P;

// A window of a type by its layout file name, as the window system makes it.
template <class T> P<T> create(CWindowSystem& system, const char* type)
{
    P<T> window = fenn::TCast<T>(system.createWindow(type, nullptr));
    EXPECT_TRUE(window) << type;
    return window ? window : make<T>();
}

// Every edit widget in its states side by side, made by the window system
// from their layout file names and written to test-output/edit-widgets.png
// (and at scale 2 to edit-widgets@2x.png) to be looked at.
void paintGallery(double scale, const char* name)
{
    tbtest::GuiTestFrame test(520, 330, scale);
    CFrameWindow& frame = test.frame();
    CWindowSystem system("default");
    registerEditWidgets(system);
    const auto place = [&](const P<CWindow>& window, CRect bounds) {
        frame.addChild(window);
        window->setBounds(bounds);
    };
    auto focused = create<CEditField>(system, "EditField");
    focused->setText("Hello w\xC3\xB6rld \xF0\x9F\x98\x80");
    auto placeholder = create<CEditField>(system, "editfield");
    placeholder->setPlaceholder("Search the library");
    auto readOnly = create<CEditField>(system, "editfield");
    readOnly->setText("/home/user/Music/Album");
    readOnly->setEditMode(EditMode::readOnly);
    auto disabled = create<CEditField>(system, "editfield");
    disabled->setText("Disabled");
    disabled->setEnabled(false);
    auto area = create<CEditArea>(system, "editarea");
    area->setText(
        "Sample rates, channel counts and tags are kept when a file is converted, unless the target format "
        "has no room for them.\nThen the closest match is used.\n\nA third paragraph, long enough to make the "
        "area scroll and to show its thumb on the right.");
    auto open = create<CDropList>(system, "droplist");
    for (const char* entry : {"MP3", "Ogg Vorbis", "FLAC", "WAV", "Windows Media"}) open->addEntry(entry);
    open->setSelectedIndex(2);
    auto editable = create<CDropList>(system, "droplist");
    for (const char* entry : {"44100", "48000", "96000"}) editable->addEntry(entry);
    editable->setSelectedIndex(1);
    editable->setEditable(true);
    auto disabledList = create<CDropList>(system, "droplist");
    disabledList->addEntry("Disabled list");
    disabledList->setSelectedIndex(0);
    disabledList->setEnabled(false);

    place(focused, {16, 16, 230, 30});
    place(placeholder, {16, 56, 230, 30});
    place(readOnly, {16, 96, 230, 30});
    place(disabled, {16, 136, 230, 30});
    place(area, {16, 180, 230, 130});
    place(open, {270, 16, 230, 30});
    place(editable, {270, 236, 230, 30});
    place(disabledList, {270, 280, 230, 30});
    test.render();

    focused->setFocus();
    focused->select(6, 12);
    open->openList();
    frame.injectMouseMove({380, 130});
    test.render();
    test.writePNG(name);
    EXPECT_TRUE(open->isListOpen());
}

TEST(EditGallery, EveryWidgetInItsStates)
{
    paintGallery(1.0, "edit-widgets");
    paintGallery(2.0, "edit-widgets@2x");
}

}  // namespace
