#pragma once

#include "foundation/CObject.h"
#include "foundation/IEnum.h"
#include "foundation/TSimpleArray.h"

namespace fenn {

// An enumerator without elements.
class CEmptyEnum : public CObject, public virtual IEnum
{
public:
    bool hasMoreElements() override { return false; }
    std::int32_t getCount() override { return 0; }
    void next(PC<IBase>& element) override;
    void next(P<IBase>& element) override;
    void reset() override {}
    void remove() override;
};

// Chains sub enumerators in the order in which they were added. Adding is
// allowed only until the first enumeration call.
class CMultiEnum : public CObject, public virtual IEnum
{
public:
    void addEnum(P<IEnum> subEnum);

    bool hasMoreElements() override;
    std::int32_t getCount() override;
    void next(PC<IBase>& element) override;
    void next(P<IBase>& element) override;
    void reset() override;
    void remove() override;

private:
    bool advanceToElement();

    TCleaningSimpleArray<P<IEnum>> m_enums;
    std::int32_t m_current = 0;
    std::int32_t m_lastReturnedFrom = -1;
    bool m_locked = false;
};

// The const form of CMultiEnum.
class CConstMultiEnum : public CObject, public virtual IConstEnum
{
public:
    void addEnum(P<IConstEnum> subEnum);

    bool hasMoreElements() override;
    std::int32_t getCount() override;
    void next(PC<IBase>& element) override;
    void reset() override;

private:
    bool advanceToElement();

    TCleaningSimpleArray<P<IConstEnum>> m_enums;
    std::int32_t m_current = 0;
    bool m_locked = false;
};

}  // namespace fenn
