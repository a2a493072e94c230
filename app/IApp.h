#pragma once

#include <cstdint>
#include <vector>

#include "foundation/CException.h"
#include "foundation/IBase.h"
#include "foundation/String.h"
#include "formats/CFileTypeRegistry.h"
#include "tags/CMediaTagRegistry.h"
#include "tags/IMusicGenreList.h"

namespace tbx {

// The application as every module and service sees it. There is one, owned
// by the process entry and reached through getApp(); all of it runs on the
// GUI thread.
class IApp : public virtual fenn::IBase
{
public:
    // True when the program may end now: no module runs, or the running one agrees.
    virtual bool canExit() = 0;
    virtual void closeActiveModule() = 0;
    // Closes the active module without asking, then ends the event loop.
    virtual void exit() = 0;

    virtual fenn::String getVersionString() const = 0;
    virtual std::uint32_t getVersionNumber() const = 0;
    virtual std::uint32_t parseVersion(const fenn::String& text) const = 0;
    virtual std::uint32_t getProductVersion() const = 0;
    virtual std::uint32_t makeVersion(std::uint32_t a, std::uint32_t b, std::uint32_t c) const = 0;

    // The characters a file name must not hold, so that files survive a trip
    // to FAT and NTFS media and players: \ / : * ? " < > |
    virtual fenn::String getIllegalFileNameChars() const = 0;

    // The settings of the current user, and the read-only ones of the machine.
    virtual void setStringValue(const fenn::String& name, const fenn::String& value) = 0;
    virtual void setIntValue(const fenn::String& name, std::int32_t value) = 0;
    // The default unless the value is a non-empty text.
    virtual fenn::String getStringValue(const fenn::String& name, const fenn::String& defaultValue) = 0;
    // The default unless the value is a 32-bit number.
    virtual std::int32_t getIntValue(const fenn::String& name, std::int32_t defaultValue) = 0;
    virtual fenn::String getMachineStringValue(const fenn::String& name, const fenn::String& defaultValue) = 0;
    virtual std::int32_t getMachineIntValue(const fenn::String& name, std::int32_t defaultValue) = 0;
    virtual bool isFirstStart() const = 0;

    // The file type tables, fixed after start-up. The look-ups ask the types
    // in table order; openAudioSource throws CFileFormatNotSupportedError
    // when no input type takes the file.
    virtual void addInputFileType(fenn::P<IInputFileType> type) = 0;
    virtual void removeInputFileType(IInputFileType* type) = 0;
    virtual const std::vector<fenn::P<IInputFileType>>& getInputFileTypes() const = 0;
    virtual fenn::P<IInputFileType> findInputFileTypeByExtension(const fenn::String& extension) const = 0;
    virtual fenn::P<IAudioSource> openAudioSource(const fenn::CURI& uri) const = 0;
    virtual void addOutputFileType(fenn::P<IOutputFileType> type) = 0;
    virtual void removeOutputFileType(IOutputFileType* type) = 0;
    virtual const std::vector<fenn::P<IOutputFileType>>& getOutputFileTypes() const = 0;
    virtual fenn::P<IOutputFileType> findOutputFileTypeByExtension(const fenn::String& extension) const = 0;
    virtual fenn::P<IOutputFileType> findOutputFileTypeById(const fenn::String& id) const = 0;
    // Both tables at once, for the jobs that take them as one object.
    virtual const CFileTypeRegistry& getFileTypeRegistry() const = 0;

    // The tag factories, asked in order; no match gives null, which means
    // the file has no tag.
    virtual void addTagFactory(fenn::P<IMediaFileTagFactory> factory) = 0;
    virtual void removeTagFactory(IMediaFileTagFactory* factory) = 0;
    virtual const std::vector<fenn::P<IMediaFileTagFactory>>& getTagFactories() const = 0;
    virtual fenn::P<IMediaFileTag> getMediaFileTag(const fenn::CURI& uri) const = 0;
    // The genres in display order, with their ID3v1 numbers.
    virtual fenn::P<IMusicGenreList> getGenreList() const = 0;

    // Writes "Exception during '<action>': <description>" to the log.
    virtual void logException(const fenn::String& action, const fenn::CException& exception) = 0;
};

// The running application, or null outside its life.
IApp* getApp();
void setApp(IApp* app);

}  // namespace tbx
