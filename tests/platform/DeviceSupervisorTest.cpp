#include "audiounits/devices/DeviceSupervisor.h"

#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <random>

#include "FakeDevice.h"

namespace {

using std::chrono::milliseconds;
constexpr const char* kAbsence = "nothing there";
const std::string kSaid = "ombrix: nothing there\n";

class DeviceSupervisorTest : public testing::Test {
  protected:
    std::shared_ptr<FakeServer> server(const std::string& name) {
        auto server = std::make_shared<FakeServer>();
        server->name = name;
        return server;
    }
    static DeviceSupervisor::Maker maker(std::shared_ptr<FakeServer> server) {
        return [server] { return std::make_shared<FakeDevice>(server); };
    }
    bool comesTo(const std::string& name) {
        for (int i = 0; i < 30000; ++i) {
            if (m_supervisor.info().name == name)
                return true;
            std::this_thread::sleep_for(milliseconds(1));
        }
        return false;
    }
    void stopAndCheck() {
        m_supervisor.stop();
        m_client.expectSilence(true);
        std::this_thread::sleep_for(milliseconds(5));
        EXPECT_EQ(m_client.faults(), 0u);
        m_client.expectSilence(false);
        m_client.restart();
    }
    void TearDown() override { stopAndCheck(); }

    std::shared_ptr<FakeServer> m_first = server("first");
    std::shared_ptr<FakeServer> m_second = server("second");
    std::shared_ptr<FakeServer> m_clock = server("clock");
    StrictClient m_client;
    DeviceSupervisor m_supervisor{{{maker(m_first), maker(m_second)}, maker(m_clock), "", kAbsence},
                                  {milliseconds(2), milliseconds(10), 30, milliseconds(300)}};
};

TEST_F(DeviceSupervisorTest, theFirstThatWorksIsTakenAndTheClockNotEvenStarted) {
    m_supervisor.start(m_client, false);
    EXPECT_EQ(m_supervisor.info().name, "first");
    EXPECT_TRUE(m_client.playsOn());
    EXPECT_EQ(m_client.heard(), 0u);
    stopAndCheck();
    m_first->present = false;
    m_supervisor.start(m_client, true);
    EXPECT_EQ(m_supervisor.info().name, "second");
    EXPECT_TRUE(m_client.playsOn());
    EXPECT_GT(m_client.heard(), 0u);
    EXPECT_EQ(m_clock->starts, 0);
}

TEST_F(DeviceSupervisorTest, theUserIsToldOnceAndADeviceTakenWhenItAppears) {
    testing::internal::CaptureStderr();
    m_first->present = m_second->present = false;
    using Presence = AudioDeviceState::Presence;
    EXPECT_EQ(m_supervisor.state().presence, Presence::starting);
    m_supervisor.start(m_client, false);
    EXPECT_EQ(m_supervisor.state(), (AudioDeviceState{Presence::absent, "", kAbsence, 0}));
    for (unsigned i = 0; i < 3; ++i) {
        EXPECT_TRUE(comesTo("clock"));
        EXPECT_TRUE(m_client.playsOn());
        m_second->present = m_second->alive = true;
        EXPECT_TRUE(comesTo("second"));
        EXPECT_EQ(m_supervisor.state(), (AudioDeviceState{Presence::playing, "second", "", i}));
        EXPECT_TRUE(m_client.playsOn());
        m_second->present = m_second->alive = false;
    }
    EXPECT_TRUE(comesTo("clock"));
    EXPECT_EQ(m_supervisor.state(), (AudioDeviceState{Presence::lost, "second", "", 3}));
    EXPECT_GE(m_supervisor.info().xruns, 4u) << "those of earlier devices count too";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), kSaid);
}

TEST_F(DeviceSupervisorTest, aBetterDeviceThatWasLostIsTakenBack) {
    m_supervisor.start(m_client, false);
    m_first->present = m_first->alive = false;
    EXPECT_TRUE(comesTo("second"));
    EXPECT_TRUE(m_client.playsOn());
    m_first->present = m_first->alive = true;
    EXPECT_TRUE(comesTo("first"));
    EXPECT_TRUE(m_client.playsOn());
}

TEST_F(DeviceSupervisorTest, aDeviceThatFallsSilentIsLeftAndOneThatNeverCallsNotTaken) {
    testing::internal::CaptureStderr();
    m_second->present = false;
    m_supervisor.start(m_client, false);
    m_first->silent = true;
    EXPECT_TRUE(comesTo("clock"));
    EXPECT_TRUE(m_client.playsOn());
    const int starts = m_first->starts;
    while (m_first->starts < starts + 2)
        EXPECT_EQ(m_supervisor.info().name, "clock");
    m_first->silent = false;
    EXPECT_TRUE(comesTo("first"));
    testing::internal::GetCapturedStderr();
}

TEST_F(DeviceSupervisorTest, aDeviceThatHangsHoldsUpNobody) {
    m_supervisor.start(m_client, false);
    m_first->hanging = true;
    m_first->alive = false;
    EXPECT_TRUE(comesTo("clock"));
    EXPECT_TRUE(m_client.playsOn());
    m_first->hanging = false;
    m_first->alive = true;
    EXPECT_TRUE(comesTo("first"));
    m_first->hanging = true;
    stopAndCheck();
    m_first->hanging = false;
}

// Devices appear, die, fall silent and hang at random, while the program starts and stops.
TEST_F(DeviceSupervisorTest, noStormLetsTwoThreadsInOrAnyAfterTheStop) {
    constexpr unsigned kSeed = 20260;
    std::cout << "seed " << kSeed << '\n';
    testing::internal::CaptureStderr();
    std::atomic<bool> storming{true};
    std::thread storm([&] {
        std::mt19937 random(kSeed);
        const std::shared_ptr<FakeServer> servers[] = {m_first, m_second};
        while (storming) {
            FakeServer& struck = *servers[random() % 2];
            std::atomic<bool>* const switches[] = {&struck.present, &struck.alive, &struck.silent,
                                                   &struck.hanging};
            *switches[random() % 4] = random() % 2 == 0;
            std::this_thread::sleep_for(milliseconds(random() % 4));
        }
    });
    for (int i = 0; i < 12; ++i) {
        m_supervisor.start(m_client, i % 2 == 0);
        for (int more = 0; more < 5; ++more)
            EXPECT_TRUE(m_client.playsOn());
        stopAndCheck();
    }
    storming = false;
    storm.join();
    for (const auto& server : {m_first, m_second})
        server->hanging = false;
    testing::internal::GetCapturedStderr();
}

}  // namespace
