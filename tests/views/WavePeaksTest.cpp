#include "wave/WavePeaks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

#include "VornWave2.h"

namespace {

using Samples = std::vector<float>;

Samples noise(std::size_t count) {
    std::mt19937 generator(20);
    std::uniform_real_distribution<float> sample(-0.9f, 0.9f);
    Samples samples(count);
    for (float& value : samples)
        value = sample(generator);
    return samples;
}

VornWaveSequence::Pointer sound(const Samples& samples, std::uint32_t channels) {
    const auto wave =
        VornWave2::initWithCopyOfData(samples.data(), std::uint32_t(samples.size()) / channels,
                                      StreamDescription::float32(channels), "noise");
    return VornWaveSequence::sequenceWithWave(wave);
}

std::vector<WavePeak> peaks(const VornWaveSequence& sound, int columns) {
    const std::atomic<bool> cancelled = false;
    return WavePeaks::of(sound, columns, cancelled);
}

/// All samples of the frames [first, end).
WavePeak slowPeak(const Samples& samples, std::size_t channels, std::size_t first,
                  std::size_t end) {
    const auto [low, high] = std::minmax_element(samples.begin() + std::ptrdiff_t(first * channels),
                                                 samples.begin() + std::ptrdiff_t(end * channels));
    return {*low, *high};
}

}  // namespace

TEST(WavePeaksTest, eachColumnHoldsItsOwnFramesOfEveryBlockAndChannel) {
    for (const std::uint32_t channels : {1u, 2u}) {
        const Samples samples = noise(60001 * channels);
        const auto whole = sound(samples, channels);
        const auto inTwo =
            whole->sliceFrom(0, 7777)->sequenceByAppendingSequence(*whole->sliceFrom(7777, 52224));
        for (const auto& each : {whole, inTwo}) {
            const auto found = peaks(*each, 113);
            ASSERT_EQ(found.size(), 113u);
            for (std::size_t i = 0; i < found.size(); ++i)
                EXPECT_EQ(found[i],
                          slowPeak(samples, channels, i * 60001 / 113, (i + 1) * 60001 / 113))
                    << "column " << i << " of " << channels << " channels";
        }
    }
}

TEST(WavePeaksTest, columnsReachToTheirNeighbours) {
    // A steep square, and fewer frames than columns.
    for (const Samples& samples : {Samples{0.5f, 0.5f, -0.5f, -0.5f, 0.5f}, Samples{-1, 1}}) {
        for (const int columns : {2, 5, 64}) {
            const auto found = peaks(*sound(samples, 1), columns);
            ASSERT_EQ(found.size(), std::size_t(columns));
            for (std::size_t i = 1; i < found.size(); ++i) {
                EXPECT_LE(found[i].low, found[i - 1].high);
                EXPECT_GE(found[i].high, found[i - 1].low);
            }
        }
    }
}

TEST(WavePeaksTest, whatIsNoSoundIsNotDrawn) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const auto found = peaks(*sound({nan, 1e30f, -1e30f, nan, nan, nan}, 1), 3);
    EXPECT_EQ(found, (std::vector<WavePeak>{{0, 1}, {-1, 0}, {0, 0}}));

    EXPECT_TRUE(peaks(*VornWaveSequence::sequenceWithDescription(StreamDescription::float32(1)), 3)
                    .empty());
    const std::atomic<bool> cancelled = true;
    EXPECT_TRUE(WavePeaks::of(*sound(noise(1000), 1), 10, cancelled).empty());
}
