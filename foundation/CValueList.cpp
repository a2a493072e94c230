#include "foundation/CValueList.h"

#include <string>

#include "foundation/CBoxedValues.h"
#include "foundation/CObjectError.h"
#include "foundation/TCast.h"

namespace fenn {

namespace {

// A name from an enumerator of names; IString is immutable, so the const of
// the element is no loss.
String nameFromElement(const PC<IBase>& element)
{
    const IString* text = TCast<IString>(element.get());
    return String(P<IString>(const_cast<IString*>(text)));
}

}  // namespace

CValueList::CValueList(CaseSensitivity caseSensitivity) : m_caseSensitivity(caseSensitivity) {}

String CValueList::makeKey(const String& name) const
{
    return m_caseSensitivity == CaseSensitivity::sensitive ? name : name.toLowerCase();
}

const CValueList::Entry* CValueList::findEntry(const String& name) const
{
    return m_table.find(makeKey(name));
}

bool CValueList::hasValue(const String& name) const
{
    return findEntry(name) != nullptr;
}

P<IBase> CValueList::getValue(const String& name) const
{
    const Entry* entry = findEntry(name);
    return entry ? entry->value : nullptr;
}

bool CValueList::getBool(const String& name, bool defaultValue) const
{
    const IBool* box = TCast<IBool>(getValue(name).get());
    return box ? box->getValue() : defaultValue;
}

std::int32_t CValueList::getInt(const String& name, std::int32_t defaultValue) const
{
    const IInt* box = TCast<IInt>(getValue(name).get());
    return box ? box->getValue() : defaultValue;
}

std::int64_t CValueList::getInt64(const String& name, std::int64_t defaultValue) const
{
    const IInt64* box = TCast<IInt64>(getValue(name).get());
    return box ? box->getValue() : defaultValue;
}

float CValueList::getFloat(const String& name, float defaultValue) const
{
    const IFloat* box = TCast<IFloat>(getValue(name).get());
    return box ? box->getValue() : defaultValue;
}

double CValueList::getDouble(const String& name, double defaultValue) const
{
    const IDouble* box = TCast<IDouble>(getValue(name).get());
    return box ? box->getValue() : defaultValue;
}

String CValueList::getString(const String& name, const String& defaultValue) const
{
    P<IString> text = TCast<IString>(getValue(name));
    return text ? String(text) : defaultValue;
}

P<IBase> CValueList::getObject(const String& name, const P<IBase>& defaultValue) const
{
    P<IBase> value = getValue(name);
    return value ? value : defaultValue;
}

bool CValueList::setValue(const String& name, const P<IBase>& value)
{
    if (!value) throw CInvalidArgError(this, "setValue", "value");
    const String key = makeKey(name);
    if (Entry* entry = m_table.find(key)) {
        // The spelling first given stays; only the value changes.
        entry->value = value;
        return false;
    }
    return m_table.put(key, Entry{name, value});
}

bool CValueList::setBool(const String& name, bool value)
{
    return setValue(name, make<CBool>(value));
}

bool CValueList::setInt(const String& name, std::int32_t value)
{
    return setValue(name, make<CInt>(value));
}

bool CValueList::setInt64(const String& name, std::int64_t value)
{
    return setValue(name, make<CInt64>(value));
}

bool CValueList::setFloat(const String& name, float value)
{
    return setValue(name, make<CFloat>(value));
}

bool CValueList::setDouble(const String& name, double value)
{
    return setValue(name, make<CDouble>(value));
}

bool CValueList::setString(const String& name, const String& value)
{
    return setValue(name, value.getText());
}

bool CValueList::removeValue(const String& name)
{
    return m_table.remove(makeKey(name));
}

void CValueList::removeAll()
{
    m_table.clear();
}

P<IConstEnum> CValueList::getNames() const
{
    return make<CNameEnum>(*this);
}

void CValueList::assign(const IValueList& other)
{
    removeAll();
    if (const CValueList* list = TCast<CValueList>(&other)) m_caseSensitivity = list->m_caseSensitivity;
    merge(other);
}

void CValueList::merge(const IValueList& other)
{
    P<IConstEnum> names = other.getNames();
    while (names->hasMoreElements()) {
        PC<IBase> element;
        names->next(element);
        const String name = nameFromElement(element);
        // Another kind of list may know a name without a value to give.
        if (P<IBase> value = other.getValue(name)) setValue(name, value);
    }
}

CValueList::CNameEnum::CNameEnum(const CValueList& list)
{
    m_names.reserve(static_cast<std::size_t>(list.getCount()));
    list.m_table.forEach([this](const String&, const Entry& entry) { m_names.push_back(entry.name); });
}

bool CValueList::CNameEnum::hasMoreElements()
{
    return m_position < m_names.size();
}

std::int32_t CValueList::CNameEnum::getCount()
{
    return static_cast<std::int32_t>(m_names.size());
}

void CValueList::CNameEnum::next(PC<IBase>& element)
{
    if (m_position >= m_names.size()) throw CEndOfEnumError(this);
    element = m_names[m_position++].getText();
}

void CValueList::CNameEnum::reset()
{
    m_position = 0;
}

}  // namespace fenn
