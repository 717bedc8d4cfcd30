#pragma once

#include "audiounits/devices/AudioDevice.h"

/// Driven by hand: renders exactly when and as much as its owner asks, on the calling thread.
/// What offline rendering and tests play through.
class ManualDevice final : public AudioDevice {
  public:
    OSStatus start(AudioDeviceClient& client, bool capture) override;
    void stop() override;
    AudioDeviceInfo info() const override;

    /// Pulls the next frames, 1 to kMaximumDeviceFrames; zeros while not started.
    void render(std::span<std::int16_t> mono);
    /// Hands captured frames to the client, if it is started and wants them.
    void capture(std::span<const std::int16_t> mono);
    std::uint64_t framesRendered() const { return m_rendered; }

  private:
    AudioTimeStamp timeStamp(std::uint64_t frames) const;

    AudioDeviceClient* m_client = nullptr;
    bool m_capturing = false;
    std::uint64_t m_rendered = 0;
    std::uint64_t m_captured = 0;
};
