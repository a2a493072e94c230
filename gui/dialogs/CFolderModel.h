#pragma once

#include <cstdint>
#include <vector>

#include "foundation/CURI.h"
#include "foundation/IFileSystem.h"
#include "gui/widgets/CCellView.h"
#include "gui/widgets/CCellViewModel.h"

namespace fenn::gui {

// One entry of a listed folder, with its facts as read.
struct CFolderEntry
{
    String name;
    CURI uri;
    bool isFolder = false;
    std::int64_t size = 0;
    FileTime modified = kUnknownFileTime;
};

// Which entries a folder listing shows.
enum class FolderContent {
    foldersAndFiles,
    foldersOnly,
};

// The rows of the file dialog's listing: the entries of one folder read
// through the shared file system manager, without hidden entries (names
// that begin with "."), with files cut down to those that match the
// filter's patterns, folders first and each group in the chosen order
// (by name, without regard to case, unless another column is chosen).
// Columns: name (with an icon), size and modification time. Changing the
// filter or the order works on what was read, without reading again.
// Owned by the dialog and its cell view; GUI thread.
class CFolderModel : public CCellViewModelBase
{
public:
    static constexpr int kNameColumn = 0;
    static constexpr int kSizeColumn = 1;
    static constexpr int kModifiedColumn = 2;

    CFolderModel();

    // Reads folder. When reading fails the rows are empty, the folder is
    // still taken as the current one and the file system's error (a
    // CFileError, a CURIError) goes on to the caller.
    void load(const CURI& folder);
    // Reads the current folder again.
    void reload();
    const CURI& getFolder() const { return m_folder; }

    // File name patterns separated by ";" ("*.wav;*.mp3"), matched in any
    // case; an empty pattern lets every file through. Folders always show.
    void setPattern(const String& pattern);
    const String& getPattern() const { return m_pattern; }
    void setContent(FolderContent content);
    // Folders stay before files whatever the column and order; equal keys
    // fall back to the name.
    void setSort(int column, SortOrder order);
    int getSortColumn() const { return m_sortColumn; }
    SortOrder getSortOrder() const { return m_sortOrder; }

    // The entry shown in row; CInvalidArgError outside the rows.
    const CFolderEntry& getEntry(int row) const;
    // The row of the entry with exactly this name, or -1.
    int findRow(const String& name) const;

    // ---- ICellViewModel ----
    int getRowCount() const override { return static_cast<int>(m_rows.size()); }
    String getCellText(int row, int column) const override;
    P<IImage> getCellImage(int row, int column) const override;

    // Whether name matches one of the ";"-separated patterns, in any case.
    static bool matchesPattern(const String& name, const String& pattern);
    // A modification time as the listing shows it: the time of day for
    // today and yesterday, the day for older times; now is the reference.
    static String formatModified(FileTime time, FileTime now);

private:
    // Works out the shown rows from the entries and tells the listeners.
    void updateRows();
    bool isAudioFile(const CFolderEntry& entry) const;

    CURI m_folder;
    std::vector<CFolderEntry> m_entries;
    // Indexes into m_entries, in the shown order.
    std::vector<int> m_rows;
    String m_pattern;
    FolderContent m_content = FolderContent::foldersAndFiles;
    int m_sortColumn = kNameColumn;
    SortOrder m_sortOrder = SortOrder::ascending;
    P<IImage> m_folderIcon;
    P<IImage> m_fileIcon;
    P<IImage> m_audioIcon;
};

}  // namespace fenn::gui
