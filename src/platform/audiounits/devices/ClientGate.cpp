#include "audiounits/devices/ClientGate.h"

#include <algorithm>
#include <chrono>
#include <thread>

void ClientGate::close() {
    m_open.store(false);
    while (m_inside.load())
        std::this_thread::sleep_for(std::chrono::microseconds(100));
}

bool ClientGate::enter() noexcept {
    m_inside.store(true);
    if (m_open.load())
        return true;
    leave();
    return false;
}

void ClientGate::produce(std::span<std::int16_t> mono, const AudioTimeStamp& time) noexcept {
    m_calls.fetch_add(1, std::memory_order_relaxed);
    if (!enter()) {
        std::ranges::fill(mono, std::int16_t{0});
        return;
    }
    m_client->client->produce(mono, {static_cast<double>(m_client->produced), time.mHostTime});
    m_client->produced += mono.size();
    leave();
}

void ClientGate::consume(std::span<const std::int16_t> mono, const AudioTimeStamp& time) noexcept {
    if (!enter())
        return;
    m_client->client->consume(mono, {static_cast<double>(m_client->consumed), time.mHostTime});
    m_client->consumed += mono.size();
    leave();
}
