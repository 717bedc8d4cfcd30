#include "midi/network/NetworkSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "SimulatedNetwork.h"

using simulated::address;
using simulated::Bytes;
using simulated::Datagram;
using simulated::Network;
using simulated::Station;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Policy = MIDINetworkSession::ConnectionPolicy;

namespace {

constexpr SessionTime kSecond = kSessionSecond;

std::uint32_t only(const std::map<std::uint32_t, std::string>& peers) {
    EXPECT_THAT(peers, SizeIs(1));
    return peers.empty() ? 0 : peers.begin()->first;
}

/// Two that have joined; the first has invited.
struct Pair {
    Pair() {
        first.session->invite(address(2), network.now);
        network.run(kSecond);
    }
    void play(const Bytes& bytes) { first.session->send(only(first.peers), bytes, network.now); }
    Network network;
    Station& first = network.add(1, "First");
    Station& second = network.add(2, "Second");
};

}  // namespace

TEST(NetworkSession, joinsPlaysBothWaysAndSaysGoodbye) {
    Pair pair;
    EXPECT_EQ(pair.first.peers[only(pair.first.peers)], "Second");
    EXPECT_EQ(pair.second.peers[only(pair.second.peers)], "First");
    const Bytes chord = {0x93, 60, 100, 0x93, 64, 101, 0xF0, 1, 2, 3, 0xF7, 0xC3, 5};
    pair.play(chord);
    pair.second.session->send(only(pair.second.peers), chord, pair.network.now);
    pair.network.run(kSecond);
    const auto heard = ElementsAre(Bytes{0x93, 60, 100}, Bytes{0x93, 64, 101},
                                   Bytes{0xF0, 1, 2, 3, 0xF7}, Bytes{0xC3, 5});
    EXPECT_THAT(pair.second.messages, heard);
    EXPECT_THAT(pair.first.messages, heard);
    pair.network.run(3600 * kSecond);  // clock exchanges alone keep it alive
    pair.first.session->disconnect(only(pair.first.peers), pair.network.now);
    pair.network.run(kSecond);
    for (const Station* station : {&pair.first, &pair.second}) {
        EXPECT_THAT(station->peers, IsEmpty());
        EXPECT_EQ(station->heldAtLeaving, 0u);
        EXPECT_EQ(station->messages.back(), (Bytes{0x83, 64, 64}));
    }
}

// Every key is right whenever the wire has been quiet for a while, and in the end none is held.
TEST(NetworkSession, aLossyWireLeavesEveryNoteRight) {
    for (const unsigned seed : {1u, 2u, 3u, 5u}) {
        SCOPED_TRACE(seed);
        Pair pair;
        std::mt19937 random(seed);
        pair.network.fate = [&random] {
            std::vector<SessionTime> arrivals;
            for (int copies = random() % 10 < 3   ? 0
                              : random() % 10 < 2 ? 2
                                                  : 1;
                 copies > 0; --copies)
                arrivals.push_back(1'000'000 + random() % 30'000'000);
            return arrivals;
        };
        std::set<std::tuple<std::uint32_t, int, int>> held;
        const std::uint32_t atSecond = only(pair.second.peers);
        for (int step = 0; step < 4000; ++step) {
            const auto channel = std::uint8_t(random() % 3),
                       note = std::uint8_t(40 + random() % 20);
            const auto key = std::tuple(atSecond, int(channel), int(note));
            const bool on = !held.contains(key);
            pair.play({std::uint8_t((on ? 0x90 : 0x80) | channel), note, 100});
            on ? void(held.insert(key)) : void(held.erase(key));
            pair.network.run(random() % 20'000'000);
            if (step % 100 == 99) {
                pair.network.run(8 * kSecond);
                ASSERT_EQ(pair.second.held, held) << step;
            }
        }
        for (const auto& [peer, channel, note] : held)
            pair.play({std::uint8_t(0x80 | channel), std::uint8_t(note), 64});
        pair.network.run(8 * kSecond);
        EXPECT_THAT(pair.second.held, IsEmpty());
        EXPECT_THAT(pair.second.peers, SizeIs(1));
    }
}
