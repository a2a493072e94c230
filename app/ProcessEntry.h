#pragma once

namespace tbx {

// The whole life of the application process: platform, framework packages,
// the application object and its event loop. Returns the exit status.
// Errors of the framework are caught here, logged, and the program leaves
// through the same releases as a normal end.
int runProcessEntry();

}  // namespace tbx
