#include "tags/CMP3FileTagFactory.h"

#include "tags/CMP3FileTag.h"

namespace tbx {

CMP3FileTagFactory::CMP3FileTagFactory(fenn::P<IMusicGenreList> genres) : m_genres(std::move(genres)) {}

fenn::P<IMediaFileTag> CMP3FileTagFactory::createTag(const fenn::CURI& uri)
{
    const fenn::String extension = uri.getExtension();
    if (extension.isEmpty() || !extension.equalsNoCase("mp3")) return nullptr;
    return fenn::make<CMP3FileTag>(uri, m_genres);
}

}  // namespace tbx
