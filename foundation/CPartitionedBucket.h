#pragma once

#include "foundation/CArray.h"
#include "foundation/IArray.h"

namespace fenn {

// A bucket of named partitions, each an array; see IPartitionedBucket.
class CPartitionedBucket : public CObject, public virtual IPartitionedBucket
{
public:
    std::int32_t getCount() const override;
    bool contains(const IBase* object) const override;
    P<IConstEnum> getConstEnum() const override;
    void add(P<IBase> object) override { addToPartition(String(), std::move(object)); }
    bool remove(const IBase* object) override;
    void clear() override;
    P<IEnum> getEnum() override;
    void addToPartition(const String& partition, P<IBase> object) override;
    P<IEnum> getPartitionEnum(const String& partition) override;
    std::int32_t getPartitionCount() const override { return m_partitions.getCount(); }

private:
    struct Partition
    {
        String name;
        P<CArray> elements;
    };

    CArray* findPartition(const String& name) const;

    TCleaningSimpleArray<Partition> m_partitions;
};

}  // namespace fenn
