#include <cstdio>

#include "app/cli/CliCommands.h"

namespace tbx::cli {

// FIXME: the convert command joins with its job.
int runConvertCommand(int, char**)
{
    std::fprintf(stderr, "tonebench-cli: 'convert' is not available yet\n");
    return 2;
}

}  // namespace tbx::cli
