#pragma once

#include <memory>

#include "graph/VornUnit.h"
#include "graph/VornUnitDescription.h"

/// A unit backed by an instance of a platform component, which lives exactly as long as the unit.
/// Where no instance could be made it is null, and later calls are logged and have no effect.
class VornComponentUnit : public VornUnit {
  public:
    explicit VornComponentUnit(std::shared_ptr<VornUnitDescription> description);
    ~VornComponentUnit() override;

    AudioUnit unit() const override { return m_component; }
    using VornUnit::setUpstreamUnit;
    void setUpstreamUnit(VornUnit& upstream, std::uint32_t outBus, std::uint32_t inBus) override;
    void disconnectUpstream(std::uint32_t bus) override;

    /// Only if not yet initialised.
    void initialise() override;
    /// Always, initialised or not.
    void uninitialise() override;

    const VornUnitDescription& description() const { return *m_description; }

  private:
    std::shared_ptr<VornUnitDescription> m_description;
    AudioUnit m_component = nullptr;
};
