#pragma once

#include <cstdint>

#include "formats/IFileType.h"
#include "foundation/CObject.h"
#include "foundation/TextKey.h"

namespace tbx {

// What the output types of all formats share: id, display name, extension,
// short description, and the description of a preset, which is the
// description of the settings the preset fills in. A format's type adds its
// presets, descriptions, size estimate and sink. Immutable after
// construction; GUI thread.
class COutputFileTypeBase : public fenn::CObject, public virtual IOutputFileType
{
public:
    fenn::String getId() const override { return m_id; }
    fenn::String getName() const override { return m_name; }
    fenn::String getDescription() const override;
    fenn::String getExtension() const override { return m_extension; }
    // Compares without regard to case, as the input types do.
    bool isExtension(const fenn::String& extension) const override;
    fenn::String getPresetDescription(std::int32_t selector, DescriptionForm form) const override;

protected:
    COutputFileTypeBase(const char* id, const char* name, const char* extension, const fenn::TextKey& shortDescription);

    // A sample rate in whole kHz, as the descriptions show it: 44100 is "44".
    static fenn::String formatKiloHertz(std::int32_t sampleRate);
    // The description of "sampleRate", "bitsPerSample" and "channels", which
    // WAV and FLAC share; absent settings read as 44100, 16 and 2.
    static fenn::String describePCMSettings(const fenn::CValueList& settings, DescriptionForm form,
                                            const fenn::TextKey& fullText, const fenn::TextKey& briefText);

private:
    fenn::String m_id;
    fenn::String m_name;
    fenn::String m_extension;
    fenn::TextKey m_shortDescription;
};

}  // namespace tbx
