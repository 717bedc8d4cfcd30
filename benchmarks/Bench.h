#pragma once

#include <cmath>
#include <cstdint>
#include <memory>
#include <numbers>
#include <vector>

#include "ADSRShaper.h"
#include "DelayFilter.h"
#include "Float32ToSInt16.h"
#include "FloatMixer.h"
#include "GrainSynthesiser.h"
#include "OverdriveDistortionFilter.h"
#include "PieceSound.h"
#include "PlainEffects.h"
#include "PlainEnvelope.h"
#include "PlainGrains.h"
#include "PlainOutput.h"
#include "ResonanceFilter.h"
#include "RingModulateFilter.h"
#include "VectorWave.h"
#include "VornSequencePlayer.h"
#include "VornSequenceScrubber.h"
#include "audiounits/RenderScope.h"

/// What the benchmarks share: the instrument's graph, and the yardstick playing the same.
namespace bench {

inline constexpr int kVoices = 12;

inline std::vector<float> noise(std::size_t count) {
    std::vector<float> samples(count);
    std::uint32_t random = 1;
    for (float& sample : samples) {
        random = random * 1664525u + 1013904223u;
        sample = static_cast<float>(static_cast<std::int32_t>(random)) / 2147483648.f;
    }
    return samples;
}

class Sound : public VectorWave {
  public:
    explicit Sound(double seconds) : VectorWave(noise(static_cast<std::size_t>(seconds * 44100))) {}
};

struct Settings {
    float fmFrequency = 0.f;
    bool sounding = true;
    bool effects = false;
    int mode = 1;
    float grainSize = 0.5f;
    float transposition = 1.f;  // of every note
};

inline float voiceFrequency(int voice) {
    return 220.f * std::pow(2.f, static_cast<float>(voice) / 7.f);
}

/// Twelve voices, mixer, four effects and output stage.
struct Graph {
    Graph(const std::shared_ptr<const ContiguousWave>& sound, const Settings& settings)
        : echo(0.f, 0.f) {
        for (int v = 0; v < kVoices; ++v) {
            grains.push_back(std::make_unique<GrainSynthesiser>(sound));
            envelopes.push_back(std::make_unique<ADSRShaper>());
            GrainNoteData& note = *grains.back()->note();
            note.stopOnUntrigger = 2;
            note.frequency = voiceFrequency(v) * settings.transposition;
            note.grainSize = settings.grainSize;
            note.fmFrequency = settings.fmFrequency;
            note.grainMode = settings.mode;
            note.gain = 0.1f;
            envelopes.back()->setSettings({0.f, 0.f, 1.f, 0.02f});
            envelopes.back()->setTriggerTarget(grains.back().get());
            envelopes.back()->setUpstreamUnit(*grains.back());
            mixer.setUpstreamUnit(*envelopes.back(), 0, static_cast<std::uint32_t>(v));
            if (settings.sounding)
                envelopes.back()->trigger();
        }
        if (settings.effects)
            setEffects(ring, resonance, overdrive, echo);
        mixer.setMixdownSize(8192);
        output.setSourceSize(8192);
        output.setAutoGainControl(0.5f);
        ring.setUpstreamUnit(mixer);
        resonance.setUpstreamUnit(ring);
        overdrive.setUpstreamUnit(resonance);
        echo.setUpstreamUnit(overdrive);
        output.setUpstreamUnit(echo);
    }

    template <typename Ring, typename Resonance, typename Overdrive, typename Echo>
    static void setEffects(Ring& ring, Resonance& resonance, Overdrive& overdrive, Echo& echo) {
        ring.setFrequency(330.f);
        ring.setDepth(0.5f);
        resonance.setResonance(0.5f);
        resonance.setCutoff(0.7f);
        overdrive.setStrength(0.4f);
        echo.setDelay(0.25f);
        echo.setFeedback(0.5f);
    }

    void render(const VornUnit& unit, void* out, std::uint32_t frames, std::uint32_t bytes) const {
        AudioBufferList list = AudioBufferList::single(out, 1, bytes);
        AudioUnitRenderActionFlags flags = 0;
        const AudioTimeStamp time;
        unit.callback()->inputProc(unit.callback()->inputProcRefCon, &flags, &time, 0, frames,
                                   &list);
    }

    std::vector<std::unique_ptr<GrainSynthesiser>> grains;
    std::vector<std::unique_ptr<ADSRShaper>> envelopes;
    FloatMixer mixer;
    RingModulateFilter ring;
    ResonanceFilter resonance;
    OverdriveDistortionFilter overdrive;
    DelayFilter echo;
    Float32ToSInt16 output;
};

/// The yardstick's twelve voices and mixdown.
struct PlainVoices {
    PlainVoices(const ContiguousWave& sound, const Settings& settings) {
        for (int v = 0; v < kVoices; ++v) {
            PlainGrains voice;
            std::uint32_t count = sound.sampleCount();
            voice.samples = sound.retrieveWindowAt(0, &count, nullptr);
            voice.count = count;
            voice.frequency = voiceFrequency(v) * settings.transposition;
            voice.grainSize = settings.grainSize;
            voice.fmFrequency = settings.fmFrequency;
            voice.grainMode = settings.mode;
            voice.gain = 0.1f;
            voice.trigger();
            grains.push_back(voice);
            envelopes.emplace_back();
            envelopes.back().releaseTime = 0.02f;
            envelopes.back().trigger();
        }
    }
    void render(float* sum, std::uint32_t frames) {
        for (std::size_t v = 0; v < grains.size(); ++v) {
            float* into = v == 0 ? sum : scratch.data();
            grains[v].render(into, frames);
            envelopes[v].render(into, frames);
            if (v > 0)
                plainMix(sum, into, frames);
        }
    }

    std::vector<PlainGrains> grains;
    std::vector<PlainEnvelope> envelopes;
    std::vector<float> scratch = std::vector<float>(8192);
};

/// The yardstick's four effects.
struct PlainChain {
    PlainChain() {
        ring.frequency = 330.f;
        ring.depth = 0.5f;
        resonance.resonance = 0.5f;
        resonance.cutoff = 0.7f;
        overdrive.strength = 0.4f;
        echo.line.setDelay(0.25f);
        echo.feedback = 0.5f;
    }
    void render(float* samples, std::uint32_t frames) {
        ring.render(samples, frames);
        resonance.render(samples, frames);
        overdrive.render(samples, frames);
        echo.render(samples, frames);
    }
    PlainRingModulator ring;
    PlainResonance resonance;
    PlainOverdrive overdrive;
    PlainEcho echo;
};

/// A source that hands out the same noise again and again.
class Noise : public VornCallbackUnit {
  public:
    Noise() : VornCallbackUnit(&render, StreamDescription::float32(1)), m_sound(0.2) {}
    const float* samples() const {
        std::uint32_t count = 0;
        return m_sound.retrieveWindowAt(0, &count, nullptr);
    }

  private:
    static OSStatus render(void* unit, AudioUnitRenderActionFlags*, const AudioTimeStamp*,
                           std::uint32_t, std::uint32_t frames, AudioBufferList* data) {
        std::copy_n(static_cast<Noise*>(unit)->samples(), frames, data->samples<float>());
        return noErr;
    }
    Sound m_sound;
};

/// Ten windows of noise in one layout, as a sequence of ten blocks hands them out.
inline std::shared_ptr<PieceSound> sequence(WaveFormat format) {
    const PieceSound::Piece piece{static_cast<std::int32_t>(format),
                                  noise(format == WaveFormat::mono ? 4000 : 8000)};
    return std::make_shared<PieceSound>(std::vector<PieceSound::Piece>(10, piece));
}

}  // namespace bench
