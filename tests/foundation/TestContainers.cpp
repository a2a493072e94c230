#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <numeric>
#include <vector>

#include "foundation/CArray.h"
#include "foundation/CEnums.h"
#include "foundation/CObjectError.h"
#include "foundation/CPartitionedBucket.h"
#include "foundation/TDelegateGroup1.h"
#include "foundation/TFrailArray.h"
#include "foundation/TSimpleArray.h"
#include "foundation/TSimpleHashTable.h"

using namespace fenn;

namespace {

std::vector<int> contents(const TSimpleArray<int>& array)
{
    return {array.begin(), array.end()};
}

std::vector<int> upTo(int count)
{
    std::vector<int> values(static_cast<std::size_t>(count));
    std::iota(values.begin(), values.end(), 0);
    return values;
}

// Opens the growth call that add and insert make with count + 1.
class CReservingArray : public TSimpleArray<int>
{
public:
    using TSimpleArray::reserve;
    using TSimpleArray::TSimpleArray;
};

TEST(Containers, SimpleArrayGrowsByStepOrToWhatIsNeeded)
{
    // initial capacity, growth step, adds, capacity, growth step in use
    const int cases[][5] = {{0, 3, 1, 3, 3},     {0, 3, 4, 6, 3}, {0, 3, 7, 9, 3}, {0, 0, 1, 10, 10},
                            {0, -4, 11, 20, 10}, {5, 1, 6, 6, 1}, {5, 1, 7, 7, 1}, {2, 5, 3, 7, 5}};
    for (const auto& c : cases) {
        TSimpleArray<int> array(c[0], c[1]);
        for (int i = 0; i < c[2]; ++i) array.add(i);
        EXPECT_EQ(array.getCapacity(), c[3]) << c[0] << "/" << c[1] << "/" << c[2];
        EXPECT_EQ(array.getGrowthStep(), c[4]);
        EXPECT_EQ(contents(array), upTo(c[2]));
    }
    CReservingArray array(0, 3);
    array.reserve(50);
    EXPECT_EQ(array.getCapacity(), 50);
    array.reserve(51);
    EXPECT_EQ(array.getCapacity(), 53);
}

TEST(Containers, SimpleArrayEditsAndIndexErrors)
{
    TSimpleArray<int> array;
    for (int i = 0; i < 6; ++i) array.add(i);
    array.insert(0, 100);
    array.insert(array.getCount(), 200);
    array.insert(3, 300);
    EXPECT_EQ(contents(array), (std::vector<int>{100, 0, 1, 300, 2, 3, 4, 5, 200}));
    array.remove(0);
    array.removeRange(2, 3);
    array.remove(array.getCount() - 1);
    array.removeRange(1, 0);
    EXPECT_EQ(contents(array), (std::vector<int>{0, 1, 4, 5}));
    const std::function<void()> badCalls[] = {[&] { array.get(-1); },
                                              [&] { array.get(4); },
                                              [&] { array.insert(5, 9); },
                                              [&] { array.removeRange(3, 2); },
                                              [&] { array.removeRange(-1, 1); },
                                              [&] { array.move(0, 8, 4); }};
    for (const auto& call : badCalls) EXPECT_THROW(call(), CInvalidArgError);
    EXPECT_EQ(contents(array), (std::vector<int>{0, 1, 4, 5}));

    // Overlapping moves in both directions (capacity 10).
    const std::pair<std::array<int, 3>, std::vector<int>> moves[] = {{{0, 2, 5}, {0, 1, 0, 1, 2, 3, 4, 7, 8, 9}},
                                                                     {{2, 0, 5}, {2, 3, 4, 5, 6, 5, 6, 7, 8, 9}},
                                                                     {{0, 1, 9}, {0, 0, 1, 2, 3, 4, 5, 6, 7, 8}},
                                                                     {{1, 0, 9}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 9}}};
    for (const auto& [move, expected] : moves) {
        TSimpleArray<int> block(10);
        for (int i = 0; i < 10; ++i) block.add(i);
        block.move(move[0], move[1], move[2]);
        EXPECT_EQ(contents(block), expected) << move[0] << "->" << move[1];
    }
}

TEST(Containers, ArraysLetGoOfReferences)
{
    std::vector<P<CObject>> objects{make<CObject>(), make<CObject>(), make<CObject>()};
    const auto counts = [&] {
        std::vector<int> result;
        for (const auto& object : objects) result.push_back(object->getReferenceCount());
        return result;
    };
    auto plain = make<TSimpleArray<P<CObject>>>();
    TCleaningSimpleArray<P<CObject>> cleaning;
    for (const auto& object : objects) {
        plain->add(object);
        cleaning.add(object);
    }
    plain->remove(2);  // the vacated slot keeps its reference
    cleaning.remove(2);
    EXPECT_EQ(counts(), (std::vector<int>{3, 3, 2}));
    plain->clear();
    cleaning.clear();
    EXPECT_EQ(counts(), (std::vector<int>{2, 2, 2}));
    plain = nullptr;
    EXPECT_EQ(counts(), (std::vector<int>{1, 1, 1}));

    TSimpleArray<P<CObject>> shrinking;
    for (const auto& object : objects) shrinking.add(object);
    shrinking.setCapacity(2);
    EXPECT_EQ(shrinking.getCapacity(), 2);
    EXPECT_EQ(shrinking.getCount(), 2);
    EXPECT_EQ(counts(), (std::vector<int>{2, 2, 1}));
    shrinking.setCapacity(5);
    EXPECT_EQ(shrinking.getCount(), 2);
}

class IListener : public virtual IBase
{
public:
    virtual void changed() = 0;
};

// Logs its id when called; given a list, it first removes itself from it.
class CListener : public CObject, public virtual IListener
{
public:
    static inline int destructions = 0;
    CListener(std::vector<int>& log, int id, TFrailArray<IListener>* list = nullptr)
        : m_log(log), m_id(id), m_list(list)
    {
    }
    ~CListener() override { ++destructions; }
    void changed() override
    {
        if (m_list) m_list->remove(this);
        m_log.push_back(m_id);
    }

private:
    std::vector<int>& m_log;
    int m_id;
    TFrailArray<IListener>* m_list;
};

TEST(Containers, FrailArrayNotifiesLastToFirst)
{
    std::vector<int> log;
    TFrailArray<IListener> listeners;
    const auto notify = [&] {
        log.clear();
        listeners.notify([](IListener& listener) {
            const int before = CListener::destructions;
            listener.changed();
            EXPECT_EQ(CListener::destructions, before);  // the walk's copy holds it
        });
        return log;
    };
    auto strong = make<CListener>(log, 1);
    auto frail = make<CListener>(log, 2);
    auto leaving = make<CListener>(log, 3, &listeners);
    listeners.add(strong.get());
    listeners.addFrail(frail.get());
    listeners.addFrail(leaving.get());
    listeners.add(make<CListener>(log, 4).get());
    EXPECT_EQ(strong->getReferenceCount(), 2);
    EXPECT_EQ(frail->getReferenceCount(), 1);
    EXPECT_EQ(notify(), (std::vector<int>{4, 3, 2, 1}));
    EXPECT_EQ(notify(), (std::vector<int>{4, 2, 1}));
    EXPECT_TRUE(listeners.remove(strong.get()));
    EXPECT_FALSE(listeners.remove(strong.get()));
    EXPECT_EQ(strong->getReferenceCount(), 1);

    // A strong listener that only the list holds lives through its own removal.
    CListener::destructions = 0;
    listeners.add(make<CListener>(log, 5, &listeners).get());
    EXPECT_EQ(notify(), (std::vector<int>{5, 4, 2}));
    EXPECT_EQ(CListener::destructions, 1);
}

struct CountingHash
{
    static inline int calls = 0;
    static std::uint32_t hash(int key)
    {
        ++calls;
        return static_cast<std::uint32_t>(key);
    }
};

TEST(Containers, HashTableGrowsAtItsLoadLimit)
{
    TSimpleHashTable<int, int, CountingHash> table;
    EXPECT_EQ(table.find(1), nullptr);
    EXPECT_EQ(table.getBucketCount(), 0);
    // (count after the insertion, bucket count): it grows when count + 1 > buckets * 0.8.
    const std::pair<int, int> steps[] = {{1, 10}, {8, 10}, {9, 20}, {16, 20}, {17, 40}, {32, 40}, {33, 80}};
    int inserted = 0;
    for (const auto& [count, buckets] : steps) {
        for (; inserted < count; ++inserted) {
            CountingHash::calls = 0;
            EXPECT_TRUE(table.put(inserted * 20, inserted));  // chains of up to 9 in 80 buckets
            EXPECT_EQ(CountingHash::calls, 1);                // growth relinks by the stored hash
        }
        EXPECT_EQ(table.getBucketCount(), buckets) << count;
    }
    EXPECT_FALSE(table.put(100, -5));
    EXPECT_TRUE(table.remove(100));
    EXPECT_FALSE(table.remove(100));
    for (int i = 0; i < inserted; ++i) EXPECT_EQ(table.find(i * 20) ? *table.find(i * 20) : -1, i == 5 ? -1 : i);
    EXPECT_EQ(table.getCount(), 32);
    EXPECT_EQ(table.getBucketCount(), 80);

    TSimpleHashTable<int, int> slow(10, 0.5, 1.05);  // 10.5 truncates to 10; it still grows by one
    for (int i = 0; i < 6; ++i) slow.put(i, i);
    EXPECT_EQ(slow.getBucketCount(), 11);

    EXPECT_EQ(String("ab").hash(), 882u);        // 97, then (97 * 8) ^ ((97 >> 2) ^ 98)
    EXPECT_EQ(String("\xC3\xA9").hash(), 233u);  // one code point, not two bytes
    TSimpleHashTable<String, int> names;
    for (const char* key : {"alpha", "beta", "\xC3\xA9t\xC3\xA9", "gamma", "delta", "zeta", "eta", "theta", "iota"})
        names.put(String::copyOf(key), names.getCount());
    EXPECT_EQ(names.getBucketCount(), 20);
    EXPECT_TRUE(names.find("\xC3\xA9t\xC3\xA9") && *names.find("\xC3\xA9t\xC3\xA9") == 2);
    EXPECT_TRUE(names.remove("alpha"));
    EXPECT_EQ(names.find("alpha"), nullptr);
    EXPECT_TRUE(names.find("iota") && *names.find("iota") == 8);
}

// Walks an enumerator twice with a reset between; next past the end throws.
void expectWalk(IConstEnum& walk, const std::vector<const IBase*>& expected)
{
    EXPECT_EQ(walk.getCount(), static_cast<std::int32_t>(expected.size()));
    for (int round = 0; round < 2; ++round) {
        std::vector<const IBase*> seen;
        for (PC<IBase> element; walk.hasMoreElements() && seen.size() <= expected.size();) {
            walk.next(element);
            seen.push_back(element.get());
        }
        EXPECT_EQ(seen, expected);
        PC<IBase> past;
        EXPECT_THROW(walk.next(past), CEndOfEnumError);
        walk.reset();
    }
}

TEST(Containers, EnumeratorsEndAndRestart)
{
    std::vector<P<CObject>> objects{make<CObject>(), make<CObject>(), make<CObject>()};
    const IBase *a = objects[0].get(), *b = objects[1].get(), *c = objects[2].get();
    auto array = make<CArray>();
    array->add(objects[0]);
    array->add(objects[1]);
    auto constArray = make<CConstArray>();
    constArray->add(objects[2]);
    expectWalk(*array->getEnum(), {a, b});
    expectWalk(*array->getConstEnum(), {a, b});
    expectWalk(*constArray->getConstEnum(), {c});
    expectWalk(*make<CEmptyEnum>(), {});
    auto chain = make<CMultiEnum>();
    chain->addEnum(array->getEnum());
    chain->addEnum(make<CEmptyEnum>());
    chain->addEnum(array->getEnum());
    expectWalk(*chain, {a, b, a, b});
    auto constChain = make<CConstMultiEnum>();
    constChain->addEnum(constArray->getConstEnum());
    constChain->addEnum(array->getConstEnum());
    expectWalk(*constChain, {c, a, b});

    // The element last returned can be removed; at once, and only once.
    P<IEnum> walk = array->getEnum();
    P<IBase> element;
    EXPECT_THROW(walk->remove(), CInvalidObjectStateError);
    walk->next(element);
    element = nullptr;
    walk->remove();
    EXPECT_EQ(objects[0]->getReferenceCount(), 1);
    EXPECT_THROW(walk->remove(), CInvalidObjectStateError);
    walk->next(element);
    EXPECT_EQ(element.get(), b);
    EXPECT_FALSE(walk->hasMoreElements());
}

TEST(Containers, MultiEnumRefusesLateAdds)
{
    const std::function<void(IEnum&)> firstCalls[] = {[](IEnum& walk) { (void)walk.hasMoreElements(); },
                                                      [](IEnum& walk) { (void)walk.getCount(); },
                                                      [](IEnum& walk) { walk.reset(); }};
    const char* refusal = "No more sub enums can be added to a multi enum after one of its IEnum methods has "
                          "been called.";
    for (const auto& call : firstCalls) {
        auto chain = make<CMultiEnum>();
        chain->addEnum(make<CEmptyEnum>());
        call(*chain);
        try {
            chain->addEnum(make<CEmptyEnum>());
            ADD_FAILURE() << "late add accepted";
        } catch (const CInvalidObjectStateError& error) {
            EXPECT_TRUE(error.getDescription().contains(refusal)) << error.what();
        }
    }
    auto constChain = make<CConstMultiEnum>();
    (void)constChain->hasMoreElements();
    EXPECT_THROW(constChain->addEnum(make<CEmptyEnum>()), CInvalidObjectStateError);
}

TEST(Containers, PartitionedBucketWalksPartitionsInCreationOrder)
{
    std::vector<P<CObject>> objects;
    std::vector<const IBase*> o;
    for (int i = 0; i < 5; ++i) o.push_back(objects.emplace_back(make<CObject>()).get());
    auto bucket = make<CPartitionedBucket>();
    bucket->addToPartition("tags", objects[0]);
    bucket->add(objects[1]);
    bucket->addToPartition("art", objects[2]);
    bucket->addToPartition("tags", objects[3]);
    bucket->add(objects[4]);
    EXPECT_EQ(bucket->getPartitionCount(), 3);
    expectWalk(*bucket->getEnum(), {o[0], o[3], o[1], o[4], o[2]});
    expectWalk(*bucket->getConstEnum(), {o[0], o[3], o[1], o[4], o[2]});
    expectWalk(*bucket->getPartitionEnum("tags"), {o[0], o[3]});
    expectWalk(*bucket->getPartitionEnum("none"), {});
    EXPECT_TRUE(bucket->remove(o[3]));
    P<IEnum> walk = bucket->getEnum();
    P<IBase> element;
    walk->next(element);
    walk->next(element);
    walk->remove();
    expectWalk(*bucket->getEnum(), {o[0], o[4], o[2]});
}

struct Recorder
{
    std::vector<int>& log;
    int id;
    void onValue(std::int32_t value) { log.push_back(id * 100 + value); }
    void onOther(std::int32_t value) { log.push_back(-(id * 100 + value)); }
};

TEST(Containers, DelegateGroupFiresInOrderAndRemovesByValue)
{
    using Delegate = TDelegate1<std::int32_t>;
    std::vector<int> log;
    Recorder one{log, 1};
    Recorder two{log, 2};
    TDelegateGroup1<std::int32_t> group;
    group.add(Delegate::bind<Recorder, &Recorder::onValue>(&two));
    group.add(Delegate::bind<Recorder, &Recorder::onValue>(&one));
    group.add(Delegate::bind<Recorder, &Recorder::onOther>(&one));
    group.fire(5);
    EXPECT_EQ(log, (std::vector<int>{205, 105, -105}));
    EXPECT_TRUE(group.remove(Delegate::bind<Recorder, &Recorder::onValue>(&one)));
    EXPECT_FALSE(group.remove(Delegate::bind<Recorder, &Recorder::onValue>(&one)));
    log.clear();
    group.fire(7);
    EXPECT_EQ(log, (std::vector<int>{207, -107}));
}

}  // namespace
