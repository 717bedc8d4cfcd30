#pragma once

#include <memory>

#include "GrainNoteData.h"
#include "Triggerable.h"
#include "WaveAccess.h"
#include "graph/VornCallbackUnit.h"
#include "handoff/VoiceLock.h"

/// The sound source of one voice: reads a sound through two heads and cross-fades between them
/// grain by grain. Mono 32-bit float. No sound, or an empty one, is silence. The samples are read
/// as mono from the first, whatever the layout of the sound.
class GrainSynthesiser : public VornCallbackUnit, public Triggerable {
  public:
    /// The unit shares the sound with whoever chose it; null is no sound. [control]
    explicit GrainSynthesiser(std::shared_ptr<const ContiguousWave> source);
    ~GrainSynthesiser() override;

    std::shared_ptr<const ContiguousWave> waveSource() const { return m_source; }
    /// Silences the voice and plays the new sound from the next trigger on; the heads stay where
    /// they are. Takes the voice's lock; the old sound is let go after it. [control]
    void setWaveSource(std::shared_ptr<const ContiguousWave> source);

    /// Begins to sound where the heads are; while sounding, begins again at the next grain.
    void trigger() noexcept override;
    /// Puts the heads back to the start, and silences the voice if stopOnUntrigger says so.
    void untrigger() noexcept override;

    bool syncSpeed() const { return m_note.syncSpeed; }
    void setSyncSpeed(bool sync) { m_note.syncSpeed = sync; }
    float grainSize() const { return m_note.grainSize; }
    void setGrainSize(float size) { m_note.grainSize = size; }
    float grainSpeed() const { return m_note.grainSpeed; }
    void setGrainSpeed(float speed) { m_note.grainSpeed = speed; }
    float fmFrequency() const { return m_note.fmFrequency; }
    void setFmFrequency(float kilohertz) { m_note.fmFrequency = kilohertz; }
    float preamp() const { return m_note.preamp; }
    void setPreamp(float preamp) { m_note.preamp = preamp; }

    /// First sample of the sound, or null; fewer than `sampleCount` may be there, and then it is
    /// silence. Valid while the sound is the unit's source.
    const float* data() const { return m_data; }
    std::uint32_t sampleCount() const { return m_sampleCount; }
    GrainNoteData* note() { return &m_note; }
    const GrainNoteData* note() const { return &m_note; }

  private:
    static OSStatus render(void* unit, AudioUnitRenderActionFlags* flags,
                           const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                           AudioBufferList* data);
    void lookAt(std::shared_ptr<const ContiguousWave>& source);

    VoiceLock m_lock;
    GrainNoteData m_note;
    std::shared_ptr<const ContiguousWave> m_source;
    const float* m_data = nullptr;  // of m_source
    std::uint32_t m_sampleCount = 0;
    bool m_isReadable = false;  // all m_sampleCount of them
};
