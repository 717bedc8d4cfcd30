#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "Contents.h"
#include "Ear.h"
#include "Process.h"
#include "RawPeer.h"
#include "ScratchFolder.h"

namespace {

using ::testing::Contains;
using ::testing::StartsWith;

/// Somebody else's session, in either role: plays 60 down, 64 down, 60 up, and holds 64.
class ForeignPeerTest : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!std::filesystem::exists(OMBRIX_PEERS "/node_modules/rtpmidi") ||
            runProgram({"node", "--version"}) != 0)
            GTEST_SKIP() << "needs node, and the package that ./test installs if there is npm";
        setenv("NODE_PATH", OMBRIX_PEERS "/node_modules", 1);
    }

    void run(const std::string& mode, std::uint16_t port) {
        m_peer = std::make_unique<Process>(
            std::vector<std::string>{"node", OMBRIX_PEER_SCRIPT, mode, std::to_string(port)},
            m_log);
    }

    bool says(const std::string& what) {
        return m_ear.waitFor([&] { return contentsOf(m_log).find(what) != std::string::npos; });
    }

    /// Both ways, once it takes part.
    void playBothWays() {
        ASSERT_TRUE(m_ear.waitFor([&] { return m_ear.sources() == 1; }));
        ASSERT_TRUE(m_ear.waitFor([&] {
            return m_ear.held() == std::set<int>{64} && m_ear.story().size() == 4;
        })) << ::testing::PrintToString(m_ear.story());
        EXPECT_THAT(m_ear.story(),
                    ::testing::ElementsAre("+foreign", "903c64", "904064", StartsWith("803c")));
        m_ear.play({0x90, 70, 33});
        m_ear.play({0x80, 70, 0});
        EXPECT_TRUE(says("heard 904621"));
        EXPECT_TRUE(says("heard 8046"));
    }

    bool silent() {
        return m_ear.waitFor([&] { return m_ear.held().empty() && m_ear.sources() == 0; });
    }

    ScratchFolder m_scratch;
    const std::string m_log = m_scratch.file("peer.log");
    Ear m_ear{"here"};
    std::unique_ptr<Process> m_peer;
};

TEST_F(ForeignPeerTest, invitesUsAndIsKilledWithAKeyDown) {
    run("connect", m_ear.port());
    playBothWays();
    m_peer->kill();
    EXPECT_TRUE(silent()) << "long before it counts as silent";
}

TEST_F(ForeignPeerTest, isInvitedAndSaysGoodbyeWithAKeyDown) {
    RawPeer place;
    const std::uint16_t port = place.port();
    place.vanish();
    run("listen", port);
    ASSERT_TRUE(says("ready"));
    m_ear.connect(port);
    playBothWays();
    m_peer->signal(SIGTERM);
    EXPECT_TRUE(silent());
}

}  // namespace
