#include "foundation/CObservableValueList.h"

#include <vector>

#include "foundation/CBoxedValues.h"
#include "foundation/CObjectError.h"
#include "foundation/CValueList.h"
#include "foundation/TCast.h"

namespace fenn {

CObservableValueList::CObservableValueList(CaseSensitivity caseSensitivity) : m_list(make<CValueList>(caseSensitivity))
{
}

CObservableValueList::CObservableValueList(P<IValueList> list) : m_list(std::move(list))
{
    if (!m_list) throw CInvalidArgError(this, "CObservableValueList", "list");
}

template <class Call> void CObservableValueList::notify(Call&& call)
{
    // A listener may drop the last outside reference to this list.
    const P<CObservableValueList> self(this);
    // The walk goes over a copy of the entries and calls only those still
    // registered at their turn: a listener may remove others, also ones not
    // yet called, and those are not called any more. Listeners added during
    // the walk hear the next change.
    std::vector<PFrail<IBase>> entries;
    P<IFrailEnum> walk = m_listeners.getEnum();
    while (walk->hasMoreElements()) {
        PFrail<IBase> entry;
        walk->next(entry);
        entries.push_back(entry);
    }
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        if (!isRegistered(entry->get())) continue;
        if (auto* listener = dynamic_cast<IValueListListener*>(entry->get())) call(*listener);
    }
}

bool CObservableValueList::isRegistered(const IBase* listener) const
{
    P<IFrailEnum> walk = m_listeners.getEnum();
    while (walk->hasMoreElements()) {
        PFrail<IBase> entry;
        walk->next(entry);
        if (entry.get() == listener) return true;
    }
    return false;
}

bool CObservableValueList::getBool(const String& name, bool defaultValue) const
{
    return m_list->getBool(name, defaultValue);
}

std::int32_t CObservableValueList::getInt(const String& name, std::int32_t defaultValue) const
{
    return m_list->getInt(name, defaultValue);
}

std::int64_t CObservableValueList::getInt64(const String& name, std::int64_t defaultValue) const
{
    return m_list->getInt64(name, defaultValue);
}

float CObservableValueList::getFloat(const String& name, float defaultValue) const
{
    return m_list->getFloat(name, defaultValue);
}

double CObservableValueList::getDouble(const String& name, double defaultValue) const
{
    return m_list->getDouble(name, defaultValue);
}

String CObservableValueList::getString(const String& name, const String& defaultValue) const
{
    return m_list->getString(name, defaultValue);
}

P<IBase> CObservableValueList::getObject(const String& name, const P<IBase>& defaultValue) const
{
    return m_list->getObject(name, defaultValue);
}

bool CObservableValueList::setValue(const String& name, const P<IBase>& value)
{
    const bool added = m_list->setValue(name, value);
    if (added) {
        notify([this, &name](IValueListListener& listener) { listener.valueAdded(this, name); });
    } else {
        notify([this, &name](IValueListListener& listener) { listener.valueChanged(this, name); });
    }
    return added;
}

// The typed setters box here and go through setValue, so that a wrapped list
// with setters of its own cannot bypass the notification.
bool CObservableValueList::setBool(const String& name, bool value)
{
    return setValue(name, make<CBool>(value));
}

bool CObservableValueList::setInt(const String& name, std::int32_t value)
{
    return setValue(name, make<CInt>(value));
}

bool CObservableValueList::setInt64(const String& name, std::int64_t value)
{
    return setValue(name, make<CInt64>(value));
}

bool CObservableValueList::setFloat(const String& name, float value)
{
    return setValue(name, make<CFloat>(value));
}

bool CObservableValueList::setDouble(const String& name, double value)
{
    return setValue(name, make<CDouble>(value));
}

bool CObservableValueList::setString(const String& name, const String& value)
{
    return setValue(name, value.getText());
}

bool CObservableValueList::removeValue(const String& name)
{
    if (!m_list->removeValue(name)) return false;
    notify([this, &name](IValueListListener& listener) { listener.valueRemoved(this, name); });
    return true;
}

void CObservableValueList::removeAll()
{
    m_list->removeAll();
    notify([this](IValueListListener& listener) { listener.valuesCleared(this); });
}

void CObservableValueList::assign(const IValueList& other)
{
    const P<CObservableValueList> self(this);
    m_list->assign(other);
    // The names are collected first: a listener may change the list while it
    // is told about them.
    std::vector<String> names;
    P<IConstEnum> enumerator = m_list->getNames();
    while (enumerator->hasMoreElements()) {
        PC<IBase> element;
        enumerator->next(element);
        if (const IString* text = TCast<IString>(element.get())) {
            names.emplace_back(P<IString>(const_cast<IString*>(text)));
        }
    }
    notify([this](IValueListListener& listener) { listener.valuesCleared(this); });
    for (const String& name : names) {
        notify([this, &name](IValueListListener& listener) { listener.valueAdded(this, name); });
    }
}

}  // namespace fenn
