#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "audiounits/devices/AlsaPcm.h"
#include "audiounits/devices/DeviceBridge.h"

/// A PCM of ALSA, hardware or plugin, served by a thread of our own; the capturing side of the same
/// PCM too, where it has one. PCMs that take frames as fast as they come ("null", "file") are paced
/// by the clock.
class AlsaDevice final : public AudioDevice {
  public:
    /// `pcm` "" is "default". A period of 16 to kMaximumDeviceFrames in frames of the PCM, which
    /// takes the nearest that it has; 0 is 512.
    explicit AlsaDevice(std::string pcm = "", std::uint32_t periodFrames = 0);
    ~AlsaDevice() override;

    OSStatus start(AudioDeviceClient& client, bool capture) override;
    void stop() override;
    AudioDeviceInfo info() const override;
    bool alive() const override { return m_alive; }

    /// The PCMs that ALSA's configuration names and that open, or are only busy; "default" first.
    static std::vector<AudioDeviceInfo> list();

  private:
    using Time = std::chrono::steady_clock;

    void openInput();
    void run();
    bool write(std::span<const float> mono);
    void hear();
    void pace(std::size_t frames);
    void keepInfo();

    const std::string m_name;
    const std::uint32_t m_wantedPeriod;
    std::unique_ptr<AlsaPcm> m_output;
    std::unique_ptr<AlsaPcm> m_input;  // null unless capturing
    std::unique_ptr<DeviceBridge> m_bridge;
    std::vector<float> m_mono;
    std::vector<float> m_heard;
    std::thread m_thread;
    std::atomic<bool> m_running{false};
    std::atomic<bool> m_alive{false};
    std::atomic<bool> m_realTime{false};
    std::atomic<std::uint64_t> m_xruns{0};
    mutable std::mutex m_infoMutex;
    AudioDeviceInfo m_info;

    // Of the thread alone.
    Time::time_point m_begun;
    double m_secondsWritten = 0;
    bool m_hasNoClock = false;
};
