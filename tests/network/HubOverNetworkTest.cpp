#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "QrMidi.h"
#include "RawPeer.h"
#include "midi/network/NetworkMidi.h"
#include "notifications/NotificationCentre.h"

namespace {

/// Turns the main loop until that is so, for at most twenty seconds.
bool turnUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition() && std::chrono::steady_clock::now() < end) {
        RunLoop::main().turn();
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return condition();
}

struct Player : QrMidiDelegate, QrMidiSourceDelegate {
    void sourceAdded(QrMidi&, QrMidiSource& source) override { source.addDelegate(*this); }
    void midiReceived(QrMidiSource&, const MIDIPacketList& list) override {
        messages += list.numPackets;
    }
    std::atomic<unsigned> messages{0};
};

TEST(HubOverNetworkTest, aPeerIsASourceAndADestinationForAsLongAsItTakesPart) {
    MidiBackends::use({[] { return std::make_shared<NetworkMidi>(); }});
    int changes = 0;
    const auto token = NotificationCentre::defaultCentre().addObserver(kMIDINetworkSessionChanged,
                                                                       [&changes] { ++changes; });
    MIDINetworkSession& session = MIDINetworkSession::defaultSession();
    UserDefaults defaults("");
    RawPeer peer;
    {
        QrMidi hub(defaults);
        Player player;
        hub.setDelegate(&player);
        EXPECT_FALSE(hub.networkEnabled());
        hub.setNetworkEnabled(true);
        EXPECT_TRUE(hub.networkEnabled());
        EXPECT_EQ(session.connectionPolicy(), MIDINetworkSession::ConnectionPolicy::anyone);
        ASSERT_TRUE(turnUntil([&] { return session.port() != 0; }));
        ASSERT_TRUE(peer.join(session.port(), "tablet"));
        ASSERT_TRUE(turnUntil([&] { return hub.numberOfConnections() == 2; }));
        EXPECT_EQ(hub.sources()[0]->name(), "tablet");
        EXPECT_TRUE(hub.sources()[0]->isNetworkSession());
        EXPECT_TRUE(hub.destinations()[0]->isNetworkSession());
        ASSERT_TRUE(turnUntil([&] { return changes >= 2; }));
        peer.play({0x90, 60, 1});
        EXPECT_TRUE(turnUntil([&] { return player.messages == 1; }));
        peer.goodbye();
        EXPECT_TRUE(turnUntil([&] { return hub.numberOfConnections() == 0; }));
        EXPECT_EQ(player.messages, 2u) << "its release came before it went";
        ASSERT_TRUE(peer.join(session.port(), "tablet"));
        ASSERT_TRUE(turnUntil([&] { return hub.numberOfConnections() == 2; }));
    }
    EXPECT_EQ(session.port(), 0) << "closed with the last client";
    NotificationCentre::defaultCentre().removeObserver(token);
}

}  // namespace
