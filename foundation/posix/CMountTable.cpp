#include "foundation/posix/CMountTable.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>

namespace fenn::posix {

namespace {

// The kernel writes blanks, tabs, line feeds and backslashes in paths as a
// backslash and three octal digits ("\040").
std::string unescapeOctal(std::string_view text)
{
    const auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size() && isOctal(text[i + 1]) && isOctal(text[i + 2]) &&
            isOctal(text[i + 3])) {
            out += static_cast<char>(((text[i + 1] - '0') << 6) | ((text[i + 2] - '0') << 3) | (text[i + 3] - '0'));
            i += 3;
        } else {
            out += text[i];
        }
    }
    return out;
}

std::vector<std::string_view> splitFields(std::string_view line)
{
    std::vector<std::string_view> fields;
    std::size_t start = 0;
    while (start < line.size()) {
        const std::size_t end = line.find(' ', start);
        if (end != start) fields.push_back(line.substr(start, end == std::string_view::npos ? end : end - start));
        if (end == std::string_view::npos) break;
        start = end + 1;
    }
    return fields;
}

template <class Number> bool parseNumber(std::string_view text, Number& value)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

// "36 35 98:0 /mnt1 /mnt2 rw,noatime master:1 - ext3 /dev/root rw": six
// fixed fields, optional fields up to "-", then type, source and the
// options of the file system.
bool parseLine(std::string_view line, CMountEntry& entry)
{
    const std::vector<std::string_view> fields = splitFields(line);
    if (fields.size() < 9) return false;
    const auto separator = std::find(fields.begin() + 6, fields.end(), std::string_view("-"));
    if (separator == fields.end() || fields.end() - separator < 3) return false;

    const std::string_view device = fields[2];
    const std::size_t colon = device.find(':');
    if (colon == std::string_view::npos) return false;
    if (!parseNumber(fields[0], entry.mountID) || !parseNumber(fields[1], entry.parentID) ||
        !parseNumber(device.substr(0, colon), entry.major) || !parseNumber(device.substr(colon + 1), entry.minor))
        return false;
    entry.root = unescapeOctal(fields[3]);
    entry.mountPoint = unescapeOctal(fields[4]);
    entry.options = std::string(fields[5]);
    entry.fileSystemType = unescapeOctal(separator[1]);
    entry.source = unescapeOctal(separator[2]);
    return !entry.mountPoint.empty() && entry.mountPoint.front() == '/';
}

}  // namespace

CMountTable CMountTable::parse(std::string_view text)
{
    std::vector<CMountEntry> entries;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        CMountEntry entry;
        if (parseLine(text.substr(start, end - start), entry)) entries.push_back(std::move(entry));
        start = end + 1;
    }
    return CMountTable(std::move(entries));
}

CMountTable CMountTable::read()
{
    const int descriptor = ::open(kMountInfoPath, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return CMountTable();
    CMountTable table = read(descriptor);
    ::close(descriptor);
    return table;
}

CMountTable CMountTable::read(int descriptor)
{
    // The kernel builds the text as it is read; one read from the start to
    // the end gives one consistent picture of small tables, and a change
    // during a longer read is reported by poll again.
    if (::lseek(descriptor, 0, SEEK_SET) != 0) return CMountTable();
    std::string text;
    std::array<char, 16384> buffer;
    for (;;) {
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return parse(text);
}

bool CMountTable::isSystemFileSystem(std::string_view fileSystemType)
{
    static constexpr std::string_view kSystemTypes[] = {
        "autofs", "binfmt_misc", "bpf",        "cgroup",     "cgroup2",   "configfs", "debugfs",
        "devpts", "devtmpfs",    "efivarfs",   "fusectl",    "hugetlbfs", "mqueue",   "nsfs",
        "proc",   "pstore",      "rpc_pipefs", "securityfs", "selinuxfs", "sysfs",    "tracefs"};
    return std::find(std::begin(kSystemTypes), std::end(kSystemTypes), fileSystemType) != std::end(kSystemTypes);
}

bool CMountTable::isSystemMountPoint(std::string_view mountPoint)
{
    for (const std::string_view system : {std::string_view("/proc"), std::string_view("/sys")}) {
        if (mountPoint == system || (mountPoint.starts_with(system) && mountPoint[system.size()] == '/')) return true;
    }
    return false;
}

CMountTable CMountTable::withoutSystemMounts() const
{
    std::vector<CMountEntry> entries;
    for (const CMountEntry& entry : m_entries) {
        if (isSystemFileSystem(entry.fileSystemType) || isSystemMountPoint(entry.mountPoint)) continue;
        // A later mount on the same folder covers the earlier one.
        std::erase_if(entries, [&entry](const CMountEntry& seen) { return seen.mountPoint == entry.mountPoint; });
        entries.push_back(entry);
    }
    return CMountTable(std::move(entries));
}

CMountTableChanges diffMountTables(const CMountTable& before, const CMountTable& after)
{
    const auto contains = [](const std::vector<CMountEntry>& entries, const CMountEntry& entry) {
        return std::any_of(entries.begin(), entries.end(),
                           [&entry](const CMountEntry& other) { return other.isSameMount(entry); });
    };
    CMountTableChanges changes;
    for (const CMountEntry& entry : after.getEntries()) {
        if (!contains(before.getEntries(), entry)) changes.added.push_back(entry);
    }
    for (const CMountEntry& entry : before.getEntries()) {
        if (!contains(after.getEntries(), entry)) changes.removed.push_back(entry);
    }
    return changes;
}

}  // namespace fenn::posix
