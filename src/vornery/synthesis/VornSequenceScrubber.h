#pragma once

#include <memory>

#include "RetiredWindows.h"
#include "VornSequenceScrubberData.h"
#include "WaveAccess.h"
#include "graph/VornCallbackUnit.h"

/// Makes a sound heard while someone drags along it: positions given in quick succession are played
/// as short grains that fade into each other. 16-bit stereo. Positions are in frames; audio may run
/// meanwhile. [main]
class VornSequenceScrubber : public VornCallbackUnit {
  public:
    /// Nothing is heard before `setSequence`.
    explicit VornSequenceScrubber(std::shared_ptr<WaveSequenceAccess> sequence = nullptr);
    ~VornSequenceScrubber() override;

    /// One grain of its start follows; null is silence. The sound before and its windows are kept
    /// half a second, and for as long as a render is in them.
    void setSequence(std::shared_ptr<WaveSequenceAccess> sequence);
    const std::shared_ptr<WaveSequenceAccess>& sequence() const { return m_sequence; }

    /// Plays a grain that begins at this frame; past the end it stops.
    void setPlayPosition(std::uint32_t position);
    /// Plays a grain that is at its loudest at this frame, where the sound has as much before it.
    /// The scale has no effect.
    void scrubTo(std::int32_t frame, float scale = 1.f);
    /// Silence at once.
    void stop();
    /// Whether anything is heard, or will be as soon as the render takes it.
    bool isSounding() const;

    /// Linear factor, from the next buffer on.
    float gain() const { return m_data->gain; }
    void setGain(float gain) { m_data->gain = gain; }

    /// Owned by the unit.
    VornSequenceScrubberData* data() const { return m_data.get(); }

  private:
    static OSStatus render(void* scrubberData, AudioUnitRenderActionFlags* flags,
                           const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                           AudioBufferList* list);

    std::shared_ptr<WaveSequenceAccess> m_sequence;
    std::unique_ptr<VornSequenceScrubberData> m_data;
    RetiredWindows m_retired;
};
