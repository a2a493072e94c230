#pragma once

#include "foundation/CObject.h"
#include "foundation/IEnum.h"
#include "foundation/TSimpleArray.h"

namespace fenn {

// The untyped part of a listener list: a shared array of strong and frail
// entries. Enumerators hold the shared array, so entries added during a walk
// are seen and entries removed shift under it.
class CFrailArrayTemplateBase : public CObject
{
public:
    using Entries = TCleaningSimpleArray<PFrail<IBase>>;

    class CFrailEnum : public CObject, public virtual IFrailEnum
    {
    public:
        explicit CFrailEnum(P<Entries> entries) : m_entries(std::move(entries)) {}
        bool hasMoreElements() override { return m_index < m_entries->getCount(); }
        std::int32_t getCount() override { return m_entries->getCount(); }
        void next(PFrail<IBase>& element) override;
        void reset() override { m_index = 0; }

    private:
        P<Entries> m_entries;
        std::int32_t m_index = 0;
    };

    std::int32_t getCount() const { return m_entries->getCount(); }
    P<IFrailEnum> getEnum() const { return make<CFrailEnum>(m_entries); }

protected:
    CFrailArrayTemplateBase() : m_entries(make<Entries>(10, 10)) {}

    void addEntry(IBase* listener, Hold hold);
    // Removes the first entry for the object; false if there was none.
    bool removeEntry(const IBase* listener);

    P<Entries> m_entries;
};

// A listener list. add stores a strong entry that holds a count; addFrail
// stores a frail one that does not, and that the listener must remove in its
// own shutdown. notify walks from the last entry to the first, on a copy of
// each entry, so a listener may remove itself while it is called.
template <class I> class TFrailArray : public CFrailArrayTemplateBase
{
public:
    void add(I* listener) { addEntry(listener, Hold::strong); }
    void addFrail(I* listener) { addEntry(listener, Hold::frail); }
    bool remove(I* listener) { return removeEntry(listener); }

    template <class F> void notify(F&& call) const
    {
        for (std::int32_t i = m_entries->getCount() - 1; i >= 0; --i) {
            if (i >= m_entries->getCount()) continue;
            const PFrail<IBase> entry = m_entries->get(i);
            if (I* listener = dynamic_cast<I*>(entry.get())) call(*listener);
        }
    }
};

}  // namespace fenn
