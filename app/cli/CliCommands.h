#pragma once

namespace tbx::cli {

// The commands of tonebench-cli. Each gets the arguments behind its name
// (argv[0] is the command's name), prints its own help for "--help", and
// returns the process's exit status: 0 when everything worked, 1 when the
// job failed for some item, 2 for a wrong command line.
int runConvertCommand(int argc, char** argv);
int runTagCommand(int argc, char** argv);

}  // namespace tbx::cli
