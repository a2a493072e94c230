#pragma once

#include <cstdint>
#include <typeinfo>

namespace fenn {

class String;
class IBase;

// One node of the list of further objects that a delegating object offers to
// the run-time cast. Nodes usually live as members of the delegating object.
struct CCastDelegateList
{
    IBase* object = nullptr;
    const CCastDelegateList* next = nullptr;
};

// Root of every interface of the framework. The counter is reached from any
// interface because IBase is always inherited virtually. addRef and release
// are atomic; everything else is the business of the implementing class.
class IBase
{
public:
    virtual ~IBase() = default;

    virtual void addRef() const = 0;
    virtual void release() const = 0;

    // Lets a wrapper present what it wraps to TCast. The default offers
    // nothing and lets the cast go on with the type information.
    virtual bool getCastDelegates(const std::type_info& type, IBase*& primary, const CCastDelegateList*& others);

    virtual String toString() const = 0;
};

class IComparable : public virtual IBase
{
public:
    // Negative, zero or positive as this object orders before, with or after other.
    virtual int compareTo(const IBase& other) const = 0;
};

// A piece of work handed from one place (often another thread) to the GUI
// thread, which runs it later.
class IAction : public virtual IBase
{
public:
    virtual void execute() = 0;
};

// Told when an object that offers it is being destroyed.
class IObjectDestructListener : public virtual IBase
{
public:
    virtual void objectDestructing(IBase* object) = 0;
};

}  // namespace fenn
