#include "gui/dialogs/CFolderModel.h"

#include <fnmatch.h>

#include <algorithm>
#include <ctime>

#include "foundation/CFileSystemManager.h"
#include "foundation/CObjectError.h"
#include "foundation/FormatDataSize.h"
#include "foundation/IStringLocalizer.h"
#include "gui/CStyle.h"
#include "gui/GuiTexts.h"
#include "gui/dialogs/CFileIcons.h"

namespace fenn::gui {

namespace {

// Icons are drawn at about twice the size a row shows them, so that they
// stay sharp on screens scaled by two.
constexpr int kIconPixels = 40;

// formatDataSize shows sizes from this many bytes on in a larger unit.
constexpr std::int64_t kFirstScaledSize = 950;

// The extensions that get the audio file icon.
constexpr const char* kAudioExtensions[] = {"wav", "mp3", "flac", "ogg", "oga", "opus", "wma", "m4a",
                                            "aac", "aif", "aiff", "ape", "wv",  "mpc",  "mp2"};

std::tm localTime(FileTime time)
{
    const std::time_t seconds = static_cast<std::time_t>(time / 1000);
    std::tm result{};
    ::localtime_r(&seconds, &result);
    return result;
}

String formatTime(const std::tm& time, const char* format)
{
    char buffer[64];
    const std::size_t length = std::strftime(buffer, sizeof buffer, format, &time);
    return String::copyOf(std::string_view(buffer, length)).trim();
}

// Days since 1970-01-01 of a calendar date, for telling today from
// yesterday across month and year ends (the civil calendar's day count).
long dayNumber(const std::tm& time)
{
    long year = time.tm_year + 1900;
    const long month = time.tm_mon + 1;
    year -= month <= 2 ? 1 : 0;
    const long era = (year >= 0 ? year : year - 399) / 400;
    const long yearOfEra = year - era * 400;
    const long dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + time.tm_mday - 1;
    const long dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468;
}

}  // namespace

CFolderModel::CFolderModel()
{
    const CColor accent = CStyle::get().accent;
    m_folderIcon = makeFileIconImage(FileIcon::folder, kIconPixels, accent);
    m_fileIcon = makeFileIconImage(FileIcon::file, kIconPixels, accent);
    m_audioIcon = makeFileIconImage(FileIcon::audioFile, kIconPixels, accent);
}

void CFolderModel::load(const CURI& folder)
{
    m_folder = folder;
    std::vector<CFolderEntry> entries;
    try {
        const P<IFileObjectCursor> cursor = CFileSystemManager::getInstance()->createCursor(folder, "*");
        while (cursor->next()) {
            const FileObjectInfo info = cursor->getInfo();
            if (info.name.isEmpty() || info.name.startsWith(".")) continue;
            // Sockets, devices and links that lead nowhere are no choice.
            if (!info.isFolder && !info.isFile) continue;
            CFolderEntry entry;
            entry.name = info.name;
            entry.uri = cursor->getURI();
            entry.isFolder = info.isFolder;
            entry.size = info.isFile ? info.size : 0;
            entry.modified = info.lastWriteTime;
            entries.push_back(std::move(entry));
        }
    } catch (...) {
        m_entries.clear();
        updateRows();
        throw;
    }
    m_entries = std::move(entries);
    updateRows();
}

void CFolderModel::reload()
{
    load(m_folder);
}

void CFolderModel::setPattern(const String& pattern)
{
    if (pattern == m_pattern) return;
    m_pattern = pattern;
    updateRows();
}

void CFolderModel::setContent(FolderContent content)
{
    if (content == m_content) return;
    m_content = content;
    updateRows();
}

void CFolderModel::setSort(int column, SortOrder order)
{
    if (column < kNameColumn || column > kModifiedColumn) throw CInvalidArgError(this, "setSort", "column");
    m_sortColumn = column;
    m_sortOrder = order == SortOrder::none ? SortOrder::ascending : order;
    updateRows();
}

const CFolderEntry& CFolderModel::getEntry(int row) const
{
    if (row < 0 || row >= getRowCount()) throw CInvalidArgError(this, "getEntry", "row");
    return m_entries[static_cast<std::size_t>(m_rows[static_cast<std::size_t>(row)])];
}

int CFolderModel::findRow(const String& name) const
{
    for (int row = 0; row < getRowCount(); ++row) {
        if (getEntry(row).name == name) return row;
    }
    return -1;
}

void CFolderModel::updateRows()
{
    m_rows.clear();
    for (std::size_t index = 0; index < m_entries.size(); ++index) {
        const CFolderEntry& entry = m_entries[index];
        if (!entry.isFolder) {
            if (m_content == FolderContent::foldersOnly) continue;
            if (!matchesPattern(entry.name, m_pattern)) continue;
        }
        m_rows.push_back(static_cast<int>(index));
    }
    const auto byName = [](const CFolderEntry& a, const CFolderEntry& b) {
        const int order = a.name.compareNoCase(b.name);
        // Names that differ only in case still get a fixed order.
        return order != 0 ? order < 0 : a.name.compare(b.name) < 0;
    };
    const auto byColumn = [this, &byName](const CFolderEntry& a, const CFolderEntry& b) {
        if (m_sortColumn == kSizeColumn && a.size != b.size) return a.size < b.size;
        if (m_sortColumn == kModifiedColumn && a.modified != b.modified) return a.modified < b.modified;
        return byName(a, b);
    };
    const bool descending = m_sortOrder == SortOrder::descending;
    std::stable_sort(m_rows.begin(), m_rows.end(), [&](int left, int right) {
        const CFolderEntry& a = m_entries[static_cast<std::size_t>(left)];
        const CFolderEntry& b = m_entries[static_cast<std::size_t>(right)];
        if (a.isFolder != b.isFolder) return a.isFolder;
        return descending ? byColumn(b, a) : byColumn(a, b);
    });
    notifyChanged(0, ICellViewModelListener::kToTheEnd);
}

String CFolderModel::getCellText(int row, int column) const
{
    if (row < 0 || row >= getRowCount()) return String();
    const CFolderEntry& entry = getEntry(row);
    switch (column) {
    case kNameColumn:
        return entry.name;
    case kSizeColumn:
        if (entry.isFolder) return String();
        // Whole bytes need no decimals; larger units get one.
        return formatDataSize(entry.size, -1, entry.size < kFirstScaledSize ? 0 : 1);
    case kModifiedColumn:
        if (entry.modified == kUnknownFileTime) return String();
        return formatModified(entry.modified, static_cast<FileTime>(std::time(nullptr)) * 1000);
    default:
        return String();
    }
}

P<IImage> CFolderModel::getCellImage(int row, int column) const
{
    if (column != kNameColumn || row < 0 || row >= getRowCount()) return nullptr;
    const CFolderEntry& entry = getEntry(row);
    if (entry.isFolder) return m_folderIcon;
    return isAudioFile(entry) ? m_audioIcon : m_fileIcon;
}

bool CFolderModel::isAudioFile(const CFolderEntry& entry) const
{
    const String extension = entry.uri.getExtension();
    for (const char* audio : kAudioExtensions) {
        if (extension.equalsNoCase(audio)) return true;
    }
    return false;
}

bool CFolderModel::matchesPattern(const String& name, const String& pattern)
{
    if (pattern.trim().isEmpty()) return true;
    const std::string text = name.toStdString();
    for (const String& part : pattern.split(";")) {
        const std::string one = part.trim().toStdString();
        if (!one.empty() && ::fnmatch(one.c_str(), text.c_str(), FNM_CASEFOLD) == 0) return true;
    }
    return false;
}

String CFolderModel::formatModified(FileTime time, FileTime now)
{
    const std::tm when = localTime(time);
    const std::tm today = localTime(now);
    const long days = dayNumber(today) - dayNumber(when);
    if (days == 0) return localize(texts::fileDialogToday).replace("%TIME%", formatTime(when, "%H:%M"));
    if (days == 1) return localize(texts::fileDialogYesterday).replace("%TIME%", formatTime(when, "%H:%M"));
    if (when.tm_year == today.tm_year && days > 0) return formatTime(when, "%e %b");
    return formatTime(when, "%e %b %Y");
}

}  // namespace fenn::gui
