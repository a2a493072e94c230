#pragma once

#include <filesystem>

namespace tbtest {

// A fresh folder under the system's temp folder, removed with everything in
// it when the object goes.
class TempFolder
{
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path operator/(const std::string& name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

}  // namespace tbtest
