#include "runloop/RunLoop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "runloop/Clock.h"

namespace {

using testing::ElementsAre;

class RunLoopTest : public testing::Test, TimeSource {
  protected:
    RunLoopTest() { Clock::setSource(this); }
    ~RunLoopTest() override { Clock::setSource(nullptr); }
    double now() noexcept override { return m_now; }

    RunLoop::Task says(char what) {
        return [this, what] { m_said += what; };
    }
    std::string turnAt(double now) {
        m_now = now;
        m_said.clear();
        m_loop.turn();
        return m_said;
    }

    RunLoop m_loop;
    double m_now = 100;
    std::string m_said;
};

}  // namespace

TEST_F(RunLoopTest, callsWhatIsDueInOrderAndOnce) {
    m_loop.callAfter(3, says('c'));
    m_loop.callAfter(1, says('a'));
    m_loop.callAfter(1, says('b'));
    m_loop.callAfter(0, says('0'));
    EXPECT_EQ(m_loop.nextDue(), 100);
    EXPECT_EQ(turnAt(100), "0");
    EXPECT_EQ(turnAt(100.999), "");
    EXPECT_EQ(turnAt(103), "abc");
    EXPECT_EQ(turnAt(1000), "");
    EXPECT_EQ(m_loop.nextDue(), std::numeric_limits<double>::infinity());
}

TEST_F(RunLoopTest, repeatsWithoutDriftOrCatchingUp) {
    m_loop.callEvery(1, says('x'));
    std::vector<double> called;
    for (const double now : {100.5, 101.3, 101.9, 102.1, 107.7, 107.9, 108.0})
        if (turnAt(now) == "x")
            called.push_back(now);
    EXPECT_THAT(called, ElementsAre(101.3, 102.1, 107.7, 108.0));
}

TEST_F(RunLoopTest, lateAdditionsWaitAndCancelledTasksAreNotCalled) {
    RunLoop::Token every = 0;
    RunLoop::Token victim = 0;
    every = m_loop.callEvery(1, [&] {
        m_said += 'e';
        m_loop.callAfter(0, says('n'));
        m_loop.callEvery(0.5, says('m'));
        m_loop.cancel(every);
        m_loop.cancel(victim);
        m_loop.cancel(12345);
    });
    victim = m_loop.callAfter(1.5, says('v'));
    EXPECT_EQ(turnAt(102), "e");
    EXPECT_EQ(turnAt(102), "n");
    EXPECT_EQ(turnAt(102.5), "m");
}
