#include "GrainSynthesiser.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <thread>

#include "PlainGrains.h"
#include "RandomSource.h"
#include "SameBits.h"
#include "TestUnits.h"

namespace {

using Wave = std::shared_ptr<const VectorWave>;

Wave noiseWave(Dice& dice, std::size_t count) {
    return std::make_shared<const VectorWave>(dice.noise(count));
}

// A voice and its plain model, played alike.
class Pair {
  public:
    explicit Pair(const Wave& wave) : unit(wave) { look(wave); }

    void setWave(const Wave& wave) {
        unit.setWaveSource(wave);
        look(wave);
        plain.triggered = false;
        // Heads beyond a shorter sound are the plain model's only trouble.
        for (float& head : plain.head)
            if (head > static_cast<float>(plain.count))
                head = std::fmod(head, static_cast<float>(plain.count));
    }
    void trigger() {
        unit.trigger();
        plain.trigger();
    }
    void untrigger() {
        unit.untrigger();
        plain.untrigger();
    }
    void set(float frequency, float size, float speed, float fm, int mode, bool sync) {
        GrainNoteData& note = *unit.note();
        note.frequency = plain.frequency = frequency;
        unit.setGrainSize(plain.grainSize = size);
        unit.setGrainSpeed(plain.grainSpeed = speed);
        unit.setFmFrequency(plain.fmFrequency = fm);
        unit.setSyncSpeed(plain.syncSpeed = sync);
        note.grainMode = plain.grainMode = mode;
    }
    void setLevels(float preamp, float gain, bool stop) {
        unit.setPreamp(plain.preamp = preamp);
        unit.note()->gain = plain.gain = gain;
        unit.note()->stopOnUntrigger = stop ? 2 : 0;
        plain.stopOnUntrigger = stop;
    }
    void expectSame(std::uint32_t frames) {
        std::vector<float> wanted(frames);
        const std::vector<float> got = renderUnit<float>(unit, frames);
        inRender([&] { plain.render(wanted.data(), frames); });
        ASSERT_TRUE(sameBits(got, wanted));
        const GrainNoteData& note = *unit.note();
        ASSERT_TRUE(sameBits(note.heads[0], plain.head[0]));
        ASSERT_TRUE(sameBits(note.heads[1], plain.head[1]));
        ASSERT_TRUE(sameBits(note.heads[2], plain.clock));
        ASSERT_TRUE(sameBits(note.smoothedGain, plain.smoothedGain));
        ASSERT_EQ(note.current, plain.current);
        ASSERT_EQ(note.retrigger, plain.retrigger);
        ASSERT_EQ(note.reversed, plain.reversed);
    }

    GrainSynthesiser unit;
    PlainGrains plain;

  private:
    void look(const Wave& wave) {
        plain.samples = wave->samples().data();
        plain.count = wave->sampleCount();
    }
};

void setRandomly(Pair& pair, Dice& dice) {
    const float frequency = dice.oneIn(4) ? dice.of({27.5f, 440.f, 880.f, 4186.009f, 220.f})
                                          : dice.between(20.f, 4200.f);
    const float size = dice.oneIn(4) ? dice.of({0.f, 1.f, 0.5f}) : dice.between(0.f, 1.f);
    const float speed = dice.oneIn(3) ? dice.of({0.f, 1.f, 2.f, -1.f}) : dice.between(-4.f, 4.f);
    const float fm = dice.oneIn(2) ? 0.f : dice.between(0.f, 2.f);
    pair.set(frequency, size, speed, fm, dice.below(8), dice.oneIn(3));
    pair.setLevels(dice.between(0.f, 4.f), dice.between(0.f, 1.f), !dice.oneIn(4));
}

void playStorm(Pair& pair, Dice& dice, int steps) {
    for (int i = 0; i < steps; ++i) {
        SCOPED_TRACE(i);
        if (dice.oneIn(3))
            setRandomly(pair, dice);
        if (dice.oneIn(3))
            pair.trigger();
        if (dice.oneIn(12))
            pair.untrigger();
        pair.expectSame(dice.of(kBufferSizes));
        if (testing::Test::HasFatalFailure())
            return;
    }
}

}  // namespace

TEST(GrainSynthesiser, isThePlainVoiceToTheBit) {
    srandom(7);
    RandomSource::seed(7);
    for (std::size_t count : {1u, 2u, 15u, 100u, 44100u, 1000000u}) {
        SCOPED_TRACE(count);
        Dice dice(static_cast<unsigned>(count));
        Pair pair(noiseWave(dice, count));
        playStorm(pair, dice, 1200);
        if (HasFatalFailure())
            return;
    }
}

TEST(GrainSynthesiser, countsBeyondTheFloatsThatHoldEveryInteger) {
    srandom(8);
    RandomSource::seed(8);
    for (std::size_t count : {16777219u, 33554437u}) {
        SCOPED_TRACE(count);
        Dice dice(3);
        Pair pair(std::make_shared<const VectorWave>([&] {
            std::vector<float> samples = dice.noise(4096);
            samples.resize(count);
            for (std::size_t i = count - 5000; i < count; ++i)
                samples[i] = dice.between(-1.f, 1.f);
            return samples;
        }()));
        pair.trigger();
        for (int i = 0; i < 60; ++i) {
            setRandomly(pair, dice);
            // Close to the end, where positions are rounded to whole numbers.
            for (int head : {0, 1})
                pair.unit.note()->heads[head] = pair.plain.head[head] =
                    static_cast<float>(count - 8 - static_cast<std::size_t>(dice.below(400)));
            pair.expectSame(512);
            pair.expectSame(1023);
            if (HasFatalFailure())
                return;
        }
    }
}

TEST(GrainSynthesiser, takesOverHeadsWhenTheSoundBecomesShorter) {
    srandom(9);
    RandomSource::seed(9);
    Dice dice(9);
    const Wave waves[] = {noiseWave(dice, 30000), noiseWave(dice, 7), noiseWave(dice, 5000),
                          noiseWave(dice, 1)};
    Pair pair(waves[0]);
    for (int i = 0; i < 400; ++i) {
        SCOPED_TRACE(i);
        if (dice.oneIn(5))
            pair.setWave(dice.of(waves));
        setRandomly(pair, dice);
        pair.trigger();
        pair.expectSame(dice.of(kBufferSizes));
        if (HasFatalFailure())
            return;
    }
}

TEST(GrainSynthesiser, isSilentWithoutASound) {
    for (const auto& wave : {Wave(), std::make_shared<const VectorWave>(std::vector<float>())}) {
        GrainSynthesiser unit(wave);
        unit.trigger();
        unit.note()->gain = 0.25f;
        bool silent = false;
        EXPECT_EQ(renderUnit<float>(unit, 64, &silent), std::vector<float>(64, 0.f));
        EXPECT_TRUE(silent);
        EXPECT_EQ(unit.note()->smoothedGain, 0.25f);
    }
}

TEST(GrainSynthesiser, outlivesWildNumbers) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const float wild[] = {std::nanf(""), kInfinity, -kInfinity, 3e38f, -3e38f, 1e-40f, -1.f, 0.f};
    Dice dice(11);
    GrainSynthesiser unit(noiseWave(dice, 1000));
    unit.trigger();
    for (int i = 0; i < 3000; ++i) {
        GrainNoteData& note = *unit.note();
        Shared<float>* fields[] = {&note.frequency, &note.heads[0],    &note.heads[1],
                                   &note.heads[2],  &note.grainSize,   &note.grainSpeed,
                                   &note.preamp,    &note.fmFrequency, &note.smoothedGain};
        *fields[dice.below(9)] = dice.of(wild);
        *fields[dice.below(9)] = dice.between(0.f, 2.f);
        note.grainMode = dice.below(9) - 1;
        EXPECT_EQ(renderUnit<float>(unit, 64).size(), 64u);
    }
    unit.setWaveSource(nullptr);
    EXPECT_EQ(renderUnit<float>(unit, 8), std::vector<float>(8, 0.f));
}

TEST(GrainSynthesiser, changesItsSoundUnderARunningRender) {
    Dice dice(12);
    GrainSynthesiser unit(noiseWave(dice, 500));
    unit.note()->stopOnUntrigger = 2;
    std::atomic<bool> done{false};
    std::thread audio([&] {
        while (!done)
            renderUnit<float>(unit, 128);
    });
    for (int i = 0; i < 300; ++i) {
        unit.setWaveSource(noiseWave(dice, static_cast<std::size_t>(1 + dice.below(900))));
        unit.trigger();
        unit.setGrainSize(dice.between(0.f, 1.f));
        if (i % 3 == 0)
            unit.untrigger();
    }
    done = true;
    audio.join();
    EXPECT_FALSE(unit.waveSource() == nullptr);
}
