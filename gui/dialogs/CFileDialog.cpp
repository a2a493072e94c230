// The file dialog's windows and set-up: the places, the listing's columns,
// the filter list and the helpers that show a dialog and return the choice.
// What the user does with them is in CFileDialogActions.cpp.
#include "gui/dialogs/CFileDialog.h"

#include <algorithm>

#include "foundation/CException.h"
#include "foundation/CFileSystemManager.h"
#include "foundation/IStringLocalizer.h"
#include "gui/CStyle.h"
#include "gui/GuiTexts.h"
#include "gui/dialogs/CDesktopFolders.h"
#include "gui/dialogs/CFileDialogParts.h"
#include "gui/dialogs/CFolderModel.h"
#include "gui/dialogs/CPlacesList.h"
#include "gui/layout/CGrowLayout.h"
#include "gui/widgets/CTextField.h"

namespace fenn::gui {

namespace {

// A roomy default: the three columns and the places fit without cutting
// ordinary names short.
constexpr int kDefaultWidth = 860;
constexpr int kDefaultHeight = 560;
constexpr int kSizeColumnWidth = 96;
constexpr int kModifiedColumnWidth = 150;
constexpr int kFilterMinWidth = 220;

// Mount points of the system's own plumbing, which hold nothing the user
// would open or save; removable media under /run/media stay.
constexpr const char* kInternalMountPrefixes[] = {"/dev", "/run", "/boot", "/snap", "/tmp", "/var", "/proc", "/sys"};

bool isInternalMount(const std::string& path)
{
    if (path.rfind("/run/media/", 0) == 0) return false;
    for (const char* prefix : kInternalMountPrefixes) {
        const std::string start = prefix;
        if (path == start || path.rfind(start + "/", 0) == 0) return true;
    }
    return false;
}

// A size of a fixed number of pixels, for a size limit.
class CPixelSize : public CObject, public virtual IGUISize
{
public:
    explicit CPixelSize(CSize size) : m_size(size) {}
    CSize getSize() const override { return m_size; }

private:
    CSize m_size;
};

bool isExistingFolder(const CURI& folder)
{
    try {
        const P<IFileObject> object = CFileSystemManager::getInstance()->getFileObject(folder);
        return object && object->isFolder();
    } catch (const CException&) {
        return false;
    }
}

}  // namespace

CFileDialog::CFileDialog(FileDialogMode mode) : m_mode(mode), m_model(make<CFolderModel>())
{
    switch (mode) {
    case FileDialogMode::open:
        setText(localize(texts::fileDialogOpenTitle));
        break;
    case FileDialogMode::save:
        setText(localize(texts::fileDialogSaveTitle));
        break;
    case FileDialogMode::folder:
        setText(localize(texts::fileDialogFolderTitle));
        m_model->setContent(FolderContent::foldersOnly);
        break;
    }
    buildWindows();
    buildPlaces();
    rebuildFilterList();

    // Enter in the path field goes to the typed path; anywhere else it is
    // the OK button, unless the window with the focus used it (a button, the
    // listing opening a folder).
    addAccelerator("Enter", [this] {
        if (getFocusWindow() == m_pathField.get()) {
            goToPath(m_pathField->getText());
        } else {
            accept();
        }
    });
    addAccelerator("Escape", [this] { close(); });
    addAccelerator("Alt+Up", [this] { goUp(); });
    // Only reached when no edit field took the key.
    addAccelerator("Backspace", [this] { goUp(); });
    addAccelerator("Ctrl+L", [this] {
        m_pathField->setFocus();
        m_pathField->selectAll();
    });

    const CSize preferred = getSize(SizeType::preferred);
    setBounds({0, 0, std::max(kDefaultWidth, preferred.width), std::max(kDefaultHeight, preferred.height)});
    goTo(CDesktopFolders::get()->home);
    if (mode == FileDialogMode::save) {
        m_nameField->setFocus();
    } else {
        m_list->setFocus();
    }
}

CFileDialog::~CFileDialog() = default;

void CFileDialog::buildWindows()
{
    const CStyle& style = CStyle::get();
    auto root = make<CGrowLayout>(Orientation::horizontal);
    setLayout(root);

    m_places = make<CPlacesList>();
    m_places->setId("places");
    m_places->addFrailListener(this);
    addChild(m_places);
    root->addItem(m_places, {.vertGrow = 1});

    auto content = make<CGrowLayout>(Orientation::vertical);
    content->setMargins(16, 14, 16, 14);
    content->setSpacing(10);
    root->addItem(content, {.horzGrow = 1, .vertGrow = 1});

    auto pathRow = make<CGrowLayout>(Orientation::horizontal);
    pathRow->setSpacing(style.spacing);
    m_upButton = make<CUpButton>();
    m_upButton->setId("up");
    m_upButton->setToolTipText(localize(texts::fileDialogUp));
    m_upButton->addFrailListener(this);
    addChild(m_upButton);
    pathRow->addItem(m_upButton, {.vertAlign = 50});
    m_pathField = make<CEditField>();
    m_pathField->setId("path");
    addChild(m_pathField);
    pathRow->addItem(m_pathField, {.horzGrow = 1, .vertAlign = 50});
    content->addItem(pathRow, {.horzGrow = 1});

    m_errorLine = make<CNoticeLine>();
    m_errorLine->setId("error");
    m_errorLine->setVisible(false);
    addChild(m_errorLine);
    content->addItem(m_errorLine, {.horzGrow = 1});

    m_list = make<CFolderView>();
    m_list->setId("list");
    m_list->addColumn(localize(texts::fileDialogNameColumn), 300);
    m_list->addColumn(localize(texts::fileDialogSizeColumn), kSizeColumnWidth);
    m_list->setColumnAlign(CFolderModel::kSizeColumn, TextAlign::right);
    m_list->addColumn(localize(texts::fileDialogModifiedColumn), kModifiedColumnWidth);
    m_list->setModel(m_model);
    // The model sorts itself (folders stay first); the view shows the mark.
    m_list->sortBy(m_model->getSortColumn(), m_model->getSortOrder());
    m_list->addFrailListener(this);
    addChild(m_list);
    content->addItem(m_list, {.horzGrow = 1, .vertGrow = 1});

    m_nameRow = make<CWindow>();
    auto nameLayout = make<CGrowLayout>(Orientation::horizontal);
    nameLayout->setSpacing(10);
    m_nameRow->setLayout(nameLayout);
    auto nameLabel = make<CTextField>(localize(texts::fileDialogFileName));
    m_nameRow->addChild(nameLabel);
    nameLayout->addItem(nameLabel, {.vertAlign = 50});
    m_nameField = make<CEditField>();
    m_nameField->setId("name");
    m_nameField->addFrailListener(this);
    m_nameRow->addChild(m_nameField);
    nameLayout->addItem(m_nameField, {.horzGrow = 1, .vertAlign = 50});
    m_nameRow->setVisible(m_mode == FileDialogMode::save);
    addChild(m_nameRow);
    content->addItem(m_nameRow, {.horzGrow = 1});

    auto buttonRow = make<CGrowLayout>(Orientation::horizontal);
    buttonRow->setSpacing(style.spacing);
    m_filterList = make<CDropList>();
    m_filterList->setId("filter");
    m_filterList->addFrailListener(this);
    m_filterList->setVisible(m_mode != FileDialogMode::folder);
    auto filterLimits = make<CGUISizeLimits>();
    filterLimits->addLimit(LimitKind::lower, SizeType::preferred, make<CPixelSize>(CSize{kFilterMinWidth, 0}),
                           Directions::width);
    m_filterList->setSizeLimits(filterLimits);
    addChild(m_filterList);
    buttonRow->addItem(m_filterList, {.vertAlign = 50});
    auto gap = make<CWindow>();
    addChild(gap);
    buttonRow->addItem(gap, {.horzGrow = 1});
    const TextKey okText = m_mode == FileDialogMode::open   ? texts::fileDialogOpen
                           : m_mode == FileDialogMode::save ? texts::fileDialogSave
                                                            : texts::fileDialogChoose;
    m_okButton = make<CButton>(localize(okText));
    m_okButton->setId("ok");
    m_okButton->setKind(ButtonKind::primary);
    m_okButton->addFrailListener(this);
    addChild(m_okButton);
    buttonRow->addItem(m_okButton, {.vertAlign = 50});
    m_cancelButton = make<CButton>(localize(texts::fileDialogCancel));
    m_cancelButton->setId("cancel");
    m_cancelButton->addFrailListener(this);
    addChild(m_cancelButton);
    buttonRow->addItem(m_cancelButton, {.vertAlign = 50});
    content->addItem(buttonRow, {.horzGrow = 1});
}

void CFileDialog::buildPlaces()
{
    const P<CDesktopFolders> folders = CDesktopFolders::get();
    std::vector<CPlace> places;
    places.push_back({FileIcon::home, localize(texts::fileDialogHome), folders->home, PlaceGroup::places});
    // A desktop or music folder that the user does not have is no place.
    if (isExistingFolder(folders->desktop))
        places.push_back({FileIcon::desktop, localize(texts::fileDialogDesktop), folders->desktop, PlaceGroup::places});
    if (isExistingFolder(folders->music))
        places.push_back({FileIcon::music, localize(texts::fileDialogMusic), folders->music, PlaceGroup::places});
    if (m_recentFolder)
        places.push_back({FileIcon::recent, localize(texts::fileDialogRecent), *m_recentFolder, PlaceGroup::places});

    std::vector<CPlace> devices;
    try {
        for (const P<IFileSystemVolume>& volume : CFileSystemManager::getInstance()->getVolumes()) {
            const CURI root = canonicalFolder(volume->getRootURI());
            String path = root.getURI();
            if (root.isScheme("file")) {
                path = root.toPath();
                if (isInternalMount(path.toStdString())) continue;
            }
            const String name = path == "/" ? localize(texts::fileDialogFileSystem) : volume->getName();
            devices.push_back({FileIcon::drive, name, root, PlaceGroup::devices});
        }
    } catch (const CException&) {
        // Without the volumes the places still serve.
    }
    // The system's own disk first, then the others by name.
    std::stable_sort(devices.begin(), devices.end(), [](const CPlace& a, const CPlace& b) {
        const bool aRoot = a.folder.getPath() == "/";
        const bool bRoot = b.folder.getPath() == "/";
        if (aRoot != bRoot) return aRoot;
        return a.name.compareNoCase(b.name) < 0;
    });
    places.insert(places.end(), devices.begin(), devices.end());
    m_places->setPlaces(std::move(places));
    m_places->setCurrentFolder(m_model->getFolder());
}

void CFileDialog::rebuildFilterList()
{
    const int chosen = std::max(0, m_filterList->getSelectedIndex());
    m_filterList->removeAllEntries();
    if (m_filters.empty()) {
        m_filterList->addEntry(localize(texts::fileDialogAllFiles));
    } else {
        for (const CFileFilter& filter : m_filters) m_filterList->addEntry(filter.text);
    }
    m_filterList->setSelectedIndex(std::min(chosen, m_filterList->getEntryCount() - 1));
    m_model->setPattern(currentPattern());
    m_shownFilter = m_filterList->getSelectedIndex();
}

String CFileDialog::currentPattern() const
{
    const int index = m_filterList->getSelectedIndex();
    if (index < 0 || index >= static_cast<int>(m_filters.size())) return String();
    return m_filters[static_cast<std::size_t>(index)].pattern;
}

void CFileDialog::setMultipleSelection(bool multiple)
{
    m_list->setSelectionMode(multiple ? SelectionMode::multiple : SelectionMode::single);
    if (m_mode == FileDialogMode::open && getText() == localize(texts::fileDialogOpenTitle) && multiple)
        setText(localize(texts::fileDialogOpenFilesTitle));
}

bool CFileDialog::isMultipleSelection() const
{
    return m_list->getSelectionMode() == SelectionMode::multiple;
}

void CFileDialog::addFilter(const String& text, const String& pattern)
{
    m_filters.push_back({text, pattern});
    rebuildFilterList();
}

void CFileDialog::setSelectedFilter(int index)
{
    if (index < 0 || index >= m_filterList->getEntryCount()) return;
    m_filterList->setSelectedIndex(index);
    filterChanged();
}

int CFileDialog::getSelectedFilter() const
{
    return m_filterList->getSelectedIndex();
}

void CFileDialog::setRecentFolder(const CURI& folder)
{
    m_recentFolder = canonicalFolder(folder);
    buildPlaces();
}

void CFileDialog::setFolder(const CURI& folder)
{
    goTo(folder);
}

const CURI& CFileDialog::getFolder() const
{
    return m_model->getFolder();
}

void CFileDialog::setFileName(const String& name)
{
    m_nameField->setText(name);
    updateOKButton();
}

String CFileDialog::getFileName() const
{
    return m_nameField->getText();
}

CURI CFileDialog::getSelectedURI() const
{
    return m_result.empty() ? CURI() : m_result.front();
}

String CFileDialog::getErrorText() const
{
    return m_errorLine->isVisible() ? m_errorLine->getText() : String();
}

CCellView& CFileDialog::getListView() const
{
    return *m_list;
}

std::vector<CURI> CFileDialog::openFiles(const String& title, const CURI& folder,
                                         const std::vector<CFileFilter>& filters, SelectionMode selection)
{
    const auto dialog = make<CFileDialog>(FileDialogMode::open);
    dialog->setMultipleSelection(selection == SelectionMode::multiple);
    if (!title.isEmpty()) dialog->setText(title);
    if (folder.hasURI()) dialog->setFolder(folder);
    for (const CFileFilter& filter : filters) dialog->addFilter(filter.text, filter.pattern);
    if (dialog->runModal() != kAccepted) return {};
    return dialog->getSelectedURIs();
}

std::optional<CURI> CFileDialog::saveFile(const String& title, const CURI& folder, const String& name,
                                          const std::vector<CFileFilter>& filters)
{
    const auto dialog = make<CFileDialog>(FileDialogMode::save);
    if (!title.isEmpty()) dialog->setText(title);
    if (folder.hasURI()) dialog->setFolder(folder);
    for (const CFileFilter& filter : filters) dialog->addFilter(filter.text, filter.pattern);
    dialog->setFileName(name);
    if (dialog->runModal() != kAccepted) return std::nullopt;
    return dialog->getSelectedURI();
}

std::optional<CURI> CFileDialog::chooseFolder(const String& title, const CURI& folder)
{
    const auto dialog = make<CFileDialog>(FileDialogMode::folder);
    if (!title.isEmpty()) dialog->setText(title);
    if (folder.hasURI()) dialog->setFolder(folder);
    if (dialog->runModal() != kAccepted) return std::nullopt;
    return dialog->getSelectedURI();
}

}  // namespace fenn::gui
