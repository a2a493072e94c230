#include "audio/processing/CAudioSourceProcessor.h"

#include "audio/processing/ProcessingTexts.h"
#include "foundation/CObjectError.h"
#include "foundation/IStringLocalizer.h"

namespace tbx {

CAudioSourceProcessor::CAudioSourceProcessor(const CFileTypeRegistry& fileTypes, fenn::P<IAudioSource> source,
                                             fenn::CURI target, fenn::String displayName)
    : CAudioProcessor(fileTypes), m_source(std::move(source)), m_target(std::move(target)),
      m_displayName(std::move(displayName))
{
    if (!m_source) throw fenn::CInvalidArgError(this, "CAudioSourceProcessor", "source");
    SetOpenPurpose(AudioPurpose::conversion);
    SetProgressAction(fenn::localize(processingTexts::generatorAnalysing),
                      fenn::localize(processingTexts::generatorGenerating));
    SetErrorMessage(fenn::localize(processingTexts::generatorErrorAnalysing),
                    fenn::localize(processingTexts::generatorErrorGenerating));
    SetAbortedMessage(fenn::localize(processingTexts::generatorAborted));
}

fenn::String CAudioSourceProcessor::GetItemName(std::int32_t /*item*/)
{
    return m_displayName.isEmpty() ? m_target.getFileName() : m_displayName;
}

fenn::P<IAudioSource> CAudioSourceProcessor::CreateSource(std::int32_t /*item*/)
{
    if (m_sourceHandedOut) m_source->Reset();
    m_sourceHandedOut = true;
    return m_source;
}

fenn::CURI CAudioSourceProcessor::GetTargetFolder(std::int32_t /*item*/)
{
    return m_target.getParent();
}

fenn::CURI CAudioSourceProcessor::GetTargetURI(std::int32_t /*item*/)
{
    return m_target;
}

fenn::P<IOutputFileType> CAudioSourceProcessor::GetOutputFileType(std::int32_t /*item*/)
{
    return FindOutputFileType(m_target);
}

}  // namespace tbx
