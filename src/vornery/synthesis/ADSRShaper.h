#pragma once

#include "ADSRSettings.h"
#include "ADSRState.h"
#include "Triggerable.h"
#include "graph/VornCallbackUnit.h"
#include "handoff/SequenceSlot.h"
#include "handoff/Shared.h"
#include "handoff/VoiceLock.h"

/// The amplitude envelope of one voice: multiplies its upstream by a level and starts and stops
/// what it shapes. Its lock is taken before the target's. The declared format is 16-bit, which
/// nothing reads: the buffers are 32-bit floats.
class ADSRShaper : public VornCallbackUnit {
  public:
    ADSRShaper();

    /// Begins the held phase, from the level a release has reached, and triggers the target.
    void trigger() noexcept;
    /// Begins the release.
    void untrigger() noexcept;
    /// Ends the release whatever the stage, and untriggers the target.
    void untriggerFinished() noexcept;

    /// Whole records. They do not take the lock, which a render holds. The record's lock is
    /// always the unit's own. [any thread but render]
    ADSRState state() const noexcept { return m_state.read(); }
    void setState(ADSRState state) noexcept;
    ADSRSettings settings() const noexcept { return m_settings.read(); }
    /// A change during a render may be overwritten by the render's copy.
    void setSettings(const ADSRSettings& settings) noexcept { m_settings.write(settings); }

    /// Not owned; must outlive its use here.
    Triggerable* triggerTarget() const { return m_triggerTarget; }
    void setTriggerTarget(Triggerable* target) { m_triggerTarget = target; }

  private:
    static OSStatus render(void* unit, AudioUnitRenderActionFlags* flags,
                           const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                           AudioBufferList* data);
    /// True when a release ended in this render; `triggers` is then the count it belongs to.
    bool shape(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time, std::uint32_t frames,
               AudioBufferList* data, std::uint32_t& triggers) noexcept;
    void finishRelease(std::uint32_t triggers) noexcept;
    void goIdle() noexcept;

    VoiceLock m_lock;
    SequenceSlot<ADSRState> m_state;
    SequenceSlot<ADSRSettings> m_settings;
    Shared<Triggerable*> m_triggerTarget = nullptr;
    std::uint32_t m_triggers = 0;     // counted under the lock
    ADSRState m_renderedState;        // [render] what it last read or wrote, should a slot be busy
    ADSRSettings m_renderedSettings;  // [render]
};
