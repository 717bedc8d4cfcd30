#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "startup/Voices.h"

inline constexpr int kKeyCount = 88;
/// MIDI note number of the lowest key.
inline constexpr int kLowestMidiNote = 21;

/// Who wants to know what happens on the keys.
class NotesDelegate {
  public:
    virtual ~NotesDelegate() = default;
    /// A key was pressed or released, on the screen or over MIDI.
    virtual void keyTouched(bool /*down*/) {}
    /// A key was started with a gain in [0, 1]; not told of one that sounds already.
    virtual void keyBegan(int /*key*/, float /*gain*/) {}
    /// A key was released, whether or not it still had a voice.
    virtual void keyEnded(int /*key*/) {}
    /// A key is to be shown pressed or not, after a MIDI message.
    virtual void keyShown(int /*key*/, bool /*highlighted*/) {}
};

/// From keys to voices: 88 keys on twelve voices. A key is its index, 0 for the lowest (27.5 Hz,
/// MIDI note 21) to 87; others are ignored. A voice without an envelope counts as free. When all
/// voices are busy the one whose release began from the oldest note is taken, and if none is
/// releasing the one that sounds longest. [main]
class Notes {
  public:
    explicit Notes(Voices& voices);

    /// Told from now on, after those added before; not retained. [main, but not from a delegate]
    void addDelegate(NotesDelegate& delegate) { m_delegates.push_back(&delegate); }
    void removeDelegate(NotesDelegate& delegate) { std::erase(m_delegates, &delegate); }

    /// Starts a key with a gain in [0, 1]. A key that sounds already is left alone.
    void tinkleIvory(int key, float gain = 1.f);
    /// Releases a key; nothing happens if its voice was taken by another one meanwhile.
    void untinkleIvory(int key);

    /// MIDI bytes. Notes outside the keys are ignored, and so is aftertouch.
    void midiNoteDown(std::uint8_t note, std::uint8_t velocity);
    void midiNoteUp(std::uint8_t note);
    void midiNoteAftertouch() {}

    /// Plays everything that many times as high, what sounds and what will; 1 at first. The voices
    /// go on where they are, so that a bend does not click.
    void setPitchBend(float ratio);

    /// Releases every key that is down.
    void releaseAll();

    /// Hertz of each key.
    const std::array<float, kKeyCount>& noteFrequencies() const { return m_noteFrequencies; }
    /// The voice that each key sounds, or -1.
    const std::array<std::int32_t, kKeyCount>& triggeredNoteUnits() const {
        return m_triggeredNoteUnits;
    }

    /// The voice to use next: a free one, else the oldest releasing, else the oldest sounding,
    /// which is taken from its key and released.
    unsigned nextSynthUnitToUse();

  private:
    enum class Choice { releasing, any };
    /// The voice triggered first of those that the choice admits, and before `now`; -1 if none.
    int oldestVoice(Choice choice, double now) const;
    void stealVoice(unsigned voice);
    void tune(unsigned voice);
    void tellTouched(bool down);
    void tellBegan(int key, float gain);
    void tellEnded(int key);
    void tellShown(int key, bool highlighted);

    Voices& m_voices;
    std::vector<NotesDelegate*> m_delegates;
    std::array<float, kKeyCount> m_noteFrequencies;
    std::array<std::int32_t, kKeyCount> m_triggeredNoteUnits;
    std::array<float, kVoiceCount> m_pitches{};  // hertz of each voice's key; 0: never played
    float m_pitchBend = 1.f;
};
