#pragma once

#include <cstdint>

#include "foundation/IBase.h"
#include "foundation/IEnum.h"
#include "foundation/IMemoryBlock.h"
#include "foundation/P.h"
#include "foundation/String.h"

namespace fenn {

// Persistent named values in a tree of stores, the form of the program's
// settings. Each store has values and sub-stores; a name is unique among the
// values of one store.
//
// Reads never throw: a missing value, a value stored with another type, or a
// failure of the backing gives the default and sets found to false. Writes
// throw: CError with the backing's text, CReadOnlyError for a store that only
// reads. The name enumerations give each name as its IString.
class IValueStore : public virtual IBase
{
public:
    virtual void setString(const String& name, const String& value) = 0;
    virtual void setInt(const String& name, std::int32_t value) = 0;
    virtual void setInt64(const String& name, std::int64_t value) = 0;
    virtual void setBool(const String& name, bool value) = 0;
    virtual void setDouble(const String& name, double value) = 0;
    virtual void setBlock(const String& name, const IMemoryBlock& block) = 0;
    // A negative size throws CInvalidArgError.
    virtual void setBinary(const String& name, const void* data, std::int32_t size) = 0;

    virtual String getString(const String& name, const String& defaultValue, bool& found) const = 0;
    virtual std::int32_t getInt(const String& name, std::int32_t defaultValue, bool& found) const = 0;
    virtual std::int64_t getInt64(const String& name, std::int64_t defaultValue, bool& found) const = 0;
    virtual bool getBool(const String& name, bool defaultValue, bool& found) const = 0;
    virtual double getDouble(const String& name, double defaultValue, bool& found) const = 0;
    // A new block holding a copy of the stored bytes, or defaultValue.
    virtual P<IMemoryBlock> getBlock(const String& name, const P<IMemoryBlock>& defaultValue, bool& found) const = 0;
    // Whether a value of any type is stored under name.
    virtual bool hasValue(const String& name) const = 0;

    // The sub-store under name, which may hold backslashes to reach further
    // down ("plugins\\wav"). openSubStore gives a store also when there is
    // nothing under name yet; it reads as empty. createSubStore makes the
    // store and the ones on the way to it.
    virtual P<IValueStore> openSubStore(const String& name) = 0;
    virtual P<IValueStore> createSubStore(const String& name) = 0;

    virtual P<IConstEnum> getValueNames() const = 0;
    virtual P<IConstEnum> getSubStoreNames() const = 0;

    // True when there was something to remove. removeSubStore takes the
    // sub-store with everything below it.
    virtual bool removeValue(const String& name) = 0;
    virtual bool removeSubStore(const String& name) = 0;

    // The reads for callers that do not ask whether the value was there.
    String getString(const String& name, const String& defaultValue = String()) const
    {
        bool found = false;
        return getString(name, defaultValue, found);
    }
    std::int32_t getInt(const String& name, std::int32_t defaultValue) const
    {
        bool found = false;
        return getInt(name, defaultValue, found);
    }
    std::int64_t getInt64(const String& name, std::int64_t defaultValue) const
    {
        bool found = false;
        return getInt64(name, defaultValue, found);
    }
    bool getBool(const String& name, bool defaultValue) const
    {
        bool found = false;
        return getBool(name, defaultValue, found);
    }
    double getDouble(const String& name, double defaultValue) const
    {
        bool found = false;
        return getDouble(name, defaultValue, found);
    }
    P<IMemoryBlock> getBlock(const String& name, const P<IMemoryBlock>& defaultValue = nullptr) const
    {
        bool found = false;
        return getBlock(name, defaultValue, found);
    }
};

}  // namespace fenn
