#pragma once

#include "midi/MidiControlTarget.h"
#include "parameters/PresetList.h"
#include "startup/Instrument.h"
#include "wavechoice/WaveLoading.h"

/// What controllers do to an instrument that nobody looks at. [main]
class InstrumentControls final : public MidiControlTarget {
  public:
    /// None is owned. Programs are picked from `presets` as they are by then.
    InstrumentControls(Instrument& instrument, const PresetList::Presets& presets)
        : m_instrument(instrument), m_presets(presets), m_sounds(instrument.waves()) {}

    float dialValue(ParameterId id) override;
    void turnDial(ParameterId id, float value) override;
    /// Its effects at once, its sound and what belongs to the voices when it has been loaded; of
    /// overlapping choices the last wins.
    void pickPreset(int number) override;
    void silence() override { m_instrument.silence(); }

  private:
    Instrument& m_instrument;
    const PresetList::Presets& m_presets;
    WaveLoading m_sounds;
};
