#pragma once

#include <cstdint>

#include "foundation/IEnum.h"
#include "foundation/String.h"

namespace fenn {

// An unordered collection of const objects.
class IConstBucket : public virtual IBase
{
public:
    virtual std::int32_t getCount() const = 0;
    virtual bool contains(const IBase* object) const = 0;
    virtual P<IConstEnum> getConstEnum() const = 0;
};

// An unordered collection of objects.
class IBucket : public virtual IConstBucket
{
public:
    virtual void add(P<IBase> object) = 0;
    // Removes the first entry of the object; false if it was not there.
    virtual bool remove(const IBase* object) = 0;
    virtual void clear() = 0;
    virtual P<IEnum> getEnum() = 0;
};

// An ordered collection of const objects.
class IConstArray : public virtual IConstBucket
{
public:
    virtual PC<IBase> getConst(std::int32_t index) const = 0;
    virtual std::int32_t indexOf(const IBase* object) const = 0;
};

// An ordered collection of objects. Index errors throw CInvalidArgError.
class IArray : public virtual IBucket
{
public:
    virtual P<IBase> get(std::int32_t index) const = 0;
    virtual void set(std::int32_t index, P<IBase> object) = 0;
    virtual void insert(std::int32_t index, P<IBase> object) = 0;
    virtual void removeAt(std::int32_t index) = 0;
    virtual std::int32_t indexOf(const IBase* object) const = 0;
};

// A bucket split into named partitions. add puts an object into the partition
// "" (created when needed); enumeration walks the partitions in the order of
// their creation, one after the other.
class IPartitionedBucket : public virtual IBucket
{
public:
    virtual void addToPartition(const String& partition, P<IBase> object) = 0;
    virtual P<IEnum> getPartitionEnum(const String& partition) = 0;
    virtual std::int32_t getPartitionCount() const = 0;
};

}  // namespace fenn
