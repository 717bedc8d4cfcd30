#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

#include "audiounits/devices/AudioDevice.h"

/// Plays a sine of 440 Hz at half of full scale for ever, and keeps what it is given to hear. Notes
/// two calls at once, and calls that are too long.
class ToneClient final : public AudioDeviceClient {
  public:
    static constexpr double kHertz = 440;
    static constexpr double kAmplitude = 0.5;

    ToneClient();

    void produce(std::span<std::int16_t> mono, const AudioTimeStamp& time) noexcept override;
    void consume(std::span<const std::int16_t> mono, const AudioTimeStamp& time) noexcept override;

    std::uint64_t produced() const { return m_produced; }
    std::uint64_t heard() const { return m_heard; }
    std::uint64_t faults() const { return m_faults; }
    std::size_t longest() const { return m_longest; }
    /// Only while stopped.
    std::vector<float> recording() const;

    /// False when fewer than so many further frames were asked for within a generous time.
    bool playsOn(std::uint64_t frames) const;

  private:
    void note(std::size_t frames, const AudioTimeStamp& time, std::uint64_t expected);

    std::atomic<bool> m_inside{false};
    std::atomic<std::uint64_t> m_produced{0};
    std::atomic<std::uint64_t> m_heard{0};
    std::atomic<std::uint64_t> m_faults{0};
    std::atomic<std::size_t> m_longest{0};
    std::vector<std::int16_t> m_recorded;
};
