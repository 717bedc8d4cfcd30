#include "audiounits/devices/ManualDevice.h"

#include <algorithm>

#include "audiounits/RenderScope.h"

OSStatus ManualDevice::start(AudioDeviceClient& client, bool capture) {
    m_client = &client;
    m_capturing = capture;
    return noErr;
}

void ManualDevice::stop() {
    m_client = nullptr;
}

AudioDeviceInfo ManualDevice::info() const {
    AudioDeviceInfo info;
    info.name = "manual";
    info.description = "Driven by hand";
    info.rate = kGraphRate;
    return info;
}

void ManualDevice::render(std::span<std::int16_t> mono) {
    if (m_client) {
        RenderScope scope;
        m_client->produce(mono, timeStamp(m_rendered));
    } else {
        std::ranges::fill(mono, std::int16_t{0});
    }
    m_rendered += mono.size();
}

void ManualDevice::capture(std::span<const std::int16_t> mono) {
    if (m_client && m_capturing) {
        RenderScope scope;
        m_client->consume(mono, timeStamp(m_captured));
    }
    m_captured += mono.size();
}

AudioTimeStamp ManualDevice::timeStamp(std::uint64_t frames) const {
    const double sampleTime = static_cast<double>(frames);
    return {sampleTime, sampleTime / kGraphRate};
}
