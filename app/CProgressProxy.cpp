#include "app/CProgressProxy.h"

#include "foundation/CObjectError.h"

namespace tbx {

LastShownPercents& getLastShownPercents()
{
    static LastShownPercents percents;
    return percents;
}

CProgressProxy::CProgressProxy(fenn::P<IProgress> inner, double start, double length)
    : m_inner(std::move(inner)), m_start(start), m_length(length)
{
    if (!m_inner) throw fenn::CInvalidArgError(this, "CProgressProxy", "inner");
    m_inner->addProgressListener(this);
}

CProgressProxy::~CProgressProxy()
{
    m_inner->removeProgressListener(this);
}

void CProgressProxy::onProgress(IProgress* /*progress*/)
{
    const fenn::P<CProgressProxy> self(this);
    m_listeners.notify([this](IProgressListener& listener) { listener.onProgress(this); });
}

}  // namespace tbx
