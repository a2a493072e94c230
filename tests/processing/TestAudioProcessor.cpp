#include <gtest/gtest.h>

#include <chrono>
#include <numeric>
#include <set>
#include <string>

#include "audio/processing/CAudioSourceProcessor.h"
#include "audio/processing/ProcessingTexts.h"
#include "foundation/ISystem.h"
#include "tests/processing/JobTest.h"

using namespace tbtest;
namespace fs = std::filesystem;

namespace {

using AudioProcessorTest = JobTest;

// The sum of the samples of a file, for comparing what a filter saw.
std::int64_t sumOf(const TestAudio& audio)
{
    return std::accumulate(audio.samples.begin(), audio.samples.end(), std::int64_t{0});
}

TEST_F(AudioProcessorTest, AnEmptyListEndsAtOnceWithTotalOne)
{
    const auto converter = makeConverter({});
    const auto started = std::chrono::steady_clock::now();
    converter->Run();
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::milliseconds(50));
    ASSERT_FALSE(recorder->events.empty());
    EXPECT_DOUBLE_EQ(recorder->events.back().total, 1.0);
    EXPECT_DOUBLE_EQ(converter->getOverallProgress(), 1.0);
    EXPECT_TRUE(converter->GetLog().isEmpty());
    EXPECT_TRUE(input->sources.empty());
}

TEST_F(AudioProcessorTest, TheAnalysisShareIsAQuarterOfTheSliceOnlyWhenAFilterNeedsIt)
{
    for (const bool needsAnalysis : {false, true}) {
        SCOPED_TRACE(needsAnalysis ? "with analysis" : "without analysis");
        const fs::path out = folder / (needsAnalysis ? "with" : "without");
        const TestAudio a = makeRamp(44100, 2, 5000, -100);
        const TestAudio b = makeRamp(22050, 1, 3000, 7);
        writeTestAudio(folder / "a.taud", a);
        writeTestAudio(folder / "b.taud", b);
        recorder->events.clear();

        const auto filter = fenn::make<CRecordingFilter>(needsAnalysis);
        const auto converter = makeConverter({folder / "a.taud", folder / "b.taud"});
        converter->SetFilter(filter);
        converter->SetDestination(tbx::CFileDestination(tbx::destinationMode::folder, uriOf(out)), 0);
        converter->Run();
        ASSERT_TRUE(converter->GetLog().isEmpty()) << converter->GetLog().toStdString();

        // The total at the start of each pass: analysis a quarter of each
        // half, processing the rest.
        std::vector<std::pair<std::string, double>> passStarts;
        std::string lastAction;
        for (const ProgressEvent& event : recorder->events) {
            if (event.action != lastAction) passStarts.emplace_back(event.action, event.total);
            lastAction = event.action;
        }
        std::vector<std::pair<std::string, double>> expected;
        if (needsAnalysis) {
            expected = {{"Analysing file 'a.taud'", 0.0},
                        {"Converting file 'a.taud'", 0.125},
                        {"Analysing file 'b.taud'", 0.5},
                        {"Converting file 'b.taud'", 0.625}};
        } else {
            expected = {{"Converting file 'a.taud'", 0.0}, {"Converting file 'b.taud'", 0.5}};
        }
        ASSERT_EQ(passStarts.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            EXPECT_EQ(passStarts[i].first, expected[i].first);
            EXPECT_DOUBLE_EQ(passStarts[i].second, expected[i].second) << expected[i].first;
        }
        for (std::size_t i = 1; i < recorder->events.size(); ++i)
            EXPECT_GE(recorder->events[i].total, recorder->events[i - 1].total);
        EXPECT_DOUBLE_EQ(recorder->events.back().total, 1.0);

        const std::vector<std::string> oneItem =
            needsAnalysis ? std::vector<std::string>{"StartAnalysis", "EndAnalysis", "StartProcessing", "EndProcessing"}
                          : std::vector<std::string>{"StartProcessing", "EndProcessing"};
        std::vector<std::string> calls = oneItem;
        calls.insert(calls.end(), oneItem.begin(), oneItem.end());
        EXPECT_EQ(filter->calls, calls);
        EXPECT_EQ(filter->analysedFrames, needsAnalysis ? 8000 : 0);
        EXPECT_EQ(filter->analysedSum, needsAnalysis ? sumOf(a) + sumOf(b) : 0);
        EXPECT_EQ(filter->processedFrames, 8000);

        // The filter works in place between source and sink.
        for (const auto& [name, original] : {std::pair{"a.taud", a}, std::pair{"b.taud", b}}) {
            const TestAudio written = readTestAudio(out / name);
            EXPECT_EQ(written.sampleRate, original.sampleRate);
            EXPECT_EQ(written.channels, original.channels);
            ASSERT_EQ(written.samples.size(), original.samples.size());
            for (std::size_t i = 0; i < original.samples.size(); ++i)
                ASSERT_EQ(written.samples[i], -original.samples[i]) << name << " sample " << i;
        }
        // Analysis opens for analysis, processing for conversion.
        ASSERT_EQ(input->sources.size(), needsAnalysis ? 4u : 2u);
        EXPECT_EQ(input->sources.front()->openPurpose(), needsAnalysis ? 16 : 8);
        EXPECT_EQ(input->sources.back()->openPurpose(), 8);
        input->sources.clear();
    }
}

TEST_F(AudioProcessorTest, ALiveSourceSleepsFiftyMillisecondsForEachEmptyChunk)
{
    const auto source = fenn::make<CLiveTestSource>(4, 300);
    const auto job = fenn::make<tbx::CAudioSourceProcessor>(*registry, source, uriOf(folder / "live.taud"));
    job->addProgressListener(recorder.get());
    const auto started = std::chrono::steady_clock::now();
    job->Run();
    const auto elapsed = std::chrono::steady_clock::now() - started;
    EXPECT_TRUE(job->GetLog().isEmpty()) << job->GetLog().toStdString();
    EXPECT_GE(elapsed, std::chrono::milliseconds(200));
    EXPECT_LT(elapsed, std::chrono::milliseconds(1000));
    // While the source waits, the item does not advance.
    for (const ProgressEvent& event : recorder->events) {
        ASSERT_EQ(event.action, "Generating 'live.taud'");
        EXPECT_TRUE(event.item == 0.0 || event.item == 1.0) << event.item;
    }
    const TestAudio written = readTestAudio(folder / "live.taud");
    EXPECT_EQ(written.samples.size(), 600u);
}

// Aborts the job when it reports the given action or total.
struct AbortCase
{
    const char* name;
    std::function<bool(const ProgressEvent&)> when;
    std::string expectedLog;
    std::vector<std::string> expectedOutput;
    std::size_t expectedSources;
};

TEST_F(AudioProcessorTest, AbortStopsAfterTheCurrentItemWithTheAbortedMessage)
{
    const AbortCase cases[] = {
        {"during the first item",
         [](const ProgressEvent& event) { return event.action == "Converting file 'a.taud'"; },
         "Error converting 'a.taud': The conversion process has been aborted.\n",
         {},
         1},
        {"between the items",
         [](const ProgressEvent& event) { return event.total == 0.5; },
         "The conversion process has been aborted.\n",
         {"a.taud"},
         1},
    };
    for (const AbortCase& test : cases) {
        SCOPED_TRACE(test.name);
        const fs::path out = folder / test.name;
        writeTestAudio(folder / "a.taud", makeRamp(44100, 2, 40000));
        writeTestAudio(folder / "b.taud", makeRamp(44100, 2, 40000));
        // 40 reads of 5 ms: the first item runs past several 50 ms checks.
        input->readDelay = std::chrono::milliseconds(5);
        input->sources.clear();
        const auto converter = makeConverter({folder / "a.taud", folder / "b.taud"});
        converter->SetDestination(tbx::CFileDestination(tbx::destinationMode::folder, uriOf(out)), 0);
        recorder->onEvent = [&](const ProgressEvent& event) {
            if (test.when(event)) converter->Abort();
        };
        converter->Run();
        recorder->onEvent = nullptr;
        EXPECT_TRUE(converter->IsAborted());
        EXPECT_EQ(converter->GetLog().toStdString(), test.expectedLog);
        EXPECT_EQ(input->sources.size(), test.expectedSources);
        EXPECT_EQ(namesIn(out), test.expectedOutput);
        EXPECT_DOUBLE_EQ(converter->getOverallProgress(), 1.0);
    }
}

// Calls Abort on the job when the platform's queue runs it.
class CAbortAction : public fenn::CObject, public virtual fenn::IAction
{
public:
    explicit CAbortAction(tbx::CAudioProcessor& job) : m_job(&job) {}
    void execute() override { m_job->Abort(); }

private:
    fenn::P<tbx::CAudioProcessor> m_job;
};

TEST_F(AudioProcessorTest, TheYieldPointRunsWhatWasPostedToTheGUIThread)
{
    fenn::posix::CPlatformSession platform;
    writeTestAudio(folder / "a.taud", makeRamp(44100, 2, 40000));
    writeTestAudio(folder / "b.taud", makeRamp(44100, 2, 40000));
    input->readDelay = std::chrono::milliseconds(5);
    const auto converter = makeConverter({folder / "a.taud", folder / "b.taud"});
    converter->SetDestination(tbx::CFileDestination(tbx::destinationMode::folder, uriOf(folder / "out")), 0);
    fenn::getSystem()->postAction(fenn::make<CAbortAction>(*converter));
    converter->Run();
    EXPECT_EQ(converter->GetLog().toStdString(),
              "Error converting 'a.taud': The conversion process has been aborted.\n");
    EXPECT_EQ(input->sources.size(), 1u);
}

TEST_F(AudioProcessorTest, TextsHaveUniqueKeysAndDefaults)
{
    std::set<std::string> keys;
    for (const fenn::TextKey& text : tbx::processingTexts::all) {
        EXPECT_TRUE(keys.insert(text.key).second) << "duplicate key " << text.key;
        EXPECT_STRNE(text.defaultText, "") << text.key;
    }
    for (const char* key :
         {"tbx.CFileConverter.ProgressAction.Analysing", "tbx.CFileConverter.ProgressAction.Converting",
          "tbx.CFileConverter.ErrorAnalysingFile", "tbx.CFileConverter.ErrorConvertingFile",
          "tbx.CFileConverter.ConversionAborted", "tbx.CAudioProcessor.ErrorProcessingFile",
          "tbx.CAudioSourceProcessor.ProgressAction.Generating", "tbx.CAudioProcessor.CannotWriteFileFormat",
          "tbx.CAudioProcessor.ErrorRenamingExistingFile"})
        EXPECT_EQ(keys.count(key), 1u) << key;
}

}  // namespace
