#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "audio/processing/CFileConverter.h"
#include "formats/CFileTypeRegistry.h"
#include "foundation/CLogManager.h"
#include "foundation/Core.h"
#include "foundation/posix/CPackage.h"
#include "tests/processing/TestAudioFileTypes.h"
#include "tests/support/CaptureLog.h"
#include "tests/support/TempFolder.h"

namespace tbtest {

// One progress report as a listener saw it.
struct ProgressEvent
{
    std::string action;
    double item;
    double total;
};

// Keeps every report of a job; may run a step on each.
class CProgressRecorder : public fenn::CObject, public virtual tbx::IProgressListener
{
public:
    void onProgress(tbx::IProgress* progress) override
    {
        events.push_back(
            {progress->getItemText().toStdString(), progress->getItemProgress(), progress->getOverallProgress()});
        if (onEvent) onEvent(events.back());
    }

    std::vector<ProgressEvent> events;
    std::function<void(const ProgressEvent&)> onEvent;
};

// The framework core with the platform's files and streams, a registry
// holding the test file types, a temp folder and a capture of the program's
// log, for each test.
class JobTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_packages = fenn::startCore();
        m_packages->addPackage(fenn::make<fenn::posix::CPackage>());
        m_packages->startAll();
        fenn::CLogManager::getInstance()->addLog(programLog);
        registry->addInputFileType(input);
        registry->addOutputFileType(output);
    }

    void TearDown() override
    {
        fenn::CLogManager::getInstance()->removeLog(programLog.get());
        m_packages->stopAll();
        m_packages = nullptr;
        fenn::stopCore();
    }

    static fenn::CURI uriOf(const std::filesystem::path& path)
    {
        return fenn::CURI::fromPath(fenn::String::copyOf(path.string()));
    }

    // A new converter of the given files, each named by its file name.
    fenn::P<tbx::CFileConverter> makeConverter(const std::vector<std::filesystem::path>& files)
    {
        auto converter = fenn::make<tbx::CFileConverter>(*registry);
        for (const auto& file : files)
            converter->AddInputFile(uriOf(file), fenn::String::copyOf(file.filename().string()));
        converter->addProgressListener(recorder.get());
        return converter;
    }

    // The names in a folder, sorted.
    static std::vector<std::string> namesIn(const std::filesystem::path& folder)
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    TempFolder folder;
    fenn::P<tbx::CFileTypeRegistry> registry = fenn::make<tbx::CFileTypeRegistry>();
    fenn::P<CTestInputFileType> input = fenn::make<CTestInputFileType>();
    fenn::P<CTestOutputFileType> output = fenn::make<CTestOutputFileType>();
    fenn::P<CProgressRecorder> recorder = fenn::make<CProgressRecorder>();
    fenn::P<CaptureLog> programLog = fenn::make<CaptureLog>();

private:
    fenn::P<fenn::CPackageManager> m_packages;
};

}  // namespace tbtest
