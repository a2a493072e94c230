#pragma once

#include "foundation/CObject.h"
#include "foundation/IArray.h"
#include "foundation/TSimpleArray.h"

namespace fenn {

// An array of counted objects. Its enumerators hold the array, so it lives as
// long as a walk over it.
class CArray : public CObject, public virtual IArray
{
public:
    // Walks the array; remove takes out the element last returned.
    class CEnum : public CObject, public virtual IEnum
    {
    public:
        explicit CEnum(P<CArray> array) : m_array(std::move(array)) {}
        bool hasMoreElements() override { return m_index < m_array->getCount(); }
        std::int32_t getCount() override { return m_array->getCount(); }
        void next(P<IBase>& element) override;
        void next(PC<IBase>& element) override;
        void reset() override { m_index = 0; }
        void remove() override;

    private:
        P<CArray> m_array;
        std::int32_t m_index = 0;
        bool m_canRemove = false;
    };

    // Walks the array without changing it.
    class CConstEnum : public CObject, public virtual IConstEnum
    {
    public:
        explicit CConstEnum(PC<CArray> array) : m_array(std::move(array)) {}
        bool hasMoreElements() override { return m_index < m_array->getCount(); }
        std::int32_t getCount() override { return m_array->getCount(); }
        void next(PC<IBase>& element) override;
        void reset() override { m_index = 0; }

    private:
        PC<CArray> m_array;
        std::int32_t m_index = 0;
    };

    std::int32_t getCount() const override { return m_elements.getCount(); }
    bool contains(const IBase* object) const override { return indexOf(object) >= 0; }
    P<IConstEnum> getConstEnum() const override { return make<CConstEnum>(PC<CArray>(this)); }
    void add(P<IBase> object) override { m_elements.add(object); }
    bool remove(const IBase* object) override;
    void clear() override { m_elements.clear(); }
    P<IEnum> getEnum() override { return make<CEnum>(P<CArray>(this)); }
    P<IBase> get(std::int32_t index) const override { return m_elements.get(index); }
    void set(std::int32_t index, P<IBase> object) override { m_elements.set(index, object); }
    void insert(std::int32_t index, P<IBase> object) override { m_elements.insert(index, object); }
    void removeAt(std::int32_t index) override { m_elements.remove(index); }
    std::int32_t indexOf(const IBase* object) const override;

private:
    TCleaningSimpleArray<P<IBase>> m_elements;
};

// An array of counted const objects.
class CConstArray : public CObject, public virtual IConstArray
{
public:
    class CConstEnum : public CObject, public virtual IConstEnum
    {
    public:
        explicit CConstEnum(PC<CConstArray> array) : m_array(std::move(array)) {}
        bool hasMoreElements() override { return m_index < m_array->getCount(); }
        std::int32_t getCount() override { return m_array->getCount(); }
        void next(PC<IBase>& element) override;
        void reset() override { m_index = 0; }

    private:
        PC<CConstArray> m_array;
        std::int32_t m_index = 0;
    };

    void add(PC<IBase> object) { m_elements.add(object); }
    std::int32_t getCount() const override { return m_elements.getCount(); }
    bool contains(const IBase* object) const override { return indexOf(object) >= 0; }
    P<IConstEnum> getConstEnum() const override { return make<CConstEnum>(PC<CConstArray>(this)); }
    PC<IBase> getConst(std::int32_t index) const override { return m_elements.get(index); }
    std::int32_t indexOf(const IBase* object) const override;

private:
    TCleaningSimpleArray<PC<IBase>> m_elements;
};

}  // namespace fenn
