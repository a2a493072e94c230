#include "formats/wma/CWMAFileTagFactory.h"

#include "formats/wma/CWMAFileTag.h"

namespace tbx {

fenn::P<IMediaFileTag> CWMAFileTagFactory::createTag(const fenn::CURI& uri)
{
    const fenn::String extension = uri.getExtension();
    if (extension.isEmpty() || !extension.equalsNoCase("wma")) return nullptr;
    return fenn::make<CWMAFileTag>(uri);
}

}  // namespace tbx
