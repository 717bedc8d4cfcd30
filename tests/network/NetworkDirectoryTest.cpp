#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "Contents.h"
#include "Ear.h"
#include "Process.h"
#include "ScratchFolder.h"
#include "SystemBus.h"

namespace {

/// A bus of our own, and on it the daemon that announces and finds services.
class NetworkDirectoryTest : public ::testing::Test {
  protected:
    NetworkDirectoryTest() { m_bus.start(); }

    /// Whether it stays: it needs rights that not every account has, and a machine has but one.
    bool startDaemon() {
        m_daemon =
            std::make_unique<Process>(std::vector<std::string>{"avahi-daemon", "--no-drop-root",
                                                               "--no-chroot", "--no-rlimits"},
                                      m_log);
        for (int i = 0; i < 500 && !says("Server startup complete"); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return says("Server startup complete");
    }
    bool says(const char* what) const { return contentsOf(m_log).find(what) != std::string::npos; }
    void endDaemon() {
        m_daemon->terminate();
        std::filesystem::remove(m_log);
    }

    static bool finds(Ear& ear, const std::string& name) {
        return ear.waitFor([&] {
            const auto found = ear.session().found();
            return name.empty() ? found.empty() : found.size() == 1 && found[0].name == name;
        });
    }

    ScratchFolder m_scratch;
    const std::string m_log = m_scratch.file("daemon.log");
    SystemBus m_bus{m_scratch.file("bus")};
    std::unique_ptr<Process> m_daemon;
};

TEST_F(NetworkDirectoryTest, sessionsFindOneAnotherWheneverTheDaemonIsThere) {
    const std::string name = "Ombrix " + std::to_string(getpid());
    Ear first(name);
    ASSERT_NE(first.port(), 0) << "open without anybody who announces it";
    if (!startDaemon())
        GTEST_SKIP() << "needs avahi-daemon, and rights to run it while no other one does";
    auto second = std::make_unique<Ear>(name);
    ASSERT_TRUE(finds(first, name + " #2")) << "two cannot have one name";
    ASSERT_TRUE(finds(*second, name)) << "and neither finds itself";
    EXPECT_EQ(second->session().localName(), name + " #2");
    endDaemon();
    EXPECT_TRUE(finds(first, ""));
    ASSERT_TRUE(startDaemon());
    ASSERT_TRUE(finds(first, name + " #2"));
    first.session().connect(first.session().found()[0].address);
    EXPECT_TRUE(second->waitFor([&] { return second->sources() == 1; }));
    EXPECT_TRUE(finds(first, "")) << "whoever takes part is not offered";
    second.reset();
    EXPECT_TRUE(first.waitFor([&] { return first.sources() == 0; }));
    EXPECT_TRUE(finds(first, "")) << "nor who has gone";
}

}  // namespace
