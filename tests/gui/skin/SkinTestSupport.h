#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/CPackageManager.h"
#include "foundation/posix/CPackage.h"
#include "gui/CColor.h"
#include "gui/skin/CCoreWindow.h"
#include "gui/skin/CSkinPackage.h"
#include "tests/support/TempFolder.h"

namespace skintest {

// A skin package folder for one test: PNGs of plain colours (or strips of
// several) and a skin.xml, removed afterwards.
class SkinFolder
{
public:
    // A width x height PNG, one colour per frame laid side by side.
    void writeImage(const std::string& name, const std::vector<fenn::gui::CColor>& frames, int width = 8,
                    int height = 8);
    void writeXML(const std::string& xml);
    // Parses the folder's skin.xml.
    fenn::P<fenn::gui::skin::CSkinPackage> load() const;
    // The text of the CParseError that parsing xml throws, or "" when it parses.
    std::string parseError(const std::string& xml);
    std::string path() const { return m_folder.path().string(); }

private:
    tbtest::TempFolder m_folder;
};

// The clock of the core windows while a test runs, starting at 1000 ms.
class FakeClock
{
public:
    FakeClock()
    {
        fenn::gui::skin::CCoreWindow::setClock([this] { return m_now; });
    }
    ~FakeClock() { fenn::gui::skin::CCoreWindow::setClock(nullptr); }
    FakeClock(const FakeClock&) = delete;
    FakeClock& operator=(const FakeClock&) = delete;
    void set(std::int64_t now) { m_now = now; }
    std::int64_t now() const { return m_now; }

private:
    std::int64_t m_now = 1000;
};

// The framework packages started as the program starts them (the platform
// session, the core, disk streams and file systems, the toolkit and the
// skin window system), stopped again at the end of the test.
class StartedPackages
{
public:
    StartedPackages();
    ~StartedPackages();
    StartedPackages(const StartedPackages&) = delete;
    StartedPackages& operator=(const StartedPackages&) = delete;

private:
    fenn::posix::CPlatformSession m_platform;
    fenn::P<fenn::CPackageManager> m_packages;
};

}  // namespace skintest
