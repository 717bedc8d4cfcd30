#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "PlainEffects.h"
#include "PlainEnvelope.h"
#include "PlainGrains.h"
#include "PlainOutput.h"
#include "parameters/Preset.h"

/// The whole instrument in its plainest form: what it sounds like, one loop a unit.
class PlainInstrument {
  public:
    PlainInstrument(const std::vector<float>& sound, const Preset& preset);
    /// Of a preset, the effects alone.
    void setEffects(const Preset& preset);
    void noteOn(int key, std::uint8_t velocity);
    void noteOff(int key);
    std::vector<std::int16_t> render(std::uint32_t frames);

  private:
    std::size_t voiceToUse();

    struct Voice {
        PlainGrains grains;
        PlainEnvelope envelope;
        std::uint64_t age = 0;  // triggers so far when it was triggered last
        int key = -1;
    };
    std::array<Voice, 12> m_voices;
    std::uint64_t m_triggers = 0;
    PlainRingModulator m_ring;
    PlainResonance m_resonance;
    PlainOverdrive m_overdrive;
    PlainEcho m_echo;
    PlainConverter m_converter;
};
