#include "VornSequencePlayer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "SameBits.h"
#include "WindowSound.h"

namespace {

/// The player frame by frame over the frames of its sound in one row.
struct PlainPlayer {
    explicit PlainPlayer(bool integers) : convert(integers) {}

    void setSequence(const WindowSound* sound) {
        frames = sound ? sound->frames() : std::vector<WindowSound::Frame>{};
        pending = {sound && sound->windows() > 0, 0, 0, false};
        ++written;
    }
    void setPlayPosition(std::uint32_t p) {
        requested = p;
        pending.ended = p >= frames.size();
        pending.at = pending.ended ? frames.size() : p;
        pending.position = p;
        ++written;
    }
    std::uint32_t playPosition() const { return written == reportedRead ? reported : requested; }

    std::vector<float> render(std::uint32_t n) {
        std::vector<float> out(2 * n, 0.f);
        if (read != written)
            current = pending;
        read = written;
        if (!playing || !current.list || current.ended) {
            playing = false;
            reported = current.position;
            return out;
        }
        left = right = 0.f;
        for (std::uint32_t i = 0; i < n; ++i) {
            if (current.at == frames.size() && looping)
                current.at = current.position = 0;
            if (current.at == frames.size()) {
                current.ended = true;
                playing = false;
                break;
            }
            const WindowSound::Frame& frame = frames[current.at++];
            ++current.position;
            out[2 * i] = put(frame.left, left);
            float ignored = 0.f;
            out[2 * i + 1] = put(frame.right, frame.stereo ? right : ignored);
        }
        reported = current.position;
        reportedRead = read;
        return out;
    }
    float put(float sample, float& peak) const {
        const float value = gain * sample;
        if (value > peak)
            peak = value;
        return convert ? float(steps(value * 32767.f)) : value;
    }

    struct Pointers {
        bool list = false;
        std::size_t at = 0;
        std::uint32_t position = 0;
        bool ended = false;  // at the terminator
    };
    const bool convert;
    std::vector<WindowSound::Frame> frames;
    Pointers current, pending;
    bool playing = false, looping = false;
    float gain = 1.f, left = 0.f, right = 0.f;
    std::uint32_t requested = 0, reported = 0;
    int written = 0, read = 0, reportedRead = 0;
};

std::vector<float> rendered(const VornSequencePlayer& player, std::uint32_t frames) {
    if (!player.data()->convert)
        return renderStereo<float>(player, frames);
    const auto integers = renderStereo<std::int16_t>(player, frames);
    return {integers.begin(), integers.end()};
}

constexpr std::uint32_t kRange = 1 << 20;  // of a frame number in a numbered sound

/// Frame i is number * kRange + i: wherever it is heard, it tells where it comes from.
std::shared_ptr<WindowSound> numbered(int number, std::uint32_t frames) {
    std::vector<float> samples(frames);
    for (std::uint32_t i = 0; i < frames; ++i)
        samples[i] = float(std::uint32_t(number) * kRange + i);
    return WindowSound::mono(std::move(samples));
}

}  // namespace

TEST(VornSequencePlayer, isThePlainPlayerToTheBit) {
    for (const bool convert : {false, true}) {
        Dice dice(convert ? 71 : 72);
        VornSequencePlayer player(nullptr, convert);
        PlainPlayer plain(convert);
        ManualClock clock;
        for (int i = 0; i < 4000; ++i) {
            SCOPED_TRACE(i);
            if (dice.oneIn(40)) {
                const auto sound =
                    dice.oneIn(8) ? nullptr : WindowSound::random(dice, dice.of({3, 100, 3000}));
                player.setSequence(sound);
                plain.setSequence(sound.get());
            }
            if (dice.oneIn(12)) {
                const auto p = std::uint32_t(dice.below(int(plain.frames.size()) + 3));
                player.setPlayPosition(p);
                plain.setPlayPosition(p);
            }
            if (dice.oneIn(6)) {
                player.play();
                plain.playing = true;
            }
            if (dice.oneIn(50)) {
                player.pause();
                plain.playing = false;
            }
            if (dice.oneIn(30))
                player.setLooping(plain.looping = !plain.looping);
            if (dice.oneIn(30))
                player.setGain(plain.gain = dice.of({1.f, 0.f, -0.7f, 0.3f, 30.f}));
            ASSERT_EQ(player.playPosition(), plain.playPosition());
            const std::uint32_t frames = dice.oneIn(20) ? 0 : dice.of(kBufferSizes);
            std::vector<float> wanted;
            inRender([&] { wanted = plain.render(frames); });
            ASSERT_TRUE(sameValues(rendered(player, frames), wanted));
            ASSERT_EQ(player.isPlaying(), plain.playing);
            ASSERT_EQ(player.playPosition(), plain.playPosition());
            ASSERT_EQ(player.peakValueL(), plain.left);
            ASSERT_EQ(player.peakValueR(), plain.right);
            clock.step(0.02);
        }
    }
}

TEST(VornSequencePlayer, saturatesAndLeavesNotANumberOutOfThePeaks) {
    VornSequencePlayer player(WindowSound::mono({1.5f, -1.5f, std::nanf(""), -0.5f}), true);
    player.play();
    const std::vector<std::int16_t> wanted = {32767, 32767, -32768, -32768,
                                              32767, 32767, -16383, -16383};
    EXPECT_EQ(renderStereo<std::int16_t>(player, 4), wanted);
    EXPECT_EQ(player.peakValueL(), 1.5f);
    EXPECT_EQ(player.peakValueR(), 0.f);
}

TEST(VornSequencePlayer, writesAMonoBufferOneSampleAFrame) {
    std::vector<WindowSound::Piece> pieces{{1, {1, 2, 3, 4}}, {0, {5, 6}}, {2, {7, 8, 9, 10}}};
    VornSequencePlayer player(std::make_shared<WindowSound>(std::move(pieces)));
    player.play();
    // Of a stereo window the samples come in their order.
    EXPECT_EQ(renderUnit<float>(player, 8), (std::vector<float>{1, 2, 5, 6, 8, 10, 0, 0}));
    EXPECT_EQ(player.peakValueR(), 10.f);
    EXPECT_FALSE(player.isPlaying());
}

TEST(VornSequencePlayer, lastsUntilItsHalfSecondIsOverAndNoRenderReachesIt) {
    ManualClock clock;
    auto first = numbered(1, 100);
    auto second = numbered(2, 100);
    const std::weak_ptr<WindowSound> old = first;
    const std::weak_ptr<WindowSound> older = second;
    VornSequencePlayer player(std::move(first));
    player.play();
    renderStereo<float>(player, 10);
    {
        // A render that began before the change, and does not end.
        const RenderReach::Render stuck(player.data()->reach, player.data()->pending.readCount());
        player.setSequence(std::move(second));
        clock.step(0.49);
        EXPECT_FALSE(old.expired());
        clock.step(0.02);
        EXPECT_FALSE(old.expired());
    }
    clock.step(0.5);
    EXPECT_TRUE(old.expired());  // although no render has taken the change
    // A render that cannot take the change is told not to look.
    EXPECT_FALSE(RenderReach::Render(player.data()->reach, 1).mayKeep());
    EXPECT_EQ(renderStereo<float>(player, 1)[0], float(2 * kRange));
    player.setSequence(numbered(3, 100));
    renderStereo<float>(player, 1);
    clock.step(0.4);
    EXPECT_FALSE(older.expired());
    clock.step(0.2);
    EXPECT_TRUE(older.expired());
}

TEST(VornSequencePlayer, leavesNothingBehindWhenItGoes) {
    ManualClock clock;
    auto sound = numbered(1, 100);
    const std::weak_ptr<WindowSound> old = sound;
    {
        VornSequencePlayer player(std::move(sound));
        player.setSequence(nullptr);
        EXPECT_FALSE(old.expired());
    }
    EXPECT_TRUE(old.expired());
    clock.step(1);
}

// One thread seeks, changes sounds and lets them go; another renders.
TEST(VornSequencePlayer, playsOnlyWhatItWasGivenWhileItIsBeingChanged) {
    ManualClock clock;
    VornSequencePlayer player;
    player.setLooping(true);
    Dice dice(73);
    std::uint64_t heard = 0, faults = 0;  // of the other thread until it has ended
    const auto listen = [&] {
        const auto out = renderStereo<float>(player, 512);
        for (std::size_t i = 0; i < out.size(); i += 2) {
            // Silence, or a frame of a sound that follows the one before or is a sound's first.
            const auto value = std::uint32_t(out[i]);
            const auto before = i == 0 ? value - 1 : std::uint32_t(out[i - 2]);
            const bool follows = value == before + 1 || value % kRange == 0;
            faults += !(out[i] >= 0.f && out[i] == out[i + 1] && follows);
            heard += value != 0;
        }
    };
    changeWhileRendering(clock, dice, listen, [&] {
        if (dice.oneIn(5))
            player.setSequence(numbered(1 + dice.below(15), 1 + std::uint32_t(dice.below(5000))));
        player.setPlayPosition(std::uint32_t(dice.below(5000)));
        player.play();
    });
    EXPECT_EQ(faults, 0u);
    EXPECT_GT(heard, 0u);
}
