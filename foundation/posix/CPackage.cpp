#include "foundation/posix/CPackage.h"

#include <clocale>

#include "foundation/CError.h"
#include "foundation/CLogManager.h"

namespace fenn::posix {

CPackage::CPackage() : CPackageBase("fenn::posix", "1.0", {"fenn"}) {}

void CPackage::onStart()
{
    m_system = make<CSystem>();
    setSystem(m_system);
}

void CPackage::onStop()
{
    setSystem(nullptr);
    if (m_system) m_system->discardPending();
    m_system = nullptr;
}

CPlatformSession::CPlatformSession()
{
    // Multibyte text follows the user's locale.
    std::setlocale(LC_ALL, "");
    if (SDL_Init(SDL_INIT_VIDEO | SDL_INIT_TIMER | SDL_INIT_EVENTS) != 0) {
        const String reason = String::copyOf(SDL_GetError());
        throw CError("Platform error", String("The display could not be opened: ") + reason);
    }
    m_hasAudio = SDL_InitSubSystem(SDL_INIT_AUDIO) == 0;
    if (!m_hasAudio) {
        CLogManager::getInstance()->warning(
            "platform", String("No sound device system could be started: ") + String::copyOf(SDL_GetError()));
    }
}

CPlatformSession::~CPlatformSession()
{
    SDL_Quit();
}

}  // namespace fenn::posix
