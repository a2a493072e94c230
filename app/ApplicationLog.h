#pragma once

#include <filesystem>
#include <random>
#include <vector>

#include "foundation/CTextFileLog.h"

namespace tbx {

// Opens the application's log in folder: "log.txt" first; when that cannot
// be opened (another program holds the name, the disk refuses it), up to 99
// names "log_%X.txt" with a fresh random 32-bit number in upper-case
// hexadecimal. Null when all 100 fail: the program then runs without a log.
fenn::P<fenn::CTextFileLog> openApplicationLog(const std::filesystem::path& folder, std::mt19937& random);

// The lines that open every log: the system's name and kernel, the program
// and its version, a blank line, and the memory figures in megabytes.
std::vector<fenn::String> makeSystemReport();

}  // namespace tbx
