#pragma once

#include <atomic>
#include <thread>
#include <vector>

#include "audiounits/devices/AudioDevice.h"

/// No sound hardware: a thread that asks for 44100 frames in each second of the monotonic clock and
/// throws them away. What it captures is silence.
class ClockDevice final : public AudioDevice {
  public:
    /// 16 to kMaximumDeviceFrames; 0 is 512.
    explicit ClockDevice(std::uint32_t periodFrames = 0);
    ~ClockDevice() override;

    OSStatus start(AudioDeviceClient& client, bool capture) override;
    void stop() override;
    AudioDeviceInfo info() const override;

  private:
    void run(AudioDeviceClient& client, bool capture);

    const std::uint32_t m_periodFrames;
    std::vector<float> m_frames;
    std::thread m_thread;
    std::atomic<bool> m_running{false};
    std::atomic<bool> m_realTime{false};
    std::atomic<std::uint64_t> m_xruns{0};
};
