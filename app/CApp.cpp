#include "app/CApp.h"

#include <iterator>

#include "app/ApplicationLog.h"
#include "app/Version.h"
#include "formats/FileTagFactories.h"
#include "foundation/CLogManager.h"
#include "foundation/ISystem.h"
#include "foundation/posix/CRegistryValueStore.h"

#include <cstdlib>
#include <filesystem>
#include <random>

namespace tbx {

namespace {

IApp* g_app = nullptr;

const char* const kLogCategory = "app";

// Runs when the platform asks the program to quit (a termination signal,
// the session ending): the same road as the window's close button.
class CQuitRequestAction : public fenn::CObject, public virtual fenn::IAction
{
public:
    void execute() override
    {
        if (IApp* app = getApp(); app != nullptr && app->canExit()) app->exit();
    }
};

}  // namespace

IApp* getApp()
{
    return g_app;
}

void setApp(IApp* app)
{
    g_app = app;
}

const CApp::StartupStep CApp::kStartupSteps[25] = {
    {"setUpFolders", &CApp::setUpFolders},
    {"selectLanguage", &CApp::selectLanguage},
    {"loadSkin", &CApp::loadSkin},
    {"loadLayoutFiles", &CApp::loadLayoutFiles},
    {"startSplash", &CApp::startSplash},
    {"prepareLinks", &CApp::prepareLinks},
    {"createGenreList", &CApp::createGenreList},
    {"readFirstStart", &CApp::readFirstStart},
    {"prepareFolderLooks", &CApp::prepareFolderLooks},
    {"createAudioPlayer", &CApp::createAudioPlayer},
    {"registerInputFileTypes", &CApp::registerInputFileTypes},
    {"registerOutputFileTypes", &CApp::registerOutputFileTypes},
    {"registerAudioFilters", &CApp::registerAudioFilters},
    {"registerCheckerFactories", &CApp::registerCheckerFactories},
    {"registerTagFactories", &CApp::registerTagFactories},
    {"startNewsChannels", &CApp::startNewsChannels},
    {"createModules", &CApp::createModules},
    {"createWizardAndStartScreen", &CApp::createWizardAndStartScreen},
    {"createMainWindow", &CApp::createMainWindow},
    {"closeSplash", &CApp::closeSplash},
    {"bringToForeground", &CApp::bringToForeground},
    {"openLog", &CApp::openLog},
    {"showMainFrame", &CApp::showMainFrame},
    {"applyMode", &CApp::applyMode},
    {"startNewsChecks", &CApp::startNewsChecks},
};

CApp::CApp()
    : m_settings(fenn::posix::openUserValueStore()), m_machineSettings(fenn::posix::openMachineValueStore())
{
    setApp(this);
    try {
        runStartupSequence();
    } catch (...) {
        setApp(nullptr);
        throw;
    }
}

CApp::~CApp()
{
    if (m_log) fenn::CLogManager::getInstance()->removeLog(m_log.get());
    if (fenn::P<fenn::ISystem> system = fenn::getSystem()) system->setQuitRequestHandler(nullptr);
    if (getApp() == this) setApp(nullptr);
}

void CApp::runStartupSequence()
{
    auto log = fenn::CLogManager::getInstance();
    int number = 0;
    for (const StartupStep& step : kStartupSteps) {
        log->debug(kLogCategory, fenn::String("Start-up step ") + fenn::fromInt(++number) + " of " +
                                     fenn::fromInt(static_cast<std::int64_t>(std::size(kStartupSteps))) + ": " +
                                     step.name);
        (this->*step.run)();
    }
    if (fenn::P<fenn::ISystem> system = fenn::getSystem())
        system->setQuitRequestHandler(fenn::make<CQuitRequestAction>());
    log->info(kLogCategory, fenn::String(kProductName) + " " + tbx::getVersionString() + " has started.");
}

void CApp::stepHasNothingToDo(const char* step)
{
    fenn::CLogManager::getInstance()->debug(kLogCategory, fenn::String(step) + ": nothing to do yet");
}

// Each step fills in as its subsystem joins the program.
void CApp::setUpFolders()
{
    stepHasNothingToDo("setUpFolders");
}
void CApp::selectLanguage()
{
    stepHasNothingToDo("selectLanguage");
}
void CApp::loadSkin()
{
    stepHasNothingToDo("loadSkin");
}
void CApp::loadLayoutFiles()
{
    stepHasNothingToDo("loadLayoutFiles");
}
void CApp::startSplash()
{
    stepHasNothingToDo("startSplash");
}
void CApp::prepareLinks()
{
    stepHasNothingToDo("prepareLinks");
}
void CApp::createGenreList()
{
    m_genreList = fenn::make<CMusicGenreList>();
}
void CApp::readFirstStart()
{
    m_firstStart = getIntValue("firstStart", 1) != 0;
    setIntValue("firstStart", 0);
}
void CApp::prepareFolderLooks()
{
    stepHasNothingToDo("prepareFolderLooks");
}
void CApp::createAudioPlayer()
{
    stepHasNothingToDo("createAudioPlayer");
}
void CApp::registerInputFileTypes()
{
    tbx::registerInputFileTypes(*m_fileTypes);
}
void CApp::registerOutputFileTypes()
{
    tbx::registerOutputFileTypes(*m_fileTypes);
}
void CApp::registerAudioFilters()
{
    stepHasNothingToDo("registerAudioFilters");
}
void CApp::registerCheckerFactories()
{
    stepHasNothingToDo("registerCheckerFactories");
}
void CApp::registerTagFactories()
{
    tbx::registerFileTagFactories(*m_tagFactories, m_genreList);
}
void CApp::startNewsChannels()
{
    stepHasNothingToDo("startNewsChannels");
}
void CApp::createModules()
{
    stepHasNothingToDo("createModules");
}
void CApp::createWizardAndStartScreen()
{
    stepHasNothingToDo("createWizardAndStartScreen");
}
void CApp::createMainWindow()
{
    stepHasNothingToDo("createMainWindow");
}
void CApp::closeSplash()
{
    stepHasNothingToDo("closeSplash");
}
void CApp::bringToForeground()
{
    stepHasNothingToDo("bringToForeground");
}
// The log goes to the user's data folder ($XDG_DATA_HOME, else
// ~/.local/share) under the program's name; the folder is made when missing.
void CApp::openLog()
{
    const char* dataHome = std::getenv("XDG_DATA_HOME");
    const char* home = std::getenv("HOME");
    std::filesystem::path folder = dataHome != nullptr && dataHome[0] == '/'
                                       ? std::filesystem::path(dataHome)
                                       : std::filesystem::path(home != nullptr ? home : "/tmp") / ".local/share";
    folder /= kProductName;
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);

    std::mt19937 random(std::random_device{}());
    auto logManager = fenn::CLogManager::getInstance();
    m_log = openApplicationLog(folder, random);
    if (!m_log) {
        logManager->warning(kLogCategory,
                            "Error opening log file. Please verify that it is not used by another application.");
        return;
    }
    logManager->addLog(m_log);
    for (const fenn::String& line : makeSystemReport()) m_log->info(fenn::String(), line);
}
void CApp::showMainFrame()
{
    stepHasNothingToDo("showMainFrame");
}
void CApp::applyMode()
{
    stepHasNothingToDo("applyMode");
}
void CApp::startNewsChecks()
{
    stepHasNothingToDo("startNewsChecks");
}

bool CApp::canExit()
{
    // Without an active module the program may always end.
    return true;
}

void CApp::closeActiveModule()
{
    // There is no module list yet, so no module can be active.
}

void CApp::exit()
{
    closeActiveModule();
    if (fenn::P<fenn::ISystem> system = fenn::getSystem()) system->endMessageLoop();
}

fenn::String CApp::getVersionString() const
{
    return tbx::getVersionString();
}

std::uint32_t CApp::getVersionNumber() const
{
    return tbx::getVersionNumber();
}

std::uint32_t CApp::parseVersion(const fenn::String& text) const
{
    return tbx::parseVersion(text);
}

std::uint32_t CApp::getProductVersion() const
{
    return tbx::getVersionNumber();
}

std::uint32_t CApp::makeVersion(std::uint32_t a, std::uint32_t b, std::uint32_t c) const
{
    return tbx::makeVersion(a, b, c);
}

fenn::String CApp::getIllegalFileNameChars() const
{
    return "\\/:*?\"<>|";
}

void CApp::setStringValue(const fenn::String& name, const fenn::String& value)
{
    m_settings->setString(name, value);
}

void CApp::setIntValue(const fenn::String& name, std::int32_t value)
{
    m_settings->setInt(name, value);
}

namespace {

fenn::String readText(const fenn::IValueStore& store, const fenn::String& name, const fenn::String& defaultValue)
{
    bool found = false;
    const fenn::String value = store.getString(name, defaultValue, found);
    return found && !value.isEmpty() ? value : defaultValue;
}

std::int32_t readNumber(const fenn::IValueStore& store, const fenn::String& name, std::int32_t defaultValue)
{
    bool found = false;
    return store.getInt(name, defaultValue, found);
}

}  // namespace

fenn::String CApp::getStringValue(const fenn::String& name, const fenn::String& defaultValue)
{
    return readText(*m_settings, name, defaultValue);
}

std::int32_t CApp::getIntValue(const fenn::String& name, std::int32_t defaultValue)
{
    return readNumber(*m_settings, name, defaultValue);
}

fenn::String CApp::getMachineStringValue(const fenn::String& name, const fenn::String& defaultValue)
{
    return readText(*m_machineSettings, name, defaultValue);
}

std::int32_t CApp::getMachineIntValue(const fenn::String& name, std::int32_t defaultValue)
{
    return readNumber(*m_machineSettings, name, defaultValue);
}

void CApp::logException(const fenn::String& action, const fenn::CException& exception)
{
    fenn::CLogManager::getInstance()->error(kLogCategory, fenn::String("Exception during '") + action +
                                                              "': " + exception.getDescription());
}

// The tables live in their registries, which the command-line front end
// shares; the application only forwards.

void CApp::addInputFileType(fenn::P<IInputFileType> type)
{
    m_fileTypes->addInputFileType(std::move(type));
}

void CApp::removeInputFileType(IInputFileType* type)
{
    m_fileTypes->removeInputFileType(type);
}

const std::vector<fenn::P<IInputFileType>>& CApp::getInputFileTypes() const
{
    return m_fileTypes->getInputFileTypes();
}

fenn::P<IInputFileType> CApp::findInputFileTypeByExtension(const fenn::String& extension) const
{
    return m_fileTypes->findInputFileTypeByExtension(extension);
}

fenn::P<IAudioSource> CApp::openAudioSource(const fenn::CURI& uri) const
{
    return m_fileTypes->openAudioSource(uri);
}

void CApp::addOutputFileType(fenn::P<IOutputFileType> type)
{
    m_fileTypes->addOutputFileType(std::move(type));
}

void CApp::removeOutputFileType(IOutputFileType* type)
{
    m_fileTypes->removeOutputFileType(type);
}

const std::vector<fenn::P<IOutputFileType>>& CApp::getOutputFileTypes() const
{
    return m_fileTypes->getOutputFileTypes();
}

fenn::P<IOutputFileType> CApp::findOutputFileTypeByExtension(const fenn::String& extension) const
{
    return m_fileTypes->findOutputFileTypeByExtension(extension);
}

fenn::P<IOutputFileType> CApp::findOutputFileTypeById(const fenn::String& id) const
{
    return m_fileTypes->findOutputFileTypeById(id);
}

void CApp::addTagFactory(fenn::P<IMediaFileTagFactory> factory)
{
    m_tagFactories->addTagFactory(std::move(factory));
}

void CApp::removeTagFactory(IMediaFileTagFactory* factory)
{
    m_tagFactories->removeTagFactory(factory);
}

const std::vector<fenn::P<IMediaFileTagFactory>>& CApp::getTagFactories() const
{
    return m_tagFactories->getTagFactories();
}

fenn::P<IMediaFileTag> CApp::getMediaFileTag(const fenn::CURI& uri) const
{
    return m_tagFactories->getMediaFileTag(uri);
}

}  // namespace tbx
