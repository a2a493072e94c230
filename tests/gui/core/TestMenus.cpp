#include <gtest/gtest.h>

#include <string>

#include "gui/widgets/CButton.h"
#include "gui/widgets/CMenuBar.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using fenn::make;
using fenn::P;

struct MenuFixture
{
    MenuFixture()
    {
        auto file = make<CMenu>();
        file->addItem("Open...", [this] { chosen += "open;"; }, "Ctrl+O");
        save = file->addItem("Save", [this] { chosen += "save;"; }, "Ctrl+S");
        file->setEnabled(save, false);
        file->addSeparator();
        auto recent = make<CMenu>();
        recent->addItem("song.wav", [this] { chosen += "song;"; });
        file->addSubmenu("Recent files", recent);
        file->addItem("Quit", [this] { chosen += "quit;"; });
        auto edit = make<CMenu>();
        edit->addItem("Undo", [this] { chosen += "undo;"; });
        edit->addItem("Redo", [this] { chosen += "redo;"; });
        bar->addMenu("File", file);
        bar->addMenu("Edit", edit);
        test.add(bar, {.horzGrow = 1});
        test.add(button);
        test.render();
    }
    void key(Key which, char32_t character = 0, std::uint32_t modifiers = modifierNone)
    {
        test.frame().injectKey({which, character, modifiers}, true);
    }

    tbtest::GuiTestFrame test{500, 400};
    P<CMenuBar> bar = make<CMenuBar>();
    P<CButton> button = make<CButton>("Elsewhere");
    std::string chosen;
    int save = -1;
};

TEST(Menus, MouseOpensChoosesAndClosesMenusOfTheBar)
{
    MenuFixture f;
    const CRect fileTitle = f.bar->toFrame(f.bar->getTitleRect(0));
    f.test.frame().injectClick({fileTitle.x + 5, fileTitle.y + 5});
    ASSERT_EQ(f.bar->getOpenMenu(), 0);
    CMenuPopup* popup = f.bar->getOpenPopup();
    ASSERT_NE(popup, nullptr);
    EXPECT_TRUE(popup->hasFocus());
    // The pop-up lies under its title, above the rest.
    EXPECT_EQ(popup->getBounds().x, fileTitle.x);
    EXPECT_GE(popup->getBounds().y, fileTitle.bottom() - 4);
    // A disabled item does nothing; the first item runs and closes the menu.
    const CRect saveRow = popup->toFrame(popup->getItemRect(f.save));
    f.test.frame().injectClick({saveRow.x + 10, saveRow.y + 5});
    EXPECT_EQ(f.chosen, "");
    EXPECT_TRUE(f.test.frame().hasPopups());
    const CRect openRow = popup->toFrame(popup->getItemRect(0));
    f.test.frame().injectClick({openRow.x + 10, openRow.y + 5});
    EXPECT_EQ(f.chosen, "open;");
    EXPECT_FALSE(f.test.frame().hasPopups());
    EXPECT_EQ(f.bar->getOpenMenu(), -1);

    // With a menu open, the pointer on another title opens that one; a
    // press elsewhere closes it and reaches nothing else.
    f.test.frame().injectClick({fileTitle.x + 5, fileTitle.y + 5});
    const CRect editTitle = f.bar->toFrame(f.bar->getTitleRect(1));
    f.test.frame().injectMouseMove({editTitle.x + 5, editTitle.y + 5});
    EXPECT_EQ(f.bar->getOpenMenu(), 1);
    f.test.frame().injectClick(f.test.centreOf(*f.button));
    EXPECT_FALSE(f.test.frame().hasPopups());
    EXPECT_EQ(f.bar->getOpenMenu(), -1);
}

TEST(Menus, KeyboardWalksTheBarItsMenusAndSubmenus)
{
    MenuFixture f;
    f.button->setFocus();
    f.key(Key::f10);
    ASSERT_EQ(f.bar->getOpenMenu(), 0);
    // Down skips the disabled item and the separator.
    f.key(Key::down);
    EXPECT_EQ(f.bar->getOpenPopup()->getCurrentItem(), 3);
    // Right on a sub-menu opens it; Enter there chooses.
    f.key(Key::right);
    f.key(Key::enter);
    EXPECT_EQ(f.chosen, "song;");
    EXPECT_FALSE(f.test.frame().hasPopups());
    EXPECT_TRUE(f.button->hasFocus());

    // Alt and a title's letter; Right and Left go round the bar.
    f.key(Key::character, U'e', modifierAlt);
    EXPECT_EQ(f.bar->getOpenMenu(), 1);
    f.key(Key::right);
    EXPECT_EQ(f.bar->getOpenMenu(), 0);
    f.key(Key::left);
    EXPECT_EQ(f.bar->getOpenMenu(), 1);
    // A letter goes to the item that starts with it.
    f.key(Key::character, U'r');
    EXPECT_EQ(f.bar->getOpenPopup()->getCurrentItem(), 1);
    f.key(Key::escape);
    EXPECT_FALSE(f.test.frame().hasPopups());
    EXPECT_TRUE(f.button->hasFocus());
    EXPECT_EQ(f.chosen, "song;");
}

TEST(Menus, PopupMenuAtAPointStaysInsideTheFrame)
{
    MenuFixture f;
    auto menu = make<CMenu>();
    std::string chosen;
    menu->addItem("Play", [&] { chosen = "play"; });
    menu->addItem("Remove from the list", [&] { chosen = "remove"; });
    menu->popup(f.test.frame(), {490, 390});
    ASSERT_TRUE(f.test.frame().hasPopups());
    auto* popup = dynamic_cast<CMenuPopup*>(f.test.frame().getFocusWindow());
    ASSERT_NE(popup, nullptr);
    EXPECT_LE(popup->getBounds().right(), 500);
    EXPECT_LE(popup->getBounds().bottom(), 400);
    f.key(Key::end);
    f.key(Key::space);
    EXPECT_EQ(chosen, "remove");
    f.test.render();
}

}  // namespace
