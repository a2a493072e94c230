#include "formats/CInputFileTypeBase.h"

#include "foundation/IStringLocalizer.h"

namespace tbx {

CInputFileTypeBase::CInputFileTypeBase(const fenn::TextKey& filterText, const char* filterPattern,
                                       std::vector<fenn::String> extensions)
    : m_filterText(filterText), m_filterPattern(filterPattern), m_extensions(std::move(extensions))
{
}

FileFilter CInputFileTypeBase::getFileFilter() const
{
    return FileFilter{fenn::localize(m_filterText), m_filterPattern};
}

fenn::P<IAudioSource> CInputFileTypeBase::createAudioSource(const fenn::String& extension, const fenn::CURI& uri)
{
    if (extension.isEmpty()) return nullptr;
    for (const fenn::String& listed : m_extensions)
        if (listed.equalsNoCase(extension)) return openSource(uri);
    return nullptr;
}

}  // namespace tbx
