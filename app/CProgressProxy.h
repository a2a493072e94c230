#pragma once

#include "app/LastShownPercents.h"
#include "audio/IProgress.h"
#include "foundation/CObject.h"
#include "foundation/TFrailArray.h"

namespace tbx {

// Stands between a job and a listener: it shows the values of an inner
// job, its overall progress mapped onto a stretch of another job's (the
// whole range unless told otherwise), and tells its own listeners when the
// inner job reports. It listens to the inner job from construction to
// destruction. GUI thread only.
class CProgressProxy : public fenn::CObject, public virtual IProgressListener, public virtual IProgress
{
public:
    // The inner overall progress p shows as start + length * p.
    explicit CProgressProxy(fenn::P<IProgress> inner, double start = 0.0, double length = 1.0);
    ~CProgressProxy() override;
    CProgressProxy(const CProgressProxy&) = delete;
    CProgressProxy& operator=(const CProgressProxy&) = delete;

    double getOverallProgress() override { return m_start + m_length * m_inner->getOverallProgress(); }
    double getItemProgress() override { return m_inner->getItemProgress(); }
    fenn::String getItemText() override { return m_inner->getItemText(); }
    fenn::String getOverallText() override { return m_inner->getOverallText(); }
    void addProgressListener(IProgressListener* listener) override { m_listeners.addFrail(listener); }
    void removeProgressListener(IProgressListener* listener) override { m_listeners.remove(listener); }

    void onProgress(IProgress* progress) override;

private:
    fenn::P<IProgress> m_inner;
    double m_start;
    double m_length;
    fenn::TFrailArray<IProgressListener> m_listeners;
};

}  // namespace tbx
