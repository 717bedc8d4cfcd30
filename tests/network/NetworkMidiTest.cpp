#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "Ear.h"
#include "LossyProxy.h"
#include "RawPeer.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

bool joined(Ear& ear) {
    return ear.waitFor([&] { return ear.sources() == 1; });
}

bool silent(Ear& ear) {
    return ear.waitFor([&] { return ear.held().empty() && ear.sources() == 0; });
}

TEST(NetworkMidiTest, whoLeavesReleasesEverythingBeforeItsSourceGoes) {
    Ear ear("here");
    RawPeer peer;
    ASSERT_TRUE(peer.join(ear.port(), "there"));
    ASSERT_TRUE(joined(ear));
    const auto connections = ear.session().connections();
    ASSERT_EQ(connections.size(), 1u);
    EXPECT_EQ(connections[0].name, "there");
    EXPECT_EQ(connections[0].address, "127.0.0.1:" + std::to_string(peer.port()));
    peer.play({0x90, 60, 100, 0, 0x90, 64, 100});
    ASSERT_TRUE(ear.waitFor([&] { return ear.held().size() == 2; }));
    peer.goodbye();
    ASSERT_TRUE(silent(ear));
    const auto story = ear.story();
    ASSERT_EQ(story.size(), 6u);
    EXPECT_EQ(story[0], "+there");
    EXPECT_EQ(story[1], "903c64");
    EXPECT_EQ(story[2], "904064");
    EXPECT_THAT(story[3], ::testing::StartsWith("80"));
    EXPECT_EQ(story[5], "-there");
    EXPECT_THAT(ear.session().connections(), IsEmpty());
}

TEST(NetworkMidiTest, aPeerThatHasGoneWithoutAWordIsNoticedWhileItsNotesSound) {
    Ear ear("here");
    RawPeer peer;
    ASSERT_TRUE(peer.join(ear.port(), "there"));
    ASSERT_TRUE(joined(ear));
    peer.play({0x90, 60, 100});
    ASSERT_TRUE(ear.waitFor([&] { return ear.held().size() == 1; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    peer.vanish();
    EXPECT_TRUE(ear.waitFor([&] { return ear.held().empty(); }))
        << "nobody listens at its ports: its notes end long before it counts as silent";
    EXPECT_TRUE(silent(ear));
}

TEST(NetworkMidiTest, closingSaysGoodbyeAndOpeningAgainIsANewSession) {
    Ear here("here"), there("there");
    here.connect(there.port());
    ASSERT_TRUE(joined(here) && joined(there));
    here.play({0x90, 60, 1});
    ASSERT_TRUE(there.waitFor([&] { return there.held().size() == 1; }));
    here.session().setEnabled(false);
    EXPECT_TRUE(silent(there)) << "the other end hears the goodbye";
    EXPECT_TRUE(here.waitFor([&] { return here.session().port() == 0; }));
    here.session().setEnabled(true);
    here.connect(there.port());
    ASSERT_TRUE(joined(here) && joined(there)) << "an invitation waits for the session to open";
    here.play({0x90, 61, 1});
    ASSERT_TRUE(there.waitFor([&] { return there.held().size() == 1; }));
    here.stop();
    EXPECT_TRUE(silent(there));
}

TEST(NetworkMidiTest, whoAsksWaitsForThePlayerOnceOnly) {
    Ear ear("here");
    ear.session().setConnectionPolicy(MIDINetworkSession::ConnectionPolicy::hostsInContactsList);
    Ear asker("there");
    asker.connect(ear.port());
    ASSERT_TRUE(ear.waitFor([&] { return ear.session().requests().size() == 1; }));
    EXPECT_EQ(ear.sources(), 0u);
    EXPECT_EQ(ear.session().requests()[0].name, "there");
    ear.session().answer(ear.session().requests()[0].id, true);
    EXPECT_TRUE(joined(ear) && joined(asker));
    EXPECT_THAT(ear.session().requests(), IsEmpty());
    asker.session().disconnect(asker.session().connections()[0].id);
    ASSERT_TRUE(silent(ear) && silent(asker));
    asker.connect(ear.port());
    EXPECT_TRUE(joined(ear)) << "that host has been allowed in";
}

TEST(NetworkMidiTest, anInvitationToNobodyIsAProblemInOneLine) {
    Ear ear("here");
    RawPeer nobody;
    const std::uint16_t port = nobody.port();
    ear.port();  // open: it cannot have the other one any more
    nobody.vanish();
    EXPECT_THAT(ear.session().connect("127.0.0.1:70000"), ::testing::HasSubstr("no address"));
    ear.connect(port);
    EXPECT_TRUE(ear.waitFor([&] { return !ear.session().problem().empty(); }));
    EXPECT_EQ(ear.session().problem(),
              "Not connected to 127.0.0.1:" + std::to_string(port) + ". Nobody listens there.");
}

TEST(NetworkMidiTest, afterLossTheNextPacketPutsEveryNoteRight) {
    constexpr unsigned kSeed = 5;
    SCOPED_TRACE("seed " + std::to_string(kSeed));
    Ear here("here"), there("there");
    LossyProxy network(there.port(), kSeed);
    here.connect(network.port());
    ASSERT_TRUE(joined(here) && joined(there));
    std::mt19937 random(kSeed);
    for (int round = 0; round < 20; ++round) {
        network.setFaults({0.3, 0.1, 0.1});
        std::set<int> held = there.held();
        for (int i = 0; i < 40; ++i) {
            const int note = 40 + int(random() % 12);
            const bool down = random() % 2 == 0;
            here.play({std::uint8_t(down ? 0x90 : 0x80), std::uint8_t(note), 64});
            down ? void(held.insert(note)) : void(held.erase(note));
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        network.setFaults({});
        here.play({0xb0, 1, std::uint8_t(round)});
        ASSERT_TRUE(there.waitFor([&] { return there.held() == held; }))
            << "round " << round << ", " << network.lost() << " lost";
    }
    EXPECT_GT(network.lost(), 100u);
}

}  // namespace
