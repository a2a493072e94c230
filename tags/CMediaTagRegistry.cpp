#include "tags/CMediaTagRegistry.h"

#include <algorithm>

namespace tbx {

void CMediaTagRegistry::addTagFactory(fenn::P<IMediaFileTagFactory> factory)
{
    m_factories.push_back(std::move(factory));
}

void CMediaTagRegistry::removeTagFactory(IMediaFileTagFactory* factory)
{
    std::erase_if(m_factories,
                  [factory](const fenn::P<IMediaFileTagFactory>& entry) { return entry.get() == factory; });
}

fenn::P<IMediaFileTag> CMediaTagRegistry::getMediaFileTag(const fenn::CURI& uri) const
{
    for (const fenn::P<IMediaFileTagFactory>& factory : m_factories) {
        if (fenn::P<IMediaFileTag> tag = factory->createTag(uri)) return tag;
    }
    return nullptr;
}

}  // namespace tbx
