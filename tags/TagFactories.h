#pragma once

#include "tags/CMediaTagRegistry.h"
#include "tags/IMusicGenreList.h"

namespace tbx {

// registerTagFactories with the genre list that the formats with numbered
// genres use to turn names into numbers. The plain form builds a list of
// its own, in the language chosen at that time.
void registerTagFactories(CMediaTagRegistry& registry, fenn::P<IMusicGenreList> genres);

}  // namespace tbx
