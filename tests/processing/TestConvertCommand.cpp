#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "app/cli/CTerminalProgress.h"
#include "tests/support/TempFolder.h"

// The convert command end to end: the real tonebench-cli on WAV files made
// by sox, in a temp folder that is also its home, so that its trash is there.
namespace {

namespace fs = std::filesystem;

extern "C" char** environ;

struct CliResult
{
    int exitCode = -1;
    std::string out;
    std::string err;
};

std::string readFile(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// Runs "tonebench-cli convert ARGS" in folder, with HOME and the XDG
// folders inside it and stdout and stderr caught in files.
CliResult runConvert(const std::vector<std::string>& args, const fs::path& folder)
{
    std::vector<std::string> arguments = {TB_TONEBENCH_CLI_BINARY, "convert"};
    arguments.insert(arguments.end(), args.begin(), args.end());
    std::vector<std::string> environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        if (text.rfind("HOME=", 0) != 0 && text.rfind("XDG_DATA_HOME=", 0) != 0 &&
            text.rfind("XDG_CONFIG_HOME=", 0) != 0)
            environment.push_back(text);
    }
    environment.push_back("HOME=" + (folder / "home").string());
    environment.push_back("XDG_DATA_HOME=" + (folder / "home" / "data").string());
    environment.push_back("XDG_CONFIG_HOME=" + (folder / "home" / "config").string());
    fs::create_directories(folder / "home" / "data");
    const fs::path outPath = folder / "home" / "stdout.txt";
    const fs::path errPath = folder / "home" / "stderr.txt";

    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    std::vector<char*> envp;
    for (std::string& entry : environment) envp.push_back(entry.data());
    envp.push_back(nullptr);

    const pid_t child = ::fork();
    if (child == 0) {
        const int out = ::open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        const int err = ::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (out < 0 || err < 0 || ::dup2(out, 1) < 0 || ::dup2(err, 2) < 0 || ::chdir(folder.c_str()) != 0)
            ::_exit(127);
        ::execve(argv[0], argv.data(), envp.data());
        ::_exit(127);
    }
    CliResult result;
    int status = 0;
    if (child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
    result.out = readFile(outPath);
    result.err = readFile(errPath);
    return result;
}

void run(const std::string& command)
{
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
}

// A sine made by sox: rate, channels, bits, seconds and frequency.
void makeWav(const fs::path& path, int rate, int channels, int bits, double seconds, int frequency)
{
    fs::create_directories(path.parent_path());
    run("sox -n -r " + std::to_string(rate) + " -c " + std::to_string(channels) + " -b " + std::to_string(bits) + " '" +
        path.string() + "' synth " + std::to_string(seconds) + " sine " + std::to_string(frequency) + " vol 0.5");
}

// The samples of a sound file, decoded by sox to 16-bit raw.
std::string samplesOf(const fs::path& path)
{
    const fs::path raw = path.string() + ".raw";
    run("sox '" + path.string() + "' -t raw -e signed -b 16 '" + raw.string() + "'");
    std::string samples = readFile(raw);
    fs::remove(raw);
    return samples;
}

std::string soxInfo(const fs::path& path, const char* option)
{
    const fs::path info = path.string() + ".info";
    run(std::string("soxi ") + option + " '" + path.string() + "' > '" + info.string() + "'");
    std::string text = readFile(info);
    fs::remove(info);
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
    return text;
}

std::vector<std::string> namesIn(const fs::path& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

TEST(ConvertCommand, HelpExplainsEveryOptionPolicyAndQuality)
{
    tbtest::TempFolder folder;
    const CliResult result = runConvert({"--help"}, folder.path());
    EXPECT_EQ(result.exitCode, 0);
    for (const char* text :
         {"--to FORMAT", "--quality N", "--set KEY=VALUE", "--dest DIR", "--next-to-source", "--exists POLICY",
          "rename", "trash", "overwrite", "NAME-old.EXT", "Keep Quality", "CD Quality", "Good Quality",
          "Medium Quality", "Low Quality", "Custom Quality", "wav", "ogg (OggVorbis)", "Exit status"})
        EXPECT_NE(result.out.find(text), std::string::npos) << text;
}

TEST(ConvertCommand, AWrongCommandLineExitsWithTwo)
{
    tbtest::TempFolder folder;
    makeWav(folder / "x.wav", 44100, 2, 16, 0.1, 440);
    const std::vector<std::vector<std::string>> cases = {
        {},
        {"--quality", "6", "x.wav"},
        {"--quality"},
        {"--exists", "delete", "x.wav"},
        {"--to", "aiff", "x.wav"},
        {"--dest", "out", "--next-to-source", "x.wav"},
        {"--set", "sampleRate", "x.wav"},
        {"--set", "sampleRate=fast", "x.wav"},
        {"--set", "noSuchKey=1", "x.wav"},
        {"--quality", "2", "--set", "sampleRate=8000", "x.wav"},
        {"--frobnicate", "x.wav"},
    };
    for (const auto& args : cases) {
        std::string line;
        for (const std::string& arg : args) line += arg + " ";
        SCOPED_TRACE(line);
        const CliResult result = runConvert(args, folder.path());
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_NE(result.err.find("Try 'tonebench-cli convert --help'."), std::string::npos) << result.err;
    }
    EXPECT_EQ(namesIn(folder.path()), (std::vector<std::string>{"home", "x.wav"}));
}

TEST(ConvertCommand, WavToWavKeepsEverySampleAndTheFormat)
{
    tbtest::TempFolder folder;
    makeWav(folder / "in" / "stereo.wav", 44100, 2, 16, 0.5, 440);
    makeWav(folder / "in" / "mono48.wav", 48000, 1, 16, 0.5, 1000);
    const CliResult result =
        runConvert({"--to", "WAV", "--dest", "out", "in/stereo.wav", "in/mono48.wav"}, folder.path());
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "Converted 2 of 2 files.\n");
    // Without a terminal, one line for each file.
    EXPECT_NE(result.err.find("Converting file 'in/stereo.wav'\n"), std::string::npos) << result.err;
    EXPECT_EQ(namesIn(folder / "out"), (std::vector<std::string>{"mono48.wav", "stereo.wav"}));
    for (const char* name : {"stereo.wav", "mono48.wav"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(samplesOf(folder / "out" / name), samplesOf(folder / "in" / name));
        EXPECT_EQ(soxInfo(folder / "out" / name, "-r"), soxInfo(folder / "in" / name, "-r"));
        EXPECT_EQ(soxInfo(folder / "out" / name, "-c"), soxInfo(folder / "in" / name, "-c"));
    }
}

TEST(ConvertCommand, TwoInputsOfOneNameGiveTheNameAndTheOldName)
{
    tbtest::TempFolder folder;
    makeWav(folder / "a" / "x.wav", 44100, 2, 16, 0.2, 440);
    makeWav(folder / "b" / "x.wav", 44100, 2, 16, 0.2, 880);
    const CliResult result = runConvert({"--dest", "out", "a/x.wav", "b/x.wav"}, folder.path());
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(namesIn(folder / "out"), (std::vector<std::string>{"x-old.wav", "x.wav"}));
    EXPECT_EQ(samplesOf(folder / "out" / "x-old.wav"), samplesOf(folder / "a" / "x.wav"));
    EXPECT_EQ(samplesOf(folder / "out" / "x.wav"), samplesOf(folder / "b" / "x.wav"));
}

TEST(ConvertCommand, TheDefaultDestinationIsTheSourceFolderAndTheSourceIsKept)
{
    tbtest::TempFolder folder;
    makeWav(folder / "music" / "song.wav", 22050, 1, 16, 0.2, 300);
    const std::string original = samplesOf(folder / "music" / "song.wav");
    const CliResult result = runConvert({"music/song.wav"}, folder.path());
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(namesIn(folder / "music"), (std::vector<std::string>{"song-old.wav", "song.wav"}));
    EXPECT_EQ(samplesOf(folder / "music" / "song-old.wav"), original);
    EXPECT_EQ(samplesOf(folder / "music" / "song.wav"), original);
}

TEST(ConvertCommand, TheTrashAndOverwritePoliciesClearTheTargetsPlace)
{
    tbtest::TempFolder folder;
    makeWav(folder / "x.wav", 44100, 2, 16, 0.2, 440);
    for (const char* policy : {"trash", "overwrite"}) {
        SCOPED_TRACE(policy);
        const fs::path out = folder / policy;
        fs::create_directories(out);
        std::ofstream(out / "x.wav") << "the user's own file";
        const CliResult result = runConvert({"--exists", policy, "--dest", policy, "x.wav"}, folder.path());
        ASSERT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(namesIn(out), std::vector<std::string>{"x.wav"});
        EXPECT_EQ(samplesOf(out / "x.wav"), samplesOf(folder / "x.wav"));
    }
    // Only the trash kept the old file, with the place it came from.
    const fs::path trash = folder / "home" / "data" / "Trash";
    ASSERT_EQ(namesIn(trash / "files"), std::vector<std::string>{"x.wav"});
    EXPECT_EQ(readFile(trash / "files" / "x.wav"), "the user's own file");
    const std::string info = readFile(trash / "info" / "x.wav.trashinfo");
    EXPECT_NE(info.find("Path=" + (folder / "trash" / "x.wav").string()), std::string::npos) << info;
}

TEST(ConvertCommand, AFailedFileIsNamedAndTheStatusIsOne)
{
    tbtest::TempFolder folder;
    makeWav(folder / "good.wav", 44100, 2, 16, 0.2, 440);
    std::ofstream(folder / "broken.wav") << "RIFF, but not really";
    fs::create_directories(folder / "out");
    std::ofstream(folder / "out" / "broken.wav") << "an older file";
    const CliResult result = runConvert({"--dest", "out", "broken.wav", "good.wav"}, folder.path());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "Converted 1 of 2 files.\n");
    EXPECT_NE(result.err.find("Error converting 'broken.wav': "), std::string::npos) << result.err;
    EXPECT_EQ(result.err.find("Error converting 'good.wav'"), std::string::npos) << result.err;
    // No ".tmp" left, and the older file as it was.
    EXPECT_EQ(namesIn(folder / "out"), (std::vector<std::string>{"broken.wav", "good.wav"}));
    EXPECT_EQ(readFile(folder / "out" / "broken.wav"), "an older file");
}

// A job's progress as the tests set it.
class CFixedProgress : public fenn::CObject, public virtual tbx::IProgress
{
public:
    double getOverallProgress() override { return total; }
    double getItemProgress() override { return item; }
    fenn::String getItemText() override { return fenn::String::copyOf(action); }
    fenn::String getOverallText() override { return fenn::String::copyOf(action); }
    void addProgressListener(tbx::IProgressListener*) override {}
    void removeProgressListener(tbx::IProgressListener*) override {}

    double total = 0.0;
    double item = 0.0;
    std::string action;
};

TEST(TerminalProgress, BarsAreRedrawnAtMostTenTimesASecondAndLinesOncePerAction)
{
    for (const auto display : {tbx::cli::ProgressDisplay::bars, tbx::cli::ProgressDisplay::lines}) {
        std::FILE* out = std::tmpfile();
        ASSERT_NE(out, nullptr);
        auto terminal = fenn::make<tbx::cli::CTerminalProgress>(out, display, 2);
        auto progress = fenn::make<CFixedProgress>();
        progress->action = "Converting file 'a.wav'";
        for (int i = 0; i <= 100; ++i) {
            progress->item = i / 100.0;
            progress->total = i / 200.0;
            terminal->onProgress(progress.get());
        }
        progress->action = "Converting file 'b.wav'";
        progress->item = 0.25;
        progress->total = 0.625;
        terminal->onProgress(progress.get());
        terminal->finish();

        std::fflush(out);
        std::rewind(out);
        std::string text;
        for (int c = std::fgetc(out); c != EOF; c = std::fgetc(out)) text += static_cast<char>(c);
        std::fclose(out);

        const auto count = [&text](const std::string& needle) {
            std::size_t found = 0;
            for (std::size_t at = text.find(needle); at != std::string::npos; at = text.find(needle, at + 1)) ++found;
            return found;
        };
        if (display == tbx::cli::ProgressDisplay::lines) {
            EXPECT_EQ(text, "Converting file 'a.wav'\nConverting file 'b.wav'\n");
            continue;
        }
        // The 101 quick reports of the first file draw once; the new action
        // draws at once, in place, and finish clears the bars.
        EXPECT_EQ(count("Converting file 'a.wav'"), 1u) << text;
        EXPECT_EQ(count("Converting file 'b.wav'"), 1u) << text;
        EXPECT_EQ(count("\x1b[3F"), 2u) << text;
        EXPECT_NE(text.find("[" + tbx::cli::CTerminalProgress::makeBar(0.625, 44) + "]  63 %  file 2 of 2"),
                  std::string::npos)
            << text;
        EXPECT_EQ(text.substr(text.size() - 7), "\x1b[3F\x1b[J");
    }
}

}  // namespace
