#include "FakeDevice.h"

#include <array>
#include <chrono>

namespace {
void nap() {
    std::this_thread::sleep_for(std::chrono::microseconds(300));
}
}  // namespace

FakeDevice::FakeDevice(std::shared_ptr<FakeServer> server) : m_server(std::move(server)) {}

FakeDevice::~FakeDevice() {
    stop();
}

OSStatus FakeDevice::start(AudioDeviceClient& client, bool capture) {
    if (!m_server->present)
        return kAudioUnitErr_FailedInitialization;
    ++m_server->starts;
    m_running = true;
    m_thread = std::thread([this, &client, capture] { run(client, capture); });
    return noErr;
}

// A server that hangs takes the call down with it, while its device may go on calling.
void FakeDevice::stop() {
    while (m_running && m_server->hanging)
        nap();
    m_running = false;
    if (m_thread.joinable())
        m_thread.join();
}

AudioDeviceInfo FakeDevice::info() const {
    AudioDeviceInfo info;
    info.name = m_server->name;
    info.xruns = 1;
    return info;
}

void FakeDevice::run(AudioDeviceClient& client, bool capture) {
    std::array<std::int16_t, 32> frames{};
    while (m_running) {
        if (!m_server->silent) {
            if (capture)
                client.consume(frames, {});
            client.produce(frames, {});
        }
        nap();
    }
}

void StrictClient::produce(std::span<std::int16_t> mono, const AudioTimeStamp& time) noexcept {
    const bool together = m_inside.exchange(true, std::memory_order_relaxed);
    if (together || m_expectSilence || time.mSampleTime != static_cast<double>(m_frames))
        ++m_faults;
    ++m_plain;
    m_frames += mono.size();
    m_inside.store(false, std::memory_order_relaxed);
}

void StrictClient::consume(std::span<const std::int16_t> mono,
                           const AudioTimeStamp& time) noexcept {
    const bool together = m_inside.exchange(true, std::memory_order_relaxed);
    if (together || m_expectSilence || time.mSampleTime != static_cast<double>(m_heard))
        ++m_faults;
    ++m_plain;
    m_heard += mono.size();
    m_inside.store(false, std::memory_order_relaxed);
}

bool StrictClient::playsOn() const {
    const std::uint64_t wanted = m_frames + 320;
    for (int i = 0; i < 100000 && m_frames < wanted; ++i)
        nap();
    return m_frames >= wanted;
}
