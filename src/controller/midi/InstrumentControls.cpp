#include "midi/InstrumentControls.h"

#include "midi/ProgramNumber.h"

float InstrumentControls::dialValue(ParameterId id) {
    return ::dialValue(id, m_instrument.parameter(id));
}

void InstrumentControls::turnDial(ParameterId id, float value) {
    m_instrument.setParameter(id, storedValue(id, value));
}

void InstrumentControls::pickPreset(int number) {
    const Preset* const picked = presetOfNumber(m_presets, number);
    if (!picked)
        return;
    m_instrument.setEffectsFromPreset(*picked);
    if (!picked->wave) {
        m_sounds.cancel();
        return m_instrument.setVoicesFromPreset(*picked);
    }
    const std::string path = WaveChoice::findWavePath(*picked->wave).value_or("");
    m_sounds.setWaveTo(
        path, [this, preset = *picked](bool) { m_instrument.setVoicesFromPreset(preset); });
}
