#include "FloatMixer.h"

#include <gtest/gtest.h>

#include <array>

#include "SameBits.h"
#include "TestUnits.h"

TEST(FloatMixer, sumsInBusOrderAndLeavesOutWhatFails) {
    FloatMixer mixer;
    std::array<BufferSource, 5> sources;
    const std::uint32_t buses[] = {0, 1, 2, 60, 127};
    for (std::size_t i = 0; i < sources.size(); ++i)
        mixer.setUpstreamUnit(sources[i], static_cast<std::uint32_t>(i) + 10, buses[i]);
    sources[0].status = kAudioUnitErr_NoConnection;
    Dice dice(41);
    for (std::uint32_t frames : {1u, 512u, 1023u, 8192u, 7u}) {
        std::vector<float> wanted(frames, 0.f);
        for (std::size_t i = 0; i < sources.size(); ++i) {
            sources[i].samples = dice.oneIn(4) ? std::vector<float>(frames) : dice.noise(frames);
            if (i == 1)
                wanted = sources[i].samples;
            for (std::uint32_t k = 0; i > 1 && k < frames; ++k)
                wanted[k] += sources[i].samples[k];
        }
        bool silent = true;
        EXPECT_TRUE(sameBits(renderUnit<float>(mixer, frames, &silent), wanted));
        EXPECT_FALSE(silent);
        EXPECT_GE(mixer.mixdownSize(), frames);
    }
    EXPECT_EQ(mixer.mixdownSize(), 8192u);
    EXPECT_EQ(sources[3].busSeen, 13u);
}

TEST(FloatMixer, keepsItsMemoryWhenItIsLargeEnough) {
    FloatMixer mixer;
    EXPECT_EQ(mixer.mixdownSize(), 512u);
    mixer.setMixdownSize(8192);
    const float* memory = mixer.mixdownBuffer();
    mixer.setMixdownSize(64);
    mixer.setMixdownSize(8192);
    EXPECT_EQ(mixer.mixdownBuffer(), memory);
}

TEST(FloatMixer, addsZerosLikeAnyOtherValue) {
    FloatMixer mixer;
    std::array<BufferSource, 3> sources;
    for (std::uint32_t bus = 0; bus < 3; ++bus)
        mixer.setUpstreamUnit(sources[bus], 0, bus);
    sources[0].samples = {-0.f, 1.f, -0.f};
    sources[1].samples = {0.f, 0.f, 0.f};
    sources[2].samples = {-0.f, -1.f, 2.f};
    const std::vector<float> wanted = {0.f, 0.f, 2.f};
    EXPECT_TRUE(sameBits(renderUnit<float>(mixer, 3), wanted));

    bool silent = false;
    for (auto& source : sources)
        source.samples.assign(3, 0.f);
    EXPECT_EQ(renderUnit<float>(mixer, 3, &silent), std::vector<float>(3, 0.f));
    EXPECT_TRUE(silent);
}
