#pragma once

#include "audio/processing/CAudioProcessor.h"

namespace tbx {

// A job of one item: a source that the caller made (the editor's mix, a
// generator) written into one file. The output type is the job's, or the
// one of the target's extension. GUI thread, as its base.
class CAudioSourceProcessor : public CAudioProcessor
{
public:
    // displayName names the item in the progress and the log; without one,
    // the target's file name.
    CAudioSourceProcessor(const CFileTypeRegistry& fileTypes, fenn::P<IAudioSource> source, fenn::CURI target,
                          fenn::String displayName = fenn::String());

protected:
    std::int32_t GetItemCount() override { return 1; }
    fenn::String GetItemName(std::int32_t item) override;
    // The one source; for its second pass it is reset to its start.
    fenn::P<IAudioSource> CreateSource(std::int32_t item) override;
    fenn::CURI GetTargetFolder(std::int32_t item) override;
    fenn::CURI GetTargetURI(std::int32_t item) override;
    fenn::P<IOutputFileType> GetOutputFileType(std::int32_t item) override;

private:
    fenn::P<IAudioSource> m_source;
    fenn::CURI m_target;
    fenn::String m_displayName;
    bool m_sourceHandedOut = false;
};

}  // namespace tbx
