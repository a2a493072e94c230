#pragma once

#include <cstdint>

#include "foundation/CObject.h"
#include "foundation/IValueList.h"
#include "foundation/TFrailArray.h"

namespace fenn {

class IObservableValueList;

// Told about the changes of an observable value list, after each change has
// been made. A name that was not in the list before is reported with
// valueAdded, a new value under a known name with valueChanged.
class IValueListListener : public virtual IBase
{
public:
    virtual void valueChanged(IObservableValueList* list, const String& name) = 0;
    virtual void valueRemoved(IObservableValueList* list, const String& name) = 0;
    virtual void valuesCleared(IObservableValueList* list) = 0;
    virtual void valueAdded(IObservableValueList* list, const String& name) = 0;
};

// A value list that reports its changes to listeners.
class IObservableValueList : public virtual IValueList
{
public:
    // A strong entry that holds the listener until it is removed.
    virtual void addListener(IValueListListener* listener) = 0;
    // An entry without a count: the listener removes itself in its own
    // shutdown.
    virtual void addFrailListener(IValueListListener* listener) = 0;
    virtual void removeListener(IValueListListener* listener) = 0;
};

// Wraps another value list, forwards every call to it and, after each write
// that changed something, calls the listeners from the last added to the
// first. While it is called a listener may remove itself or others (a
// removed listener is not called any more, also in the current round) and
// add listeners (they hear the next change); it may also write to the list,
// which notifies again from inside the first notification. Writes made to
// the wrapped list directly are not seen.
//
// Not locked, like CValueList: the listeners are called on the thread that
// wrote.
class CObservableValueList : public CObject, public virtual IObservableValueList
{
public:
    // Observes a new, empty CValueList.
    explicit CObservableValueList(CaseSensitivity caseSensitivity = CaseSensitivity::sensitive);
    // Observes list, which must not be null (CInvalidArgError).
    explicit CObservableValueList(P<IValueList> list);

    const P<IValueList>& getWrappedList() const { return m_list; }

    void addListener(IValueListListener* listener) override { m_listeners.add(listener); }
    void addFrailListener(IValueListListener* listener) override { m_listeners.addFrail(listener); }
    void removeListener(IValueListListener* listener) override { m_listeners.remove(listener); }

    bool isOpen() const override { return m_list->isOpen(); }
    bool hasValue(const String& name) const override { return m_list->hasValue(name); }
    P<IBase> getValue(const String& name) const override { return m_list->getValue(name); }

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

    // Notifies only when there was a value to remove.
    bool removeValue(const String& name) override;
    void removeAll() override;

    P<IConstEnum> getNames() const override { return m_list->getNames(); }
    std::int32_t getCount() const override { return m_list->getCount(); }

    // Reported as valuesCleared, then valueAdded for each name the list holds
    // afterwards.
    void assign(const IValueList& other) override;

private:
    template <class Call> void notify(Call&& call);
    bool isRegistered(const IBase* listener) const;

    P<IValueList> m_list;
    TFrailArray<IValueListListener> m_listeners;
};

}  // namespace fenn
