#include "MeteredDevice.h"

OSStatus MeteredDevice::start(AudioDeviceClient& client, bool capture) {
    m_client = &client;
    return m_device->start(*this, capture);
}

void MeteredDevice::produce(std::span<std::int16_t> mono, const AudioTimeStamp& time) noexcept {
    m_client->produce(mono, time);
    m_silence.take(mono);
    m_silentFrames.store(m_silence.silentFrames(), std::memory_order_relaxed);
    m_framesPlayed.fetch_add(mono.size(), std::memory_order_relaxed);
}

void MeteredDevice::consume(std::span<const std::int16_t> mono,
                            const AudioTimeStamp& time) noexcept {
    m_client->consume(mono, time);
}
