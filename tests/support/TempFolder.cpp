#include "tests/support/TempFolder.h"

#include <stdlib.h>

#include <string>
#include <system_error>

namespace tbtest {

TempFolder::TempFolder()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "tonebench-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::system_error(errno, std::generic_category(), "mkdtemp");
    m_path = pattern;
}

TempFolder::~TempFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

}  // namespace tbtest
