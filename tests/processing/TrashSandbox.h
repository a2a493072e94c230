#pragma once

#include <filesystem>
#include <string>

namespace tbtest {

// The desktop trash of this test process, in a temp folder. GLib reads HOME
// and XDG_DATA_HOME once per process, so every test that may move a file to
// the trash calls trashSandbox() first: the first call points both into a
// fresh folder beside the other temp folders (the same device, so GIO picks
// the home trash "<data>/Trash"). The folder goes when the process ends.
struct TrashSandbox
{
    std::filesystem::path home;
    std::filesystem::path trash;
};

const TrashSandbox& trashSandbox();

// The file that the trash holds for a file once at originalPath, found
// through the "Path=" line of its ".trashinfo"; empty when there is none.
std::filesystem::path findInTrash(const std::filesystem::path& originalPath);

}  // namespace tbtest
