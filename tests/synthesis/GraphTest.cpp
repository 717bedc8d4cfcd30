#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "ADSRShaper.h"
#include "DelayFilter.h"
#include "Float32ToSInt16.h"
#include "FloatMixer.h"
#include "GrainSynthesiser.h"
#include "OverdriveDistortionFilter.h"
#include "PlainEffects.h"
#include "PlainEnvelope.h"
#include "PlainGrains.h"
#include "PlainOutput.h"
#include "RandomSource.h"
#include "ResonanceFilter.h"
#include "RingModulateFilter.h"
#include "SameBits.h"
#include "TestUnits.h"

namespace {

constexpr std::size_t kVoices = 12;

// Twelve voices, mixer, effects and output stage, and the same in plain form.
struct Graph {
    explicit Graph(const std::shared_ptr<const VectorWave>& sound) {
        for (std::uint32_t v = 0; v < kVoices; ++v) {
            grains.push_back(std::make_unique<GrainSynthesiser>(sound));
            grains[v]->note()->stopOnUntrigger = 2;
            envelopes[v].setTriggerTarget(grains[v].get());
            envelopes[v].setUpstreamUnit(*grains[v]);
            mixer.setUpstreamUnit(envelopes[v], 0, v);
            plainGrains[v].samples = sound->samples().data();
            plainGrains[v].count = sound->sampleCount();
            plainGrains[v].stopOnUntrigger = true;
        }
        ring.setUpstreamUnit(mixer);
        resonance.setUpstreamUnit(ring);
        overdrive.setUpstreamUnit(resonance);
        echo.setUpstreamUnit(overdrive);
        output.setUpstreamUnit(echo);
        output.setAutoGainControl(plainOutput.autoGainControl = 0.5f);
    }

    void play(Dice& dice, std::size_t v) {
        grains[v]->note()->frequency = plainGrains[v].frequency = dice.between(27.5f, 4000.f);
        grains[v]->note()->gain = plainGrains[v].gain = dice.between(0.f, 1.f);
        grains[v]->note()->grainMode = plainGrains[v].grainMode = dice.below(7);
        const ADSRSettings settings{dice.between(0.f, 0.1f), dice.between(0.f, 0.1f),
                                    dice.between(0.f, 1.f), dice.between(0.01f, 0.1f)};
        envelopes[v].setSettings(settings);
        plainEnvelopes[v].attackTime = settings.attackTime;
        plainEnvelopes[v].decayTime = settings.decayTime;
        plainEnvelopes[v].sustainLevel = settings.sustainLevel;
        plainEnvelopes[v].releaseTime = settings.releaseTime;
        envelopes[v].trigger();
        plainEnvelopes[v].trigger();
        plainGrains[v].trigger();
    }
    void release(std::size_t v) {
        envelopes[v].untrigger();
        plainEnvelopes[v].untrigger();
    }
    void setEffects(Dice& dice) {
        ring.setFrequency(plainRing.frequency = dice.between(0.f, 2000.f));
        ring.setDepth(plainRing.depth = dice.oneIn(2) ? 0.f : dice.between(0.f, 1.f));
        resonance.setResonance(plainResonance.resonance = dice.oneIn(2) ? 0.f : 0.5f);
        resonance.setCutoff(plainResonance.cutoff = dice.oneIn(2) ? 1.f : 0.3f);
        overdrive.setStrength(plainOverdrive.strength = dice.of({0.f, 0.f, 0.3f, 0.9f}));
        const float delay = dice.of({0.f, 0.001f, 0.05f});
        echo.setDelay(delay);
        plainEcho.line.setDelay(delay);
        echo.setFeedback(plainEcho.feedback = dice.between(0.f, 0.8f));
    }

    std::vector<std::int16_t> renderPlain(std::uint32_t frames) {
        std::vector<float> sum(frames);
        std::vector<float> voice(frames);
        for (std::size_t v = 0; v < kVoices; ++v) {
            std::vector<float>& into = v == 0 ? sum : voice;
            plainGrains[v].render(into.data(), frames);
            if (plainEnvelopes[v].render(into.data(), frames))
                plainGrains[v].untrigger();
            if (v > 0)
                plainMix(sum.data(), into.data(), frames);
        }
        plainRing.render(sum.data(), frames);
        plainResonance.render(sum.data(), frames);
        plainOverdrive.render(sum.data(), frames);
        plainEcho.render(sum.data(), frames);
        std::vector<std::int16_t> out(frames);
        plainOutput.render(sum.data(), out.data(), frames);
        return out;
    }

    void expectSame(std::uint32_t frames) {
        std::vector<std::int16_t> wanted;
        inRender([&] { wanted = renderPlain(frames); });
        const std::vector<std::int16_t> got = renderUnit<std::int16_t>(output, frames);
        for (std::uint32_t k = 0; k < frames; ++k)
            ASSERT_NEAR(got[k], wanted[k], 1) << k;
        ASSERT_TRUE(sameBits(ring.offset(), plainRing.offset));
        ASSERT_EQ(resonance.data()->state1, plainResonance.state1);
        ASSERT_EQ(resonance.data()->state2, plainResonance.state2);
        ASSERT_EQ(resonance.data()->position, plainResonance.line.position);
        ASSERT_EQ(echo.data()->position, plainEcho.line.position);
        ASSERT_NEAR(output.internalGainLevel(), plainOutput.internalGainLevel, 1e-5f);
        for (std::size_t v = 0; v < kVoices; ++v) {
            ASSERT_EQ(envelopes[v].state().triggered, plainEnvelopes[v].triggered);
            ASSERT_TRUE(sameBits(grains[v]->note()->heads[0], plainGrains[v].head[0]));
            ASSERT_TRUE(sameBits(grains[v]->note()->smoothedGain, plainGrains[v].smoothedGain));
        }
    }

    std::vector<std::unique_ptr<GrainSynthesiser>> grains;
    ADSRShaper envelopes[kVoices];
    FloatMixer mixer;
    RingModulateFilter ring;
    ResonanceFilter resonance;
    OverdriveDistortionFilter overdrive;
    DelayFilter echo{0.f, 0.f};
    Float32ToSInt16 output;

    PlainGrains plainGrains[kVoices];
    PlainEnvelope plainEnvelopes[kVoices];
    PlainRingModulator plainRing;
    PlainResonance plainResonance;
    PlainOverdrive plainOverdrive;
    PlainEcho plainEcho;
    PlainConverter plainOutput;
};

}  // namespace

// Notes, tails and long silences between them: what is skipped in a silence must not be missed.
TEST(Graph, soundsLikeItsPlainFormThroughNotesAndSilences) {
    srandom(61);
    RandomSource::seed(61);
    Dice dice(61);
    Graph graph(std::make_shared<const VectorWave>(dice.noise(20000)));
    for (int phrase = 0; phrase < 25; ++phrase) {
        SCOPED_TRACE(phrase);
        graph.setEffects(dice);
        for (std::size_t v = 0; v < kVoices; ++v)
            if (dice.oneIn(3))
                graph.play(dice, v);
        for (int i = 0; i < 8; ++i)
            graph.expectSame(dice.of(kBufferSizes));
        for (std::size_t v = 0; v < kVoices; ++v)
            graph.release(v);
        const int silence = dice.of({5, 40, 120});
        for (int i = 0; i < silence; ++i) {
            graph.expectSame(dice.of(kBufferSizes));
            if (dice.oneIn(40))
                graph.setEffects(dice);
        }
        if (HasFatalFailure())
            return;
    }
}
