#include "audiounits/devices/ClockDevice.h"

#include <algorithm>
#include <chrono>

#include "audiounits/devices/DeviceBridge.h"
#include "audiounits/devices/RealTimePriority.h"

namespace {
constexpr std::uint32_t kUsualPeriod = 512;
using Time = std::chrono::steady_clock;
// Further behind than this, the time is lost: catching up would play a burst of old music.
constexpr auto kForgiven = std::chrono::milliseconds(200);
// Waited even when late: a real-time thread that never waits is ended by its limit.
constexpr auto kShortestWait = std::chrono::microseconds(50);
}  // namespace

ClockDevice::ClockDevice(std::uint32_t periodFrames)
    : m_periodFrames(periodFrames ? periodFrames : kUsualPeriod), m_frames(m_periodFrames) {}

ClockDevice::~ClockDevice() {
    stop();
}

OSStatus ClockDevice::start(AudioDeviceClient& client, bool capture) {
    stop();
    m_xruns = 0;
    m_running = true;
    m_thread = std::thread([this, &client, capture] { run(client, capture); });
    return noErr;
}

void ClockDevice::stop() {
    m_running = false;
    if (m_thread.joinable())
        m_thread.join();
}

AudioDeviceInfo ClockDevice::info() const {
    AudioDeviceInfo info;
    info.name = "clock";
    info.description = "No sound, in time with the system's clock";
    info.rate = kGraphRate;
    info.periodFrames = m_periodFrames;
    info.realTime = m_realTime;
    info.xruns = m_xruns;
    return info;
}

void ClockDevice::run(AudioDeviceClient& client, bool capture) {
    m_realTime = RealTimePriority::acquire();
    DeviceBridge bridge(client, kGraphRate, kGraphRate);
    const std::vector<float> silence(m_periodFrames);
    const std::chrono::duration<double> period(m_periodFrames / kGraphRate);
    auto begun = Time::now();
    for (std::uint64_t periods = 1; m_running; ++periods) {
        if (capture)
            bridge.consume(silence);
        bridge.produce(m_frames);
        const auto due = begun + std::chrono::duration_cast<Time::duration>(
                                     period * static_cast<double>(periods));
        const auto now = Time::now();
        std::this_thread::sleep_until(std::max<Time::time_point>(due, now + kShortestWait));
        if (now > due + kForgiven) {
            ++m_xruns;
            begun = Time::now();
            periods = 0;
        }
    }
}
