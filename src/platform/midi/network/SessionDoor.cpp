#include "midi/network/SessionDoor.h"

using Policy = MIDINetworkSession::ConnectionPolicy;

namespace {

constexpr SessionTime kNewPeerEvery = kSessionSecond;

}  // namespace

SessionDoor::Verdict SessionDoor::knock(const NetworkAddress& from, const SessionPacket& packet,
                                        SessionTime now) {
    if (m_policy == Policy::noOne || m_refused.holds(from, now))
        return Verdict::refuse;
    if (m_policy == Policy::hostsInContactsList && !m_host.isContact(from))
        return knockToAsk(from, packet, now);
    return m_newcomers.holds(from, now) ? Verdict::ignore : Verdict::admit;
}

SessionDoor::Verdict SessionDoor::knockToAsk(const NetworkAddress& from,
                                             const SessionPacket& packet, SessionTime now) {
    if (m_asks.knows(from)) {
        m_asks.repeat(from, packet.ssrc, packet.token, now);
        return Verdict::ignore;
    }
    if (m_newcomers.holds(from, now))
        return Verdict::ignore;
    if (m_asks.isFull())
        return Verdict::refuse;
    hasAdmitted(from, now);
    return Verdict::ask;
}

void SessionDoor::hasAdmitted(const NetworkAddress& from, SessionTime now) {
    m_newcomers.hold(from, now, now + kNewPeerEvery);
}

void SessionDoor::hasRefused(const NetworkAddress& from, SessionTime now) {
    m_refused.hold(from, now, now + AskList::kPatience);
}
