#include "foundation/CLockFile.h"

#include "foundation/CStreamManager.h"
#include "foundation/IStreamFactory.h"

namespace fenn {

CLockFile::CLockFile(const CURI& uri)
    : m_uri(uri), m_stream(CStreamManager::getInstance()->openIOStream(uri, StreamShare::exclusive,
                                                                       StreamCreate::createEmpty, DeleteOnClose::yes))
{
}

CLockFile::~CLockFile()
{
    // A failing close must not leave the destructor; the descriptor is gone
    // either way.
    try {
        m_stream->close();
    } catch (const CException&) {
    }
}

}  // namespace fenn
