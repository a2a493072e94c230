#pragma once

#include <cstdint>

#include "foundation/CError.h"
#include "foundation/IBase.h"
#include "foundation/IEnum.h"
#include "foundation/P.h"
#include "foundation/String.h"

namespace fenn {

// A list of named, boxed values: settings, parameters, command-line
// arguments. Values are IBase objects, usually the boxes of CBoxedValues.h
// or a text's IString. The typed getters give the default both when the
// name is missing and when its value is of another type; the typed setters
// box the value and call setValue.
class IValueList : public virtual IBase
{
public:
    virtual bool isOpen() const = 0;
    virtual bool hasValue(const String& name) const = 0;
    // The stored value, or null when the name is missing.
    virtual P<IBase> getValue(const String& name) const = 0;

    virtual bool getBool(const String& name, bool defaultValue) const = 0;
    virtual std::int32_t getInt(const String& name, std::int32_t defaultValue) const = 0;
    virtual std::int64_t getInt64(const String& name, std::int64_t defaultValue) const = 0;
    virtual float getFloat(const String& name, float defaultValue) const = 0;
    virtual double getDouble(const String& name, double defaultValue) const = 0;
    virtual String getString(const String& name, const String& defaultValue) const = 0;
    virtual P<IBase> getObject(const String& name, const P<IBase>& defaultValue) const = 0;

    // Stores value under name; true when the name was new. A null value is
    // refused with CInvalidArgError: use removeValue.
    virtual bool setValue(const String& name, const P<IBase>& value) = 0;
    virtual bool setBool(const String& name, bool value) = 0;
    virtual bool setInt(const String& name, std::int32_t value) = 0;
    virtual bool setInt64(const String& name, std::int64_t value) = 0;
    virtual bool setFloat(const String& name, float value) = 0;
    virtual bool setDouble(const String& name, double value) = 0;
    virtual bool setString(const String& name, const String& value) = 0;

    // True when there was a value to remove.
    virtual bool removeValue(const String& name) = 0;
    virtual void removeAll() = 0;

    // The names, each as its IString, in the list's own order.
    virtual P<IConstEnum> getNames() const = 0;
    virtual std::int32_t getCount() const = 0;

    // Replaces all values by those of other (and, where the two lists know
    // such a rule, takes over other's rule for names). Assigning a list to
    // itself leaves it empty, because the values are removed first.
    virtual void assign(const IValueList& other) = 0;

    // As getValue, but a missing name throws CNoSuchObjectError.
    P<IBase> getValueChecked(const String& name) const
    {
        P<IBase> value = getValue(name);
        if (!value) throw CNoSuchObjectError();
        return value;
    }
};

}  // namespace fenn
