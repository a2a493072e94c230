#pragma once

#include <cstdint>
#include <vector>

#include "audio/IAudioSource.h"
#include "foundation/CURI.h"
#include "foundation/IBase.h"
#include "foundation/P.h"
#include "foundation/String.h"

namespace fenn {
class CValueList;
class ISeekableOutStream;
}  // namespace fenn

namespace tbx {

// The text and the pattern of a file dialog's filter ("WAV files (*.wav)", "*.wav").
struct FileFilter
{
    fenn::String text;
    fenn::String pattern;
};

// Which form of a quality description to build.
enum class DescriptionForm { full, brief };

// The reading side of a file format: its extensions and the sources it
// builds. The application holds one per format, for its whole life; any
// thread may call once start-up has ended.
class IInputFileType : public virtual fenn::IBase
{
public:
    // Extensions with their dot, as ".wav".
    virtual std::vector<fenn::String> getExtensions() const = 0;
    virtual FileFilter getFileFilter() const = 0;
    // A new source for the file when the extension is one of this format's,
    // null otherwise (an empty extension never matches). Errors of the
    // source's construction pass through.
    virtual fenn::P<IAudioSource> createAudioSource(const fenn::String& extension, const fenn::CURI& uri) = 0;
};

// The writing side of a file format: its names, presets and sinks. The
// quality pages and dialogs join with the wizard. Owned by the application;
// GUI thread.
class IOutputFileType : public virtual fenn::IBase
{
public:
    virtual fenn::String getId() const = 0;
    virtual fenn::String getName() const = 0;
    // The translated short description.
    virtual fenn::String getDescription() const = 0;
    virtual fenn::String getExtension() const = 0;
    virtual bool isExtension(const fenn::String& extension) const = 0;
    // Fills settings with the preset of a quality selector from 1 to 4;
    // other selectors leave the format's defaults.
    virtual void getPresetSettings(fenn::CValueList& settings, std::int32_t selector) const = 0;
    virtual fenn::String getSettingsDescription(const fenn::CValueList& settings, DescriptionForm form) const = 0;
    virtual fenn::String getPresetDescription(std::int32_t selector, DescriptionForm form) const = 0;
    // Expected bytes of output for a duration in seconds, -1 when the format
    // cannot tell.
    virtual std::int64_t estimateFileSize(const fenn::CValueList& settings, double duration) const = 0;
    // A sink writing into stream, created open. tags is the metadata the sink
    // writes with the audio (keys of the tag value lists).
    virtual fenn::P<IAudioSink> createAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream,
                                                const fenn::CValueList& settings, const fenn::CValueList& tags) = 0;
};

}  // namespace tbx
