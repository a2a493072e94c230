#include "app/ProcessEntry.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "app/CApp.h"
#include "foundation/CLogManager.h"
#include "foundation/Core.h"
#include "foundation/posix/CPackage.h"
#include "gui/CPackage.h"
#include "gui/sdl/CPackage.h"
#include "gui/skin/CPackage.h"
#include "net/CPackage.h"
#include "net/posix/CPackage.h"

namespace tbx {

namespace {

// The level of the console log: TONEBENCH_LOG_LEVEL names it ("debug",
// "info", "warning", "error"); information and above otherwise.
fenn::LogLevel consoleLogLevel()
{
    const char* value = std::getenv("TONEBENCH_LOG_LEVEL");
    if (value == nullptr) return fenn::LogLevel::info;
    if (std::strcmp(value, "debug") == 0) return fenn::LogLevel::debug;
    if (std::strcmp(value, "warning") == 0) return fenn::LogLevel::warning;
    if (std::strcmp(value, "error") == 0) return fenn::LogLevel::error;
    return fenn::LogLevel::info;
}

void addFrameworkPackages(fenn::IPackageManager& packages)
{
    packages.addPackage(fenn::make<fenn::posix::CPackage>());
    packages.addPackage(fenn::make<fenn::gui::CPackage>());
    packages.addPackage(fenn::make<fenn::gui::format::mng::CPackage>());
    packages.addPackage(fenn::make<fenn::gui::sdl::CPackage>());
    packages.addPackage(fenn::make<fenn::gui::skin::CPackage>());
    packages.addPackage(fenn::make<fenn::net::CPackage>());
    packages.addPackage(fenn::make<fenn::net::posix::CPackage>());
}

void logFailure(const char* where, const fenn::CException& error)
{
    fenn::CLogManager::getInstance()->error("app", fenn::String(where) + ": " + error.getTitle() + ": " +
                                                       error.getDescription());
}

}  // namespace

int runProcessEntry()
{
    fenn::CLogManager::getInstance()->addLog(fenn::make<fenn::CConsoleLog>(consoleLogLevel()));

    std::optional<fenn::posix::CPlatformSession> platform;
    try {
        platform.emplace();
    } catch (const fenn::CException& error) {
        logFailure("Start-up", error);
        fenn::stopCore();
        return EXIT_FAILURE;
    }

    fenn::P<fenn::CPackageManager> packages;
    try {
        packages = fenn::startCore();
        addFrameworkPackages(*packages);
        packages->startAll();

        fenn::P<CApp> app;
        try {
            app = fenn::make<CApp>();
            fenn::getSystem()->runMessageLoop();
        } catch (const fenn::CException& error) {
            logFailure("Run", error);
        }
        app = nullptr;
    } catch (const fenn::CException& error) {
        logFailure("Framework", error);
    }

    if (packages) {
        packages->stopAll();
        packages = nullptr;
    }
    setApp(nullptr);
    fenn::stopCore();
    return EXIT_SUCCESS;
}

}  // namespace tbx
