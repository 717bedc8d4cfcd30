#pragma once

#include <atomic>
#include <memory>
#include <span>

#include "OfflineRender.h"
#include "audiounits/devices/AudioDevice.h"

/// Any device, with a count of the silence that has gone out through it last: how a command knows
/// that all has faded.
class MeteredDevice final : public AudioDevice, private AudioDeviceClient {
  public:
    explicit MeteredDevice(std::shared_ptr<AudioDevice> device) : m_device(std::move(device)) {}

    OSStatus start(AudioDeviceClient& client, bool capture) override;
    void stop() override { m_device->stop(); }
    AudioDeviceInfo info() const override { return m_device->info(); }

    /// [any thread] Frames of silence played last, and all frames played.
    std::uint64_t silentFrames() const { return m_silentFrames.load(std::memory_order_relaxed); }
    std::uint64_t framesPlayed() const { return m_framesPlayed.load(std::memory_order_relaxed); }

  private:
    void produce(std::span<std::int16_t> mono, const AudioTimeStamp& time) noexcept override;
    void consume(std::span<const std::int16_t> mono, const AudioTimeStamp& time) noexcept override;

    std::shared_ptr<AudioDevice> m_device;
    AudioDeviceClient* m_client = nullptr;
    SilenceMeter m_silence;  // [render]
    std::atomic<std::uint64_t> m_silentFrames{0};
    std::atomic<std::uint64_t> m_framesPlayed{0};
};
