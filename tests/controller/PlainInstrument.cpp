#include "PlainInstrument.h"

#include <cmath>

PlainInstrument::PlainInstrument(const std::vector<float>& sound, const Preset& preset) {
    const auto number = [&](ParameterId id) { return preset.number(id); };
    for (Voice& voice : m_voices) {
        PlainGrains& grains = voice.grains;
        grains.samples = sound.data();
        grains.count = static_cast<std::uint32_t>(sound.size());
        grains.stopOnUntrigger = true;
        grains.grainSpeed = number(ParameterId::grainSpeed);
        grains.grainSize = number(ParameterId::grainSize);
        grains.preamp = number(ParameterId::preamp);
        grains.fmFrequency = number(ParameterId::fmFrequency);
        grains.syncSpeed = preset.syncSpeed;
        grains.grainMode = preset.grainMotion;
        voice.envelope = {number(ParameterId::adsrAttack), number(ParameterId::adsrDecay),
                          number(ParameterId::adsrSustain), number(ParameterId::adsrRelease)};
    }
    setEffects(preset);
    m_converter.autoGainControl = 0.5f;
}

void PlainInstrument::setEffects(const Preset& preset) {
    m_ring.frequency = preset.number(ParameterId::ringModFrequency);
    m_ring.depth = preset.number(ParameterId::ringModDepth);
    m_resonance.cutoff = preset.number(ParameterId::filterCutoff);
    m_resonance.resonance = preset.number(ParameterId::filterResonance);
    m_resonance.line.setDelay(preset.filterBass());
    m_overdrive.strength = preset.number(ParameterId::distortion);
    m_echo.line.setDelay(preset.number(ParameterId::echoDelay));
    m_echo.feedback = preset.number(ParameterId::echoFeedback);
}

std::size_t PlainInstrument::voiceToUse() {
    for (std::size_t v = 0; v < m_voices.size(); ++v) {
        if (m_voices[v].envelope.triggered == 0)
            return v;
    }
    for (const bool releasingOnly : {true, false}) {
        std::size_t oldest = m_voices.size();
        for (std::size_t v = 0; v < m_voices.size(); ++v) {
            const bool fits = !releasingOnly || m_voices[v].envelope.triggered == 2;
            if (fits && (oldest == m_voices.size() || m_voices[v].age < m_voices[oldest].age))
                oldest = v;
        }
        if (oldest == m_voices.size())
            continue;
        if (!releasingOnly)
            m_voices[oldest].envelope.untrigger();
        return oldest;
    }
    return 0;
}

void PlainInstrument::noteOn(int key, std::uint8_t velocity) {
    for (const Voice& voice : m_voices) {
        if (voice.key == key)
            return;
    }
    Voice& voice = m_voices[voiceToUse()];
    voice.key = key;
    voice.age = ++m_triggers;
    voice.grains.frequency = 27.5f * std::pow(2.f, static_cast<float>(key / 12.0));
    voice.grains.gain = static_cast<float>(velocity) / 127.f;
    voice.envelope.trigger();
    voice.grains.trigger();
}

void PlainInstrument::noteOff(int key) {
    for (Voice& voice : m_voices) {
        if (voice.key != key)
            continue;
        voice.key = -1;
        voice.envelope.untrigger();
    }
}

std::vector<std::int16_t> PlainInstrument::render(std::uint32_t frames) {
    std::vector<float> sum(frames);
    std::vector<float> one(frames);
    for (Voice& voice : m_voices) {
        voice.grains.render(one.data(), frames);
        if (voice.envelope.triggered == 0)
            one.assign(frames, 0.f);
        else if (voice.envelope.render(one.data(), frames))
            voice.grains.untrigger();
        plainMix(sum.data(), one.data(), frames);
    }
    m_ring.render(sum.data(), frames);
    m_resonance.render(sum.data(), frames);
    m_overdrive.render(sum.data(), frames);
    m_echo.render(sum.data(), frames);
    std::vector<std::int16_t> out(frames);
    m_converter.render(sum.data(), out.data(), frames);
    return out;
}
