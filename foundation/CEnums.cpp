#include "foundation/CEnums.h"

#include "foundation/CObjectError.h"
#include "foundation/FoundationTexts.h"
#include "foundation/IStringLocalizer.h"

namespace fenn {

void CEmptyEnum::next(PC<IBase>&)
{
    throw CEndOfEnumError(this);
}

void CEmptyEnum::next(P<IBase>&)
{
    throw CEndOfEnumError(this);
}

void CEmptyEnum::remove()
{
    throw CInvalidObjectStateError(this, "nothing to remove");
}

void CMultiEnum::addEnum(P<IEnum> subEnum)
{
    if (m_locked) throw CInvalidObjectStateError(this, localize(texts::multiEnumAddLocked));
    if (!subEnum) throw CInvalidArgError(this, "addEnum", "subEnum");
    m_enums.add(subEnum);
}

bool CMultiEnum::advanceToElement()
{
    m_locked = true;
    while (m_current < m_enums.getCount()) {
        if (m_enums.get(m_current)->hasMoreElements()) return true;
        ++m_current;
    }
    return false;
}

bool CMultiEnum::hasMoreElements()
{
    return advanceToElement();
}

std::int32_t CMultiEnum::getCount()
{
    m_locked = true;
    std::int32_t count = 0;
    for (const P<IEnum>& subEnum : m_enums) count += subEnum->getCount();
    return count;
}

void CMultiEnum::next(P<IBase>& element)
{
    if (!advanceToElement()) throw CEndOfEnumError(this);
    m_enums.get(m_current)->next(element);
    m_lastReturnedFrom = m_current;
}

void CMultiEnum::next(PC<IBase>& element)
{
    P<IBase> mutableElement;
    next(mutableElement);
    element = mutableElement;
}

void CMultiEnum::reset()
{
    m_locked = true;
    for (const P<IEnum>& subEnum : m_enums) subEnum->reset();
    m_current = 0;
    m_lastReturnedFrom = -1;
}

void CMultiEnum::remove()
{
    m_locked = true;
    if (m_lastReturnedFrom < 0) throw CInvalidObjectStateError(this, "nothing to remove");
    m_enums.get(m_lastReturnedFrom)->remove();
    m_lastReturnedFrom = -1;
}

void CConstMultiEnum::addEnum(P<IConstEnum> subEnum)
{
    if (m_locked) throw CInvalidObjectStateError(this, localize(texts::constMultiEnumAddLocked));
    if (!subEnum) throw CInvalidArgError(this, "addEnum", "subEnum");
    m_enums.add(subEnum);
}

bool CConstMultiEnum::advanceToElement()
{
    m_locked = true;
    while (m_current < m_enums.getCount()) {
        if (m_enums.get(m_current)->hasMoreElements()) return true;
        ++m_current;
    }
    return false;
}

bool CConstMultiEnum::hasMoreElements()
{
    return advanceToElement();
}

std::int32_t CConstMultiEnum::getCount()
{
    m_locked = true;
    std::int32_t count = 0;
    for (const P<IConstEnum>& subEnum : m_enums) count += subEnum->getCount();
    return count;
}

void CConstMultiEnum::next(PC<IBase>& element)
{
    if (!advanceToElement()) throw CEndOfEnumError(this);
    m_enums.get(m_current)->next(element);
}

void CConstMultiEnum::reset()
{
    m_locked = true;
    for (const P<IConstEnum>& subEnum : m_enums) subEnum->reset();
    m_current = 0;
}

}  // namespace fenn
