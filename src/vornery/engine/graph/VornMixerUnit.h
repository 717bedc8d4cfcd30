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

/// The platform's mixer that places each bus in space.
class Vorn3DMixerUnit : public VornMixerUnit {
  public:
    Vorn3DMixerUnit();
};
