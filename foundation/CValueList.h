#pragma once

#include <cstdint>
#include <vector>

#include "foundation/CObject.h"
#include "foundation/IValueList.h"
#include "foundation/TSimpleHashTable.h"

namespace fenn {

// The value list in memory: a hash table from the name's key to the name as
// first given and its value. With CaseSensitivity::insensitive the key is the
// name in lower case, so "Foo" and "FOO" meet, and getNames still gives the
// spelling under which the name was first stored. Names come in table order,
// not in the order of insertion.
//
// Not locked: a list belongs to one thread, or its owner locks it when it
// shares it. Values are shared, not copied: a box taken from the list and
// changed is changed in the list too (and in every list it was assigned to).
class CValueList : public CObject, public virtual IValueList
{
public:
    explicit CValueList(CaseSensitivity caseSensitivity = CaseSensitivity::sensitive);

    CaseSensitivity getCaseSensitivity() const { return m_caseSensitivity; }

    bool isOpen() const override { return true; }
    bool hasValue(const String& name) const override;
    P<IBase> getValue(const String& name) const override;

    bool getBool(const String& name, bool defaultValue) const override;
    std::int32_t getInt(const String& name, std::int32_t defaultValue) const override;
    std::int64_t getInt64(const String& name, std::int64_t defaultValue) const override;
    float getFloat(const String& name, float defaultValue) const override;
    double getDouble(const String& name, double defaultValue) const override;
    String getString(const String& name, const String& defaultValue) const override;
    P<IBase> getObject(const String& name, const P<IBase>& defaultValue) const override;

    bool setValue(const String& name, const P<IBase>& value) override;
    bool setBool(const String& name, bool value) override;
    bool setInt(const String& name, std::int32_t value) override;
    bool setInt64(const String& name, std::int64_t value) override;
    bool setFloat(const String& name, float value) override;
    bool setDouble(const String& name, double value) override;
    bool setString(const String& name, const String& value) override;

    bool removeValue(const String& name) override;
    void removeAll() override;

    P<IConstEnum> getNames() const override;
    std::int32_t getCount() const override { return m_table.getCount(); }

    // A list that casts to CValueList hands over its case sensitivity too;
    // any other list leaves this one's in place.
    void assign(const IValueList& other) override;
    // Sets every value of the other list here, keeping the values of names
    // the other list does not have.
    void merge(const IValueList& other);

    // The names of a list, as they were when the enumerator was made: later
    // changes to the list do not reach it, so it stays valid while the list
    // changes or goes away.
    class CNameEnum : public CObject, public virtual IConstEnum
    {
    public:
        explicit CNameEnum(const CValueList& list);

        bool hasMoreElements() override;
        std::int32_t getCount() override;
        void next(PC<IBase>& element) override;
        void reset() override;

    private:
        std::vector<String> m_names;
        std::size_t m_position = 0;
    };

private:
    struct Entry
    {
        String name;
        P<IBase> value;
    };

    String makeKey(const String& name) const;
    const Entry* findEntry(const String& name) const;

    CaseSensitivity m_caseSensitivity;
    TSimpleHashTable<String, Entry> m_table{0, 0.8, 2.0};
};

}  // namespace fenn
