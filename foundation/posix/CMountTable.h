#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace fenn::posix {

// One line of /proc/self/mountinfo (see proc(5)), with the octal escapes of
// its paths ("\040" for a blank) resolved.
struct CMountEntry
{
    int mountID = 0;
    int parentID = 0;
    unsigned major = 0;
    unsigned minor = 0;
    std::string root;        // the folder of the file system that is mounted
    std::string mountPoint;  // where it is mounted
    std::string options;     // per mount: "rw,nosuid,relatime"
    std::string fileSystemType;
    std::string source;  // "/dev/sda1", "tmpfs", ...

    // The same mount: the kernel keeps a mount's number for its life, so a
    // remount with other options is the same, a new mount on the same
    // folder is not.
    bool isSameMount(const CMountEntry& other) const
    {
        return mountID == other.mountID && mountPoint == other.mountPoint;
    }
};

// What changed between two mount tables.
struct CMountTableChanges
{
    std::vector<CMountEntry> added;
    std::vector<CMountEntry> removed;
};

// The mounts of this process, in the kernel's order (a later mount on the
// same folder hides an earlier one). A plain value; reading touches only
// the file.
class CMountTable
{
public:
    static constexpr const char* kMountInfoPath = "/proc/self/mountinfo";

    CMountTable() = default;
    explicit CMountTable(std::vector<CMountEntry> entries) : m_entries(std::move(entries)) {}

    // Parses mountinfo text; lines that do not have the form are skipped.
    static CMountTable parse(std::string_view text);
    // Reads and parses /proc/self/mountinfo; an empty table when it cannot
    // be read.
    static CMountTable read();
    // Reads and parses the open mountinfo file descriptor from its start.
    static CMountTable read(int descriptor);

    const std::vector<CMountEntry>& getEntries() const { return m_entries; }

    // The mounts that the user sees as places for files: without the
    // kernel's own file systems (proc, sysfs, cgroup...) and whatever is
    // mounted below /proc and /sys, and with one entry per mount point, the
    // one on top.
    CMountTable withoutSystemMounts() const;

    // Whether fileSystemType is one of the kernel's interfaces rather than
    // storage for files.
    static bool isSystemFileSystem(std::string_view fileSystemType);
    static bool isSystemMountPoint(std::string_view mountPoint);

private:
    std::vector<CMountEntry> m_entries;
};

// The mounts of after that before lacks (added) and those of before that
// after lacks (removed), each in its table's order.
CMountTableChanges diffMountTables(const CMountTable& before, const CMountTable& after);

}  // namespace fenn::posix
