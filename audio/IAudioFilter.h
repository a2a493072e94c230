#pragma once

#include "audio/IAudioChunk.h"
#include "foundation/IBase.h"
#include "foundation/String.h"

namespace tbx {

// A step of a job's filter chain, between source and sink. A filter that
// needs to see the whole audio first (normalising) asks for an analysis pass,
// which the job runs before the processing pass. Filters work on chunks in
// place; one job uses a filter on one thread.
class IAudioFilter : public virtual fenn::IBase
{
public:
    // Stable identifier, stored in settings ("NormalizeVolume").
    virtual fenn::String GetId() const = 0;
    virtual fenn::String GetName() const = 0;
    virtual fenn::String GetDescription() const = 0;
    virtual bool NeedsAnalysis() const = 0;
    virtual void StartAnalysis() = 0;
    virtual void Analyse(const IAudioChunk& chunk) = 0;
    virtual void EndAnalysis() = 0;
    virtual void StartProcessing() = 0;
    virtual void Process(IAudioChunk& chunk) = 0;
    virtual void EndProcessing() = 0;
};

}  // namespace tbx
