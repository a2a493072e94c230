#include "foundation/TFrailArray.h"

#include "foundation/CObjectError.h"

namespace fenn {

void CFrailArrayTemplateBase::CFrailEnum::next(PFrail<IBase>& element)
{
    if (m_index >= m_entries->getCount()) throw CEndOfEnumError(this);
    element = m_entries->get(m_index++);
}

void CFrailArrayTemplateBase::addEntry(IBase* listener, Hold hold)
{
    if (listener == nullptr) throw CInvalidArgError(this, "add", "listener");
    m_entries->add(PFrail<IBase>(listener, hold));
}

bool CFrailArrayTemplateBase::removeEntry(const IBase* listener)
{
    for (std::int32_t i = 0; i < m_entries->getCount(); ++i) {
        if (m_entries->get(i).get() == listener) {
            m_entries->remove(i);
            return true;
        }
    }
    return false;
}

}  // namespace fenn
