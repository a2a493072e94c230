#pragma once

#include <cstdint>

#include "app/IApp.h"
#include "tags/CMusicGenreList.h"
#include "foundation/ILog.h"
#include "foundation/CObject.h"
#include "foundation/IValueStore.h"

namespace tbx {

// The one object that owns everything long-lived. Its constructor runs the
// whole start-up sequence, step by step in a fixed order; its destructor
// releases what the steps created in reverse. Created once by the process
// entry, on the GUI thread.
class CApp : public fenn::CObject, public virtual IApp
{
public:
    CApp();
    ~CApp() override;
    CApp(const CApp&) = delete;
    CApp& operator=(const CApp&) = delete;

    bool canExit() override;
    void closeActiveModule() override;
    void exit() override;

    fenn::String getVersionString() const override;
    std::uint32_t getVersionNumber() const override;
    std::uint32_t parseVersion(const fenn::String& text) const override;
    std::uint32_t getProductVersion() const override;
    std::uint32_t makeVersion(std::uint32_t a, std::uint32_t b, std::uint32_t c) const override;
    fenn::String getIllegalFileNameChars() const override;
    void logException(const fenn::String& action, const fenn::CException& exception) override;
    void setStringValue(const fenn::String& name, const fenn::String& value) override;
    void setIntValue(const fenn::String& name, std::int32_t value) override;
    fenn::String getStringValue(const fenn::String& name, const fenn::String& defaultValue) override;
    std::int32_t getIntValue(const fenn::String& name, std::int32_t defaultValue) override;
    fenn::String getMachineStringValue(const fenn::String& name, const fenn::String& defaultValue) override;
    std::int32_t getMachineIntValue(const fenn::String& name, std::int32_t defaultValue) override;
    bool isFirstStart() const override { return m_firstStart; }

    void addInputFileType(fenn::P<IInputFileType> type) override;
    void removeInputFileType(IInputFileType* type) override;
    const std::vector<fenn::P<IInputFileType>>& getInputFileTypes() const override;
    fenn::P<IInputFileType> findInputFileTypeByExtension(const fenn::String& extension) const override;
    fenn::P<IAudioSource> openAudioSource(const fenn::CURI& uri) const override;
    void addOutputFileType(fenn::P<IOutputFileType> type) override;
    void removeOutputFileType(IOutputFileType* type) override;
    const std::vector<fenn::P<IOutputFileType>>& getOutputFileTypes() const override;
    fenn::P<IOutputFileType> findOutputFileTypeByExtension(const fenn::String& extension) const override;
    fenn::P<IOutputFileType> findOutputFileTypeById(const fenn::String& id) const override;
    const CFileTypeRegistry& getFileTypeRegistry() const override { return *m_fileTypes; }

    void addTagFactory(fenn::P<IMediaFileTagFactory> factory) override;
    void removeTagFactory(IMediaFileTagFactory* factory) override;
    const std::vector<fenn::P<IMediaFileTagFactory>>& getTagFactories() const override;
    fenn::P<IMediaFileTag> getMediaFileTag(const fenn::CURI& uri) const override;
    fenn::P<IMusicGenreList> getGenreList() const override { return m_genreList; }

    struct StartupStep
    {
        const char* name;
        void (CApp::*run)();
    };
    // The start-up sequence in the order the constructor runs it.
    static const StartupStep kStartupSteps[25];

private:
    void runStartupSequence();
    // Notes a step whose subsystem is not part of the program yet.
    void stepHasNothingToDo(const char* step);

    void setUpFolders();
    void selectLanguage();
    void loadSkin();
    void loadLayoutFiles();
    void startSplash();
    void prepareLinks();
    void createGenreList();
    void readFirstStart();
    void prepareFolderLooks();
    void createAudioPlayer();
    void registerInputFileTypes();
    void registerOutputFileTypes();
    void registerAudioFilters();
    void registerCheckerFactories();
    void registerTagFactories();
    void startNewsChannels();
    void createModules();
    void createWizardAndStartScreen();
    void createMainWindow();
    void closeSplash();
    void bringToForeground();
    void openLog();
    void showMainFrame();
    void applyMode();
    void startNewsChecks();

    fenn::P<CMusicGenreList> m_genreList;
    fenn::P<CFileTypeRegistry> m_fileTypes = fenn::make<CFileTypeRegistry>();
    fenn::P<CMediaTagRegistry> m_tagFactories = fenn::make<CMediaTagRegistry>();
    fenn::P<fenn::IValueStore> m_settings;
    fenn::P<fenn::IValueStore> m_machineSettings;
    std::int32_t m_mode = 1;
    bool m_firstStart = false;
    fenn::P<fenn::ILog> m_log;
};

}  // namespace tbx
