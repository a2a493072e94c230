#pragma once

#include <vector>

#include "formats/IFileType.h"
#include "foundation/CObject.h"
#include "foundation/TextKey.h"

namespace tbx {

// What the input types of all formats share: the list of extensions, the
// file dialog filter and the extension test in front of the source's
// construction. A format's type names its texts and builds its source.
// Immutable after construction; any thread.
class CInputFileTypeBase : public fenn::CObject, public virtual IInputFileType
{
public:
    std::vector<fenn::String> getExtensions() const override { return m_extensions; }
    // The filter text in the user's language.
    FileFilter getFileFilter() const override;
    // Extensions compare without regard to case, so "SONG.MP3" is an MP3 file.
    fenn::P<IAudioSource> createAudioSource(const fenn::String& extension, const fenn::CURI& uri) override;

protected:
    CInputFileTypeBase(const fenn::TextKey& filterText, const char* filterPattern,
                       std::vector<fenn::String> extensions);

    // Builds the source of a file whose extension is one of this format's.
    virtual fenn::P<IAudioSource> openSource(const fenn::CURI& uri) = 0;

private:
    fenn::TextKey m_filterText;
    fenn::String m_filterPattern;
    std::vector<fenn::String> m_extensions;
};

}  // namespace tbx
