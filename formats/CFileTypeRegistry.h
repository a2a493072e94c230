#pragma once

#include <vector>

#include "formats/IFileType.h"
#include "foundation/CObject.h"

namespace tbx {

// The two lists of file types, in the order in which they were added, which
// is the order of every look-up and of every list the user sees. The
// application owns one and fills it at start-up (registerFileTypes); the
// command-line front end builds its own the same way. Filled on one thread,
// then read-only.
class CFileTypeRegistry : public fenn::CObject
{
public:
    void addInputFileType(fenn::P<IInputFileType> type);
    void removeInputFileType(IInputFileType* type);
    const std::vector<fenn::P<IInputFileType>>& getInputFileTypes() const { return m_inputFileTypes; }
    // The first input type that lists the extension (with its dot, any case), or null.
    fenn::P<IInputFileType> findInputFileTypeByExtension(const fenn::String& extension) const;
    // A new source from the first input type that accepts the file's extension;
    // throws CFileFormatNotSupportedError when none does.
    fenn::P<IAudioSource> openAudioSource(const fenn::CURI& uri) const;

    void addOutputFileType(fenn::P<IOutputFileType> type);
    void removeOutputFileType(IOutputFileType* type);
    const std::vector<fenn::P<IOutputFileType>>& getOutputFileTypes() const { return m_outputFileTypes; }
    fenn::P<IOutputFileType> findOutputFileTypeByExtension(const fenn::String& extension) const;
    fenn::P<IOutputFileType> findOutputFileTypeById(const fenn::String& id) const;

    // The extension of a file URI with its dot (".wav"), empty without one.
    static fenn::String getExtension(const fenn::CURI& uri);

private:
    std::vector<fenn::P<IInputFileType>> m_inputFileTypes;
    std::vector<fenn::P<IOutputFileType>> m_outputFileTypes;
};

// Adds the types of all formats the program knows, in the program's order:
// inputs Vorbis, MP3, WAV, WMA, FLAC; outputs MP3, WMA, Vorbis, WAV, FLAC.
void registerInputFileTypes(CFileTypeRegistry& registry);
void registerOutputFileTypes(CFileTypeRegistry& registry);

}  // namespace tbx
