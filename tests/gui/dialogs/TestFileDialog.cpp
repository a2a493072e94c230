#include <sys/stat.h>
#include <unistd.h>

#include "gui/dialogs/CDesktopFolders.h"
#include "gui/dialogs/CFileDialog.h"
#include "gui/dialogs/CFolderModel.h"
#include "gui/dialogs/CMessageBox.h"
#include "gui/dialogs/CPlacesList.h"
#include "tests/gui/dialogs/DialogTestSupport.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using dialogstest::DialogTest;
using fenn::CURI;
using fenn::make;
using fenn::P;
using fenn::String;
using Names = std::vector<std::string>;

class FileDialog : public DialogTest
{
protected:
    P<CFileDialog> openOn(FileDialogMode mode, const std::string& folder = "")
    {
        auto dialog = make<CFileDialog>(mode);
        dialog->setFolder(uriOf(folder));
        dialog->show();
        dialog->updateAndPaint();
        return dialog;
    }

    static Names rowNames(const CFileDialog& dialog)
    {
        Names names;
        const CCellView& view = dialog.getListView();
        for (int row = 0; row < view.getRowCount(); ++row)
            names.push_back(dialog.getModel().getCellText(view.toModelRow(row), 0).toStdString());
        return names;
    }

    static CPoint rowPoint(CFileDialog& dialog, const std::string& name)
    {
        const int row = dialog.getModel().findRow(String::copyOf(name));
        EXPECT_GE(row, 0) << name;
        const CCellView& view = dialog.getListView();
        const CRect rect = view.toFrame(view.getRowRect(row));
        return {rect.x + 40, rect.y + rect.height / 2};
    }

    static CPoint centreOf(CWindow* window)
    {
        const CRect rect = window->toFrame(window->getClientRect());
        return {rect.x + rect.width / 2, rect.y + rect.height / 2};
    }

    static void press(CFrameWindow& frame, Key key, std::uint32_t modifiers = modifierNone, char32_t character = 0)
    {
        frame.injectKey({key, character, modifiers}, true);
        frame.injectKey({key, character, modifiers}, false);
    }

    // Replaces the path field's text by typing and presses Enter.
    static void typePath(CFileDialog& dialog, const std::string& text)
    {
        press(dialog, Key::character, modifierControl, U'l');
        dialog.injectTyping(String::copyOf(text));
        press(dialog, Key::enter);
        dialog.updateAndPaint();
    }

    static std::string pathText(CFileDialog& dialog) { return dialog.findWindow("path")->getText().toStdString(); }

    static CMessageBox* openMessageBox()
    {
        for (CFrameWindow* frame : CFrameWindow::getOpenFrames()) {
            if (auto* box = dynamic_cast<CMessageBox*>(frame); box && box->isRunningModal()) return box;
        }
        return nullptr;
    }
};

TEST_F(FileDialog, ListsFoldersFirstByNameWithoutHiddenEntriesAndFilters)
{
    auto dialog = openOn(FileDialogMode::open);
    const Names everything{"Albums", "beta", "a.WAV", "b.mp3", "c.txt", "Song.wav", "song.wav", "Zebra.flac"};
    EXPECT_EQ(rowNames(*dialog), everything);
    auto* filter = dynamic_cast<CDropList*>(dialog->findWindow("filter"));
    ASSERT_NE(filter, nullptr);
    ASSERT_EQ(filter->getEntryCount(), 1);
    EXPECT_EQ(filter->getEntry(0), "All files (*)");

    // The filters replace "all files"; patterns match in any case and
    // leave folders alone. Choosing by key tells the dialog as a user would.
    dialog->addFilter("Audio (*.wav, *.mp3)", "*.wav; *.mp3");
    dialog->addFilter("FLAC (*.flac)", "*.FLAC");
    dialog->addFilter("Everything", "*");
    EXPECT_EQ(rowNames(*dialog), (Names{"Albums", "beta", "a.WAV", "b.mp3", "Song.wav", "song.wav"}));
    filter->setFocus();
    press(*dialog, Key::down);
    EXPECT_EQ(dialog->getSelectedFilter(), 1);
    EXPECT_EQ(rowNames(*dialog), (Names{"Albums", "beta", "Zebra.flac"}));
    press(*dialog, Key::down);
    EXPECT_EQ(rowNames(*dialog), everything);

    // A click on the Size header sorts by size, folders still first; a
    // second click reverses the files.
    CCellView& view = dialog->getListView();
    const CRect sizeHeader = view.toFrame(view.getHeaderRect());
    const CRect sizeCell = view.getCellRect(0, CFolderModel::kSizeColumn);
    const CPoint header{view.toFrame(sizeCell).x + sizeCell.width / 2, sizeHeader.y + sizeHeader.height / 2};
    dialog->injectClick(header);
    EXPECT_EQ(rowNames(*dialog),
              (Names{"Albums", "beta", "song.wav", "Zebra.flac", "a.WAV", "c.txt", "b.mp3", "Song.wav"}));
    EXPECT_EQ(view.getSortColumn(), CFolderModel::kSizeColumn);
    dialog->injectClick(header);
    EXPECT_EQ(rowNames(*dialog),
              (Names{"beta", "Albums", "Song.wav", "b.mp3", "c.txt", "a.WAV", "Zebra.flac", "song.wav"}));
    EXPECT_EQ(view.getSortOrder(), SortOrder::descending);

    // The folder mode lists folders alone and has no filter.
    auto folders = openOn(FileDialogMode::folder);
    EXPECT_EQ(rowNames(*folders), (Names{"Albums", "beta"}));
    EXPECT_FALSE(folders->findWindow("filter")->isVisible());
}

TEST_F(FileDialog, GoesIntoFoldersUpAgainAndToTypedPaths)
{
    auto dialog = openOn(FileDialogMode::open);
    dialog->injectClick(rowPoint(*dialog, "Albums"), 2);
    dialog->updateAndPaint();
    EXPECT_EQ(dialog->getFolder(), uriOf("Albums"));
    EXPECT_EQ(rowNames(*dialog), Names{"inner.wav"});
    EXPECT_EQ(pathText(*dialog), (m_folder / "Albums").string());

    // Up comes back with the folder just left selected, so Enter goes in again.
    dialog->injectClick(centreOf(dialog->findWindow("up")));
    EXPECT_EQ(dialog->getFolder(), uriOf(""));
    const CCellView& view = dialog->getListView();
    EXPECT_EQ(view.getSelection().getSelectedRows(), std::vector<int>{0});
    dialog->getListView().setFocus();
    press(*dialog, Key::enter);
    EXPECT_EQ(dialog->getFolder(), uriOf("Albums"));
    press(*dialog, Key::backspace);
    EXPECT_EQ(dialog->getFolder(), uriOf(""));

    // Typed paths: absolute, relative to the current folder, with "..", and
    // a trailing slash; the field then shows the folder's own path.
    typePath(*dialog, (m_folder / "beta").string() + "/");
    EXPECT_EQ(dialog->getFolder(), uriOf("beta"));
    EXPECT_EQ(pathText(*dialog), (m_folder / "beta").string());
    typePath(*dialog, "../Albums");
    EXPECT_EQ(dialog->getFolder(), uriOf("Albums"));
    EXPECT_EQ(dialog->getErrorText(), "");

    // A path to nothing says so in the error line and stays; the next
    // good path clears the line.
    typePath(*dialog, "no such folder");
    EXPECT_EQ(dialog->getFolder(), uriOf("Albums"));
    EXPECT_EQ(dialog->getErrorText(), "There is no folder or file \"no such folder\".");
    EXPECT_TRUE(dialog->findWindow("error")->isVisible());
    typePath(*dialog, "~");
    EXPECT_EQ(dialog->getFolder(), CDesktopFolders::get()->home);
    EXPECT_EQ(dialog->getErrorText(), "");
    // Nothing is above the top.
    typePath(*dialog, "/");
    EXPECT_EQ(dialog->getFolder().getPath(), "/");
    EXPECT_FALSE(dialog->findWindow("up")->isEnabled());

    // A typed file opens at once.
    typePath(*dialog, (m_folder / "c.txt").string());
    EXPECT_EQ(dialog->getFolder(), uriOf(""));
    EXPECT_EQ(dialog->getSelectedURIs(), std::vector<CURI>{uriOf("c.txt")});
}

TEST_F(FileDialog, PlacesLeadToHomeAndTheRecentFolder)
{
    auto dialog = openOn(FileDialogMode::open, "beta");
    dialog->setRecentFolder(uriOf("Albums/"));
    dialog->updateAndPaint();
    CPlacesList& places = dialog->getPlacesList();
    const std::vector<CPlace>& entries = places.getPlaces();
    ASSERT_GE(entries.size(), 3u);
    EXPECT_EQ(entries[0].name, "Home");
    EXPECT_EQ(entries[0].folder, CDesktopFolders::get()->home);
    int recent = -1;
    bool rootVolume = false;
    for (int index = 0; index < static_cast<int>(entries.size()); ++index) {
        if (entries[index].name == "Recent Folder") recent = index;
        rootVolume =
            rootVolume || (entries[index].group == PlaceGroup::devices && entries[index].folder.getPath() == "/");
    }
    ASSERT_GE(recent, 0);
    EXPECT_TRUE(rootVolume);
    EXPECT_EQ(places.getCurrentPlace(), -1);

    const auto clickPlace = [&](int index) {
        const CRect rect = places.toFrame(places.getPlaceRect(index));
        dialog->injectClick({rect.x + rect.width / 2, rect.y + rect.height / 2});
    };
    clickPlace(recent);
    EXPECT_EQ(dialog->getFolder(), uriOf("Albums"));
    EXPECT_EQ(places.getCurrentPlace(), recent);
    clickPlace(0);
    EXPECT_EQ(dialog->getFolder(), CDesktopFolders::get()->home);
    EXPECT_EQ(places.getCurrentPlace(), 0);
}

TEST_F(FileDialog, OpensOneOrSeveralFiles)
{
    auto dialog = openOn(FileDialogMode::open);
    auto* ok = dynamic_cast<CButton*>(dialog->findWindow("ok"));
    ASSERT_NE(ok, nullptr);
    EXPECT_FALSE(ok->isEnabled());
    // A double click on a file accepts it.
    dialog->injectClick(rowPoint(*dialog, "b.mp3"), 2);
    EXPECT_EQ(dialog->getSelectedURIs(), std::vector<CURI>{uriOf("b.mp3")});

    auto several = openOn(FileDialogMode::open);
    several->setMultipleSelection(true);
    EXPECT_EQ(several->getText(), "Open Files");
    const auto controlClick = [&](const std::string& name) {
        const CPoint point = rowPoint(*several, name);
        several->injectMouseMove(point);
        several->injectMouseButton(point, MouseButton::left, true, 1, modifierControl);
        several->injectMouseButton(point, MouseButton::left, false, 1, modifierControl);
    };
    several->injectClick(rowPoint(*several, "a.WAV"));
    controlClick("Song.wav");
    // A folder among files is passed over.
    controlClick("beta");
    EXPECT_TRUE(several->findWindow("ok")->isEnabled());
    several->injectClick(centreOf(several->findWindow("ok")));
    EXPECT_EQ(several->getSelectedURIs(), (std::vector<CURI>{uriOf("a.WAV"), uriOf("Song.wav")}));
    EXPECT_EQ(several->getSelectedURI(), uriOf("a.WAV"));

    // With one folder selected, OK opens it rather than choosing.
    several->injectClick(rowPoint(*several, "Albums"));
    several->injectClick(centreOf(several->findWindow("ok")));
    EXPECT_EQ(several->getFolder(), uriOf("Albums"));
}

TEST_F(FileDialog, ChoosesFolders)
{
    auto dialog = openOn(FileDialogMode::folder);
    EXPECT_TRUE(dialog->findWindow("ok")->isEnabled());
    dialog->injectClick(centreOf(dialog->findWindow("ok")));
    EXPECT_EQ(dialog->getSelectedURIs(), std::vector<CURI>{uriOf("")});
    dialog->injectClick(rowPoint(*dialog, "beta"));
    dialog->injectClick(centreOf(dialog->findWindow("ok")));
    EXPECT_EQ(dialog->getSelectedURIs(), std::vector<CURI>{uriOf("beta")});
    // A double click opens the folder instead.
    dialog->injectClick(rowPoint(*dialog, "Albums"), 2);
    EXPECT_EQ(dialog->getFolder(), uriOf("Albums"));
    EXPECT_EQ(dialog->getSelectedURIs(), std::vector<CURI>{uriOf("beta")});
}

TEST_F(FileDialog, SaveAddsTheFiltersExtensionAndAsksBeforeReplacing)
{
    auto dialog = make<CFileDialog>(FileDialogMode::save);
    dialog->setFolder(uriOf(""));
    dialog->addFilter("WAV audio (*.wav)", "*.wav");
    dialog->addFilter("MP3 audio (*.mp3)", "*.mp3;*.mp2");
    auto* name = dynamic_cast<CEditField*>(dialog->findWindow("name"));
    ASSERT_NE(name, nullptr);

    // Switching the filter changes an extension of the old filter, and
    // nothing else; selecting a file takes its name.
    dialog->setFileName("mix.wav");
    dialog->setSelectedFilter(1);
    EXPECT_EQ(dialog->getFileName(), "mix.mp3");
    dialog->setFileName("notes.txt");
    dialog->setSelectedFilter(0);
    EXPECT_EQ(dialog->getFileName(), "notes.txt");
    // A name with a folder in front saves there; a folder that is not
    // there is named in the error line.
    dialog->setFileName("Albums/new take");
    dialog->accept();
    EXPECT_EQ(dialog->getSelectedURI(), uriOf("Albums/new take.wav"));
    dialog->setFileName("nowhere/x.wav");
    dialog->accept();
    EXPECT_EQ(dialog->getErrorText(),
              String::copyOf("There is no folder or file \"" + (m_folder / "nowhere").string() + "\"."));
    dialog->show();
    dialog->updateAndPaint();
    dialog->injectClick(rowPoint(*dialog, "song.wav"));
    EXPECT_EQ(dialog->getFileName(), "song.wav");

    // A new name: the extension is added and no question asked.
    later([&] {
        name->setFocus();
        press(*dialog, Key::character, modifierControl, U'a');
        dialog->injectTyping("take one");
        press(*dialog, Key::enter);
    });
    ASSERT_EQ(dialog->runModal(), CFileDialog::kAccepted);
    EXPECT_EQ(dialog->getSelectedURI(), uriOf("take one.wav"));

    // An existing file: "No" keeps the dialog open, "Yes" replaces.
    String question;
    bool stillOpen = false;
    later([&] {
        dialog->setFileName("Song");
        dialog->injectClick(centreOf(dialog->findWindow("ok")));
    });
    later([&] {
        CMessageBox* box = openMessageBox();
        ASSERT_NE(box, nullptr);
        question = box->findWindow("messageText")->getText();
        box->getButtons()[1]->click();
    });
    later([&] {
        stillOpen = dialog->isRunningModal() && openMessageBox() == nullptr;
        dialog->injectClick(centreOf(dialog->findWindow("ok")));
    });
    later([&] {
        CMessageBox* box = openMessageBox();
        ASSERT_NE(box, nullptr);
        box->getButtons()[0]->click();
    });
    ASSERT_EQ(dialog->runModal(), CFileDialog::kAccepted);
    EXPECT_TRUE(stillOpen);
    EXPECT_EQ(question, String::copyOf("A file named \"Song.wav\" already exists in \"" + m_folder.path().string() +
                                       "\". Do you want to replace it?"));
    EXPECT_EQ(dialog->getSelectedURI(), uriOf("Song.wav"));

    // A folder's name goes into the folder; Escape cancels with no choice.
    later([&] {
        dialog->setFileName("Albums");
        dialog->injectClick(centreOf(dialog->findWindow("ok")));
        stillOpen = dialog->isRunningModal();
        press(*dialog, Key::escape);
    });
    EXPECT_EQ(dialog->runModal(), CFileDialog::kCancelled);
    EXPECT_TRUE(stillOpen);
    EXPECT_EQ(dialog->getFolder(), uriOf("Albums"));
    EXPECT_EQ(dialog->getFileName(), "");
    EXPECT_TRUE(dialog->getSelectedURIs().empty());
}

TEST_F(FileDialog, AFolderThatCannotBeReadShowsWhyInTheDialog)
{
    if (::geteuid() == 0) GTEST_SKIP() << "root reads every folder";
    std::filesystem::create_directory(m_folder / "locked");
    write("locked/inside.wav", "x");
    ASSERT_EQ(::chmod((m_folder / "locked").c_str(), 0), 0);
    auto dialog = openOn(FileDialogMode::open);
    dialog->injectClick(rowPoint(*dialog, "locked"), 2);
    dialog->updateAndPaint();
    EXPECT_EQ(dialog->getFolder(), uriOf("locked"));
    const std::string error = dialog->getErrorText().toStdString();
    EXPECT_NE(error.find("Permission denied"), std::string::npos) << error;
    EXPECT_NE(error.find((m_folder / "locked").string()), std::string::npos) << error;
    EXPECT_EQ(dialog->getListView().getRowCount(), 0);
    // Up leads out again and clears the line.
    dialog->injectClick(centreOf(dialog->findWindow("up")));
    EXPECT_EQ(dialog->getErrorText(), "");
    ::chmod((m_folder / "locked").c_str(), 0755);
}

TEST_F(FileDialog, LooksLikeADesktopFileChooser)
{
    for (const double scale : {1.0, 2.0}) {
        auto dialog = make<CFileDialog>(FileDialogMode::save);
        dialog->setScaleFactor(scale);
        dialog->setFolder(uriOf(""));
        dialog->setRecentFolder(uriOf(""));
        dialog->addFilter("WAV audio (*.wav)", "*.wav");
        dialog->addFilter("All files", "*");
        dialog->setSelectedFilter(1);
        dialog->show();
        dialog->updateAndPaint();
        dialog->injectClick(rowPoint(*dialog, "b.mp3"));
        dialog->injectMouseMove(rowPoint(*dialog, "c.txt"));
        dialog->updateAndPaint();
        const std::string name = scale == 1.0 ? "file-dialog" : "file-dialog-2x";
        EXPECT_TRUE(dialog->writePNG(String::copyOf(tbtest::testOutputFolder() + "/" + name + ".png")));
    }
    // An error and an empty listing.
    auto dialog = openOn(FileDialogMode::open, "beta");
    typePath(*dialog, "/no/such/place");
    dialog->updateAndPaint();
    EXPECT_TRUE(dialog->writePNG(String::copyOf(tbtest::testOutputFolder() + "/file-dialog-error.png")));
}

}  // namespace
