#pragma once

#include <optional>
#include <vector>

#include "foundation/CURI.h"
#include "gui/CModalFrame.h"
#include "gui/widgets/CButton.h"
#include "gui/widgets/CCellView.h"
#include "gui/widgets/CDropList.h"
#include "gui/widgets/CEditField.h"

namespace fenn::gui {

class CFolderModel;
class CFolderView;
class CNoticeLine;
class CPlacesList;

enum class FileDialogMode {
    // One file, or several with setMultipleSelection(true).
    open,
    // A name for a new or replaced file.
    save,
    // A folder.
    folder,
};

// A choice of the filter list: the text shown ("Audio files (*.wav,
// *.mp3)") and the name patterns it lets through ("*.wav;*.mp3").
struct CFileFilter
{
    String text;
    String pattern;
};

// The standard dialog for choosing files and folders. The places column
// on the left (home, desktop, music, the recent folder and the mounted
// volumes) and the path field with its Up button go to folders; the
// listing shows the current folder's folders and then its files, each
// group by name, without hidden entries and with files cut down to the
// chosen filter. A double click or Enter on a folder opens it; on a file
// it accepts. Save mode adds a name field: the chosen filter's extension
// is added to a name without one, and replacing an existing file is asked
// first. Errors reading a folder show in a line above the listing.
//
// runModal returns kAccepted or kCancelled; getSelectedURIs then gives
// the choice. GUI thread.
class CFileDialog : public CModalFrame, public virtual IWindowListener
{
public:
    static constexpr int kAccepted = 1;

    explicit CFileDialog(FileDialogMode mode);
    ~CFileDialog() override;

    FileDialogMode getMode() const { return m_mode; }
    // Open mode: whether several files may be chosen at once.
    void setMultipleSelection(bool multiple);
    bool isMultipleSelection() const;
    // Adds a choice to the filter list; the first one added is chosen.
    // Without any the list offers all files.
    void addFilter(const String& text, const String& pattern);
    const std::vector<CFileFilter>& getFilters() const { return m_filters; }
    void setSelectedFilter(int index);
    int getSelectedFilter() const;
    // Adds the folder last used to the places.
    void setRecentFolder(const CURI& folder);
    // Goes to folder and shows its contents (or why they cannot be shown).
    void setFolder(const CURI& folder);
    const CURI& getFolder() const;
    // Save mode: the name in the name field.
    void setFileName(const String& name);
    String getFileName() const;

    // The choice after kAccepted: the files, the file to save or the folder.
    const std::vector<CURI>& getSelectedURIs() const { return m_result; }
    // The first of them, or the empty URI.
    CURI getSelectedURI() const;

    // What the OK button does: accepts the choice, or opens the folder
    // chosen in the listing; in save mode it may ask about replacing a file.
    void accept();
    void goUp();
    // Goes where a typed path leads: a folder opens, a file is chosen.
    // Relative paths start at the current folder; "~" is the home folder.
    void goToPath(const String& text);
    // Closing the dialog cancels it: the choice is empty.
    void close() override;
    // The text of the error line; empty while it is hidden.
    String getErrorText() const;

    CCellView& getListView() const;
    CFolderModel& getModel() const { return *m_model; }
    CPlacesList& getPlacesList() const { return *m_places; }

    void windowNotified(CWindow& window, const CNotification& notification) override;

    // Shows a dialog and returns the chosen files; empty when cancelled.
    static std::vector<CURI> openFiles(const String& title, const CURI& folder, const std::vector<CFileFilter>& filters,
                                       SelectionMode selection);
    static std::optional<CURI> saveFile(const String& title, const CURI& folder, const String& name,
                                        const std::vector<CFileFilter>& filters);
    static std::optional<CURI> chooseFolder(const String& title, const CURI& folder);

private:
    void buildWindows();
    void buildPlaces();
    void rebuildFilterList();
    // The patterns of the chosen filter; empty for all files.
    String currentPattern() const;
    // The extension that the chosen filter asks for ("wav" of "*.wav;*.mp3"),
    // or empty when its first pattern names none.
    String currentExtension() const;
    // Shows folder; selects the entry named select when there is one.
    void goTo(const CURI& folder, const String& select = String());
    void showError(const String& text);
    void cancel();
    void activateRow(int row);
    void placeActivated(int index);
    void headerClicked(int column);
    void filterChanged();
    void selectionChanged();
    void updateOKButton();
    void acceptSave();
    void finish(std::vector<CURI> result);
    // A typed path as a URI: absolute, "~"-relative or relative to the
    // current folder; null when it cannot be one.
    std::optional<CURI> resolveTyped(const String& text) const;
    std::vector<int> selectedRows() const;

    FileDialogMode m_mode;
    std::vector<CFileFilter> m_filters;
    // The filter the listing and the name's extension follow now.
    int m_shownFilter = 0;
    std::vector<CURI> m_result;
    std::optional<CURI> m_recentFolder;
    P<CFolderModel> m_model;
    P<CPlacesList> m_places;
    P<CButton> m_upButton;
    P<CEditField> m_pathField;
    P<CNoticeLine> m_errorLine;
    P<CFolderView> m_list;
    P<CWindow> m_nameRow;
    P<CEditField> m_nameField;
    P<CDropList> m_filterList;
    P<CButton> m_okButton;
    P<CButton> m_cancelButton;
};

}  // namespace fenn::gui
