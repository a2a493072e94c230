#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "audio/processing/CAudioSourceProcessor.h"
#include "foundation/CURIError.h"
#include "tests/processing/JobTest.h"

using namespace tbtest;
namespace fs = std::filesystem;

namespace {

using FileConverterTest = JobTest;

void expectSameAudio(const fs::path& file, const TestAudio& expected)
{
    const TestAudio written = readTestAudio(file);
    EXPECT_EQ(written.sampleRate, expected.sampleRate) << file;
    EXPECT_EQ(written.channels, expected.channels) << file;
    EXPECT_EQ(written.samples, expected.samples) << file;
}

TEST_F(FileConverterTest, ConvertsEveryFileIntoTheDestinationWithTagsAndQuality)
{
    const TestAudio a = makeRamp(44100, 2, 2500, 3);
    const TestAudio b = makeRamp(8000, 1, 1200, -50);
    fs::create_directory(folder / "in");
    writeTestAudio(folder / "in" / "a.taud", a);
    writeTestAudio(folder / "in" / "b.taud", b);
    const fs::path out = folder / "new" / "out";

    struct Case
    {
        std::int32_t selector;
        std::vector<std::pair<std::string, std::int32_t>> settings;
    };
    // Keep quality has no rule for the test format's sources; presets come
    // from the output type; custom settings pass as they are.
    const Case cases[] = {{0, {}}, {3, {{"preset", 3}}}, {5, {{"custom", 7}}}};
    for (const Case& test : cases) {
        SCOPED_TRACE(test.selector);
        fs::remove_all(out);
        output->created.clear();
        input->sources.clear();
        auto custom = fenn::make<fenn::CValueList>();
        custom->setInt("custom", 7);
        auto overrides = fenn::make<fenn::CValueList>();
        overrides->setString("artist", "Someone");

        auto converter = fenn::make<tbx::CFileConverter>(*registry);
        converter->AddInputFile(uriOf(folder / "in" / "a.taud"));
        converter->AddInputFile(uriOf(folder / "in" / "b.taud"), "second");
        converter->SetFormat(test.selector, *custom);
        converter->SetTagOverrides(*overrides);
        converter->SetDestination(tbx::CFileDestination(tbx::destinationMode::folder, uriOf(out)), 0);
        converter->Run();
        EXPECT_TRUE(converter->GetLog().isEmpty()) << converter->GetLog().toStdString();
        EXPECT_EQ(converter->GetCompletedItemCount(), 2);

        EXPECT_EQ(namesIn(out), (std::vector<std::string>{"a.taud", "b.taud"}));
        expectSameAudio(out / "a.taud", a);
        expectSameAudio(out / "b.taud", b);
        EXPECT_EQ(converter->GetTargetURIFor(uriOf(folder / "in" / "b.taud")), uriOf(out / "b.taud"));

        ASSERT_EQ(output->created.size(), 2u);
        for (std::size_t i = 0; i < 2; ++i) {
            const auto& created = output->created[i];
            EXPECT_TRUE(created.sink->finished());
            EXPECT_EQ(created.settings->getCount(), static_cast<std::int32_t>(test.settings.size()));
            for (const auto& [key, value] : test.settings)
                EXPECT_EQ(created.settings->getInt(fenn::String::copyOf(key), -1), value) << key;
            // The overrides win; the source fills the rest.
            EXPECT_EQ(created.tags->getString("artist", "").toStdString(), "Someone");
            EXPECT_EQ(created.tags->getString("title", "").toStdString(), i == 0 ? "a" : "b");
        }
        for (const auto& source : input->sources) EXPECT_TRUE(source->closed());
    }
}

TEST_F(FileConverterTest, TheSourceFolderIsTheInitialDestination)
{
    const TestAudio a = makeRamp(44100, 1, 100);
    fs::create_directory(folder / "x");
    writeTestAudio(folder / "x" / "a.taud", a);
    const auto converter = makeConverter({folder / "x" / "a.taud"});
    converter->SetOutputFileType(output);
    converter->Run();
    EXPECT_TRUE(converter->GetLog().isEmpty()) << converter->GetLog().toStdString();
    // The same name: the original moved aside under the rename policy.
    EXPECT_EQ(namesIn(folder / "x"), (std::vector<std::string>{"a-old.taud", "a.taud"}));
    expectSameAudio(folder / "x" / "a.taud", a);
    expectSameAudio(folder / "x" / "a-old.taud", a);
}

struct FailureCase
{
    const char* name;
    std::function<void(CTestInputFileType&, CTestOutputFileType&)> breakIt;
    std::string message;
    bool sinkMade;
};

TEST_F(FileConverterTest, AFailedItemChangesNoTargetLosesNoOriginalAndIsLogged)
{
    const FailureCase cases[] = {
        {"sink breaks", [](CTestInputFileType&, CTestOutputFileType& out) { out.failAfterFrames = 1500; },
         "Broken test sink.", true},
        {"source breaks", [](CTestInputFileType& in, CTestOutputFileType&) { in.failAfterFrames["b.taud"] = 1500; },
         "Broken test source.", true},
        {"no sink", [](CTestInputFileType&, CTestOutputFileType& out) { out.failOnCreate = true; },
         fenn::CFileFormatNotSupportedError().getDescription().toStdString(), false},
    };
    for (const FailureCase& test : cases) {
        SCOPED_TRACE(test.name);
        const fs::path in = folder / test.name / "in";
        const fs::path out = folder / test.name / "out";
        fs::create_directories(in);
        fs::create_directories(out);
        const TestAudio a = makeRamp(44100, 2, 3000, 1);
        const TestAudio b = makeRamp(44100, 2, 3000, 2);
        const TestAudio c = makeRamp(44100, 2, 3000, 3);
        const TestAudio original = makeRamp(11025, 1, 10, 99);
        writeTestAudio(in / "a.taud", a);
        writeTestAudio(in / "b.taud", b);
        writeTestAudio(in / "c.taud", c);
        writeTestAudio(out / "b.taud", original);

        input->failAfterFrames.clear();
        input->sources.clear();
        output->failAfterFrames = -1;
        output->failOnCreate = false;
        output->created.clear();
        const auto converter = makeConverter({in / "a.taud", in / "b.taud", in / "c.taud"});
        converter->SetDestination(tbx::CFileDestination(tbx::destinationMode::folder, uriOf(out)), 0);
        // Only the second item breaks.
        recorder->onEvent = [&](const ProgressEvent& event) {
            if (event.action == "Converting file 'b.taud'" && event.item == 0.0) test.breakIt(*input, *output);
            if (event.action == "Converting file 'c.taud'" && event.item == 0.0) {
                input->failAfterFrames.clear();
                output->failAfterFrames = -1;
                output->failOnCreate = false;
            }
        };
        converter->Run();
        recorder->onEvent = nullptr;

        EXPECT_EQ(converter->GetLog().toStdString(), "Error converting 'b.taud': " + test.message + "\n");
        EXPECT_EQ(converter->GetCompletedItemCount(), 2);
        // No ".tmp" left, no backup made, the old file as it was.
        EXPECT_EQ(namesIn(out), (std::vector<std::string>{"a.taud", "b.taud", "c.taud"}));
        expectSameAudio(out / "b.taud", original);
        expectSameAudio(out / "a.taud", a);
        expectSameAudio(out / "c.taud", c);
        expectSameAudio(in / "b.taud", b);
        ASSERT_EQ(input->sources.size(), 3u);
        EXPECT_TRUE(input->sources[1]->closed());
        ASSERT_EQ(output->created.size(), test.sinkMade ? 3u : 2u);
        if (test.sinkMade) {
            EXPECT_FALSE(output->created[1].sink->finished());
            EXPECT_TRUE(output->created[1].sink->aborted());
        }
        bool logged = false;
        for (const std::string& line : programLog->lines())
            logged |= line.find("audioprocessor: processing error") != std::string::npos &&
                      line.find(test.message) != std::string::npos;
        EXPECT_TRUE(logged);
    }
}

TEST_F(FileConverterTest, FilesThatCannotBeReadOrWrittenAreLogged)
{
    // ".tin" is read but has no output type; ".xyz" has no type at all.
    registry->addInputFileType(fenn::make<CTestInputFileType>(".tin"));
    writeTestAudio(folder / "x.tin", makeRamp(44100, 2, 10));
    writeTestAudio(folder / "y.xyz", makeRamp(44100, 2, 10));
    writeTestAudio(folder / "z.taud", makeRamp(44100, 2, 10));
    const auto converter = makeConverter({folder / "x.tin", folder / "y.xyz", folder / "z.taud"});
    converter->SetDestination(tbx::CFileDestination(tbx::destinationMode::folder, uriOf(folder / "out")), 0);
    converter->Run();
    EXPECT_EQ(converter->GetLog().toStdString(),
              "Error converting 'x.tin': The file format is not supported for writing.\n"
              "Error converting 'y.xyz': " +
                  fenn::CFileFormatNotSupportedError(uriOf(folder / "y.xyz")).getDescription().toStdString() + "\n");
    EXPECT_EQ(converter->GetCompletedItemCount(), 1);
    EXPECT_EQ(namesIn(folder / "out"), (std::vector<std::string>{"z.taud"}));

    // With an output type for the whole job, every readable file is written.
    const auto all = makeConverter({folder / "x.tin"});
    all->SetOutputFileType(output);
    all->SetDestination(tbx::CFileDestination(tbx::destinationMode::folder, uriOf(folder / "out")), 0);
    all->Run();
    EXPECT_TRUE(all->GetLog().isEmpty()) << all->GetLog().toStdString();
    EXPECT_TRUE(fs::exists(folder / "out" / "x.taud"));
}

TEST_F(FileConverterTest, TheRenamePolicyMovesExistingFilesToTheFirstFreeOldName)
{
    const TestAudio first = makeRamp(44100, 1, 10, 1);
    const TestAudio second = makeRamp(44100, 1, 10, 2);
    const TestAudio existing = makeRamp(44100, 1, 10, 3);
    const TestAudio oldBackup = makeRamp(44100, 1, 10, 4);
    fs::create_directories(folder / "a");
    fs::create_directories(folder / "b");
    fs::create_directories(folder / "out");
    writeTestAudio(folder / "a" / "x.taud", first);
    writeTestAudio(folder / "b" / "x.taud", second);
    writeTestAudio(folder / "out" / "x.taud", existing);
    writeTestAudio(folder / "out" / "x-old.taud", oldBackup);

    const auto converter = makeConverter({folder / "a" / "x.taud", folder / "b" / "x.taud"});
    converter->SetDestination(tbx::CFileDestination(tbx::destinationMode::folder, uriOf(folder / "out")), 0);
    converter->Run();
    EXPECT_TRUE(converter->GetLog().isEmpty()) << converter->GetLog().toStdString();
    EXPECT_EQ(namesIn(folder / "out"),
              (std::vector<std::string>{"x-old.taud", "x-old2.taud", "x-old3.taud", "x.taud"}));
    expectSameAudio(folder / "out" / "x-old.taud", oldBackup);
    expectSameAudio(folder / "out" / "x-old2.taud", existing);
    expectSameAudio(folder / "out" / "x-old3.taud", first);
    expectSameAudio(folder / "out" / "x.taud", second);
}

TEST_F(FileConverterTest, ANameWithoutADotGetsOldAtItsEnd)
{
    std::ofstream(folder / "track") << "before";
    const auto job =
        fenn::make<tbx::CAudioSourceProcessor>(*registry, fenn::make<CLiveTestSource>(0, 10), uriOf(folder / "track"));
    job->SetOutputFileType(output);
    job->Run();
    EXPECT_TRUE(job->GetLog().isEmpty()) << job->GetLog().toStdString();
    EXPECT_EQ(namesIn(folder.path()), (std::vector<std::string>{"track", "track-old"}));
    std::ifstream old(folder / "track-old");
    std::string content;
    old >> content;
    EXPECT_EQ(content, "before");
    EXPECT_EQ(readTestAudio(folder / "track").samples.size(), 20u);
}

TEST_F(FileConverterTest, TheOverwritePolicyReplacesTheExistingFile)
{
    const TestAudio audio = makeRamp(44100, 2, 100, 9);
    fs::create_directories(folder / "out");
    writeTestAudio(folder / "x.taud", audio);
    std::ofstream(folder / "out" / "x.taud") << "old";
    const auto converter = makeConverter({folder / "x.taud"});
    converter->SetDestination(tbx::CFileDestination(tbx::destinationMode::folder, uriOf(folder / "out")),
                              tbx::existingFilePolicy::overwrite);
    converter->Run();
    EXPECT_TRUE(converter->GetLog().isEmpty()) << converter->GetLog().toStdString();
    EXPECT_EQ(namesIn(folder / "out"), (std::vector<std::string>{"x.taud"}));
    expectSameAudio(folder / "out" / "x.taud", audio);
}

TEST_F(FileConverterTest, WhenEveryOldNameIsTakenTheItemFailsAndTheTargetStays)
{
    fs::create_directories(folder / "out");
    writeTestAudio(folder / "x.taud", makeRamp(44100, 2, 100));
    std::ofstream(folder / "out" / "x.taud") << "keep";
    std::ofstream(folder / "out" / "x-old.taud");
    for (int k = 2; k <= 9999; ++k) std::ofstream(folder / "out" / ("x-old" + std::to_string(k) + ".taud"));
    const auto converter = makeConverter({folder / "x.taud"});
    converter->SetDestination(tbx::CFileDestination(tbx::destinationMode::folder, uriOf(folder / "out")), 0);
    converter->Run();
    EXPECT_EQ(converter->GetLog().toStdString(), "Error converting 'x.taud': Error renaming the existing file.\n");
    EXPECT_EQ(namesIn(folder / "out").size(), 10000u);
    std::ifstream kept(folder / "out" / "x.taud");
    std::string content;
    kept >> content;
    EXPECT_EQ(content, "keep");
}

TEST_F(FileConverterTest, NamedTargetsAndUniqueNamesForTheOthers)
{
    fs::create_directories(folder / "out");
    writeTestAudio(folder / "a.taud", makeRamp(44100, 2, 100, 1));
    writeTestAudio(folder / "b.taud", makeRamp(44100, 2, 100, 2));
    std::ofstream(folder / "out" / "b.taud") << "taken";
    const auto converter = makeConverter({folder / "a.taud", folder / "b.taud"});
    converter->SetDestination(tbx::CFileDestination(tbx::destinationMode::folder, uriOf(folder / "out")), 0);
    converter->SetTargetURI(uriOf(folder / "a.taud"), uriOf(folder / "out" / "named.taud"));
    converter->Run();
    EXPECT_TRUE(converter->GetLog().isEmpty()) << converter->GetLog().toStdString();
    // The unnamed input gets a name of its own, and "b.taud" is not renamed.
    EXPECT_EQ(namesIn(folder / "out"), (std::vector<std::string>{"b (2).taud", "b.taud", "named.taud"}));
    expectSameAudio(folder / "out" / "named.taud", makeRamp(44100, 2, 100, 1));
    expectSameAudio(folder / "out" / "b (2).taud", makeRamp(44100, 2, 100, 2));
    EXPECT_EQ(converter->GetTargetURIFor(uriOf(folder / "b.taud")), uriOf(folder / "out" / "b (2).taud"));
}

}  // namespace
