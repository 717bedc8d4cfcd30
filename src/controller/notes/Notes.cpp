#include "notes/Notes.h"

#include <algorithm>
#include <cmath>

#include "log/Log.h"
#include "runloop/Clock.h"

namespace {

constexpr float kLowestPitch = 27.5f;  // hertz
constexpr int kStageIdle = 0;
constexpr int kStageReleasing = 2;

bool isKey(int key) {
    return key >= 0 && key < kKeyCount;
}

}  // namespace

Notes::Notes(Voices& voices) : m_voices(voices) {
    for (int key = 0; key < kKeyCount; ++key) {
        const auto octaves = static_cast<float>(key / 12.0);
        m_noteFrequencies[static_cast<std::size_t>(key)] = kLowestPitch * std::pow(2.f, octaves);
    }
    m_triggeredNoteUnits.fill(-1);
}

void Notes::tellTouched(bool down) {
    for (NotesDelegate* delegate : m_delegates)
        delegate->keyTouched(down);
}

void Notes::tellBegan(int key, float gain) {
    for (NotesDelegate* delegate : m_delegates)
        delegate->keyBegan(key, gain);
}

void Notes::tellEnded(int key) {
    for (NotesDelegate* delegate : m_delegates)
        delegate->keyEnded(key);
}

void Notes::tellShown(int key, bool highlighted) {
    for (NotesDelegate* delegate : m_delegates)
        delegate->keyShown(key, highlighted);
}

void Notes::tinkleIvory(int key, float gain) {
    if (!isKey(key))
        return;
    tellTouched(true);
    std::int32_t& unit = m_triggeredNoteUnits[static_cast<std::size_t>(key)];
    if (unit != -1)
        return;
    const unsigned voice = nextSynthUnitToUse();
    m_pitches[voice] = m_noteFrequencies[static_cast<std::size_t>(key)];
    tune(voice);
    m_voices.voiceSynths[voice]->note()->gain = gain;
    if (const auto& envelope = m_voices.voiceEnvelopes[voice])
        envelope->trigger();
    unit = static_cast<std::int32_t>(voice);
    tellBegan(key, gain);
}

void Notes::untinkleIvory(int key) {
    if (!isKey(key))
        return;
    tellTouched(false);
    std::int32_t& unit = m_triggeredNoteUnits[static_cast<std::size_t>(key)];
    if (unit != -1) {
        if (const auto& envelope = m_voices.voiceEnvelopes[static_cast<std::size_t>(unit)])
            envelope->untrigger();
        unit = -1;
    }
    tellEnded(key);
}

void Notes::tune(unsigned voice) {
    m_voices.voiceSynths[voice]->note()->frequency = m_pitches[voice] * m_pitchBend;
}

void Notes::setPitchBend(float ratio) {
    m_pitchBend = ratio;
    for (unsigned voice = 0; voice < kVoiceCount; ++voice) {
        if (m_pitches[voice] > 0.f)
            tune(voice);
    }
}

void Notes::midiNoteDown(std::uint8_t note, std::uint8_t velocity) {
    const int key = note - kLowestMidiNote;
    if (!isKey(key))
        return;
    // A damaged velocity must not be louder than the loudest.
    const float gain = static_cast<float>(std::min<std::uint8_t>(velocity, 127)) / 127.f;
    if (gain <= 0.f)
        untinkleIvory(key);
    else
        tinkleIvory(key, gain);
    tellShown(key, gain > 0.f);
}

void Notes::midiNoteUp(std::uint8_t note) {
    const int key = note - kLowestMidiNote;
    if (!isKey(key))
        return;
    tellShown(key, false);
    untinkleIvory(key);
}

void Notes::releaseAll() {
    for (int key = 0; key < kKeyCount; ++key) {
        if (m_triggeredNoteUnits[static_cast<std::size_t>(key)] != -1)
            untinkleIvory(key);
    }
}

unsigned Notes::nextSynthUnitToUse() {
    for (unsigned voice = 0; voice < kVoiceCount; ++voice) {
        const auto& envelope = m_voices.voiceEnvelopes[voice];
        if (!envelope || envelope->state().triggered == kStageIdle)
            return voice;
    }
    const double now = Clock::now();
    if (const int releasing = oldestVoice(Choice::releasing, now); releasing >= 0)
        return static_cast<unsigned>(releasing);
    const int oldest = oldestVoice(Choice::any, now);
    const unsigned stolen = oldest < 0 ? 0 : static_cast<unsigned>(oldest);
    stealVoice(stolen);
    return stolen;
}

int Notes::oldestVoice(Choice choice, double now) const {
    double earliest = now;
    int found = -1;
    for (unsigned voice = 0; voice < kVoiceCount; ++voice) {
        const auto& envelope = m_voices.voiceEnvelopes[voice];
        const ADSRState state = envelope ? envelope->state() : ADSRState{};
        if (choice == Choice::releasing && state.triggered != kStageReleasing)
            continue;
        const double when = envelope ? state.when : 0.0;
        if (when < earliest) {
            earliest = when;
            found = static_cast<int>(voice);
        }
    }
    return found;
}

void Notes::stealVoice(unsigned voice) {
    for (std::size_t key = 0; key < m_triggeredNoteUnits.size(); ++key) {
        if (m_triggeredNoteUnits[key] != static_cast<std::int32_t>(voice))
            continue;
        Log::line("Force-untriggered [%d] %d", static_cast<int>(key), static_cast<int>(voice));
        m_triggeredNoteUnits[key] = -1;
    }
    if (const auto& envelope = m_voices.voiceEnvelopes[voice])
        envelope->untrigger();
}
