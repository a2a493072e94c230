#include "foundation/CPartitionedBucket.h"

#include "foundation/CEnums.h"

namespace fenn {

CArray* CPartitionedBucket::findPartition(const String& name) const
{
    for (const Partition& partition : m_partitions) {
        if (partition.name == name) return partition.elements.get();
    }
    return nullptr;
}

std::int32_t CPartitionedBucket::getCount() const
{
    std::int32_t count = 0;
    for (const Partition& partition : m_partitions) count += partition.elements->getCount();
    return count;
}

bool CPartitionedBucket::contains(const IBase* object) const
{
    for (const Partition& partition : m_partitions) {
        if (partition.elements->contains(object)) return true;
    }
    return false;
}

P<IConstEnum> CPartitionedBucket::getConstEnum() const
{
    auto chain = make<CConstMultiEnum>();
    for (const Partition& partition : m_partitions) chain->addEnum(partition.elements->getConstEnum());
    return chain;
}

P<IEnum> CPartitionedBucket::getEnum()
{
    auto chain = make<CMultiEnum>();
    for (const Partition& partition : m_partitions) chain->addEnum(partition.elements->getEnum());
    return chain;
}

bool CPartitionedBucket::remove(const IBase* object)
{
    for (const Partition& partition : m_partitions) {
        if (partition.elements->remove(object)) return true;
    }
    return false;
}

void CPartitionedBucket::clear()
{
    m_partitions.clear();
}

void CPartitionedBucket::addToPartition(const String& name, P<IBase> object)
{
    CArray* partition = findPartition(name);
    if (partition == nullptr) {
        m_partitions.add(Partition{name, make<CArray>()});
        partition = m_partitions.get(m_partitions.getCount() - 1).elements.get();
    }
    partition->add(std::move(object));
}

P<IEnum> CPartitionedBucket::getPartitionEnum(const String& name)
{
    CArray* partition = findPartition(name);
    return partition != nullptr ? partition->getEnum() : P<IEnum>(make<CEmptyEnum>());
}

}  // namespace fenn
