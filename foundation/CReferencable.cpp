#include "foundation/CReferencable.h"

namespace fenn {

void CReferencable::addRef() const
{
    m_referenceCount.fetch_add(1, std::memory_order_relaxed);
}

void CReferencable::release() const
{
    if (m_referenceCount.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        m_referenceCount.store(kDestroyingCount, std::memory_order_relaxed);
        destroy();
    }
}

void CReferencable::destroy() const
{
    delete this;
}

}  // namespace fenn
