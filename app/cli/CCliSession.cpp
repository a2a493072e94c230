#include "app/cli/CCliSession.h"

#include "formats/FileTagFactories.h"
#include "foundation/CLogManager.h"
#include "foundation/Core.h"
#include "foundation/posix/CPackage.h"
#include "tags/CMusicGenreList.h"

namespace tbx::cli {

CCliSession::CCliSession()
{
    // Warnings and errors of the framework reach the terminal; the job's own
    // failures are printed by the command.
    fenn::CLogManager::getInstance()->addLog(fenn::make<fenn::CConsoleLog>(fenn::LogLevel::warning));
    m_packages = fenn::startCore();
    m_packages->addPackage(fenn::make<fenn::posix::CPackage>());
    m_packages->startAll();
    m_fileTypes = fenn::make<CFileTypeRegistry>();
    registerInputFileTypes(*m_fileTypes);
    registerOutputFileTypes(*m_fileTypes);
    m_tagFactories = fenn::make<CMediaTagRegistry>();
    registerFileTagFactories(*m_tagFactories, fenn::make<CMusicGenreList>());
}

CCliSession::~CCliSession()
{
    m_tagFactories = nullptr;
    m_fileTypes = nullptr;
    m_packages->stopAll();
    m_packages = nullptr;
    fenn::stopCore();
}

}  // namespace tbx::cli
