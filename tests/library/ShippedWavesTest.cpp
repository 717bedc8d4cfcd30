#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <numeric>
#include <span>

#include "Player.h"
#include "Waves.h"

namespace {

/// The samples that voices read.
std::vector<float> samplesOf(std::string_view name) {
    const auto path = WaveChoice::resource(std::string(name) + ".wav");
    const auto loaded = WaveChoice::load(path.value_or(std::string(name)));
    EXPECT_TRUE(loaded.wave) << loaded.error;
    if (!loaded.wave)
        return {};
    std::uint32_t count = loaded.wave->sampleCount();
    const float* samples = loaded.wave->retrieveWindowAt(0, &count, nullptr);
    return {samples, samples + count};
}

/// Hertz of the partial near `hertz`: how far its phase moves on from window to window.
double partialNear(double hertz, std::span<const float> sound) {
    constexpr std::size_t kWindow = 16384, kHop = 2048;
    const double turn = 2 * std::numbers::pi * hertz / kFramesPerSecond;
    const auto phasor = [&](std::size_t start) {
        std::complex<double> sum = 0;
        for (std::size_t i = start; i < start + kWindow; ++i) {
            const double part = 2 * std::numbers::pi * double(i - start) / kWindow;
            sum += double(sound[i]) * (1 - std::cos(part)) * std::polar(1., -turn * double(i));
        }
        return sum;
    };
    std::complex<double> drift = 0;
    auto before = phasor(0);
    for (std::size_t start = kHop; start + kWindow <= sound.size(); start += kHop) {
        const auto now = phasor(start);
        drift += now * std::conj(before);
        before = now;
    }
    return hertz + std::arg(drift) / (2 * std::numbers::pi) * kFramesPerSecond / kHop;
}

/// Sharpest bend between three samples in a row.
float sharpestBend(std::span<const float> sound) {
    float bend = 0;
    for (std::size_t i = 2; i < sound.size(); ++i)
        bend = std::max(bend, std::abs(sound[i] - 2 * sound[i - 1] + sound[i - 2]));
    return bend;
}

double level(std::span<const float> sound) {
    const double power = std::inner_product(sound.begin(), sound.end(), sound.begin(), 0.);
    return 10 * std::log10(power / double(sound.size()) + 1e-12);
}

}  // namespace

TEST(ShippedWaves, areFullSoundAndEndAsTheyBegin) {
    for (const Wave& wave : kWaves) {
        SCOPED_TRACE(wave.name);
        const auto sound = samplesOf(wave.name);
        ASSERT_GE(sound.size(), framesIn(1));
        EXPECT_LE(sound.size(), framesIn(8));
        const auto [low, high] = std::ranges::minmax(sound);
        EXPECT_NEAR(std::max(-low, high), 0.89, 0.001);
        EXPECT_NEAR(std::accumulate(sound.begin(), sound.end(), 0.) / double(sound.size()), 0,
                    1e-4);
        // Grains wander everywhere: nothing but the last fade may be quiet.
        const std::size_t part = sound.size() / 20;
        for (std::size_t i = 0; i < (wave.loops ? 20u : 17u); ++i)
            EXPECT_GT(level(std::span(sound).subspan(i * part, part)), -48) << "part " << i;

        const std::size_t around = framesIn(0.05);
        std::vector<float> join(sound.end() - 2, sound.end());
        join.insert(join.end(), sound.begin(), sound.begin() + 2);
        const float usual = std::max(sharpestBend(std::span(sound).last(around)),
                                     sharpestBend(std::span(sound).first(around)));
        EXPECT_LE(sharpestBend(join), usual);
        EXPECT_LT(std::abs(sound.front()), 0.03f);
        if (!wave.loops) {
            EXPECT_LT(std::max(std::abs(sound.front()), std::abs(sound.back())), 1e-4f);
        }
    }
}

TEST(ShippedWaves, soundTheirPitchAtKey48) {
    Player player;
    for (const Wave& wave : kWaves) {
        if (wave.hertz == 0)
            continue;
        SCOPED_TRACE(wave.name);
        const std::string file = std::string(wave.name) + ".wav";
        ASSERT_EQ(player.instrument().waves().setWaveTo(*WaveChoice::resource(file)).error, "");
        player.instrument().notes().tinkleIvory(48);
        const auto sound = player.listen(samplesOf(wave.name).size());
        player.instrument().silence();
        const double cents = 1200 * std::log2(partialNear(wave.hertz, sound) / wave.hertz);
        EXPECT_NEAR(cents, 0, 5);
    }
}
