#pragma once

#include <memory>

#include "RetiredWindows.h"
#include "VornSequencePlayerData.h"
#include "WaveAccess.h"
#include "graph/VornCallbackUnit.h"

/// Plays a sound from start to end, once or again and again, in stereo: 32-bit floats, or 16-bit
/// integers. A sound that is still loading when it is set plays as nothing. What it plays is
/// changed on the main thread while audio runs; positions and lengths are in frames. [main]
class VornSequencePlayer : public VornCallbackUnit {
  public:
    /// `convert`: output in 16-bit integers.
    explicit VornSequencePlayer(std::shared_ptr<WaveSequenceAccess> sequence = nullptr,
                                bool convert = false);
    ~VornSequencePlayer() override;

    /// From its start; null for no sound. Whether it plays stays as it is. The sound before and its
    /// windows are kept half a second, and for as long as a render is in them.
    void setSequence(std::shared_ptr<WaveSequenceAccess> sequence);
    const std::shared_ptr<WaveSequenceAccess>& sequence() const { return m_sequence; }

    void play() { m_data->playing = true; }
    void pause() { m_data->playing = false; }
    /// Pauses at the start.
    void stop();
    void rewind() { setPlayPosition(0); }
    /// False once a sound that does not loop has ended.
    bool isPlaying() const { return m_data->playing; }

    bool looping() const { return m_data->looping; }
    void setLooping(bool looping) { m_data->looping = looping; }
    /// Linear factor, from the next buffer on.
    float gain() const { return m_data->gain; }
    void setGain(float gain) { m_data->gain = gain; }

    /// Greatest values (not magnitudes) of the last buffer, scaled by the gain. A mono sound leaves
    /// the right one at 0.
    float peakValueL() const { return m_data->peakLeft; }
    float peakValueR() const { return m_data->peakRight; }

    /// What was set last until the render has taken it, then where the render is.
    std::uint32_t playPosition() const;
    /// Past the end there is nothing to play.
    void setPlayPosition(std::uint32_t position);

    /// Owned by the unit.
    VornSequencePlayerData* data() const { return m_data.get(); }

  private:
    static OSStatus render(void* playerData, AudioUnitRenderActionFlags* flags,
                           const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                           AudioBufferList* list);
    void publish();

    std::shared_ptr<WaveSequenceAccess> m_sequence;
    std::unique_ptr<VornSequencePlayerData> m_data;
    WaveWindowList m_windows;             // of m_sequence
    VornSequencePlayerPointers m_posted;  // what was posted last
    RetiredWindows m_retired;
};
