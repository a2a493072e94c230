#include "gui/dialogs/CDesktopFolders.h"

#include <fcntl.h>
#include <pwd.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "foundation/TSingleton.h"

extern char** environ;

namespace fenn::gui {

namespace {

// A folder path is short; anything longer than this is not one.
constexpr std::size_t kMaxOutput = 4096;

std::string homePath()
{
    if (const char* home = std::getenv("HOME"); home && home[0] == '/') return home;
    if (const passwd* entry = ::getpwuid(::geteuid()); entry && entry->pw_dir) return entry->pw_dir;
    return "/";
}

std::string withoutTrailingSlash(std::string path)
{
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

// The user folder that xdg-user-dir names, else home/fallback. The tool
// prints the home folder itself for a folder that is not set, which counts
// as not set here.
CURI userFolder(const char* name, const std::string& home, const char* fallback)
{
    const std::string told = withoutTrailingSlash(CDesktopFolders::askUserDir(name).toStdString());
    if (!told.empty() && told[0] == '/' && told != withoutTrailingSlash(home))
        return CURI::fromPath(String::copyOf(told));
    return CURI::fromPath(String::copyOf(withoutTrailingSlash(home) + "/" + fallback));
}

}  // namespace

String CDesktopFolders::askUserDir(const char* name)
{
    int pipeEnds[2];
    if (::pipe2(pipeEnds, O_CLOEXEC) != 0) return String();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    char program[] = "xdg-user-dir";
    std::string argument = name;
    char* argv[] = {program, argument.data(), nullptr};
    pid_t child = 0;
    const int spawned = ::posix_spawnp(&child, program, &actions, nullptr, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipeEnds[1]);
    std::string output;
    if (spawned == 0) {
        char buffer[512];
        for (;;) {
            const ssize_t count = ::read(pipeEnds[0], buffer, sizeof buffer);
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) break;
            if (output.size() < kMaxOutput) output.append(buffer, static_cast<std::size_t>(count));
        }
    }
    ::close(pipeEnds[0]);
    if (spawned != 0) return String();
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || output.size() >= kMaxOutput) return String();
    while (!output.empty() && (output.back() == '\n' || output.back() == '\r')) output.pop_back();
    return String::copyOf(output);
}

P<CDesktopFolders> CDesktopFolders::read()
{
    auto folders = make<CDesktopFolders>();
    const std::string home = homePath();
    folders->home = CURI::fromPath(String::copyOf(home));
    folders->desktop = userFolder("DESKTOP", home, "Desktop");
    folders->music = userFolder("MUSIC", home, "Music");
    return folders;
}

P<CDesktopFolders> CDesktopFolders::get()
{
    static TSingleton<CDesktopFolders> instance([] { return read(); });
    return instance.get();
}

}  // namespace fenn::gui
