#include <gtest/gtest.h>

#include <SDL.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "app/CApp.h"
#include "app/ProcessEntry.h"
#include "foundation/CLogManager.h"
#include "tests/support/CaptureLog.h"
#include "tests/support/TempFolder.h"

extern char** environ;

namespace {

// The start-up steps named in the log, in the order they were logged.
std::vector<std::string> loggedSteps(const std::vector<std::string>& lines)
{
    std::vector<std::string> steps;
    for (const std::string& line : lines) {
        const auto at = line.find("Start-up step ");
        if (at == std::string::npos) continue;
        steps.push_back(line.substr(line.rfind(": ") + 2));
    }
    return steps;
}

std::vector<std::string> expectedSteps()
{
    std::vector<std::string> steps;
    for (const auto& step : tbx::CApp::kStartupSteps) steps.emplace_back(step.name);
    return steps;
}

bool containsLine(const std::vector<std::string>& lines, const std::string& text)
{
    for (const std::string& line : lines) {
        if (line.find(text) != std::string::npos) return true;
    }
    return false;
}

TEST(ProcessEntry, RunsTheStartUpInOrderAndLeavesOnAQuitRequest)
{
    auto capture = fenn::make<tbtest::CaptureLog>();
    fenn::CLogManager::getInstance()->addLog(capture);

    // The quit request waits in SDL's queue until the loop reads it, as a
    // termination signal or the session's end would.
    ASSERT_EQ(SDL_InitSubSystem(SDL_INIT_EVENTS), 0) << SDL_GetError();
    SDL_Event quit{};
    quit.type = SDL_QUIT;
    ASSERT_EQ(SDL_PushEvent(&quit), 1);

    EXPECT_EQ(tbx::runProcessEntry(), 0);
    EXPECT_EQ(tbx::getApp(), nullptr);

    const std::vector<std::string> lines = capture->lines();
    EXPECT_EQ(loggedSteps(lines), expectedSteps());
    EXPECT_TRUE(containsLine(lines, "[app]: Quorrel Tonebench 3 3.50 has started."));
}

TEST(ProcessEntry, TheProgramEndsWithStatusZeroOnTermination)
{
    tbtest::TempFolder folder;
    const std::string logPath = (folder / "stderr.txt").string();

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, logPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    std::vector<std::string> environment{"SDL_VIDEODRIVER=offscreen", "SDL_AUDIODRIVER=dummy",
                                         "TONEBENCH_LOG_LEVEL=debug"};
    for (char** entry = environ; *entry != nullptr; ++entry) environment.emplace_back(*entry);
    std::vector<char*> envp;
    for (std::string& entry : environment) envp.push_back(entry.data());
    envp.push_back(nullptr);
    char program[] = TB_TONEBENCH_BINARY;
    char* argv[] = {program, nullptr};

    pid_t child = 0;
    ASSERT_EQ(posix_spawn(&child, program, &actions, nullptr, argv, envp.data()), 0);
    posix_spawn_file_actions_destroy(&actions);

    auto readLog = [&logPath] {
        std::ifstream in(logPath);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    };
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (readLog().find("has started.") == std::string::npos && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));

    kill(child, SIGTERM);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status)) << "the program did not end by itself; log:\n" << readLog();
    EXPECT_EQ(WEXITSTATUS(status), 0) << readLog();

    std::vector<std::string> lines;
    std::istringstream text(readLog());
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    EXPECT_EQ(loggedSteps(lines), expectedSteps());
}

}  // namespace
