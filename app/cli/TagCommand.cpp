#include <cstdio>

#include "app/cli/CliCommands.h"

namespace tbx::cli {

// FIXME: the tag command joins with its job.
int runTagCommand(int, char**)
{
    std::fprintf(stderr, "tonebench-cli: 'tag' is not available yet\n");
    return 2;
}

}  // namespace tbx::cli
