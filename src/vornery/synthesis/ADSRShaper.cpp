#include "ADSRShaper.h"

#include <algorithm>
#include <mutex>

#include "ADSRLoop.h"
#include "PullUpstream.h"
#include "runloop/Clock.h"

ADSRShaper::ADSRShaper() : VornCallbackUnit(&render, StreamDescription::sint16(1)) {
    setState({});
    m_renderedState = state();
}

void ADSRShaper::setState(ADSRState state) noexcept {
    state.lock = &m_lock;
    m_state.write(state);
}

void ADSRShaper::trigger() noexcept {
    std::lock_guard guard(m_lock);
    ADSRState state = m_state.read();
    if (state.triggered == kADSRReleasing) {
        const ADSRCurve curve(m_settings.read());
        state.previousLevel =
            curve.levelAtTrigger(static_cast<float>(state.time), state.previousLevel);
    }
    state.time = 0;
    state.triggered = kADSRHeld;
    state.when = Clock::now();
    m_state.write(state);
    ++m_triggers;
    if (Triggerable* target = m_triggerTarget)
        target->trigger();
}

void ADSRShaper::untrigger() noexcept {
    std::lock_guard guard(m_lock);
    ADSRState state = m_state.read();
    if (state.triggered == kADSRHeld) {
        const ADSRCurve curve(m_settings.read());
        state.previousLevel = curve.levelAtUntrigger(static_cast<float>(state.time));
    }
    state.time = 0;
    state.triggered = kADSRReleasing;
    m_state.write(state);
}

void ADSRShaper::untriggerFinished() noexcept {
    std::lock_guard guard(m_lock);
    goIdle();
}

// Under the lock. A render comes here too, and does not turn round a busy slot: whoever writes it
// at this moment has the last word.
void ADSRShaper::goIdle() noexcept {
    ADSRState state = m_renderedState;
    m_state.tryRead(state);
    state.triggered = kADSRIdle;
    state.previousLevel = 0.f;
    m_state.tryWrite(state);
    if (Triggerable* target = m_triggerTarget)
        target->untrigger();
}

// A key may have come down again since the render let the lock go; then the note is not over.
void ADSRShaper::finishRelease(std::uint32_t triggers) noexcept {
    std::lock_guard guard(m_lock);
    ADSRState state = m_renderedState;
    m_state.tryRead(state);
    if (state.triggered == kADSRReleasing && m_triggers == triggers)
        goIdle();
}

bool ADSRShaper::shape(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                       std::uint32_t frames, AudioBufferList* data,
                       std::uint32_t& triggers) noexcept {
    std::lock_guard guard(m_lock);
    m_settings.tryRead(m_renderedSettings);
    m_state.tryRead(m_renderedState);
    triggers = m_triggers;
    const bool silent = pullUpstream(*this, flags, time, frames, data);
    float* samples = data->samples<float>();
    if (m_renderedState.triggered == kADSRIdle) {
        if (!silent)
            std::fill_n(samples, frames, 0.f);
        markSilence(flags, true);
        return false;
    }
    markSilence(flags, false);
    const bool over =
        applyEnvelope(ADSRCurve(m_renderedSettings), m_renderedState, samples, frames);
    m_renderedState.time += frames;
    m_state.tryWrite(m_renderedState);
    m_settings.tryWrite(m_renderedSettings);
    return over;
}

OSStatus ADSRShaper::render(void* context, AudioUnitRenderActionFlags* flags,
                            const AudioTimeStamp* time, std::uint32_t, std::uint32_t frames,
                            AudioBufferList* data) {
    auto& unit = *static_cast<ADSRShaper*>(context);
    std::uint32_t triggers = 0;
    if (unit.shape(flags, time, frames, data, triggers))
        unit.finishRelease(triggers);
    return noErr;
}
