#include "formats/FileTagFactories.h"

#include "formats/wma/CWMAFileTagFactory.h"
#include "tags/TagFactories.h"

namespace tbx {

void registerFileTagFactories(CMediaTagRegistry& registry, fenn::P<IMusicGenreList> genres)
{
    registerTagFactories(registry, std::move(genres));
    registry.addTagFactory(fenn::make<CWMAFileTagFactory>());
}

}  // namespace tbx
