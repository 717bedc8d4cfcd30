#include "BackgroundWorker.h"

#include <gmock/gmock.h>

#include <vector>

#include "DisplayClock.h"
#include "ReusePool.h"

namespace {

using testing::ElementsAre;
using testing::Pair;

/// Waits for the test, or until it is cancelled.
class Job : public BackgroundWorkerCancellableTask {
  public:
    struct Life {
        std::atomic<bool> mayEnd{false}, runs{false};
        std::atomic<std::thread::id> freedOn{};
    };
    Job(int id, std::shared_ptr<Life> life) : number(id), m_life(std::move(life)) {}
    ~Job() override { m_life->freedOn = std::this_thread::get_id(); }
    void doBackgroundWork() override {
        m_life->runs = true;
        while (!m_life->mayEnd && !backgroundWorkCancelled())
            std::this_thread::yield();
    }
    const int number;

  private:
    std::shared_ptr<Life> m_life;
};

struct Plain : BackgroundWorkerTask {
    void doBackgroundWork() override {}
};

struct BackgroundWorkerTest : testing::Test, BackgroundWorkerDelegate {
    void task(BackgroundWorker& from, const std::shared_ptr<BackgroundWorkerTask>& task,
              bool finished) override {
        EXPECT_EQ(&from, worker.get());
        EXPECT_EQ(std::this_thread::get_id(), main);
        const auto* job = dynamic_cast<Job*>(task.get());
        reports.emplace_back(job ? job->number : -1, finished);
    }
    std::shared_ptr<Job::Life> add(int number, bool mayEnd) {
        auto life = std::make_shared<Job::Life>();
        life->mayEnd = mayEnd;
        worker->addTask(std::make_shared<Job>(number, life));
        return life;
    }

    DisplayClock& clock = DisplayClock::install();
    std::thread::id main = std::this_thread::get_id();
    std::vector<std::pair<int, bool>> reports;
    std::unique_ptr<BackgroundWorker> worker = std::make_unique<BackgroundWorker>();
};

}  // namespace

TEST_F(BackgroundWorkerTest, reportsInOrderAndCancelsWhatRunsAndWhatWaits) {
    worker->setDelegate(this);
    worker->waitForAllTasks();
    const auto first = add(1, false);
    while (!first->runs)
        std::this_thread::yield();
    worker->addTask(std::make_shared<Plain>());
    const auto second = add(2, false);
    worker->cancelAllTasks();
    const auto life = std::make_shared<Job::Life>();
    const auto again = std::make_shared<Job>(3, life);
    again->setBackgroundWorkCancelled(true);  // of its last time
    life->mayEnd = true;
    worker->addTask(again);
    worker->waitForAllTasks();
    EXPECT_TRUE(second->runs);
    EXPECT_THAT(reports, ElementsAre());  // not before the main thread turns to it
    RunLoop::main().turn();
    EXPECT_THAT(reports,
                ElementsAre(Pair(1, false), Pair(-1, true), Pair(2, false), Pair(3, true)));
    EXPECT_EQ(first->freedOn, main);
    EXPECT_EQ(second->freedOn, main);
}

// Nothing is heard any more, nobody waits, and every task is let go of on this thread: the one that
// runs and those that never will.
TEST_F(BackgroundWorkerTest, shutsDownWhileBusyAndWhileIdle) {
    for (int round = 0; round < 300; ++round) {
        worker->setDelegate(this);
        std::vector<std::shared_ptr<Job::Life>> lives;
        for (int i = 0; i < round % 4; ++i)
            lives.push_back(add(i, false));
        if (round % 2 && !lives.empty())
            clock.until([&] { return lives.front()->runs.load(); });
        worker->setDelegate(nullptr);
        worker->shutdown();
        worker->waitForAllTasks();
        worker = std::make_unique<BackgroundWorker>();
        for (const auto& life : lives) {
            clock.until([&] { return life->freedOn.load() != std::thread::id(); });
            ASSERT_EQ(life->freedOn, main);
        }
    }
    EXPECT_TRUE(reports.empty());
}

TEST(ReusePool, keepsNoMoreThanAreWanted) {
    struct Maker : ReusePoolDelegate<int> {
        std::shared_ptr<int> reusePoolNeedsItem(ReusePool<int>&) override {
            return std::make_shared<int>(++made);
        }
        void cleanItem(ReusePool<int>&, int& item) override { item = 0; }
        int made = 0;
    } maker;
    ReusePool<int> pool(maker);
    pool.putIfWanted(std::make_shared<int>(9));
    EXPECT_EQ(pool.count(), 0u);
    pool.setWantedThreshold(3);
    for (int i = 0; i < 5; ++i)
        pool.putIfWanted(std::make_shared<int>(9));
    EXPECT_EQ(pool.count(), 3u);
    pool.put(std::make_shared<int>(9));
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(*pool.take(), 0);
    EXPECT_EQ(*pool.take(), 1);  // a new one is not cleaned
    pool.put(std::make_shared<int>(9));
    pool.flush();
    EXPECT_EQ(*pool.take(), 2);
}
