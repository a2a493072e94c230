#include "foundation/posix/CPackage.h"

#include <langinfo.h>

#include <clocale>
#include <cstring>

#include "foundation/CError.h"
#include "foundation/CFileSystemManager.h"
#include "foundation/CLogManager.h"
#include "foundation/CStreamManager.h"

namespace fenn::posix {

CPackage::CPackage() : CPackageBase("fenn::posix", "1.0", {"fenn"}) {}

void CPackage::onStart()
{
    m_system = make<CSystem>();
    setSystem(m_system);
    m_diskStreams = make<CDiskStreamFactory>();
    CStreamManager::getInstance()->addFactory(m_diskStreams);
    m_fileSystem = make<CFileSystem>();
    CFileSystemManager::getInstance()->addFileSystem(m_fileSystem);
}

void CPackage::onStop()
{
    if (m_fileSystem) CFileSystemManager::getInstance()->removeFileSystem(m_fileSystem.get());
    m_fileSystem = nullptr;
    if (m_diskStreams) CStreamManager::getInstance()->removeFactory(m_diskStreams.get());
    m_diskStreams = nullptr;
    setSystem(nullptr);
    if (m_system) m_system->discardPending();
    m_system = nullptr;
}

CPlatformSession::CPlatformSession()
{
    // Multibyte text follows the user's locale. The plain C locale knows
    // only ASCII; its character type becomes C.UTF-8, as current systems
    // expect, so that file names and texts keep every character.
    std::setlocale(LC_ALL, "");
    if (std::strcmp(nl_langinfo(CODESET), "ANSI_X3.4-1968") == 0) std::setlocale(LC_CTYPE, "C.UTF-8");
    if (SDL_Init(SDL_INIT_VIDEO | SDL_INIT_TIMER | SDL_INIT_EVENTS) != 0) {
        const String reason = String::copyOf(SDL_GetError());
        throw CError("Platform error", String("The display could not be opened: ") + reason);
    }
    m_hasAudio = SDL_InitSubSystem(SDL_INIT_AUDIO) == 0;
    if (!m_hasAudio) {
        CLogManager::getInstance()->warning("platform", String("No sound device system could be started: ") +
                                                            String::copyOf(SDL_GetError()));
    }
}

CPlatformSession::~CPlatformSession()
{
    SDL_Quit();
}

}  // namespace fenn::posix
