#include "foundation/CArray.h"

#include "foundation/CObjectError.h"

namespace fenn {

void CArray::CEnum::next(P<IBase>& element)
{
    if (m_index >= m_array->getCount()) throw CEndOfEnumError(this);
    element = m_array->get(m_index++);
    m_canRemove = true;
}

void CArray::CEnum::next(PC<IBase>& element)
{
    P<IBase> mutableElement;
    next(mutableElement);
    element = mutableElement;
}

void CArray::CEnum::remove()
{
    if (!m_canRemove) throw CInvalidObjectStateError(this, "nothing to remove");
    m_array->removeAt(--m_index);
    m_canRemove = false;
}

void CArray::CConstEnum::next(PC<IBase>& element)
{
    if (m_index >= m_array->getCount()) throw CEndOfEnumError(this);
    element = PC<IBase>(m_array->get(m_index++));
}

bool CArray::remove(const IBase* object)
{
    const std::int32_t index = indexOf(object);
    if (index < 0) return false;
    m_elements.remove(index);
    return true;
}

std::int32_t CArray::indexOf(const IBase* object) const
{
    for (std::int32_t i = 0; i < m_elements.getCount(); ++i) {
        if (m_elements.get(i).get() == object) return i;
    }
    return -1;
}

void CConstArray::CConstEnum::next(PC<IBase>& element)
{
    if (m_index >= m_array->getCount()) throw CEndOfEnumError(this);
    element = m_array->getConst(m_index++);
}

std::int32_t CConstArray::indexOf(const IBase* object) const
{
    for (std::int32_t i = 0; i < m_elements.getCount(); ++i) {
        if (m_elements.get(i).get() == object) return i;
    }
    return -1;
}

}  // namespace fenn
