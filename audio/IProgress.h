#pragma once

#include "foundation/IBase.h"
#include "foundation/P.h"
#include "foundation/String.h"

namespace tbx {

class IProgress;

class IProgressListener : public virtual fenn::IBase
{
public:
    virtual void onProgress(IProgress* progress) = 0;
};

// The read side of a job, as its owner and the progress page see it: the
// whole job and the item at work. GUI thread only.
class IProgress : public virtual fenn::IBase
{
public:
    virtual double getOverallProgress() = 0;
    virtual double getItemProgress() = 0;
    virtual fenn::String getItemText() = 0;
    virtual fenn::String getOverallText() = 0;
    // Listeners are held frail: a listener removes itself before it goes,
    // or outlives the job.
    virtual void addProgressListener(IProgressListener* listener) = 0;
    virtual void removeProgressListener(IProgressListener* listener) = 0;
};

}  // namespace tbx
