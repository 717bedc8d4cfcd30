// The watch that other tests rely on: each forbidden thing is caught, and nothing else is.

#include "RenderWatch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdlib>
#include <functional>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <thread>

#include "audiounits/RenderScope.h"
#include "handoff/VoiceLock.h"

namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

// Keeps the compiler from leaving out what seems to be of no use.
void keep(void* pointer) {
    asm volatile("" : : "r"(pointer) : "memory");
}

class RenderWatchTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!RenderWatch::working())
            GTEST_SKIP() << "a sanitizer is in the way";
    }

    // What the watch says of a render that does this.
    template <typename Action>
    std::vector<std::string> violationsOf(Action action) {
        RenderWatch watch;
        {
            RenderScope render;
            action();
        }
        EXPECT_EQ(watch.renders(), 1u);
        return watch.violations();
    }

    void* m_memory = nullptr;
    std::mutex m_mutex;
    std::shared_mutex m_sharedMutex;
    std::condition_variable m_condition;
};

}  // namespace

TEST_F(RenderWatchTest, catchesMemoryTakenAndGivenBack) {
    // Taking memory may call the system as well, so each is looked for among what was seen.
    const auto has = [](const char* what) { return Contains(StartsWith(what)); };
    EXPECT_THAT(violationsOf([&] { keep(m_memory = std::malloc(10)); }), has("malloc"));
    EXPECT_THAT(violationsOf([&] { keep(m_memory = std::realloc(m_memory, 99)); }), has("realloc"));
    EXPECT_THAT(violationsOf([&] { std::free(m_memory); }), has("free"));
    EXPECT_THAT(violationsOf([&] { keep(m_memory = std::calloc(3, 10)); }), has("calloc"));
    std::free(m_memory);
    EXPECT_THAT(violationsOf([&] { keep(m_memory = aligned_alloc(64, 128)); }),
                has("aligned_alloc"));
    std::free(m_memory);
    EXPECT_THAT(violationsOf([&] { (void)!posix_memalign(&m_memory, 64, 128); }),
                has("posix_memalign"));
    std::free(m_memory);
    EXPECT_THAT(violationsOf([] { keep(std::make_unique<int>(3).get()); }),
                AllOf(has("malloc"), has("free")));
}

TEST_F(RenderWatchTest, catchesLocksAndSignals) {
    EXPECT_THAT(violationsOf([&] { std::lock_guard guard(m_mutex); }),
                ElementsAre(StartsWith("pthread_mutex_lock")));
    EXPECT_THAT(violationsOf([&] { std::unique_lock guard(m_mutex, std::try_to_lock); }),
                ElementsAre(StartsWith("pthread_mutex_trylock")));
    EXPECT_THAT(violationsOf([&] { std::shared_lock guard(m_sharedMutex); }),
                ElementsAre(StartsWith("pthread_rwlock_rdlock")));
    EXPECT_THAT(violationsOf([&] { m_condition.notify_one(); }),
                ElementsAre(StartsWith("pthread_cond_signal")));
}

TEST_F(RenderWatchTest, catchesWritingAndSleeping) {
    EXPECT_EQ(violationsOf([] { (void)!write(-1, "", 1); }).size(), 1u);
    EXPECT_EQ(violationsOf([] { std::this_thread::sleep_for(std::chrono::nanoseconds(1)); }).size(),
              1u);
}

TEST_F(RenderWatchTest, catchesAnySystemCallAndLetsItThrough) {
    if (!RenderWatch::trapsSystemCalls())
        GTEST_SKIP() << "this kernel cannot";
    pid_t parent = 0;
    EXPECT_THAT(violationsOf([&] { parent = getppid(); }), ElementsAre(StartsWith("system call")));
    EXPECT_EQ(parent, getppid());
}

TEST_F(RenderWatchTest, watchesEveryThreadAndOnlyRenders) {
    RenderWatch watch;
    std::thread([] {
        keep(std::make_unique<int>(1).get());
        {
            RenderScope render;
            keep(std::make_unique<int>(2).get());
        }
        keep(std::make_unique<int>(3).get());
    }).join();
    EXPECT_EQ(watch.renders(), 1u);
    EXPECT_THAT(watch.violations(), ElementsAre(StartsWith("malloc"), StartsWith("free")));
}

TEST_F(RenderWatchTest, allowsTheVoicesLocksEvenWhenTheyWait) {
    VoiceLock lock;
    RenderWatch watch;
    int value = 0;
    std::thread other([&] {
        for (int i = 0; i < 20000; ++i) {
            std::lock_guard guard(lock);
            ++value;
        }
    });
    for (int i = 0; i < 20000; ++i) {
        RenderScope render;
        std::lock_guard guard(lock);
        ++value;
    }
    other.join();
    EXPECT_EQ(value, 40000);
    EXPECT_EQ(watch.renders(), 20000u);
    EXPECT_THAT(watch.violations(), IsEmpty());
}
