#include "ADSRShaper.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "PlainEnvelope.h"
#include "SameBits.h"
#include "TestUnits.h"

namespace {

// What the envelope starts and stops, counted; `onUntrigger` may get in between.
struct Target : Triggerable {
    void trigger() noexcept override { ++triggers; }
    void untrigger() noexcept override { ++untriggers; }
    int triggers = 0;
    int untriggers = 0;
};

struct Voice {
    Voice() {
        shaper.setUpstreamUnit(source, 3, 0);
        shaper.setTriggerTarget(&target);
    }
    void set(float attack, float decay, float sustain, float release) {
        shaper.setSettings({attack, decay, sustain, release});
        plain.attackTime = attack;
        plain.decayTime = decay;
        plain.sustainLevel = sustain;
        plain.releaseTime = release;
    }
    void trigger() {
        shaper.trigger();
        plain.trigger();
    }
    void untrigger() {
        shaper.untrigger();
        plain.untrigger();
    }
    void expectSame(std::uint32_t frames, Dice& dice) {
        source.samples = dice.noise(frames);
        std::vector<float> wanted = source.samples;
        const int finished = target.untriggers + (plain.render(wanted.data(), frames) ? 1 : 0);
        ASSERT_TRUE(sameBits(renderUnit<float>(shaper, frames), wanted));
        const ADSRState state = shaper.state();
        ASSERT_EQ(state.time, plain.time);
        ASSERT_EQ(state.triggered, plain.triggered);
        ASSERT_TRUE(sameBits(state.previousLevel, plain.previousLevel));
        ASSERT_EQ(target.untriggers, finished);
    }

    BufferSource source;
    Target target;
    ADSRShaper shaper;
    PlainEnvelope plain;
};

}  // namespace

TEST(ADSRShaper, isThePlainEnvelopeToTheBit) {
    Dice dice(21);
    const float times[] = {0.f, 0.f, 1e-6f, 0.0005f, 0.01f, 0.02f, 0.13f, 2.f, -1.f};
    for (int run = 0; run < 300; ++run) {
        SCOPED_TRACE(run);
        Voice voice;
        for (int i = 0; i < 20; ++i) {
            if (dice.oneIn(3))
                voice.set(dice.of(times), dice.of(times), dice.of({0.f, 1.f, 0.3f}),
                          dice.of(times));
            if (dice.oneIn(3))
                voice.trigger();
            if (dice.oneIn(3))
                voice.untrigger();
            voice.expectSame(dice.of(kBufferSizes), dice);
            if (HasFatalFailure())
                return;
        }
    }
}

TEST(ADSRShaper, countsFramesInThirtyTwoBits) {
    Dice dice(22);
    // Around the largest integers: of a float, of a signed and of an unsigned word.
    for (std::uint32_t time : {16777000u, 2147483400u, 4294967000u}) {
        SCOPED_TRACE(time);
        Voice voice;
        voice.set(100.f, 60000.f, 0.25f, 90000.f);
        voice.trigger();
        ADSRState state = voice.shaper.state();
        state.time = voice.plain.time = time;
        voice.shaper.setState(state);
        voice.expectSame(1023, dice);
    }
}

TEST(ADSRShaper, keepsItsPromises) {
    Voice voice;
    Dice dice(23);
    EXPECT_EQ(voice.shaper.state().time, 4294967295u);
    EXPECT_EQ(voice.shaper.outputFormat()->mBitsPerChannel, 16u);

    // Retriggered a quarter into its release, the attack starts where the release has come to.
    voice.set(0.f, 0.f, 0.8f, 400.f / 44100.f);
    voice.trigger();
    voice.expectSame(64, dice);
    voice.untrigger();
    voice.expectSame(100, dice);
    voice.trigger();
    EXPECT_FLOAT_EQ(voice.shaper.state().previousLevel, 0.6f);
    EXPECT_EQ(voice.source.busSeen, 3u);

    // An upstream that fails leaves the buffer as it was handed over.
    voice.source.status = kAudioUnitErr_NoConnection;
    EXPECT_EQ(renderUnit<float>(voice.shaper, 3).size(), 3u);
    voice.source.status = noErr;

    // Without a release time the voice falls silent and stays taken.
    voice.set(0.f, 0.f, 1.f, 0.f);
    voice.untrigger();
    voice.expectSame(512, dice);
    EXPECT_EQ(voice.shaper.state().triggered, kADSRReleasing);
    EXPECT_EQ(voice.target.untriggers, 0);
    voice.shaper.untriggerFinished();
    EXPECT_EQ(voice.shaper.state().triggered, kADSRIdle);
    EXPECT_EQ(voice.target.untriggers, 1);
}

// The key comes down again in the very render that finds the release over: the lock passes to the
// trigger that waits for it, and only then back to the render, which must leave the note alone.
TEST(ADSRShaper, doesNotEndANoteThatIsPressedAgain) {
    Voice voice;
    voice.shaper.setSettings({0.f, 0.f, 1.f, 3.f / 44100.f});
    voice.source.samples.assign(8, 1.f);
    voice.shaper.trigger();
    voice.shaper.untrigger();
    std::atomic<bool> rendering{false};
    std::atomic<bool> pressing{false};
    voice.source.whileRendering = [&] {
        rendering = true;
        while (!pressing)
            std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    };
    std::thread audio([&] { renderUnit<float>(voice.shaper, 8); });
    while (!rendering)
        std::this_thread::yield();
    pressing = true;
    voice.shaper.trigger();
    audio.join();
    EXPECT_EQ(voice.shaper.state().triggered, kADSRHeld);
    EXPECT_EQ(voice.target.untriggers, 0);
}

TEST(ADSRShaper, hearsEveryTriggerUnderARunningRender) {
    Voice voice;
    voice.shaper.setSettings({0.f, 0.f, 1.f, 3.f / 44100.f});
    voice.source.samples.assign(8, 1.f);
    std::atomic<bool> done{false};
    std::thread audio([&] {
        while (!done)
            renderUnit<float>(voice.shaper, 8);
    });
    int lost = 0;
    for (int i = 0; i < 3000; ++i) {
        voice.shaper.untrigger();
        voice.shaper.trigger();
        for (int look = 0; look < 20; ++look)
            lost += voice.shaper.state().triggered != kADSRHeld;
        voice.shaper.setSettings({0.f, 0.f, 1.f, 3.f / 44100.f});
    }
    done = true;
    audio.join();
    EXPECT_EQ(lost, 0);
}
