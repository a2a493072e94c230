#include "tags/CMediaTagRegistry.h"

namespace tbx {

// FIXME: the factories join with the tag formats.
void registerTagFactories(CMediaTagRegistry&) {}

}  // namespace tbx
