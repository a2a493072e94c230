#include "tests/processing/TrashSandbox.h"

#include <cstdlib>
#include <fstream>
#include <memory>

#include "tests/support/TempFolder.h"

namespace tbtest {

const TrashSandbox& trashSandbox()
{
    static const std::unique_ptr<TempFolder> folder = std::make_unique<TempFolder>();
    static const TrashSandbox sandbox = [] {
        TrashSandbox result{folder->path() / "home", folder->path() / "data" / "Trash"};
        std::filesystem::create_directories(result.home);
        std::filesystem::create_directories(folder->path() / "data");
        ::setenv("HOME", result.home.c_str(), 1);
        ::setenv("XDG_DATA_HOME", (folder->path() / "data").c_str(), 1);
        return result;
    }();
    return sandbox;
}

std::filesystem::path findInTrash(const std::filesystem::path& originalPath)
{
    const std::filesystem::path info = trashSandbox().trash / "info";
    if (!std::filesystem::exists(info)) return {};
    for (const auto& entry : std::filesystem::directory_iterator(info)) {
        std::ifstream file(entry.path());
        for (std::string line; std::getline(file, line);) {
            if (line != "Path=" + originalPath.string()) continue;
            const std::string name = entry.path().filename().string();
            return trashSandbox().trash / "files" / name.substr(0, name.size() - std::string(".trashinfo").size());
        }
    }
    return {};
}

}  // namespace tbtest
