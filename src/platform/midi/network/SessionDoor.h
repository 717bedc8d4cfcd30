#pragma once

#include "midi/MidiNetworkSession.h"
#include "midi/network/AskList.h"
#include "midi/network/HostTimes.h"
#include "midi/network/SessionPacket.h"

/// Who may come in: the policy, one new peer per second and host, and those whom the player has
/// just refused.
class SessionDoor {
  public:
    enum class Verdict {
        admit,
        ask,     // the player; ask() then
        refuse,  // and say so
        ignore,  // it will try again, or waits already
    };

    explicit SessionDoor(NetworkSessionHost& host) : m_host(host) {}

    void setPolicy(MIDINetworkSession::ConnectionPolicy policy) { m_policy = policy; }
    Verdict knock(const NetworkAddress& from, const SessionPacket& packet, SessionTime now);
    /// Another one of that host has to wait.
    void hasAdmitted(const NetworkAddress& from, SessionTime now);
    /// It is not asked about again for a while.
    void hasRefused(const NetworkAddress& from, SessionTime now);
    AskList& asks() { return m_asks; }

  private:
    Verdict knockToAsk(const NetworkAddress& from, const SessionPacket& packet, SessionTime now);

    NetworkSessionHost& m_host;
    MIDINetworkSession::ConnectionPolicy m_policy = MIDINetworkSession::ConnectionPolicy::anyone;
    AskList m_asks{m_host};
    HostTimes m_newcomers;
    HostTimes m_refused;
};
