#pragma once

#include <vector>

#include "foundation/CObject.h"
#include "tags/IMediaFileTag.h"

namespace tbx {

// The tag factories in the order in which they are asked. The application
// owns one and fills it at start-up (registerTagFactories); the command-line
// front end builds its own the same way. Filled on one thread, then read-only.
class CMediaTagRegistry : public fenn::CObject
{
public:
    void addTagFactory(fenn::P<IMediaFileTagFactory> factory);
    void removeTagFactory(IMediaFileTagFactory* factory);
    const std::vector<fenn::P<IMediaFileTagFactory>>& getTagFactories() const { return m_factories; }
    // The first factory's tag for the file, or null when no factory knows
    // the file's extension (the file then has no tag; that is no error).
    fenn::P<IMediaFileTag> getMediaFileTag(const fenn::CURI& uri) const;

private:
    std::vector<fenn::P<IMediaFileTagFactory>> m_factories;
};

// Adds the factories of the formats whose tags the program knows, in the
// program's order: Vorbis, MP3, WAV, FLAC, WMA.
void registerTagFactories(CMediaTagRegistry& registry);

}  // namespace tbx
