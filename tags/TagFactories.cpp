#include "tags/TagFactories.h"

#include "foundation/P.h"
#include "tags/CMP3FileTagFactory.h"
#include "tags/CMusicGenreList.h"

namespace tbx {

// The factories are asked in the order of registration: Vorbis, MP3, WAV,
// FLAC, WMA. Each format's factory joins here with its codec, in its place
// of that order; the MP3 factory is the one that exists so far.
void registerTagFactories(CMediaTagRegistry& registry, fenn::P<IMusicGenreList> genres)
{
    registry.addTagFactory(fenn::make<CMP3FileTagFactory>(std::move(genres)));
}

void registerTagFactories(CMediaTagRegistry& registry)
{
    registerTagFactories(registry, fenn::make<CMusicGenreList>());
}

}  // namespace tbx
