#include "audio/processing/CFileDestination.h"

namespace tbx {

CFileDestination::CFileDestination(std::int32_t mode, fenn::CURI folder) : m_mode(mode), m_folder(std::move(folder)) {}

fenn::CURI CFileDestination::getTargetFolder(const fenn::CURI& source) const
{
    if (m_mode == destinationMode::sourceFolder) return source.getParent();
    return m_folder;
}

fenn::CURI CFileDestination::getTargetURI(const fenn::CURI& source, const fenn::String& extension) const
{
    return getTargetFolder(source).append(getFileNameStem(source) + extension);
}

fenn::String CFileDestination::getFileNameStem(const fenn::CURI& file)
{
    const fenn::String name = file.getFileName();
    const fenn::String extension = file.getExtension();
    if (extension.isEmpty()) return name;
    return name.left(name.getLength() - extension.getLength() - 1);
}

}  // namespace tbx
