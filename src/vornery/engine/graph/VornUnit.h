#pragma once

#include <cstdint>

#include "audiounits/AudioUnitTypes.h"

/// A node of the sound graph. The graph is pull-based: the hardware unit asks its upstream for
/// audio, which asks its own. Units are owned by whoever makes them; the graph holds only raw
/// records, so audio must be stopped before a unit goes. [control] except where said.
class VornUnit {
  public:
    VornUnit() = default;
    VornUnit(const VornUnit&) = delete;
    VornUnit& operator=(const VornUnit&) = delete;
    virtual ~VornUnit() = default;

    /// The platform instance behind the unit, or null for a callback unit.
    virtual AudioUnit unit() const { return nullptr; }
    /// The render function of a callback unit, or null. Valid while the unit lives.
    virtual const AURenderCallbackStruct* callback() const { return nullptr; }
    /// What a callback unit's render function writes, or null. Valid while the unit lives.
    virtual const StreamDescription* outputFormat() const { return nullptr; }

    virtual void initialise() { m_initialised = true; }
    virtual void uninitialise() { m_initialised = false; }

    /// Makes bus `outBus` of `upstream` feed bus `inBus` of this unit.
    void setUpstreamUnit(VornUnit& upstream) { setUpstreamUnit(upstream, 0, 0); }
    virtual void setUpstreamUnit(VornUnit& upstream, std::uint32_t outBus, std::uint32_t inBus);
    virtual void disconnectUpstream(std::uint32_t bus);

    bool initialised() const { return m_initialised; }

  protected:
    bool m_initialised = false;
};
