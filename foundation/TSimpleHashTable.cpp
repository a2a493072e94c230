#include "foundation/TSimpleHashTable.h"

#include <algorithm>

namespace fenn {

std::int32_t CSimpleHashTableTemplateBase::grownBucketCount() const
{
    if (m_bucketCount == 0) return 10;
    const auto scaled = static_cast<std::int32_t>(m_bucketCount * m_growthFactor);
    return std::max(scaled, m_bucketCount + 1);
}

}  // namespace fenn
