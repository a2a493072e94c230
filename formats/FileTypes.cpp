#include "formats/CFileTypeRegistry.h"

namespace tbx {

// FIXME: the types join with the file type descriptors.
void registerInputFileTypes(CFileTypeRegistry&) {}
void registerOutputFileTypes(CFileTypeRegistry&) {}

}  // namespace tbx
