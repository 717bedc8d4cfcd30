#pragma once

#include "graph/VornComponentUnit.h"

/// The platform's multichannel mixer. [control]
class VornMixerUnit : public VornComponentUnit {
  public:
    VornMixerUnit();

    std::uint32_t inputBusCount() const;
    void setInputBusCount(std::uint32_t count);

    /// Fixed placeholders: the levels are not metered.
    float leftPeak() const { return 0.25f; }
    float rightPeak() const { return 0.5f; }

  protected:
    explicit VornMixerUnit(std::uint32_t subtype);
};

/// The platform's mixer that places each bus in space. A bus starts straight ahead at 1 m with 0
/// dB; what is set is reached smoothly within the next buffer. A value out of range, or of a bus
/// that is not there, changes nothing and is logged. Setters: [any thread].
class Vorn3DMixerUnit : public VornMixerUnit {
  public:
    Vorn3DMixerUnit();

    void setAzimuth(std::uint32_t bus, float degrees);    // -180 to 180; 90 is to the right
    void setElevation(std::uint32_t bus, float degrees);  // -90 to 90; 90 is above
    void setDistance(std::uint32_t bus, float metres);    // 0 to 10000; loudest up to 1
    void setGain(std::uint32_t bus, float decibels);      // -120 to 20

  private:
    void set(AudioUnitParameterID parameter, std::uint32_t bus, float value);
};
