#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "DelayFilter.h"
#include "LowPassFilter.h"
#include "OverdriveDistortionFilter.h"
#include "PlainEffects.h"
#include "ResonanceFilter.h"
#include "RingModulateFilter.h"
#include "SameBits.h"
#include "TestUnits.h"

namespace {

// Loud noise, then stretches of silence and single clicks, so that tails are heard out.
std::vector<float> nextInput(Dice& dice, std::uint32_t frames) {
    switch (dice.below(4)) {
        case 0:
            return dice.noise(frames);
        case 1: {
            std::vector<float> click(frames, 0.f);
            click[frames / 2] = 1.f;
            return click;
        }
        default:
            return std::vector<float>(frames, 0.f);
    }
}

// Sets the unit and its model alike now and then, and compares what they make of the same input.
template <typename Unit, typename Plain, typename Set, typename Compare>
void compareOverTime(Unit& unit, Plain& plain, unsigned seed, int buffers, Set set,
                     Compare compare) {
    Dice dice(seed);
    BufferSource source;
    unit.setUpstreamUnit(source);
    for (int i = 0; i < buffers; ++i) {
        SCOPED_TRACE(i);
        if (dice.oneIn(6))
            set(dice);
        const std::uint32_t frames = dice.of(kBufferSizes);
        source.samples = nextInput(dice, frames);
        std::vector<float> wanted = source.samples;
        inRender([&] { plain.render(wanted.data(), frames); });
        bool silent = false;
        const std::vector<float> got = renderUnit<float>(unit, frames, &silent);
        ASSERT_TRUE(compare(got, wanted));
        if (silent) {
            ASSERT_EQ(got, std::vector<float>(frames, 0.f));
        }
    }
}

auto bits = [](auto& got, auto& wanted) { return sameBits(got, wanted); };
auto values = [](auto& got, auto& wanted) { return sameValues(got, wanted); };
auto steps = [](auto& got, auto& wanted) { return withinOneStep(got, wanted); };

}  // namespace

TEST(RingModulateFilter, followsItsModel) {
    RingModulateFilter unit;
    PlainRingModulator plain;
    auto set = [&](Dice& dice) {
        unit.setFrequency(plain.frequency =
                              dice.oneIn(3) ? dice.of({0.f, 1.f, 22050.f, 44100.f, 90000.f, -20.f})
                                            : dice.between(0.f, 5000.f));
        unit.setDepth(plain.depth = dice.oneIn(2) ? dice.of({0.f, 1.f}) : dice.between(0.f, 1.f));
        if (dice.oneIn(5))
            unit.setOffset(plain.offset = dice.between(-50.f, 50.f));
    };
    compareOverTime(unit, plain, 31, 3000, set, [&](auto& got, auto& wanted) {
        EXPECT_TRUE(sameBits(unit.offset(), plain.offset));
        return withinOneStep(got, wanted);
    });
}

TEST(OverdriveDistortionFilter, followsItsModel) {
    OverdriveDistortionFilter unit;
    PlainOverdrive plain;
    auto set = [&](Dice& dice) {
        unit.setStrength(plain.strength = dice.oneIn(2) ? dice.of({0.f, -1.f, 0.5f, 0.999f, 1.f})
                                                        : dice.between(0.f, 1.f));
    };
    compareOverTime(unit, plain, 32, 3000, set, steps);
}

TEST(OverdriveDistortionFilter, followsItsModelFromTheSmallestToTheLargest) {
    OverdriveDistortionFilter unit;
    PlainOverdrive plain;
    BufferSource source;
    unit.setUpstreamUnit(source);
    Dice dice(33);
    for (int i = 0; i < 2000; ++i) {
        unit.setStrength(plain.strength = dice.between(0.f, 1.f));
        source.samples.resize(512);
        for (float& x : source.samples)
            x = std::ldexp(dice.between(0.5f, 1.f), dice.below(150) - 125) * dice.of({-1.f, 1.f});
        std::vector<float> wanted = source.samples;
        inRender([&] { plain.render(wanted.data(), 512); });
        ASSERT_THAT(renderUnit<float>(unit, 512), testing::Pointwise(testing::FloatEq(), wanted));
    }
    unit.setStrength(0.5f);
    source.samples = {0.25f, -0.25f, 0.f, 1.f, -1.f, 4.f};
    const std::vector<float> wanted = {0.5f, -0.5f, 0.f, 1.f, -1.f, 2.f};
    EXPECT_THAT(renderUnit<float>(unit, 6), testing::Pointwise(testing::FloatEq(), wanted));
}

// The curve lifts the smallest values of the sine most, just where a sloppy sine is off most.
TEST(OverdriveDistortionFilter, followsItsModelBehindTheRingModulator) {
    RingModulateFilter ring;
    OverdriveDistortionFilter overdrive;
    PlainRingModulator plainRing;
    PlainOverdrive plainOverdrive;
    BufferSource source;
    ring.setUpstreamUnit(source);
    overdrive.setUpstreamUnit(ring);
    Dice dice(34);
    for (int i = 0; i < 2000; ++i) {
        if (dice.oneIn(4)) {
            ring.setFrequency(plainRing.frequency = dice.between(0.f, 20000.f));
            ring.setDepth(plainRing.depth = dice.oneIn(2) ? 1.f : dice.between(0.f, 1.f));
            overdrive.setStrength(plainOverdrive.strength = dice.between(0.f, 1.f));
            ring.setOffset(plainRing.offset = dice.between(0.f, 6.3f));
        }
        source.samples = dice.noise(512);
        std::vector<float> wanted = source.samples;
        inRender([&] {
            plainRing.render(wanted.data(), 512);
            plainOverdrive.render(wanted.data(), 512);
        });
        ASSERT_TRUE(withinOneStep(renderUnit<float>(overdrive, 512), wanted))
            << plainOverdrive.strength;
    }
}

TEST(DelayFilter, isItsModelToTheBit) {
    DelayFilter unit(0.f, 0.f);
    PlainEcho plain;
    auto set = [&](Dice& dice) {
        const float seconds =
            dice.oneIn(3) ? dice.of({0.f, 1.f / 44100.f, 3.f / 44100.f}) : dice.between(0.f, 0.2f);
        unit.setDelay(seconds);
        plain.line.setDelay(seconds);
        unit.setFeedback(plain.feedback = dice.of({0.f, 0.5f, 0.9f, 1.f}));
        EXPECT_EQ(unit.data()->position, plain.line.position);
    };
    compareOverTime(unit, plain, 35, 4000, set, values);
    EXPECT_EQ(unit.data()->length, plain.line.length);
}

TEST(ResonanceFilter, isItsModelToTheBit) {
    ResonanceFilter unit;
    PlainResonance plain;
    EXPECT_EQ(unit.data()->length, 330u);
    auto set = [&](Dice& dice) {
        const float seconds =
            dice.oneIn(4) ? dice.of({0.f, 1.f / 44100.f, 2.f / 44100.f}) : dice.between(0.f, 0.03f);
        unit.setDelay(seconds);
        plain.line.setDelay(seconds);
        unit.setFeedback(plain.feedback = dice.of({0.f, 0.5f, 0.95f, 0.9999f}));
        unit.setResonance(plain.resonance = dice.oneIn(2) ? dice.of({0.f, 1.f, 0.1f, 0.5f})
                                                          : dice.between(0.f, 1.f));
        unit.setCutoff(plain.cutoff = dice.oneIn(2) ? dice.of({0.f, 1.f}) : dice.between(0.f, 1.f));
    };
    compareOverTime(unit, plain, 36, 6000, set, [&](auto& got, auto& wanted) {
        EXPECT_EQ(unit.data()->state1, plain.state1);
        EXPECT_EQ(unit.data()->state2, plain.state2);
        EXPECT_EQ(unit.data()->position, plain.line.position);
        return sameValues(got, wanted);
    });
}

TEST(LowPassFilter, sharesOneStateWithItsKind) {
    LowPassFilter first, second;
    PlainLowPass plain;
    first.setFilterAlpha(plain.filterAlpha = 0.3f);
    second.setFilterAlpha(0.3f);
    BufferSource source;
    first.setUpstreamUnit(source);
    second.setUpstreamUnit(source);
    Dice dice(37);
    for (int i = 0; i < 6; ++i) {
        source.samples = dice.noise(64);
        std::vector<float> wanted = source.samples;
        plain.render(wanted.data(), 64);
        EXPECT_TRUE(sameBits(renderUnit<float>(i % 2 ? second : first, 64), wanted));
    }
}

TEST(DelayFilter, answersWildDelaysAndFreesWhatItOutgrew) {
    DelayFilter unit(std::nanf(""), 0.f);
    EXPECT_EQ(unit.data()->length, 0u);
    for (float seconds : {-1.f, -1e30f, std::nanf("")}) {
        unit.setDelay(seconds);
        EXPECT_EQ(unit.delay(), 0.f);
    }
    unit.setDelay(std::numeric_limits<float>::infinity());
    EXPECT_GT(unit.delay(), 60.f);

    unit.setDelay(100.f / 44100.f);
    BufferSource source;
    unit.setUpstreamUnit(source);
    source.samples.assign(70, 1.f);
    renderUnit<float>(unit, 70);
    unit.setDelay(50.f / 44100.f);
    EXPECT_EQ(unit.data()->position, 0u);
    unit.collect();
}
