#include <cstdio>
#include <cstring>

#include "app/Version.h"
#include "app/cli/CliCommands.h"

// The terminal front end: the application's jobs for scripts, with progress
// bars. Each command runs the same job classes as the wizards.
namespace {

struct Command
{
    const char* name;
    int (*run)(int argc, char** argv);
    const char* summary;
};

const Command kCommands[] = {
    {"convert", tbx::cli::runConvertCommand, "convert audio files to another format or quality"},
    {"tag", tbx::cli::runTagCommand, "show or change the tags of audio files"},
};

void printUsage(std::FILE* out)
{
    std::fprintf(out, "Usage: tonebench-cli COMMAND [ARGUMENTS]\n\nCommands:\n");
    for (const Command& command : kCommands) std::fprintf(out, "  %-9s  %s\n", command.name, command.summary);
    std::fprintf(out, "  %-9s  %s\n", "version", "print the program's version");
    std::fprintf(out, "  %-9s  %s\n", "help", "print this text");
    std::fprintf(out, "\n'tonebench-cli COMMAND --help' explains a command.\n");
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2 || std::strcmp(argv[1], "help") == 0 || std::strcmp(argv[1], "--help") == 0) {
        printUsage(argc < 2 ? stderr : stdout);
        return argc < 2 ? 2 : 0;
    }
    if (std::strcmp(argv[1], "version") == 0 || std::strcmp(argv[1], "--version") == 0) {
        std::printf("%s %s\n", tbx::kProductName, tbx::getVersionString().c_str());
        return 0;
    }
    for (const Command& command : kCommands) {
        if (std::strcmp(argv[1], command.name) == 0) return command.run(argc - 1, argv + 1);
    }
    std::fprintf(stderr, "tonebench-cli: unknown command '%s'\n\n", argv[1]);
    printUsage(stderr);
    return 2;
}
