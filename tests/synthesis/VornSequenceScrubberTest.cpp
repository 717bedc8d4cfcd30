#include "VornSequenceScrubber.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "WindowSound.h"

namespace {

/// The scrubber sample by sample over the frames of its sound in one row.
struct PlainScrubber {
    struct Head {
        std::size_t at = 0;
        float level = 0.f, step = 0.f;
        bool active = false;
    };

    void setSequence(const WindowSound* sound) {
        frames = sound ? sound->frames() : std::vector<WindowSound::Frame>{};
        fresh = true;
        pending = sound && sound->windows() > 0 ? std::optional<std::size_t>(0) : std::nullopt;
    }
    void setPlayPosition(std::size_t p) {
        pending = p < frames.size() ? std::optional(p) : std::nullopt;
        posted = true;
    }
    void stop() {
        pending.reset();
        posted = true;
    }
    void take() {
        if (!fresh && !posted)
            return;
        if (fresh || !pending || !list)
            a.active = b.active = false;
        fresh = posted = false;
        list = pending.has_value();
        jump = pending;
    }
    void start(Head& head, float step) {
        head = {*jump, 0.f, step, true};
        jump.reset();
    }
    void advance(Head& head, Head& other) {
        const float step = head.step;
        head.level += step;
        if (step > 0.f && head.level >= 1.f) {
            head.level = 1.f;
            head.step = -step;
            if (jump && !other.active)
                start(other, step);
        } else if (step < 0.f && head.level <= 0.f) {
            if (jump)
                start(head, -step);
            else
                head = {head.at, 0.f, 0.f, false};
        }
    }
    std::int16_t one(float sample, const Head& head) const {
        return steps(sample * head.level * gain * 32767.f);
    }
    std::int16_t both(float sampleA, float sampleB) const {
        return steps(gain * (a.level * sampleA + b.level * sampleB) * 32767.f);
    }
    std::vector<std::int16_t> render(std::uint32_t n) {
        std::vector<std::int16_t> out(2 * n, 0);
        take();
        if (jump && !a.active && !b.active)
            start(a, fadeRate / 44100.f);
        for (std::uint32_t i = 0; i < n; ++i) {
            for (Head* head : {&a, &b})
                head->active = head->active && head->at < frames.size();
            if (!a.active && !b.active)
                break;
            std::int16_t* const to = &out[2 * i];
            if (a.active && b.active) {
                const auto &fa = frames[a.at++], &fb = frames[b.at++];
                to[0] = both(fa.left, fb.left);
                to[1] = both(fa.right, fb.right);
                advance(a, b);
                advance(b, a);
                continue;
            }
            Head& head = a.active ? a : b;
            Head& other = a.active ? b : a;
            const auto& frame = frames[head.at++];
            to[0] = one(frame.left, head);
            if (frame.stereo)
                advance(head, other);
            to[1] = frame.stereo ? one(frame.right, head) : to[0];
            advance(head, other);
        }
        return out;
    }

    std::vector<WindowSound::Frame> frames;
    std::optional<std::size_t> pending, jump;
    bool fresh = false, posted = false, list = false;
    Head a, b;
    float fadeRate = 16.f, gain = 0.5f;
};

std::shared_ptr<WindowSound> steady(float value, std::size_t frames) {
    return WindowSound::mono(std::vector<float>(frames, value));
}

std::vector<std::int16_t> leftOf(const VornSequenceScrubber& scrubber, std::uint32_t frames) {
    const auto both = renderStereo<std::int16_t>(scrubber, frames);
    std::vector<std::int16_t> left;
    for (std::size_t i = 0; i < both.size(); i += 2)
        left.push_back(both[i]);
    return left;
}

}  // namespace

TEST(VornSequenceScrubber, isThePlainScrubberToTheBit) {
    Dice dice(81);
    VornSequenceScrubber scrubber;
    PlainScrubber plain;
    ManualClock clock;
    std::ptrdiff_t heard = 0;
    for (int i = 0; i < 6000; ++i) {
        SCOPED_TRACE(i);
        if (dice.oneIn(60)) {
            const auto sound =
                dice.oneIn(8) ? nullptr : WindowSound::random(dice, dice.of({3, 300, 9000, 9000}));
            scrubber.setSequence(sound);
            plain.setSequence(sound.get());
        }
        for (int n = dice.below(4); n == 3 || (n > 0 && dice.oneIn(2)); --n) {
            const auto p = std::uint32_t(dice.below(int(plain.frames.size()) + 2));
            scrubber.setPlayPosition(p);
            plain.setPlayPosition(p);
        }
        if (dice.oneIn(100)) {
            scrubber.stop();
            plain.stop();
        }
        if (dice.oneIn(100))
            scrubber.data()->fadeRate = plain.fadeRate = dice.of({16.f, 100.f, 700.f, 60000.f});
        if (dice.oneIn(50))
            scrubber.setGain(plain.gain = dice.of({0.5f, 1.f, 3.f, -0.3f}));
        const std::uint32_t frames = dice.oneIn(20) ? 0 : dice.of(kBufferSizes);
        std::vector<std::int16_t> wanted;
        inRender([&] { wanted = plain.render(frames); });
        ASSERT_EQ(renderStereo<std::int16_t>(scrubber, frames), wanted);
        heard += std::ranges::count_if(wanted, [](std::int16_t sample) { return sample != 0; });
        clock.step(0.02);
    }
    EXPECT_GT(heard, 500000);
}

TEST(VornSequenceScrubber, playsOneGrainOfAPlace) {
    VornSequenceScrubber scrubber(steady(0.5f, 44100));
    scrubber.setGain(1.f);
    scrubber.scrubTo(10000);
    bool silent = false;
    renderStereo<std::int16_t>(scrubber, 512, &silent);
    EXPECT_TRUE(silent);  // no window list yet
    for (const bool scrubbed : {false, true}) {
        if (scrubbed)
            scrubber.scrubTo(10000);
        else
            scrubber.setSequence(scrubber.sequence());
        EXPECT_TRUE(scrubber.isSounding());
        const auto grain = leftOf(scrubber, 8192);
        const auto loudest = std::ranges::max_element(grain);
        const auto last =
            std::find_if(grain.rbegin(), grain.rend(), [](auto s) { return s != 0; }).base();
        EXPECT_NEAR(*loudest, 16383, 3);
        EXPECT_NEAR(double(loudest - grain.begin()), 2756, 2);
        EXPECT_NEAR(double(last - grain.begin()), 5512, 3);
        EXPECT_TRUE(std::is_sorted(grain.begin(), loudest));
        EXPECT_TRUE(std::is_sorted(loudest, last, std::greater{}));
        EXPECT_FALSE(scrubber.isSounding());
    }
}

TEST(VornSequenceScrubber, isLoudestAtTheFrameThatWasAskedFor) {
    VornSequenceScrubber scrubber;
    scrubber.setSequence(steady(0.5f, 44100));
    const auto placeOfScrub = [&](std::int32_t frame) {
        VornSequenceScrubberUpdate update;
        scrubber.scrubTo(frame);
        EXPECT_TRUE(scrubber.data()->pending.read(update));
        return update.window ? std::int64_t(update.offset) : -1;
    };
    EXPECT_EQ(placeOfScrub(1000), 0);
    EXPECT_EQ(placeOfScrub(-5), 0);
    EXPECT_EQ(placeOfScrub(10000), 7243);
    EXPECT_EQ(placeOfScrub(60000), -1);
}

TEST(VornSequenceScrubber, keepsTheLevelWhilePlacesFollowEachOther) {
    VornSequenceScrubber scrubber;
    scrubber.setSequence(steady(0.5f, 44100));
    scrubber.setGain(1.f);
    leftOf(scrubber, 2048);
    scrubber.scrubTo(20000);
    leftOf(scrubber, 1023);  // the first has come to its loudest
    for (int i = 0; i < 40; ++i) {
        scrubber.scrubTo(20000 + i);
        for (const std::int16_t sample : leftOf(scrubber, 1023))
            ASSERT_NEAR(sample, 16383, 24);
    }
}

TEST(VornSequenceScrubber, doesNotTakeANewListForTheOldOneAtItsAddress) {
    ManualClock clock;
    VornSequenceScrubber scrubber;
    // Many windows, played near the last; then lists of one window while nothing renders.
    std::vector<WindowSound::Piece> pieces(2, {0, std::vector<float>(3000, 0.5f)});
    scrubber.setSequence(std::make_shared<WindowSound>(pieces));
    scrubber.setPlayPosition(4000);
    leftOf(scrubber, 64);
    const auto* const old = scrubber.data()->list;
    for (int i = 0; i < 100; ++i) {
        scrubber.setSequence(nullptr);
        clock.step(0.6);
        auto other = std::make_shared<WindowSound>(
            std::vector<WindowSound::Piece>{{0, std::vector<float>(10, 0.25f)}, {0, {}}});
        scrubber.setSequence(std::move(other));
        if (scrubber.data()->ownedList.get() == old)
            break;
    }
    const auto out = leftOf(scrubber, 64);
    EXPECT_TRUE(std::all_of(out.begin() + 10, out.end(), [](auto s) { return s == 0; }));
}

// One thread scrubs and changes sounds; another renders. Every sound is steady at a level of its
// own, and goes silent (and -1) when it is gone.
TEST(VornSequenceScrubber, isHeardWhileItIsBeingChanged) {
    ManualClock clock;
    VornSequenceScrubber scrubber;
    scrubber.setGain(1.f);
    Dice dice(83);
    std::uint64_t heard = 0, faults = 0;  // of the other thread until it has ended
    const auto listen = [&] {
        for (const std::int16_t sample : renderStereo<std::int16_t>(scrubber, 512)) {
            faults += !(sample >= 0 && sample <= 16384);
            heard += sample != 0;
        }
    };
    changeWhileRendering(clock, dice, listen, [&] {
        if (dice.oneIn(10))
            scrubber.setSequence(steady(0.5f, 1 + std::size_t(dice.below(20000))));
        if (dice.oneIn(50))
            scrubber.stop();
        scrubber.scrubTo(dice.below(25000));
    });
    EXPECT_EQ(faults, 0u);
    EXPECT_GT(heard, 0u);
}
