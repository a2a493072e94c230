#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "foundation/CWorkerManager.h"

using namespace fenn;

namespace {

class TestWorker : public CObject, public virtual IWorker
{
public:
    TestWorker(std::string name, std::int32_t interval, std::vector<std::string>* log = nullptr)
        : name(std::move(name)), interval(interval), log(log)
    {
    }

    void doWork() override
    {
        if (log) log->push_back(name);
        if (onWork) onWork();
    }
    std::int32_t getWorkerPriority() override { return 0; }
    std::int32_t getWorkInterval() override
    {
        ++intervalAsked;
        return interval;
    }
    void attached(IWorkerManager* manager) override { attachedTo.push_back(manager); }
    void detached(IWorkerManager* manager) override { detachedFrom.push_back(manager); }

    std::string name;
    std::int32_t interval;
    std::vector<std::string>* log;
    std::function<void()> onWork;
    int intervalAsked = 0;
    std::vector<IWorkerManager*> attachedTo;
    std::vector<IWorkerManager*> detachedFrom;
};

// A manager that counts what it is told about other managers' intervals.
class CountingManager : public CWorkerManager
{
public:
    void workIntervalChanged(IWorkerManager* changed) override
    {
        ++told;
        CWorkerManager::workIntervalChanged(changed);
    }
    int told = 0;
};

TEST(WorkerManager, IntervalIsTheGreatestCommonDivisorOfThePeriods)
{
    struct Case
    {
        std::vector<std::int32_t> periods;
        std::int32_t interval;
    };
    const Case cases[] = {
        {{40, 100}, 20},        {{3, 7}, 1},   {{}, 0},          {{0, 0}, 0}, {{0, 30}, 30}, {{50}, 50},
        {{60, 40, 0, 100}, 20}, {{1, 100}, 1}, {{12, 18, 9}, 3},
    };
    for (const Case& c : cases) {
        const P<CWorkerManager> manager = make<CWorkerManager>();
        for (std::int32_t period : c.periods) manager->addWorker(make<TestWorker>("w", period).get());
        EXPECT_EQ(manager->getWorkInterval(), c.interval) << ::testing::PrintToString(c.periods);
    }
    EXPECT_EQ(CWorkerManager::greatestCommonDivisor(0, 5), 1);

    // Recomputed on removal; the walk stops at 1 without asking the rest.
    const P<CWorkerManager> manager = make<CWorkerManager>();
    const P<TestWorker> fast = make<TestWorker>("fast", 40);
    const P<TestWorker> slow = make<TestWorker>("slow", 100);
    manager->addWorker(fast.get());
    manager->addWorker(slow.get());
    manager->removeWorker(fast.get());
    EXPECT_EQ(manager->getWorkInterval(), 100);
    const P<TestWorker> every = make<TestWorker>("every", 1);
    const P<CWorkerManager> stopping = make<CWorkerManager>();
    stopping->addWorker(every.get());
    const int asked = slow->intervalAsked;
    stopping->addWorker(slow.get());
    EXPECT_EQ(stopping->getWorkInterval(), 1);
    EXPECT_EQ(slow->intervalAsked, asked);
}

TEST(WorkerManager, WorkersRemovedDuringARoundAreNeitherSkippedNorRepeated)
{
    std::vector<std::string> log;
    const P<CWorkerManager> manager = make<CWorkerManager>();
    std::vector<P<TestWorker>> workers;
    for (const char* name : {"A", "B", "C", "D", "E"}) {
        workers.push_back(make<TestWorker>(name, 10, &log));
        manager->addWorker(workers.back().get());
    }
    TestWorker& b = *workers[1];
    TestWorker& c = *workers[2];
    TestWorker& d = *workers[3];
    TestWorker& e = *workers[4];
    // D goes and takes B, which has not run, with it; C takes E, which has.
    d.onWork = [&] {
        manager->removeWorker(&d);
        manager->removeWorker(&b);
    };
    c.onWork = [&] { manager->removeWorker(&e); };

    manager->doWork();
    EXPECT_EQ(log, (std::vector<std::string>{"E", "D", "C", "A"}));
    EXPECT_NE(manager->getLastRoundTime(), 0);
    for (const TestWorker* gone : {&b, &d, &e}) {
        EXPECT_EQ(gone->attachedTo, std::vector<IWorkerManager*>{manager.get()}) << gone->name;
        EXPECT_EQ(gone->detachedFrom, std::vector<IWorkerManager*>{manager.get()}) << gone->name;
    }
    EXPECT_TRUE(c.detachedFrom.empty());

    log.clear();
    c.onWork = nullptr;
    manager->doWork();
    EXPECT_EQ(log, (std::vector<std::string>{"C", "A"}));
}

TEST(WorkerManager, NestedManagersAndListenersHearOfIntervalChanges)
{
    std::vector<std::string> log;
    const P<CWorkerManager> parent = make<CWorkerManager>();
    const P<CWorkerManager> child = make<CWorkerManager>();
    const P<CountingManager> listener = make<CountingManager>();
    parent->addIntervalListener(listener.get());
    parent->addWorker(child.get());

    const P<TestWorker> every30 = make<TestWorker>("30", 30, &log);
    const P<TestWorker> every45 = make<TestWorker>("45", 45, &log);
    const P<TestWorker> every10 = make<TestWorker>("10", 10, &log);
    const int toldBefore = listener->told;
    child->addWorker(every30.get());
    EXPECT_EQ(parent->getWorkInterval(), 30);
    EXPECT_GT(listener->told, toldBefore);
    parent->addWorker(every45.get());
    EXPECT_EQ(parent->getWorkInterval(), 15);
    child->removeWorker(every30.get());
    EXPECT_EQ(parent->getWorkInterval(), 45);
    child->addWorker(every10.get());
    EXPECT_EQ(parent->getWorkInterval(), 5);

    // A round of the parent is a round of the child too.
    parent->doWork();
    EXPECT_EQ(log, (std::vector<std::string>{"45", "10"}));

    // Once detached, the child no longer reports to the parent.
    parent->removeWorker(child.get());
    EXPECT_EQ(parent->getWorkInterval(), 45);
    const int toldAfterRemoval = listener->told;
    child->addWorker(make<TestWorker>("7", 7).get());
    EXPECT_EQ(parent->getWorkInterval(), 45);
    EXPECT_EQ(listener->told, toldAfterRemoval);
    parent->removeIntervalListener(listener.get());
}

}  // namespace
