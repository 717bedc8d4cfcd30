#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <tuple>

#include "midi/MidiMessages.h"
#include "midi/network/ExclusiveJoiner.h"
#include "midi/network/NetworkSession.h"
#include "midi/network/PlainName.h"
#include "text/UnicodeText.h"

/// A host that aborts as soon as a session breaks one of its promises.
class NetworkChecks final : public NetworkSessionHost {
  public:
    static void check(bool holds) {
        if (!holds)
            std::abort();
    }

    void send(SessionPort, const NetworkAddress& to,
              std::span<const std::uint8_t> datagram) override {
        check(isNear(to));  // silence to all others
        check(datagram.size() >= 12 && datagram.size() <= OutgoingStream::kLongestDatagram);
    }
    bool isNear(const NetworkAddress& address) override { return address.ip[15] < 200; }
    bool isContact(const NetworkAddress& address) override { return address.ip[15] % 2 == 0; }

    void peerJoined(std::uint32_t peer, const std::string& name, const NetworkAddress&) override {
        checkName(name);
        check(peers.insert(peer).second && peers.size() <= NetworkSession::kMostPeers);
    }
    void peerLeft(std::uint32_t peer) override {
        check(peers.erase(peer) == 1);
        const auto note = held.lower_bound({peer, 0, 0});
        check(note == held.end() || std::get<0>(*note) != peer);
    }
    void asked(std::uint32_t peer, const std::string& name, const NetworkAddress&) override {
        checkName(name);
        check(asks.insert(peer).second && asks.size() <= AskList::kMost);
    }
    void askEnded(std::uint32_t peer) override { check(asks.erase(peer) == 1); }
    void inviteFailed(const NetworkAddress&, const std::string& why) override {
        check(!why.empty());
    }
    void received(std::uint32_t peer, SessionTime, std::span<const std::uint8_t> message) override {
        check(peers.contains(peer));
        checkMessage(message);
        const int kind = message[0] >> 4;
        if (kind == 9 && message[2] != 0)
            held.emplace(peer, message[0] & 0x0F, message[1]);
        else if (kind == 8 || kind == 9)
            held.erase({peer, message[0] & 0x0F, message[1]});
    }

    std::set<std::uint32_t> peers, asks;
    std::set<std::tuple<std::uint32_t, int, int>> held;

  private:
    static void checkName(const std::string& name) {
        check(!name.empty() && name.size() <= kLongestPeerName);
        check(UnicodeText::isUtf8(name) && !UnicodeText::hasControls(name));
    }
    /// Whole, with its status, and nothing but data bytes behind it.
    static void checkMessage(std::span<const std::uint8_t> message) {
        check(!message.empty() && message.size() <= ExclusiveJoiner::kLongest);
        const bool exclusive = message[0] == 0xF0;
        check(message[0] >= 0x80 && message[0] != 0xF7);
        check(exclusive ? message.back() == 0xF7 : message.size() == 1 + midiDataBytes(message[0]));
        const auto data = message.subspan(1, message.size() - 1 - exclusive);
        check(std::ranges::all_of(data, [](std::uint8_t byte) { return byte < 0x80; }));
    }
};
