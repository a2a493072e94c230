#include "formats/COutputFileTypeBase.h"

#include "formats/CEncodeSettingsManager.h"
#include "foundation/CValueList.h"
#include "foundation/IStringLocalizer.h"

namespace tbx {

COutputFileTypeBase::COutputFileTypeBase(const char* id, const char* name, const char* extension,
                                         const fenn::TextKey& shortDescription)
    : m_id(id), m_name(name), m_extension(extension), m_shortDescription(shortDescription)
{
}

fenn::String COutputFileTypeBase::getDescription() const
{
    return fenn::localize(m_shortDescription);
}

bool COutputFileTypeBase::isExtension(const fenn::String& extension) const
{
    return m_extension.equalsNoCase(extension);
}

fenn::String COutputFileTypeBase::getPresetDescription(std::int32_t selector, DescriptionForm form) const
{
    const auto settings = fenn::make<fenn::CValueList>();
    getPresetSettings(*settings, selector);
    return getSettingsDescription(*settings, form);
}

fenn::String COutputFileTypeBase::formatKiloHertz(std::int32_t sampleRate)
{
    return fenn::fromInt(sampleRate / 1000);
}

fenn::String COutputFileTypeBase::describePCMSettings(const fenn::CValueList& settings, DescriptionForm form,
                                                      const fenn::TextKey& fullText, const fenn::TextKey& briefText)
{
    const fenn::String text = fenn::localize(form == DescriptionForm::full ? fullText : briefText)
                                  .replace("%SR%", formatKiloHertz(settings.getInt(settingKeys::sampleRate, 44100)))
                                  .replace("%BITS%", fenn::fromInt(settings.getInt(settingKeys::bitsPerSample, 16)));
    return text.replace("%CHAN%", fenn::fromInt(settings.getInt(settingKeys::channels, 2)));
}

}  // namespace tbx
