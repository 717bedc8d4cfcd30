#include "midi/network/AskList.h"

#include <algorithm>

template <typename Which>
void AskList::endIf(Which which) {
    std::erase_if(m_asks, [&](const Ask& ask) {
        if (!which(ask))
            return false;
        m_host.askEnded(ask.id);
        return true;
    });
}

bool AskList::knows(const NetworkAddress& host) const {
    return std::ranges::any_of(m_asks, [&](const Ask& ask) { return ask.control.sameHost(host); });
}

void AskList::add(Ask ask) {
    m_host.asked(ask.id, ask.name, ask.control);
    m_asks.push_back(std::move(ask));
}

void AskList::repeat(const NetworkAddress& from, std::uint32_t ssrc, std::uint32_t token,
                     SessionTime now) {
    for (Ask& ask : m_asks) {
        if (ask.ssrc != ssrc || !ask.control.sameHost(from))
            continue;
        ask.control = from;
        ask.token = token;
        ask.until = now + kPatience;
    }
}

std::optional<AskList::Ask> AskList::take(std::uint32_t id) {
    const auto ask = std::ranges::find(m_asks, id, &Ask::id);
    if (ask == m_asks.end())
        return std::nullopt;
    Ask taken = *ask;
    endIf([&](const Ask& one) { return one.id == id; });
    return taken;
}

void AskList::end(const NetworkAddress& from, std::uint32_t ssrc) {
    endIf([&](const Ask& ask) { return ask.ssrc == ssrc && ask.control.sameHost(from); });
}

void AskList::endAt(const NetworkAddress& control) {
    endIf([&](const Ask& ask) { return ask.control == control; });
}

std::vector<AskList::Ask> AskList::takeAll() {
    std::vector<Ask> taken = m_asks;
    endIf([](const Ask&) { return true; });
    return taken;
}

SessionTime AskList::turn(SessionTime now) {
    endIf([&](const Ask& ask) { return ask.until <= now; });
    SessionTime next = kNever;
    for (const Ask& ask : m_asks)
        next = std::min(next, ask.until);
    return next;
}
