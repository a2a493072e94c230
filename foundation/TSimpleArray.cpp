#include "foundation/TSimpleArray.h"

#include "foundation/CObjectError.h"

namespace fenn {

CSimpleArrayTemplateBase::CSimpleArrayTemplateBase(std::int32_t, std::int32_t growthStep)
    : m_growthStep(growthStep < 1 ? 10 : growthStep)
{
}

void CSimpleArrayTemplateBase::checkIndex(std::int32_t index, std::int32_t limit, const char* method) const
{
    if (index < 0 || index >= limit) throw CInvalidArgError(this, method, String("index ") + fromInt(index));
}

void CSimpleArrayTemplateBase::checkRange(std::int32_t from, std::int32_t count, std::int32_t limit,
                                          const char* method) const
{
    if (from < 0 || count < 0 || from > limit - count)
        throw CInvalidArgError(this, method, String("range ") + fromInt(from) + "+" + fromInt(count));
}

std::int32_t CSimpleArrayTemplateBase::grownCapacity(std::int32_t needed) const
{
    return std::max(needed, m_capacity + m_growthStep);
}

}  // namespace fenn
