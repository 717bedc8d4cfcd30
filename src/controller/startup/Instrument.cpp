#include "startup/Instrument.h"

#include <algorithm>

#include "audiounits/devices/AudioDevice.h"

namespace {

constexpr float kGainTarget = 0.5f;
constexpr float kFirstPitch = 440.f;
constexpr ADSRSettings kFirstEnvelope{0.f, 0.f, 1.f, 0.02f};
constexpr int kSilenceOnUntrigger = 2;
constexpr int kStageHeld = 1;
constexpr double kSettleSeconds = 0.05;  // longer than a render

/// The envelope's field that a parameter sets; null for parameters of other units.
float ADSRSettings::*envelopeField(ParameterId id) {
    switch (id) {
        case ParameterId::adsrAttack:
            return &ADSRSettings::attackTime;
        case ParameterId::adsrDecay:
            return &ADSRSettings::decayTime;
        case ParameterId::adsrSustain:
            return &ADSRSettings::sustainLevel;
        case ParameterId::adsrRelease:
            return &ADSRSettings::releaseTime;
        default:
            return nullptr;
    }
}

}  // namespace

Instrument::Instrument(bool automaticGain) {
    initialiseAudio(automaticGain);
}

Instrument::~Instrument() {
    RunLoop::main().cancel(m_settling);
    m_engine.stop();
    m_engine.uninitialise();
    m_engine.disconnect(m_recordingUnit, 0, m_engine.mixer(), 0);
}

void Instrument::initialiseAudio(bool automaticGain) {
    m_engine.mixer().setInputBusCount(1);
    for (unsigned i = 0; i < kVoiceCount; ++i)
        makeVoice(i);
    setAutomaticGain(automaticGain);
    m_converter.setNotifyClipping(true);
    m_engine.connect(m_floatMixer, m_ringModUnit);
    m_engine.connect(m_ringModUnit, m_resonanceUnit);
    m_engine.connect(m_resonanceUnit, m_distortionUnit);
    m_engine.connect(m_distortionUnit, m_delayUnit);
    m_engine.connect(m_delayUnit, m_converter);
    m_engine.connect(m_converter, m_recordingUnit);
    m_engine.connect(m_recordingUnit, m_engine.mixer());
    // No device asks for more than this, so no render has to make these buffers grow.
    m_floatMixer.setMixdownSize(kMaximumDeviceFrames);
    m_converter.setSourceSize(kMaximumDeviceFrames);
    m_floatMixer.initialise();
    m_converter.initialise();
    m_engine.initialise();
}

void Instrument::makeVoice(unsigned index) {
    auto& synth = m_voices.voiceSynths[index] = std::make_unique<GrainSynthesiser>(nullptr);
    auto& envelope = m_voices.voiceEnvelopes[index] = std::make_unique<ADSRShaper>();
    synth->note()->frequency = kFirstPitch;
    m_engine.connect(*synth, *envelope);
    m_engine.connect(*envelope, 0, m_floatMixer, static_cast<std::int32_t>(index));
    envelope->setTriggerTarget(synth.get());
    envelope->setSettings(kFirstEnvelope);
    synth->initialise();
    envelope->initialise();
    synth->note()->stopOnUntrigger = kSilenceOnUntrigger;
}

void Instrument::setAutomaticGain(bool on) {
    m_converter.setAutoGainControl(on ? kGainTarget : 0.f);
}

Preset Instrument::makePresetFromSettings() const {
    Preset preset;
    for (const Parameter& row : kParameters) {
        if (row.kind == ParameterKind::number)
            preset.setNumber(row.id, parameter(row.id));
    }
    preset.syncSpeed = syncSpeed();
    preset.grainMotion = grainMode();
    preset.wave = m_waves.currentWaveFilename();
    return preset;
}

WaveChoice::Loaded Instrument::updateSettingsFromPreset(const Preset& preset) {
    setEffectsFromPreset(preset);
    WaveChoice::Loaded loaded;
    if (preset.wave)
        loaded = m_waves.setWaveTo(WaveChoice::findWavePath(*preset.wave).value_or(""));
    setVoicesFromPreset(preset);
    return loaded;
}

void Instrument::setEffectsFromPreset(const Preset& preset) {
    setNumbers(preset, false);
    setEnvelopes({preset.number(ParameterId::adsrAttack), preset.number(ParameterId::adsrDecay),
                  preset.number(ParameterId::adsrSustain),
                  preset.number(ParameterId::adsrRelease)});
}

void Instrument::setVoicesFromPreset(const Preset& preset) {
    setNumbers(preset, true);
    setSyncSpeed(preset.syncSpeed);
    setGrainMode(preset.grainMotion);
}

void Instrument::setNumbers(const Preset& preset, bool ofVoices) {
    for (const Parameter& row : kParameters) {
        if (row.kind == ParameterKind::number && !envelopeField(row.id) &&
            isOfVoices(row.id) == ofVoices)
            setParameter(row.id, preset.number(row.id));
    }
}

bool Instrument::keysSound() const {
    return std::ranges::any_of(m_voices.voiceEnvelopes, [](const auto& envelope) {
        return envelope->state().triggered == kStageHeld;
    });
}

void Instrument::silence() {
    m_notes.releaseAll();
    for (const auto& envelope : m_voices.voiceEnvelopes)
        envelope->untriggerFinished();
    m_resonanceUnit.silence();
    m_delayUnit.silence();
}

float Instrument::parameter(ParameterId id) const {
    const GrainNoteData& note = *m_voices.voiceSynths[0]->note();
    switch (id) {
        case ParameterId::grainSpeed:
            return note.grainSpeed;
        case ParameterId::grainSize:
            return note.grainSize;
        case ParameterId::preamp:
            return note.preamp;
        case ParameterId::fmFrequency:
            return note.fmFrequency;
        case ParameterId::echoDelay:
            return m_delayUnit.delay();
        case ParameterId::echoFeedback:
            return m_delayUnit.feedback();
        case ParameterId::filterCutoff:
            return m_resonanceUnit.cutoff();
        case ParameterId::filterResonance:
            return m_resonanceUnit.resonance();
        case ParameterId::filterBass:
            return m_resonanceUnit.delay();
        case ParameterId::ringModFrequency:
            return m_ringModUnit.frequency();
        case ParameterId::ringModDepth:
            return m_ringModUnit.depth();
        case ParameterId::distortion:
            return m_distortionUnit.strength();
        default:
            return envelope().*envelopeField(id);
    }
}

void Instrument::setParameter(ParameterId id, float stored) {
    const auto eachSynth = [&](auto setter) {
        for (const auto& synth : m_voices.voiceSynths)
            (synth.get()->*setter)(stored);
    };
    switch (id) {
        case ParameterId::grainSpeed:
            return eachSynth(&GrainSynthesiser::setGrainSpeed);
        case ParameterId::grainSize:
            return eachSynth(&GrainSynthesiser::setGrainSize);
        case ParameterId::preamp:
            return eachSynth(&GrainSynthesiser::setPreamp);
        case ParameterId::fmFrequency:
            return eachSynth(&GrainSynthesiser::setFmFrequency);
        case ParameterId::echoDelay:
            return m_delayUnit.setDelay(stored);
        case ParameterId::echoFeedback:
            return m_delayUnit.setFeedback(stored);
        case ParameterId::filterCutoff:
            return m_resonanceUnit.setCutoff(stored);
        case ParameterId::filterResonance:
            return m_resonanceUnit.setResonance(stored);
        case ParameterId::filterBass:
            return m_resonanceUnit.setDelay(stored == 0.f ? kDefaultFilterBass : stored);
        case ParameterId::ringModFrequency:
            return m_ringModUnit.setFrequency(stored);
        case ParameterId::ringModDepth:
            return m_ringModUnit.setDepth(stored);
        case ParameterId::distortion:
            return m_distortionUnit.setStrength(stored);
        default:
            ADSRSettings changed = envelope();
            changed.*envelopeField(id) = stored;
            return setEnvelopes(changed);
    }
}

ADSRSettings Instrument::envelope() const {
    return m_settling ? m_envelope : m_voices.voiceEnvelopes[0]->settings();
}

// A render puts back the settings that it began with: what it undoes is written again.
void Instrument::setEnvelopes(const ADSRSettings& settings) {
    m_envelope = settings;
    for (const auto& envelope : m_voices.voiceEnvelopes)
        envelope->setSettings(settings);
    RunLoop::main().cancel(m_settling);
    m_settling = RunLoop::main().callAfter(kSettleSeconds, [this] { settleEnvelopes(); });
}

void Instrument::settleEnvelopes() {
    m_settling = 0;
    const auto holds = [this](const auto& envelope) { return envelope->settings() == m_envelope; };
    if (!std::ranges::all_of(m_voices.voiceEnvelopes, holds))
        setEnvelopes(m_envelope);
}

bool Instrument::syncSpeed() const {
    return m_voices.voiceSynths[0]->syncSpeed();
}

void Instrument::setSyncSpeed(bool on) {
    for (const auto& synth : m_voices.voiceSynths)
        synth->setSyncSpeed(on);
}

int Instrument::grainMode() const {
    return m_voices.voiceSynths[0]->note()->grainMode;
}

void Instrument::setGrainMode(int mode) {
    for (const auto& synth : m_voices.voiceSynths)
        synth->note()->grainMode = mode;
}
