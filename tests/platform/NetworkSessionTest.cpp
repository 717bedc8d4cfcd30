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

namespace {

/// A peer made by hand: it says what it is told to, and keeps what it is told.
class HandMade {
  public:
    HandMade(NetworkSession& session, Network& network, std::uint8_t host, std::uint32_t ssrc)
        : m_session(session), m_network(network), m_host(host), m_ssrc(ssrc) {}

    void say(SessionPort at, SessionCommand command, std::uint32_t token = 1,
             std::string_view name = "Hand") {
        const SessionPacket packet{
            .command = command, .token = token, .ssrc = m_ssrc, .name = name};
        raw(at, packet.written());
    }
    void raw(SessionPort at, const Bytes& bytes) {
        m_session.receive(at, from(at), bytes, m_network.now);
    }
    void knock(std::uint32_t token = 1) {
        say(SessionPort::control, SessionCommand::invitation, token);
    }
    void join(std::uint32_t token = 1) {
        knock(token);
        say(SessionPort::data, SessionCommand::invitation, token);
    }
    void midi(std::uint16_t sequence, const Bytes& commands) {
        Bytes bytes = {0x80, 0xE1};
        ByteWriter(bytes).u16(sequence).u32(0).u32(m_ssrc).u8(commands.size()).bytes(commands);
        raw(SessionPort::data, bytes);
    }

  private:
    NetworkAddress from(SessionPort at) const {
        return address(m_host, at == SessionPort::control ? 7000 : 7003);  // any two ports will do
    }
    NetworkSession& m_session;
    Network& m_network;
    std::uint8_t m_host;
    std::uint32_t m_ssrc;
};

/// One station, and the session commands that it has sent to each host.
struct Alone {
    Alone() {
        network.seen = [this](const Datagram& datagram) {
            if (const auto packet = SessionPacket::read(datagram.bytes))
                said[datagram.to.ip[15]].push_back(packet->command);
        };
    }
    HandMade peer(std::uint8_t host, std::uint32_t ssrc) {
        return {*station.session, network, host, ssrc};
    }
    std::map<int, std::vector<SessionCommand>> said;
    Network network;
    Station& station = network.add(1);
};

constexpr auto kOK = SessionCommand::accepted;
constexpr auto kNO = SessionCommand::refused;

}  // namespace

TEST(NetworkSession, admitsEightAndRefusesTheNinth) {
    Alone alone;
    for (std::uint8_t host = 2; host <= 10; ++host)
        alone.peer(host, host).join();
    EXPECT_THAT(alone.station.peers, SizeIs(8));
    EXPECT_THAT(alone.said[9], ElementsAre(kOK, kOK));
    EXPECT_THAT(alone.said[10], ElementsAre(kNO, kNO));
    alone.station.session->invite(address(11), alone.network.now);
    EXPECT_NE(alone.station.failed, "");
    alone.peer(2, 2).say(SessionPort::control, SessionCommand::goodbye);
    alone.peer(10, 10).join();
    EXPECT_THAT(alone.station.peers, SizeIs(8));
}

TEST(NetworkSession, aFloodOfInvitationsFromOneHostKeepsNobodyOut) {
    Alone alone;
    std::uint32_t stream = 100;
    for (int tick = 0; tick < 600; ++tick) {  // a minute
        for (int i = 0; i < 20; ++i)
            alone.peer(50, ++stream).knock();
        alone.network.run(kSecond / 10);
    }
    EXPECT_LE(std::ranges::count(alone.said[50], kOK), 61);
    for (std::uint8_t host = 2; host <= 8; ++host)
        alone.peer(host, host).join();
    EXPECT_THAT(alone.station.peers, SizeIs(7));
    alone.peer(200, 9).join();  // not on a subnet of ours
    alone.peer(200, 9).say(SessionPort::control, SessionCommand::clock);
    EXPECT_THAT(alone.said[200], IsEmpty());
    alone.network.run(6 * kSecond);  // the half-open ones are gone
    alone.peer(9, 9).join();
    EXPECT_THAT(alone.station.peers, SizeIs(8));
}

TEST(NetworkSession, aRepeatedInvitationIsAnsweredAndMakesNoSecondPeer) {
    Alone alone;
    HandMade peer = alone.peer(2, 7);
    peer.knock();
    peer.knock();
    peer.join();
    peer.join();
    EXPECT_THAT(alone.station.peers, SizeIs(1));
    EXPECT_THAT(alone.said[2], ElementsAre(kOK, kOK, kOK, kOK, kOK, kOK));
    peer.midi(1, {0x90, 60, 100});
    peer.join(2);  // it has begun again
    EXPECT_THAT(alone.station.held, IsEmpty());
    peer.midi(500, {0x90, 61, 100});
    EXPECT_THAT(alone.station.held, SizeIs(1));
    EXPECT_THAT(alone.station.peers, SizeIs(1));
}

TEST(NetworkSession, anInvitationComesToSomethingOrEnds) {
    Network network;
    Station& station = network.add(1);
    int invitations = 0;
    network.seen = [&](const Datagram& datagram) {
        const auto packet = SessionPacket::read(datagram.bytes);
        invitations += packet && packet->command == SessionCommand::invitation;
    };
    station.session->invite(address(2), network.now);
    network.run(20 * kSecond);
    EXPECT_EQ(invitations, 12);
    EXPECT_EQ(station.failed, "Nobody has answered.");
    station.session->invite(address(2), network.now);
    network.run(5 * kSecond);
    network.add(2);  // somebody comes late
    network.run(2 * kSecond);
    EXPECT_THAT(station.peers, SizeIs(1));
    for (const auto& [to, why] : {std::pair(address(3), "Nobody listens there."),
                                  std::pair(address(201), "It is not on a network"),
                                  std::pair(address(3, 65535), "A session needs two ports")}) {
        station.session->invite(to, network.now);
        station.session->unreachable(to.at(std::uint16_t(to.port + 1)), network.now);
        EXPECT_THAT(station.failed, testing::StartsWith(why));
    }
    network.add(4).session->setPolicy(Policy::noOne);
    station.session->invite(address(4), network.now);
    network.run(kSecond);
    EXPECT_EQ(station.failed, "It has refused.");
    EXPECT_THAT(station.peers, SizeIs(1));
}

TEST(NetworkSession, bothMayInviteAtOnce) {
    for (const SessionTime lead : {0, 500, 1500, 2500, 3500}) {
        Network network;
        Station &first = network.add(1), &second = network.add(2);
        for (int turn = 0; turn < 2; ++turn) {
            (turn == 0 ? second : first).session->invite(address(turn == 0 ? 1 : 2), network.now);
            network.run(lead);
        }
        network.run(30 * kSecond);
        EXPECT_EQ(first.failed + second.failed, "") << lead;
        first.session->send(only(first.peers), Bytes{0x90, 60, 1}, network.now);
        second.session->send(only(second.peers), Bytes{0x90, 60, 1}, network.now);
        network.run(kSecond);
        EXPECT_THAT(first.held, SizeIs(1)) << lead;
        EXPECT_THAT(second.held, SizeIs(1)) << lead;
    }
}

TEST(NetworkSession, thePolicySaysWhoMayJoin) {
    Alone alone;
    NetworkSession& session = *alone.station.session;
    session.setPolicy(Policy::noOne);
    alone.peer(2, 2).join();
    EXPECT_THAT(alone.said[2], ElementsAre(kNO, kNO));

    session.setPolicy(Policy::hostsInContactsList);
    alone.station.contacts = {3};
    alone.peer(3, 3).join();
    EXPECT_THAT(alone.station.peers, SizeIs(1));
    for (std::uint32_t stream = 20; stream < 24; ++stream)
        alone.peer(4, stream).knock();  // one request for each host
    alone.peer(5, 5).knock();
    EXPECT_THAT(alone.station.asks, SizeIs(2));
    EXPECT_THAT(alone.said[4], IsEmpty());
    const std::uint32_t four = alone.station.asks.begin()->first;
    const std::uint32_t five = alone.station.asks.rbegin()->first;
    session.answer(five, false, alone.network.now);
    alone.peer(5, 5).knock();  // it is not asked about again so soon
    EXPECT_THAT(alone.said[5], ElementsAre(kNO, kNO));
    session.answer(four, true, alone.network.now);
    alone.peer(4, 20).say(SessionPort::data, SessionCommand::invitation);
    EXPECT_THAT(alone.said[4], ElementsAre(kOK, kOK));
    EXPECT_TRUE(alone.station.peers.contains(four));
    EXPECT_THAT(alone.station.asks, IsEmpty());

    for (std::uint8_t host = 20; host < 40; ++host)
        alone.peer(host, host).knock();
    EXPECT_THAT(alone.station.asks, SizeIs(8));
    for (int i = 0; i < 29; ++i) {
        alone.network.run(kSecond);
        alone.peer(20, 20).knock();
    }
    alone.network.run(2 * kSecond);  // only the one that goes on asking still waits
    EXPECT_THAT(alone.station.asks, SizeIs(1));
    session.setPolicy(Policy::anyone);
    alone.peer(20, 20).join();
    EXPECT_THAT(alone.station.asks, IsEmpty());
    EXPECT_THAT(alone.station.peers, SizeIs(1));  // the others have long been silent
}

TEST(NetworkSession, whoeverLeavesLeavesNoNote) {
    struct {
        const char* what;
        std::function<void(Alone&, HandMade&)> end;
        SessionTime until;
    } const ways[] = {
        {"goodbye",
         [](Alone&, HandMade& peer) { peer.say(SessionPort::control, SessionCommand::goodbye); },
         0},
        {"its data port is closed",
         [](Alone& alone, HandMade&) {
             alone.station.session->unreachable(address(2, 7003), alone.network.now);
         },
         0},
        {"disconnected",
         [](Alone& alone, HandMade&) {
             alone.station.session->disconnect(only(alone.station.peers), alone.network.now);
         },
         0},
        {"closed", [](Alone& alone, HandMade&) { alone.station.session->close(alone.network.now); },
         0},
        {"silent", [](Alone&, HandMade&) {}, 25 * kSecond},
        {"a clock exchange, then silent",
         [](Alone& alone, HandMade& peer) {
             alone.network.run(20 * kSecond);
             peer.say(SessionPort::data, SessionCommand::clock);
         },
         25 * kSecond},
    };
    for (const auto& way : ways) {
        SCOPED_TRACE(way.what);
        Alone alone;
        HandMade peer = alone.peer(2, 7), stranger = alone.peer(3, 7), other = alone.peer(2, 8);
        peer.join();
        peer.midi(1, {0x95, 60, 100, 0, 0x96, 61, 100});
        stranger.midi(2, {0x85, 60, 0});  // the same stream from elsewhere, and another from there
        other.midi(2, {0x85, 60, 0});
        stranger.say(SessionPort::control, SessionCommand::goodbye);
        ASSERT_THAT(alone.station.held, SizeIs(2));
        way.end(alone, peer);
        if (way.until > 0) {
            alone.network.run(way.until - 1000);
            ASSERT_THAT(alone.station.held, SizeIs(2));
            alone.network.run(1000);
        }
        EXPECT_THAT(alone.station.peers, IsEmpty());
        EXPECT_EQ(alone.station.heldAtLeaving, 0u);
        EXPECT_THAT(alone.station.messages,
                    testing::IsSupersetOf({Bytes{0x85, 60, 64}, Bytes{0x86, 61, 64}}));
        const std::size_t heard = alone.station.messages.size();
        peer.midi(2, {0x90, 60, 100});
        EXPECT_THAT(alone.station.messages, SizeIs(heard));
    }
}

// Exchange 0 at once, then often, then every 10 s; 1 is answered by 2, and 2 by nobody. Feedback
// comes a second after something new.
TEST(NetworkSession, keepsTheClockAndTellsWhatItHasHeard) {
    Network network;
    std::map<int, int> exchanges;
    std::vector<SessionTime> asked, feedback;
    network.seen = [&](const Datagram& datagram) {
        const auto packet = SessionPacket::read(datagram.bytes);
        if (!packet)
            return;
        if (packet->command == SessionCommand::clock) {
            ++exchanges[packet->count];
            if (packet->count == 0)
                asked.push_back(network.now);
            if (packet->count == 2) {
                EXPECT_EQ(packet->times[0], sessionTicks(asked.back()));
                EXPECT_LE(packet->times[1], packet->times[2]);
            }
        }
        if (packet->command == SessionCommand::feedback)
            feedback.push_back(network.now);
    };
    Station &first = network.add(1), &second = network.add(2);
    const SessionTime start = network.now;
    first.session->invite(address(2), start);
    network.run(60 * kSecond);
    EXPECT_EQ(exchanges[0], 11);
    EXPECT_EQ(exchanges[1], 11);
    EXPECT_EQ(exchanges[2], 11);
    EXPECT_LT(asked[0] - start, kSecond / 100);
    EXPECT_EQ(asked.back() - asked[asked.size() - 2], 10 * kSecond);
    EXPECT_THAT(feedback, IsEmpty());
    const SessionTime played = network.now;
    first.session->send(only(first.peers), Bytes{0x90, 60, 1}, played);
    network.run(30 * kSecond);
    ASSERT_FALSE(feedback.empty());
    EXPECT_NEAR(double(feedback[0] - played), double(kSecond), double(kSecond) / 100);
    EXPECT_LE(feedback.size(), 3u);  // the repeated packets are new, too, but end soon
    EXPECT_THAT(second.held, SizeIs(1));
}

TEST(NetworkSession, namesArePlainTextOfAtMost63Bytes) {
    struct {
        std::string sent, shown;
    } const names[] = {
        {"Piano", "Piano"},
        {"", "Unknown name"},
        {"\x01\n\x7F", "Unknown name"},
        {"  \xE2\x80\xAE evil\xE2\x81\xA6\r\n", "evil"},
        {std::string(62, 'x') + "\xC3\xA4", std::string(62, 'x')},
        {std::string(61, 'x') + "\xC3\xA4y", std::string(61, 'x') + "\xC3\xA4"},
        {"a\xFF\xC0 b", "a\xEF\xBF\xBD\xEF\xBF\xBD b"},
        {std::string(60'000, '\x02'), "Unknown name"},
    };
    for (const auto& [sent, shown] : names) {
        Alone alone;
        HandMade peer = alone.peer(2, 7);
        peer.say(SessionPort::control, SessionCommand::invitation, 1, sent);
        peer.say(SessionPort::data, SessionCommand::invitation);
        EXPECT_EQ(alone.station.peers[only(alone.station.peers)], shown);
    }
}

// An exclusive message of any length up to the receiver's bound arrives whole; datagrams stay
// small enough never to be cut up on the way.
TEST(NetworkSession, longMessagesGoInPieces) {
    Pair pair;
    std::size_t longest = 0;
    pair.network.seen = [&](const Datagram& datagram) {
        longest = std::max(longest, datagram.bytes.size());
    };
    Bytes all;
    std::vector<Bytes> sent;
    for (const std::size_t length :
         {2u, 3u, 1370u, 1380u, 1382u, 1383u, 1384u, 1385u, 1386u, 1390u, 2800u, 8192u}) {
        Bytes message(length, 0x55);
        message.front() = 0xF0;
        message.back() = 0xF7;
        sent.push_back(message);
        all.insert(all.end(), message.begin(), message.end());
        sent.push_back({0x90, std::uint8_t(length % 128), 1});
        all.insert(all.end(), sent.back().begin(), sent.back().end());
    }
    Bytes tooLong(70'000, 0);
    tooLong.front() = 0xF0;
    tooLong.back() = 0xF7;
    all.insert(all.end(), tooLong.begin(), tooLong.end());
    pair.play(all);
    pair.network.run(kSecond);
    EXPECT_EQ(pair.second.messages, sent);
    EXPECT_LE(longest, 1400u);
    EXPECT_GT(longest, 1300u);
}
