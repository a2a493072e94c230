#include "app/ApplicationLog.h"

#include <sys/sysinfo.h>
#include <sys/utsname.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "app/Version.h"
#include "foundation/CException.h"
#include "foundation/CURI.h"

namespace tbx {

namespace {

constexpr int kLogNameTries = 100;

fenn::P<fenn::CTextFileLog> tryOpen(const std::filesystem::path& file)
{
    try {
        return fenn::make<fenn::CTextFileLog>(fenn::CURI::fromPath(fenn::String::copyOf(file.string())));
    } catch (const fenn::CException&) {
        return nullptr;
    }
}

// PRETTY_NAME of /etc/os-release, without its quotes; "Linux" when absent.
std::string systemName()
{
    std::ifstream release("/etc/os-release");
    for (std::string line; std::getline(release, line);) {
        if (line.rfind("PRETTY_NAME=", 0) != 0) continue;
        std::string value = line.substr(12);
        if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'')) value = value.substr(1, value.size() - 2);
        return value;
    }
    return "Linux";
}

// MemAvailable of /proc/meminfo in bytes: what the system can give without
// swapping, which free memory alone understates. -1 when absent.
long long availableMemory()
{
    std::ifstream meminfo("/proc/meminfo");
    for (std::string key; meminfo >> key;) {
        long long kilobytes = 0;
        std::string unit;
        meminfo >> kilobytes >> unit;
        if (key == "MemAvailable:") return kilobytes * 1024;
    }
    return -1;
}

fenn::String megabytes(long long bytes)
{
    return fenn::fromInt(bytes / (1024 * 1024));
}

}  // namespace

fenn::P<fenn::CTextFileLog> openApplicationLog(const std::filesystem::path& folder, std::mt19937& random)
{
    if (auto log = tryOpen(folder / "log.txt")) return log;
    for (int attempt = 1; attempt < kLogNameTries; ++attempt) {
        char name[32];
        std::snprintf(name, sizeof name, "log_%X.txt", static_cast<unsigned>(random()));
        if (auto log = tryOpen(folder / name)) return log;
    }
    return nullptr;
}

std::vector<fenn::String> makeSystemReport()
{
    std::vector<fenn::String> lines;
    utsname kernel{};
    std::string system = systemName();
    if (uname(&kernel) == 0) system += std::string(" ") + kernel.release;
    lines.push_back(fenn::String::copyOf(system));
    lines.push_back(fenn::String(kProductName) + " " + getVersionString());
    lines.push_back(fenn::String());

    struct sysinfo info{};
    if (sysinfo(&info) == 0) {
        const long long unit = info.mem_unit;
        const long long totalPhysical = static_cast<long long>(info.totalram) * unit;
        long long availablePhysical = availableMemory();
        if (availablePhysical < 0) availablePhysical = static_cast<long long>(info.freeram + info.bufferram) * unit;
        const long long totalVirtual = totalPhysical + static_cast<long long>(info.totalswap) * unit;
        const long long availableVirtual = availablePhysical + static_cast<long long>(info.freeswap) * unit;
        lines.push_back(fenn::String("Available physical memory: ") + megabytes(availablePhysical) + "  MB");
        lines.push_back(fenn::String("Total physical memory: ") + megabytes(totalPhysical) + " MB");
        lines.push_back(fenn::String("Available virtual memory: ") + megabytes(availableVirtual) + " MB");
        lines.push_back(fenn::String("Total virtual memory: ") + megabytes(totalVirtual) + " MB");
    }
    return lines;
}

}  // namespace tbx
