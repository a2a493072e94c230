#pragma once

#include "foundation/CObject.h"
#include "tags/IMediaFileTag.h"
#include "tags/IMusicGenreList.h"

namespace tbx {

// Makes a CMP3FileTag for files with the extension ".mp3" in any case; gives
// null for every other file. The genre list turns genre names into the
// numbers of the tags. Holds no other state.
class CMP3FileTagFactory : public fenn::CObject, public virtual IMediaFileTagFactory
{
public:
    explicit CMP3FileTagFactory(fenn::P<IMusicGenreList> genres);

    fenn::P<IMediaFileTag> createTag(const fenn::CURI& uri) override;

private:
    fenn::P<IMusicGenreList> m_genres;
};

}  // namespace tbx
