#pragma once

#include <functional>
#include <utility>

#include "midi/MidiControlTarget.h"
#include "midi/ProgramNumber.h"
#include "screens/DialBank.h"

/// What controllers do to the instrument on the screen: dials turn before the player's eyes, and
/// count as turned. [main]
class ScreenControls final : public MidiControlTarget {
  public:
    /// None is owned.
    struct Rooms {
        DialBank& dials;
        Settings& settings;
        const PresetStore& store;
    };
    /// `silence` is what the screen does to fall silent.
    ScreenControls(const Rooms& rooms, std::function<void()> silence)
        : m_rooms(rooms), m_silence(std::move(silence)) {}

    float dialValue(ParameterId id) override { return m_rooms.dials.dial(id).value(); }
    void turnDial(ParameterId id, float value) override { m_rooms.dials.dial(id).tweak(value); }
    void pickPreset(int number) override {
        if (const Preset* const picked = presetOfNumber(m_rooms.store.presets(), number))
            m_rooms.settings.pick(Preset(*picked));
    }
    void silence() override { m_silence(); }

  private:
    Rooms m_rooms;
    std::function<void()> m_silence;
};
