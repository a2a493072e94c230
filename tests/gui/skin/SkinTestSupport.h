#pragma once

#include <gtest/gtest.h>

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

// The plain colours of the test images.
inline const fenn::gui::CColor red(255, 0, 0);
inline const fenn::gui::CColor green(0, 255, 0);
inline const fenn::gui::CColor blue(0, 0, 255);
inline const fenn::gui::CColor yellow(255, 255, 0);
inline const fenn::gui::CColor magenta(255, 0, 255);
inline const fenn::gui::CColor cyan(0, 255, 255);
inline const fenn::gui::CColor grey(128, 128, 128);
inline const fenn::gui::CColor white(255, 255, 255);
inline const fenn::gui::CColor black(0, 0, 0);

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

// A test of skinned windows: one skin set parsed into package and set, and
// the core windows' clock under the test's control.
class SkinSetTest : public ::testing::Test
{
protected:
    // A PNG of the package: one colour per frame, laid side by side.
    struct Image
    {
        std::string name;
        std::vector<fenn::gui::CColor> frames;
        int width = 8;
        int height = 8;
    };

    // Writes an 8 x 8 image of each plain colour ("red.png", "white.png"...),
    // the extra images and xml into the folder, parses it and takes the set
    // setId.
    void loadSet(const std::string& xml, const std::vector<Image>& extraImages = {}, const char* setId = "main");
    // Parses the package in packageFolder and takes the set setId.
    void loadPackage(const std::string& packageFolder, const char* setId);

    // The set's skin id as the kind Skin; null when it is another kind.
    template <class Skin> fenn::P<Skin> skin(const char* id) const
    {
        return fenn::P<Skin>(dynamic_cast<Skin*>(set->getSkin(id).get()));
    }

    // Moves the clock to now and lets core play up to there.
    void advance(fenn::gui::skin::CCoreWindow& core, std::int64_t now)
    {
        clock.set(now);
        core.update(now);
    }

    SkinFolder folder;
    fenn::P<fenn::gui::skin::CSkinPackage> package;
    fenn::P<fenn::gui::skin::ISkinSet> set;
    FakeClock clock;
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
