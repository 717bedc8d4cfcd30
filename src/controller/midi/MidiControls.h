#pragma once

#include <functional>
#include <string>

#include "midi/MidiControlSettings.h"

/// What controllers do to the instrument, whoever owns it. [main]
class MidiControlTarget {
  public:
    virtual ~MidiControlTarget() = default;
    /// What a dial shows now, and turning it as the player would. Dial values of the table.
    virtual float dialValue(ParameterId id) = 0;
    virtual void turnDial(ParameterId id, float value) = 0;
    /// The preset of that number, 0 the first; numbers beyond the last are ignored.
    virtual void pickPreset(int number) = 0;
};

/// Pedals, wheels, programs and learned controllers, from messages to notes and dials. Everything
/// rests until settings().enabled. [main]
class MidiControls {
  public:
    const MidiControlSettings& settings() const;
    void setSettings(const MidiControlSettings& settings);

    /// The next controller that moves, on any device, turns this dial from now on.
    void learn(ParameterId id);
    void stopLearning();
    /// The dial that waits for a controller.
    std::optional<ParameterId> learning() const;
    /// No device's controller turns this dial any more.
    void forget(ParameterId id);
    /// "CC 74", or "CC 1, CC 74" where devices differ; empty for none. Of all devices ever learned.
    std::string controllersOf(ParameterId id) const;

    /// Called after learning, forgetting and changes of the settings.
    std::function<void()> changed;
};
