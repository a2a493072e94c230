#include "audio/processing/CFileConverter.h"

#include "audio/processing/ProcessingTexts.h"
#include "foundation/CFileSystemManager.h"
#include "foundation/CObjectError.h"
#include "foundation/IStringLocalizer.h"

namespace tbx {

CFileConverter::CFileConverter(const CFileTypeRegistry& fileTypes) : CAudioProcessor(fileTypes)
{
    SetOpenPurpose(AudioPurpose::conversion);
    SetProgressAction(fenn::localize(processingTexts::converterAnalysing),
                      fenn::localize(processingTexts::converterConverting));
    SetErrorMessage(fenn::localize(processingTexts::converterErrorAnalysing),
                    fenn::localize(processingTexts::converterErrorConverting));
    SetAbortedMessage(fenn::localize(processingTexts::converterAborted));
}

void CFileConverter::AddInputFile(const fenn::CURI& file, const fenn::String& displayName)
{
    m_inputs.push_back(Input{file, displayName});
}

void CFileConverter::SetTargetURI(const fenn::CURI& input, const fenn::CURI& target)
{
    m_explicitTargets = true;
    m_targets.put(input, target);
}

fenn::CURI CFileConverter::GetTargetURIFor(const fenn::CURI& input) const
{
    const fenn::CURI* target = m_targets.find(input);
    return target ? *target : fenn::CURI();
}

const CFileConverter::Input& CFileConverter::GetInput(std::int32_t item) const
{
    if (item < 0 || item >= GetInputFileCount()) throw fenn::CInvalidArgError(this, "GetInput", "item");
    return m_inputs[static_cast<std::size_t>(item)];
}

fenn::String CFileConverter::GetItemName(std::int32_t item)
{
    const Input& input = GetInput(item);
    return input.displayName.isEmpty() ? input.uri.getURI() : input.displayName;
}

fenn::P<IAudioSource> CFileConverter::CreateSource(std::int32_t item)
{
    return GetFileTypes().openAudioSource(GetInput(item).uri);
}

fenn::CURI CFileConverter::GetTargetFolder(std::int32_t item)
{
    return GetDestination().getTargetFolder(GetInput(item).uri);
}

fenn::P<IOutputFileType> CFileConverter::GetOutputFileType(std::int32_t item)
{
    return FindOutputFileType(GetInput(item).uri);
}

fenn::CURI CFileConverter::GetTargetURI(std::int32_t item)
{
    const fenn::CURI& input = GetInput(item).uri;
    if (m_explicitTargets) {
        if (const fenn::CURI* target = m_targets.find(input)) return *target;
        const fenn::CURI target = fenn::CFileSystemManager::getInstance()->createUniqueFile(
            GetTargetFolder(item), CFileDestination::getFileNameStem(input), GetOutputFileType(item)->getExtension());
        m_targets.put(input, target);
        return target;
    }
    const fenn::CURI target = GetDestination().getTargetURI(input, GetOutputFileType(item)->getExtension());
    m_targets.put(input, target);
    return target;
}

void CFileConverter::CommitTarget(std::int32_t item, const fenn::CURI& temporary, const fenn::CValueList& tags)
{
    if (!m_explicitTargets || m_targets.contains(GetInput(item).uri)) {
        CAudioProcessor::CommitTarget(item, temporary, tags);
        return;
    }
    const fenn::CURI target = GetTargetURI(item);
    fenn::CFileSystemManager::getInstance()->moveFile(temporary, target, fenn::ExistingTarget::replace);
}

}  // namespace tbx
