#pragma once

#include <memory>

#include "DelayFilter.h"
#include "Float32ToSInt16.h"
#include "FloatMixer.h"
#include "OverdriveDistortionFilter.h"
#include "PassthruRecordingUnit.h"
#include "ResonanceFilter.h"
#include "RingModulateFilter.h"
#include "graph/Vornery.h"
#include "notes/Notes.h"
#include "parameters/Parameters.h"
#include "parameters/Preset.h"
#include "runloop/RunLoop.h"
#include "startup/Voices.h"
#include "wavechoice/WaveChoice.h"

/// The instrument without its screen: twelve voices into one chain of effects into the hardware,
/// and what plays and sets them. One to a process. It owns every unit and stops the engine before
/// any of them goes. [main]
class Instrument {
  public:
    /// `automaticGain` keeps the output's peak at half of full scale.
    explicit Instrument(bool automaticGain = true);
    ~Instrument();
    Instrument(const Instrument&) = delete;
    Instrument& operator=(const Instrument&) = delete;

    /// Starts and stops the hardware.
    void play() { m_engine.play(); }
    void stop() { m_engine.stop(); }

    Notes& notes() { return m_notes; }
    WaveChoice& waves() { return m_waves; }
    const Voices& voices() const { return m_voices; }
    const Float32ToSInt16& converter() const { return m_converter; }
    /// Loudest sample of the output since the last call, 0 to 1 of full scale.
    float takePeak() { return m_converter.takePeak(); }
    /// Hears all that is played, and nothing else.
    PassthruRecordingUnit& recordingUnit() { return m_recordingUnit; }

    /// On is a target peak of 0.5.
    void setAutomaticGain(bool on);

    /// The present settings as a preset: what the units hold, as they would store it.
    Preset makePresetFromSettings() const;
    /// Sets all units from a preset. A preset that names no wave keeps the present one; one that
    /// does answers how its loading went, for which this waits.
    WaveChoice::Loaded updateSettingsFromPreset(const Preset& preset);
    /// Its two halves, for who does not wait: effects and envelope; and what belongs to the voices,
    /// to be set behind the preset's sound, so that the old one is not heard in the new one's
    /// grains.
    void setEffectsFromPreset(const Preset& preset);
    void setVoicesFromPreset(const Preset& preset);

    /// One number of the parameter table as presets store it, read from and given to the unit that
    /// it belongs to.
    float parameter(ParameterId id) const;
    void setParameter(ParameterId id, float stored);
    /// All four values of the envelope at once.
    void setEnvelopes(const ADSRSettings& settings);
    bool syncSpeed() const;
    void setSyncSpeed(bool on);
    int grainMode() const;
    void setGrainMode(int mode);

    /// Whether any key is held by a voice.
    bool keysSound() const;
    /// Length of the echo's delay line, in frames.
    std::uint32_t echoFrames() { return m_delayUnit.data()->length; }
    /// Silences everything at once: releases all keys, ends all releases, empties the delay lines.
    void silence();

  private:
    void initialiseAudio(bool automaticGain);
    void makeVoice(unsigned index);
    void setNumbers(const Preset& preset, bool ofVoices);
    ADSRSettings envelope() const;
    void settleEnvelopes();

    Vornery& m_engine = Vornery::sharedInstance();
    Voices m_voices;
    FloatMixer m_floatMixer;
    RingModulateFilter m_ringModUnit;
    ResonanceFilter m_resonanceUnit;
    OverdriveDistortionFilter m_distortionUnit;
    DelayFilter m_delayUnit{0.f, 0.f};
    Float32ToSInt16 m_converter;
    PassthruRecordingUnit m_recordingUnit;
    Notes m_notes{m_voices};
    WaveChoice m_waves{m_voices};
    ADSRSettings m_envelope;        // wanted, while settling
    RunLoop::Token m_settling = 0;  // 0: all voices have it
};
