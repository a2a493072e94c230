#pragma once

#include "foundation/CPackageManager.h"
#include "formats/CFileTypeRegistry.h"
#include "tags/CMediaTagRegistry.h"

namespace tbx::cli {

// What a command of the terminal front end runs in: the framework core with
// the platform package (files, streams, settings), and the file type and tag
// tables filled by the same registrations as the application's. No window,
// no event loop. One per process, on the main thread.
class CCliSession
{
public:
    CCliSession();
    ~CCliSession();
    CCliSession(const CCliSession&) = delete;
    CCliSession& operator=(const CCliSession&) = delete;

    const CFileTypeRegistry& getFileTypes() const { return *m_fileTypes; }
    const CMediaTagRegistry& getTagFactories() const { return *m_tagFactories; }

private:
    fenn::P<fenn::CPackageManager> m_packages;
    fenn::P<CFileTypeRegistry> m_fileTypes;
    fenn::P<CMediaTagRegistry> m_tagFactories;
};

}  // namespace tbx::cli
