#include "midi/network/NetworkBoard.h"

#include "notifications/NotificationCentre.h"
#include "runloop/RunLoop.h"

NetworkBoard::NetworkBoard(std::string localName) {
    m_state.localName = std::move(localName);
}

NetworkBoard::Wishes NetworkBoard::wishes() const {
    std::lock_guard guard(m_mutex);
    return m_wishes;
}

void NetworkBoard::setWishes(const Wishes& wishes) {
    {
        std::lock_guard guard(m_mutex);
        if (wishes == m_wishes)
            return;
        m_wishes = wishes;
        if (!wishes.enabled)
            m_orders.clear();
        wake();
    }
    tell();
}

void NetworkBoard::order(const Order& order) {
    std::lock_guard guard(m_mutex);
    if (m_orders.size() < kMostOrders)
        m_orders.push_back(order);
    wake();
}

std::vector<NetworkBoard::Order> NetworkBoard::takeOrders() {
    std::lock_guard guard(m_mutex);
    return std::exchange(m_orders, {});
}

void NetworkBoard::setServer(std::function<void()> wake) {
    std::lock_guard guard(m_mutex);
    m_wake = std::move(wake);
}

/// Under the mutex: whoever ends serving knows that it is not being woken.
void NetworkBoard::wake() {
    if (m_wake)
        m_wake();
}

NetworkBoard::State NetworkBoard::state() const {
    std::lock_guard guard(m_mutex);
    return m_state;
}

std::string NetworkBoard::localName() const {
    std::lock_guard guard(m_mutex);
    return m_state.localName;
}

void NetworkBoard::setLocalName(const std::string& name) {
    change([&](State& state) { state.localName = name; });
    std::lock_guard guard(m_mutex);
    wake();
}

void NetworkBoard::change(const std::function<void(State&)>& how) {
    {
        std::lock_guard guard(m_mutex);
        const State before = m_state;
        how(m_state);
        if (m_state == before)
            return;
    }
    tell();
}

void NetworkBoard::addContact(const NetworkAddress& host) {
    std::lock_guard guard(m_mutex);
    m_contacts.insert(host.at(0));
}

bool NetworkBoard::isContact(const NetworkAddress& host) const {
    std::lock_guard guard(m_mutex);
    return m_contacts.contains(host.at(0));
}

/// Changes that come close behind one another are told once.
void NetworkBoard::tell() {
    {
        std::lock_guard guard(m_mutex);
        if (std::exchange(m_telling, true))
            return;
    }
    RunLoop::main().callAfter(0, [weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self)
            return;
        {
            std::lock_guard guard(self->m_mutex);
            self->m_telling = false;
        }
        NotificationCentre::defaultCentre().post(kMIDINetworkSessionChanged);
    });
}
