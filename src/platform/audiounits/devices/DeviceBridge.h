#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "audiounits/devices/AudioDevice.h"
#include "audiounits/devices/RateConverter.h"

/// Between a device's own callback and the client: turns 16-bit frames at 44100 Hz into floats at
/// the device's rate and back, splits what is longer than kMaximumDeviceFrames, stamps the time,
/// and stands a RenderScope around each call. At 44100 Hz every 16-bit value passes unchanged.
class DeviceBridge {
  public:
    /// [control] Rates in frames per second; all memory is taken here. The client must outlive it.
    DeviceBridge(AudioDeviceClient& client, double outputRate, double inputRate);

    /// False where a rate cannot be converted; then neither call below may be made.
    bool usable() const;

    /// [render] Fills `mono` with the next frames at the output rate; any length.
    void produce(std::span<float> mono) noexcept;
    /// [render] Takes captured frames at the input rate; any length.
    void consume(std::span<const float> mono) noexcept;

  private:
    std::span<const float> pull(std::size_t frames) noexcept;
    void push(std::span<const float> mono) noexcept;
    void produceConverted(std::span<float> mono) noexcept;
    void consumeConverted(std::span<const float> mono) noexcept;

    AudioDeviceClient& m_client;
    double m_framesPerOutputFrame;  // of the client
    std::optional<RateConverter> m_output;
    std::optional<RateConverter> m_input;
    std::vector<std::int16_t> m_words;
    std::vector<float> m_floats;
    std::vector<float> m_captured;
    std::span<const float> m_pending;  // pulled, not yet taken by the converter
    std::uint64_t m_produced = 0;      // frames of the client
    std::uint64_t m_consumed = 0;
};
