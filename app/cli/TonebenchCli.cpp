#include <cstdio>
#include <cstring>

#include "app/Version.h"

// The terminal front end: the application's jobs for scripts, with progress
// bars. Each job joins as its subsystem joins the program.
namespace {

void printUsage(std::FILE* out)
{
    std::fprintf(out, "Usage: tonebench-cli COMMAND [ARGUMENTS]\n"
                      "\n"
                      "Commands:\n"
                      "  version    print the program's version\n"
                      "  help       print this text\n");
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
    std::fprintf(stderr, "tonebench-cli: unknown command '%s'\n\n", argv[1]);
    printUsage(stderr);
    return 2;
}
