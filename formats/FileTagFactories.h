#pragma once

#include "tags/CMediaTagRegistry.h"
#include "tags/IMusicGenreList.h"

namespace tbx {

// Adds the tag factories of every format the program writes tags for, in the
// order they are asked: Vorbis, MP3, WAV, FLAC, WMA. The tag library's own
// factories come first; the ones that live with their codec follow here.
void registerFileTagFactories(CMediaTagRegistry& registry, fenn::P<IMusicGenreList> genres);

}  // namespace tbx
