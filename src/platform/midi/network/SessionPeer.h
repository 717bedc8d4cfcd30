#pragma once

#include <memory>
#include <string>

#include "midi/network/NetworkAddress.h"
#include "midi/network/OutgoingStream.h"
#include "midi/network/PeerInput.h"

/// One that takes part, or is about to.
struct SessionPeer {
    enum class Stage : std::uint8_t {
        invitingControl,  // ours is on its way to the control port,
        invitingData,     // then to the data port
        halfOpen,         // theirs has come to our control port, not yet to the data port
        joined,
    };

    std::uint32_t id = 0;
    Stage stage = Stage::halfOpen;
    bool weInvited = false;
    std::uint32_t token = 0;
    std::uint32_t ssrc = 0;  // not known while invitingControl
    std::string name{};
    NetworkAddress control{}, data{};

    SessionTime heard = 0;                     // at last; while halfOpen, at first
    SessionTime due = kNever;                  // of the next invitation or clock exchange of ours
    int round = 0;                             // of these
    SessionTime feedback = kNever;             // when to tell what has been heard
    std::unique_ptr<PeerInput> input{};        // while joined
    std::unique_ptr<OutgoingStream> output{};  // while joined

    bool isInviting() const {
        return stage == Stage::invitingControl || stage == Stage::invitingData;
    }
    bool isHalfOpen() const { return stage == Stage::halfOpen; }
    bool isJoined() const { return stage == Stage::joined; }
    bool is(const NetworkAddress& from, std::uint32_t stream) const {
        return stage != Stage::invitingControl && ssrc == stream && control.sameHost(from);
    }
};
