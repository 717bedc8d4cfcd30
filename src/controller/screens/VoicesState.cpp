#include "screens/VoicesState.h"

#include <algorithm>

#include "runloop/Clock.h"

namespace {

constexpr double kLookSeconds = 1.0 / 30;
constexpr float kLevelFall = 0.87f;   // of the level, at each look
constexpr float kQuiet = 0.001f;      // a level that counts as none: -60 dB
constexpr double kClipSeconds = 0.5;  // how long the clip light stays on

/// Sets it, and answers whether that changed anything.
template <typename T>
bool change(T& value, const T& now) {
    if (value == now)
        return false;
    value = now;
    return true;
}

}  // namespace

VoicesState::VoicesState(Instrument& instrument)
    : m_instrument(instrument),
      m_clipObserver(NotificationCentre::defaultCentre().addObserver(kAudioClippedNotification,
                                                                     [this] { audioClipped(); })) {
    m_instrument.notes().addDelegate(*this);
}

VoicesState::~VoicesState() {
    NotificationCentre::defaultCentre().removeObserver(m_clipObserver);
    RunLoop::main().cancel(m_looking);
    RunLoop::main().cancel(m_soon);
    m_instrument.notes().removeDelegate(*this);
}

// Told before the voice has changed; hence the next turn.
void VoicesState::keyTouched(bool) {
    if (!m_looking) {
        m_instrument.takePeak();
        m_looking = RunLoop::main().callEvery(kLookSeconds, [this] { look(); });
    }
    if (!m_soon)
        m_soon = RunLoop::main().callAfter(0, [this] {
            m_soon = 0;
            look();
        });
}

void VoicesState::look() {
    lookAtVoices();
    lookAtLevel();
    lookAtClips();
    const bool voices = std::ranges::any_of(m_stages, [](int stage) { return stage != 0; });
    if (change(m_sounding, voices || m_level > 0))
        Q_EMIT soundingChanged();
    if (!m_sounding && !m_clipped)
        rest();
}

void VoicesState::rest() {
    RunLoop::main().cancel(m_looking);
    m_looking = 0;
}

QList<float> VoicesState::headsNow() const {
    QList<float> heads;
    for (unsigned i = 0; i < kVoiceCount; ++i) {
        if (m_instrument.voices().voiceEnvelopes[i]->state().triggered == 0)
            continue;
        const GrainNoteData& note = *m_instrument.voices().voiceSynths[i]->note();
        heads.append({note.heads[0], note.heads[1]});
    }
    return heads;
}

void VoicesState::lookAtVoices() {
    QList<int> stages;
    for (unsigned i = 0; i < kVoiceCount; ++i)
        stages.append(m_instrument.voices().voiceEnvelopes[i]->state().triggered);
    if (change(m_stages, stages))
        Q_EMIT stagesChanged();
    if (change(m_heads, headsNow()))
        Q_EMIT headsChanged();
}

void VoicesState::lookAtLevel() {
    float level = std::max(m_instrument.takePeak(), m_level * kLevelFall);
    level = level < kQuiet ? 0.f : level;
    if (change(m_level, level))
        Q_EMIT levelChanged();
}

void VoicesState::lookAtClips() {
    if (m_clipHeard.exchange(false))
        m_clippedUntil = Clock::monotonic() + kClipSeconds;
    if (change(m_clipped, Clock::monotonic() < m_clippedUntil))
        Q_EMIT clippedChanged();
}
