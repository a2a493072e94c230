#include "formats/CFileTypeRegistry.h"

#include <algorithm>

#include "foundation/CURIError.h"

namespace tbx {

void CFileTypeRegistry::addInputFileType(fenn::P<IInputFileType> type)
{
    m_inputFileTypes.push_back(std::move(type));
}

void CFileTypeRegistry::removeInputFileType(IInputFileType* type)
{
    std::erase_if(m_inputFileTypes, [type](const fenn::P<IInputFileType>& entry) { return entry.get() == type; });
}

fenn::P<IInputFileType> CFileTypeRegistry::findInputFileTypeByExtension(const fenn::String& extension) const
{
    for (const fenn::P<IInputFileType>& type : m_inputFileTypes) {
        for (const fenn::String& listed : type->getExtensions())
            if (listed.compareNoCase(extension) == 0) return type;
    }
    return nullptr;
}

fenn::P<IAudioSource> CFileTypeRegistry::openAudioSource(const fenn::CURI& uri) const
{
    const fenn::String extension = getExtension(uri);
    for (const fenn::P<IInputFileType>& type : m_inputFileTypes) {
        if (fenn::P<IAudioSource> source = type->createAudioSource(extension, uri)) return source;
    }
    throw fenn::CFileFormatNotSupportedError(uri);
}

void CFileTypeRegistry::addOutputFileType(fenn::P<IOutputFileType> type)
{
    m_outputFileTypes.push_back(std::move(type));
}

void CFileTypeRegistry::removeOutputFileType(IOutputFileType* type)
{
    std::erase_if(m_outputFileTypes, [type](const fenn::P<IOutputFileType>& entry) { return entry.get() == type; });
}

fenn::P<IOutputFileType> CFileTypeRegistry::findOutputFileTypeByExtension(const fenn::String& extension) const
{
    for (const fenn::P<IOutputFileType>& type : m_outputFileTypes)
        if (type->isExtension(extension)) return type;
    return nullptr;
}

fenn::P<IOutputFileType> CFileTypeRegistry::findOutputFileTypeById(const fenn::String& id) const
{
    for (const fenn::P<IOutputFileType>& type : m_outputFileTypes)
        if (type->getId() == id) return type;
    return nullptr;
}

fenn::String CFileTypeRegistry::getExtension(const fenn::CURI& uri)
{
    const fenn::String extension = uri.getExtension();
    return extension.isEmpty() ? extension : fenn::String(".") + extension;
}

}  // namespace tbx
