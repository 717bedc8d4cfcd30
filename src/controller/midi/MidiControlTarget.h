#pragma once

#include "parameters/Parameters.h"

/// What controllers do to the instrument, whoever owns it. [main]
class MidiControlTarget {
  public:
    virtual ~MidiControlTarget() = default;
    /// What a dial shows now, and turning it as the player would. Dial values of the table.
    virtual float dialValue(ParameterId id) = 0;
    virtual void turnDial(ParameterId id, float value) = 0;
    /// The preset of that number, 0 the first; numbers beyond the last are ignored.
    virtual void pickPreset(int number) = 0;
    /// All that sounds ends at once.
    virtual void silence() = 0;
};
