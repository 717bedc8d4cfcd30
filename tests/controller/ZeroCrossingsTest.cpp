#include "selection/ZeroCrossings.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "VornWave2.h"
#include "VornWaveSequence.h"

namespace {

using Frames = std::vector<float>;
using Pointer = VornWaveSequence::Pointer;

Pointer soundOf(const Frames& samples, std::uint32_t channels) {
    return VornWaveSequence::sequenceWithWave(
        VornWave2::initWithCopyOfData(samples.data(), std::uint32_t(samples.size()) / channels,
                                      StreamDescription::float32(channels), "samples"));
}

/// Looks at every pair of frames.
std::optional<std::uint32_t> plainNearest(const Frames& values, long frame, long within) {
    for (long d = 0; d <= within; ++d) {
        for (const long at : {frame - d, frame + d}) {
            if (at < 1 || at >= long(values.size()))
                continue;
            const float a = values[std::size_t(at - 1)];
            const float b = values[std::size_t(at)];
            if (a == 0 || b == 0 ? !std::isnan(a + b) : (a < 0 && b > 0) || (a > 0 && b < 0))
                return std::uint32_t(at);
        }
    }
    return std::nullopt;
}

}  // namespace

TEST(ZeroCrossings, areThoseThatLookingAtEveryFrameFinds) {
    constexpr std::uint32_t kSeed = 20261121;
    SCOPED_TRACE(kSeed);
    std::mt19937 random(kSeed);
    const auto below = [&](int end) { return int(random() % unsigned(end)); };
    for (int round = 0; round < 300; ++round) {
        const int layout = below(3);
        const int channels = layout == 0 ? 1 : 2;
        Frames samples(std::size_t(channels * (1 + below(200))));
        // Mostly the same sign as before, so that crossings lie apart.
        float sign = 1;
        for (float& sample : samples) {
            sign = below(25) == 0 ? -sign : sign;
            sample = sign * float(below(1000)) / 999;
            if (below(30) == 0)
                sample = std::numeric_limits<float>::quiet_NaN();
        }
        Pointer sound = soundOf(samples, std::uint32_t(channels));
        if (layout == 2)
            sound = sound->sequenceBySlicingChannel(1);
        const std::uint32_t cut = sound->sampleCount() / 3;  // several windows
        const Pointer head = sound->sliceFrom(0, cut);
        if (cut > 0)
            sound = head->sequenceByAppendingSequence(*sound->sliceFrom(cut, 1000));
        Frames values(samples.size() / std::size_t(channels));
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = layout == 0   ? samples[i]
                        : layout == 1 ? samples[2 * i] + samples[2 * i + 1]
                                      : samples[2 * i];
        for (int look = 0; look < 30; ++look) {
            const int frame = below(int(values.size()) + 3);
            const int within = below(look < 3 ? 1 : 60);
            ASSERT_EQ(ZeroCrossings::nearest(*sound, std::uint32_t(frame), std::uint32_t(within)),
                      plainNearest(values, frame, within))
                << round << ", layout " << layout << ": " << frame << " within " << within;
        }
    }
}

TEST(ZeroCrossings, areNotSoughtTooFarAway) {
    Frames samples(100000, 0.5f);
    samples[50000] = -1;
    const Pointer sound = soundOf(samples, 1);
    const std::uint32_t all = std::numeric_limits<std::uint32_t>::max();
    EXPECT_EQ(ZeroCrossings::nearest(*sound, 50000 - ZeroCrossings::kFurthest, all), 50000u);
    EXPECT_FALSE(ZeroCrossings::nearest(*sound, 49999 - ZeroCrossings::kFurthest, all));
    EXPECT_FALSE(ZeroCrossings::nearest(*sound, 2000000000, all));
}
