#pragma once

#include <cstdint>
#include <type_traits>
#include <utility>

#include "foundation/CObject.h"
#include "foundation/String.h"

namespace fenn {

// How a key type hashes. Strings hash their code points, so the same text
// in any encoding lands in the same bucket.
template <class K, class Enable = void> struct THashTraits;

template <> struct THashTraits<String>
{
    static std::uint32_t hash(const String& key) { return key.hash(); }
};

template <class K> struct THashTraits<K, std::enable_if_t<std::is_integral_v<K> || std::is_enum_v<K>>>
{
    static std::uint32_t hash(K key)
    {
        const auto value = static_cast<std::uint64_t>(key);
        return static_cast<std::uint32_t>(value ^ (value >> 32));
    }
};

template <class K> struct THashTraits<K*>
{
    static std::uint32_t hash(const K* key)
    {
        const auto value = reinterpret_cast<std::uintptr_t>(key) >> 3;
        return static_cast<std::uint32_t>(value ^ (value >> 32));
    }
};

// The untyped part of the hash table: sizes and the growth rule.
class CSimpleHashTableTemplateBase : public CObject
{
public:
    std::int32_t getCount() const { return m_count; }
    std::int32_t getBucketCount() const { return m_bucketCount; }

protected:
    CSimpleHashTableTemplateBase(std::int32_t bucketCount, double loadLimit, double growthFactor)
        : m_bucketCount(bucketCount < 0 ? 0 : bucketCount), m_loadLimit(loadLimit), m_growthFactor(growthFactor)
    {
    }

    // Whether one more entry passes the load limit.
    bool needsGrowth() const { return static_cast<double>(m_count + 1) > m_bucketCount * m_loadLimit; }
    // From 0 buckets to 10; otherwise by the growth factor, at least by one.
    std::int32_t grownBucketCount() const;

    std::int32_t m_bucketCount;
    std::int32_t m_count = 0;
    double m_loadLimit;
    double m_growthFactor;
};

// A chained hash table. Each entry keeps its hash, so growth relinks entries
// without hashing again. The bucket array grows and never shrinks. Not
// locked: its owner locks it when it shares it.
template <class K, class V, class Traits = THashTraits<K>> class TSimpleHashTable : public CSimpleHashTableTemplateBase
{
public:
    struct Entry
    {
        std::uint32_t hash;
        K key;
        V value;
        Entry* next;
    };

    explicit TSimpleHashTable(std::int32_t bucketCount = 0, double loadLimit = 0.8, double growthFactor = 2.0)
        : CSimpleHashTableTemplateBase(bucketCount, loadLimit, growthFactor)
    {
        if (m_bucketCount > 0) m_buckets = new Entry*[static_cast<std::size_t>(m_bucketCount)]();
    }
    TSimpleHashTable(const TSimpleHashTable&) = delete;
    TSimpleHashTable& operator=(const TSimpleHashTable&) = delete;
    ~TSimpleHashTable() override
    {
        clear();
        delete[] m_buckets;
    }

    // The stored value for key, or null.
    V* find(const K& key) { return findEntry(key, Traits::hash(key)); }
    const V* find(const K& key) const { return const_cast<TSimpleHashTable*>(this)->find(key); }
    bool contains(const K& key) const { return find(key) != nullptr; }

    // Stores value under key; true when the key was new.
    bool put(const K& key, V value)
    {
        const std::uint32_t hash = Traits::hash(key);
        if (V* existing = findEntry(key, hash)) {
            *existing = std::move(value);
            return false;
        }
        if (needsGrowth()) grow();
        Entry*& head = m_buckets[hash % static_cast<std::uint32_t>(m_bucketCount)];
        head = new Entry{hash, key, std::move(value), head};
        ++m_count;
        return true;
    }

    bool remove(const K& key)
    {
        if (m_bucketCount == 0) return false;
        const std::uint32_t hash = Traits::hash(key);
        for (Entry** link = &m_buckets[hash % static_cast<std::uint32_t>(m_bucketCount)]; *link;
             link = &(*link)->next) {
            Entry* entry = *link;
            if (entry->hash == hash && entry->key == key) {
                *link = entry->next;
                delete entry;
                --m_count;
                return true;
            }
        }
        return false;
    }

    void clear()
    {
        for (std::int32_t i = 0; i < m_bucketCount; ++i) {
            for (Entry* entry = m_buckets[i]; entry;) delete std::exchange(entry, entry->next);
            m_buckets[i] = nullptr;
        }
        m_count = 0;
    }

    // Calls visit(key, value) for every entry, in bucket order.
    template <class F> void forEach(F&& visit) const
    {
        for (std::int32_t i = 0; i < m_bucketCount; ++i) {
            for (const Entry* entry = m_buckets[i]; entry; entry = entry->next) visit(entry->key, entry->value);
        }
    }

    // The entry after the given one in table order (null: the first), or null at the end.
    const Entry* nextEntry(const Entry* entry) const
    {
        std::int32_t bucket = 0;
        if (entry != nullptr) {
            if (entry->next) return entry->next;
            bucket = static_cast<std::int32_t>(entry->hash % static_cast<std::uint32_t>(m_bucketCount)) + 1;
        }
        for (; bucket < m_bucketCount; ++bucket) {
            if (m_buckets[bucket]) return m_buckets[bucket];
        }
        return nullptr;
    }

private:
    V* findEntry(const K& key, std::uint32_t hash) const
    {
        if (m_bucketCount == 0) return nullptr;
        for (Entry* entry = m_buckets[hash % static_cast<std::uint32_t>(m_bucketCount)]; entry; entry = entry->next) {
            if (entry->hash == hash && entry->key == key) return &entry->value;
        }
        return nullptr;
    }

    void grow()
    {
        const std::int32_t newCount = grownBucketCount();
        auto** buckets = new Entry*[static_cast<std::size_t>(newCount)]();
        for (std::int32_t i = 0; i < m_bucketCount; ++i) {
            for (Entry* entry = m_buckets[i]; entry;) {
                Entry* next = entry->next;
                Entry*& head = buckets[entry->hash % static_cast<std::uint32_t>(newCount)];
                entry->next = head;
                head = entry;
                entry = next;
            }
        }
        delete[] m_buckets;
        m_buckets = buckets;
        m_bucketCount = newCount;
    }

    Entry** m_buckets = nullptr;
};

}  // namespace fenn
