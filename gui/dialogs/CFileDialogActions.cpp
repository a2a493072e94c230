// What the user does in the file dialog: going to folders (places, Up,
// the path field, the listing), choosing a filter and accepting.
#include <algorithm>

#include "foundation/CException.h"
#include "foundation/CFileSystemManager.h"
#include "foundation/CURIError.h"
#include "foundation/IStringLocalizer.h"
#include "gui/GuiTexts.h"
#include "gui/dialogs/CDesktopFolders.h"
#include "gui/dialogs/CFileDialog.h"
#include "gui/dialogs/CFileDialogParts.h"
#include "gui/dialogs/CFolderModel.h"
#include "gui/dialogs/CMessageBox.h"
#include "gui/dialogs/CPlacesList.h"

namespace fenn::gui {

namespace {

// What is at a place: null for nothing, and for a place that cannot be
// asked (a URI no file system serves), which the dialog treats alike.
P<IFileObject> lookUp(const CURI& place)
{
    try {
        return CFileSystemManager::getInstance()->getFileObject(place);
    } catch (const CException&) {
        return nullptr;
    }
}

// A name has an extension when a dot follows its first character and
// something follows the dot.
bool hasExtension(const String& name)
{
    const std::string text = name.toStdString();
    const std::size_t dot = text.rfind('.');
    return dot != std::string::npos && dot > 0 && dot + 1 < text.size();
}

// The extension a pattern names: "wav" of "*.wav"; empty for "*", "*.*"
// and patterns with wildcards after the dot.
std::string extensionOf(const String& pattern)
{
    const std::string text = pattern.trim().toStdString();
    if (text.size() < 3 || text.compare(0, 2, "*.") != 0) return {};
    const std::string extension = text.substr(2);
    if (extension.find_first_of("*?[]./") != std::string::npos) return {};
    return extension;
}

bool startsWithScheme(const std::string& text)
{
    return text.find("://") != std::string::npos || text.rfind("file:", 0) == 0;
}

}  // namespace

void CFileDialog::goTo(const CURI& folder, const String& select)
{
    const CURI place = canonicalFolder(folder);
    String error;
    try {
        m_model->load(place);
    } catch (const CURIError& exception) {
        // The user knows the place by its path, not by its URI.
        error = exception.getDescription().replace(exception.getURI().getRawURI(), displayPath(exception.getURI()));
    } catch (const CException& exception) {
        error = exception.getDescription();
    }
    // Setting the model again starts the listing afresh: scrolled to the
    // top, nothing selected, no current row.
    m_list->setModel(nullptr);
    m_list->setModel(m_model);
    m_list->setEmptyText(error.isEmpty() ? localize(texts::fileDialogEmptyFolder) : String());
    m_pathField->setText(displayPath(place));
    m_places->setCurrentFolder(place);
    m_upButton->setEnabled(place.getParent().hasURI());
    showError(error);
    if (!select.isEmpty()) {
        const int row = m_model->findRow(select);
        if (row >= 0) m_list->select(row);
    }
    updateOKButton();
}

void CFileDialog::showError(const String& text)
{
    m_errorLine->setText(text);
    m_errorLine->setVisible(!text.isEmpty());
}

void CFileDialog::goUp()
{
    const CURI current = m_model->getFolder();
    const CURI parent = current.getParent();
    if (!parent.hasURI()) return;
    // The folder just left is selected, so that going back down is one key.
    goTo(parent, current.getFileName());
}

std::optional<CURI> CFileDialog::resolveTyped(const String& typed) const
{
    std::string text = typed.trim().toStdString();
    if (text.empty()) return std::nullopt;
    try {
        if (text == "~" || text.rfind("~/", 0) == 0)
            text = CDesktopFolders::get()->home.toPath().toStdString() + text.substr(1);
        if (text[0] == '/') return CURI::fromPath(String::copyOf(text));
        if (startsWithScheme(text)) return CURI(String::copyOf(text));
        const CURI& folder = m_model->getFolder();
        if (folder.isScheme("file")) return CURI::fromPath(String::copyOf(folder.toPath().toStdString() + "/" + text));
        return folder.append(String::copyOf(text));
    } catch (const CException&) {
        return std::nullopt;
    }
}

void CFileDialog::goToPath(const String& text)
{
    if (text.trim().isEmpty()) return;
    const std::optional<CURI> target = resolveTyped(text);
    const P<IFileObject> object = target ? lookUp(*target) : nullptr;
    if (!object) {
        showError(localize(texts::fileDialogNoSuchPlace).replace("%PATH%", text.trim()));
        return;
    }
    if (object->isFolder()) {
        goTo(*target);
        return;
    }
    // A file: its folder opens with the file selected; opening takes it at
    // once, saving takes its name.
    goTo(target->getParent(), target->getFileName());
    if (m_mode == FileDialogMode::open) {
        finish({*target});
    } else if (m_mode == FileDialogMode::save) {
        m_nameField->setText(target->getFileName());
        m_nameField->setFocus();
        updateOKButton();
    }
}

std::vector<int> CFileDialog::selectedRows() const
{
    std::vector<int> rows;
    for (const int row : m_list->getSelection().getSelectedRows()) {
        const int modelRow = m_list->toModelRow(row);
        if (modelRow >= 0) rows.push_back(modelRow);
    }
    return rows;
}

void CFileDialog::activateRow(int row)
{
    if (row < 0 || row >= m_model->getRowCount()) return;
    const CFolderEntry entry = m_model->getEntry(row);
    if (entry.isFolder) {
        goTo(entry.uri);
    } else if (m_mode == FileDialogMode::save) {
        m_nameField->setText(entry.name);
        acceptSave();
    } else {
        accept();
    }
}

void CFileDialog::accept()
{
    const std::vector<int> rows = selectedRows();
    switch (m_mode) {
    case FileDialogMode::open: {
        if (rows.size() == 1 && m_model->getEntry(rows.front()).isFolder) {
            goTo(m_model->getEntry(rows.front()).uri);
            return;
        }
        std::vector<CURI> files;
        for (const int row : rows) {
            if (!m_model->getEntry(row).isFolder) files.push_back(m_model->getEntry(row).uri);
        }
        if (!files.empty()) finish(std::move(files));
        return;
    }
    case FileDialogMode::save:
        acceptSave();
        return;
    case FileDialogMode::folder:
        finish({rows.size() == 1 ? m_model->getEntry(rows.front()).uri : m_model->getFolder()});
        return;
    }
}

void CFileDialog::acceptSave()
{
    const String name = m_nameField->getText().trim();
    if (name.isEmpty()) {
        const std::vector<int> rows = selectedRows();
        if (rows.size() == 1 && m_model->getEntry(rows.front()).isFolder) goTo(m_model->getEntry(rows.front()).uri);
        return;
    }
    std::optional<CURI> target = resolveTyped(name);
    if (!target || !target->hasPath()) {
        showError(localize(texts::fileDialogNoSuchPlace).replace("%PATH%", name));
        return;
    }
    P<IFileObject> existing = lookUp(*target);
    if (existing && existing->isFolder()) {
        // A folder's name (or path) was typed: go there and ask again.
        goTo(*target);
        m_nameField->setText(String());
        updateOKButton();
        return;
    }
    const String fileName = target->getFileName();
    const std::string extension = currentExtension().toStdString();
    if (!hasExtension(fileName) && !extension.empty()) {
        target = target->getParent().append(fileName + "." + String::copyOf(extension));
        existing = lookUp(*target);
    }
    const CURI folder = target->getParent();
    const P<IFileObject> folderObject = lookUp(folder);
    if (!folderObject || !folderObject->isFolder()) {
        showError(localize(texts::fileDialogNoSuchPlace).replace("%PATH%", displayPath(folder)));
        return;
    }
    if (existing) {
        if (existing->isFolder()) {
            goTo(*target);
            return;
        }
        const String question = localize(texts::fileDialogReplaceQuestion)
                                    .replace("%NAME%", target->getFileName())
                                    .replace("%FOLDER%", displayPath(folder));
        const MessageBoxResult answer =
            CMessageBox::ask(localize(texts::fileDialogReplaceTitle), question, MessageBoxButtons::yesNo);
        if (answer != MessageBoxResult::yes) {
            m_nameField->setFocus();
            return;
        }
    }
    finish({*target});
}

void CFileDialog::finish(std::vector<CURI> result)
{
    m_result = std::move(result);
    endModal(kAccepted);
}

void CFileDialog::cancel()
{
    m_result.clear();
    endModal(kCancelled);
}

void CFileDialog::close()
{
    m_result.clear();
    CModalFrame::close();
}

String CFileDialog::currentExtension() const
{
    const String pattern = currentPattern();
    const std::vector<String> parts = pattern.split(";");
    return parts.empty() ? String() : String::copyOf(extensionOf(parts.front()));
}

void CFileDialog::filterChanged()
{
    const int previous = m_shownFilter;
    m_shownFilter = m_filterList->getSelectedIndex();
    m_model->setPattern(currentPattern());
    // A name that carries the old filter's extension gets the new one.
    if (m_mode == FileDialogMode::save && previous >= 0 && previous < static_cast<int>(m_filters.size())) {
        const String name = m_nameField->getText();
        const String oldPattern = m_filters[static_cast<std::size_t>(previous)].pattern;
        const std::string newExtension = currentExtension().toStdString();
        if (hasExtension(name) && !newExtension.empty() && CFolderModel::matchesPattern(name, oldPattern)) {
            const std::string text = name.toStdString();
            m_nameField->setText(String::copyOf(text.substr(0, text.rfind('.') + 1) + newExtension));
        }
    }
    updateOKButton();
}

void CFileDialog::selectionChanged()
{
    if (m_mode == FileDialogMode::save) {
        const std::vector<int> rows = selectedRows();
        if (rows.size() == 1 && !m_model->getEntry(rows.front()).isFolder)
            m_nameField->setText(m_model->getEntry(rows.front()).name);
    }
    updateOKButton();
}

void CFileDialog::updateOKButton()
{
    bool enabled = true;
    const std::vector<int> rows = selectedRows();
    if (m_mode == FileDialogMode::open) {
        enabled = !rows.empty();
    } else if (m_mode == FileDialogMode::save) {
        enabled =
            !m_nameField->getText().trim().isEmpty() || (rows.size() == 1 && m_model->getEntry(rows.front()).isFolder);
    }
    m_okButton->setEnabled(enabled);
}

void CFileDialog::placeActivated(int index)
{
    const std::vector<CPlace>& places = m_places->getPlaces();
    if (index < 0 || index >= static_cast<int>(places.size())) return;
    goTo(places[static_cast<std::size_t>(index)].folder);
}

void CFileDialog::headerClicked(int column)
{
    const SortOrder order = m_model->getSortColumn() == column && m_model->getSortOrder() == SortOrder::ascending
                                ? SortOrder::descending
                                : SortOrder::ascending;
    // The rows are replaced; the same entries are selected again after.
    std::vector<String> selected;
    for (const int row : selectedRows()) selected.push_back(m_model->getEntry(row).name);
    m_model->setSort(column, order);
    m_list->sortBy(column, order);
    for (const String& name : selected) {
        const int row = m_model->findRow(name);
        if (row >= 0) m_list->select(row, selected.size() > 1 ? SelectAction::toggle : SelectAction::replace);
    }
}

void CFileDialog::windowNotified(CWindow& window, const CNotification& notification)
{
    if (&window == m_places.get() && notification.kind == Notification::activated) {
        placeActivated(notification.index);
    } else if (&window == m_upButton.get() && notification.kind == Notification::clicked) {
        goUp();
    } else if (&window == m_okButton.get() && notification.kind == Notification::clicked) {
        accept();
    } else if (&window == m_cancelButton.get() && notification.kind == Notification::clicked) {
        cancel();
    } else if (&window == m_filterList.get() && notification.kind == Notification::changed) {
        filterChanged();
    } else if (&window == m_nameField.get() && notification.kind == Notification::changed) {
        updateOKButton();
    } else if (&window == m_list.get()) {
        if (notification.kind == Notification::activated) {
            activateRow(m_list->toModelRow(notification.index));
        } else if (notification.kind == Notification::selectionChanged) {
            selectionChanged();
        } else if (notification.kind == Notification::headerClicked) {
            headerClicked(notification.column);
        }
    }
}

}  // namespace fenn::gui
