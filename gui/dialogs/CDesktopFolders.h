#pragma once

#include "foundation/CObject.h"
#include "foundation/CURI.h"

namespace fenn::gui {

// The user's well-known folders as file URIs: home ($HOME, else the
// password database's entry), desktop and music (what `xdg-user-dir` says,
// else ~/Desktop and ~/Music). The shared instance is read once, on first
// use, since starting a process for each dialog would be slow and the
// folders rarely change during a session. A value once read; any thread.
class CDesktopFolders : public CObject
{
public:
    CURI home;
    CURI desktop;
    CURI music;

    // Reads the folders now.
    static P<CDesktopFolders> read();
    // The folders read on first use.
    static P<CDesktopFolders> get();

    // What `xdg-user-dir name` prints ("DESKTOP", "MUSIC"), without the line
    // end; empty when the program is missing or fails.
    static String askUserDir(const char* name);
};

}  // namespace fenn::gui
