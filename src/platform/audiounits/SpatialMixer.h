#pragma once

#include <atomic>
#include <vector>

#include "audiounits/BusMixer.h"
#include "audiounits/Placement.h"

/// Mixes its buses so that each is heard from a place of its own, told by four parameters of the
/// bus (input scope): azimuth, elevation, distance, gain from -120 to 20 dB. A bus is a point: of
/// two channels the mean is heard. A new bus is straight ahead at 1 m with 0 dB, and one that is
/// taken away forgets its place. A mono output has no directions, only distances.
///
/// Parameters may be set on any thread. What they change moves along a straight line over the next
/// render; a bus that was silent in the render before is at its place at once.
class SpatialMixer final : public BusMixer {
  public:
    SpatialMixer();
    ~SpatialMixer() override;

    OSStatus setProperty(AudioUnitPropertyID property, AudioUnitScope scope,
                         AudioUnitElement element, const void* data, std::uint32_t size) override;
    /// Refuses values that are not finite or outside the ranges above; 10 km is the farthest.
    OSStatus setParameter(AudioUnitParameterID parameter, AudioUnitScope scope,
                          AudioUnitElement element, AudioUnitParameterValue value) override;
    OSStatus parameter(AudioUnitParameterID parameter, AudioUnitScope scope,
                       AudioUnitElement element, AudioUnitParameterValue* value) override;
    OSStatus render(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                    std::uint32_t bus, std::uint32_t frames, AudioBufferList* data) override;

  private:
    struct Bus;

    OSStatus check(AudioUnitParameterID parameter, AudioUnitScope scope,
                   AudioUnitElement element) const;
    void add(const Pulled& bus, Workspace& workspace) noexcept override;
    bool leavesAlone(AudioUnitElement element) noexcept override;
    const ChannelGains& target(Bus& bus) const noexcept;

    std::vector<Bus> m_buses;         // as many as there can ever be
    std::uint64_t m_renderCount = 0;  // [render]
};
