#pragma once

#include "foundation/CPackageBase.h"
#include "foundation/posix/CDiskStreamFactory.h"
#include "foundation/posix/CFileSystem.h"
#include "foundation/posix/CSystem.h"

namespace fenn::posix {

// The platform package: installs the SDL-backed platform object, the
// disk stream factory and the file system when it starts and removes them
// when it stops. SDL itself is started by the process
// (CPlatformSession) before any package.
class CPackage : public CPackageBase
{
public:
    CPackage();

protected:
    void onStart() override;
    void onStop() override;

private:
    P<CSystem> m_system;
    P<CDiskStreamFactory> m_diskStreams;
    P<CFileSystem> m_fileSystem;
};

// Starts SDL for the life of the process: video, events and timers, which
// the program cannot run without, and audio, without which it still runs.
class CPlatformSession
{
public:
    CPlatformSession();
    ~CPlatformSession();
    CPlatformSession(const CPlatformSession&) = delete;
    CPlatformSession& operator=(const CPlatformSession&) = delete;

    bool hasAudio() const { return m_hasAudio; }

private:
    bool m_hasAudio = false;
};

}  // namespace fenn::posix
