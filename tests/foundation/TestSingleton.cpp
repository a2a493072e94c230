#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <latch>
#include <thread>

#include "foundation/CObject.h"
#include "foundation/TSingleton.h"

using namespace fenn;

namespace {

std::atomic<int> builds{0};

P<CObject> buildSlowly()
{
    ++builds;
    // Long enough for the other threads to arrive while the object is built.
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    return make<CObject>();
}

TEST(Singleton, BuiltOnceForThreadsArrivingTogether)
{
    builds = 0;
    TSingleton<CObject> holder(&buildSlowly);
    constexpr int kThreads = 8;
    std::array<CObject*, kThreads> seen{};
    std::latch start(kThreads);
    {
        std::array<std::jthread, kThreads> threads;
        for (int i = 0; i < kThreads; ++i) {
            threads[static_cast<std::size_t>(i)] = std::jthread([&, i] {
                start.arrive_and_wait();
                seen[static_cast<std::size_t>(i)] = holder.get().get();
            });
        }
    }
    EXPECT_EQ(builds, 1);
    ASSERT_NE(seen[0], nullptr);
    for (CObject* object : seen) EXPECT_EQ(object, seen[0]);
    EXPECT_EQ(seen[0]->getReferenceCount(), 1);

    // Released with the others; the next caller builds a new one.
    const P<CObject> kept = holder.get();
    releaseSingletons();
    EXPECT_EQ(kept->getReferenceCount(), 1);
    const P<CObject> rebuilt = holder.get();
    EXPECT_EQ(builds, 2);
    ASSERT_NE(rebuilt, nullptr);
    EXPECT_NE(rebuilt.get(), kept.get());
    EXPECT_EQ(holder.get().get(), rebuilt.get());
    EXPECT_EQ(builds, 2);
}

TSingleton<CObject> inner([] { return make<CObject>(); });
TSingleton<CObject> outer([] { return P<CObject>(inner.get()); });

TEST(Singleton, FactoryMayAskForAnotherSingleton)
{
    EXPECT_EQ(outer.get().get(), inner.get().get());
}

}  // namespace
