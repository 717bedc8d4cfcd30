#include "audiounits/devices/AlsaFormat.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

// Every 16-bit value survives in every format, on the first two channels and no other.
TEST(AlsaFormat, sixteenBitSoundIsKeptInEveryFormat) {
    std::vector<float> mono;
    for (int value = -32768; value < 32768; value += 13)
        mono.push_back(static_cast<float>(value) / 32768.f);
    for (const AlsaFormat& format : AlsaFormat::all()) {
        for (const std::size_t channels : {1u, 2u, 6u}) {
            SCOPED_TRACE(std::to_string(format.format) + ", " + std::to_string(channels));
            std::vector<std::byte> bytes(mono.size() * channels * format.bytes, std::byte{0x55});
            format.spread(mono, channels, bytes.data());
            for (std::size_t channel = 0; channel < channels; ++channel) {
                std::vector<float> back(mono.size());
                format.pick(bytes.data() + channel * format.bytes, channels, back);
                EXPECT_EQ(back, channel < 2 ? mono : std::vector<float>(mono.size(), 0.f));
            }
        }
    }
}

TEST(AlsaFormat, integersSaturate) {
    for (const AlsaFormat& format : AlsaFormat::all()) {
        if (format.format == SND_PCM_FORMAT_FLOAT)
            continue;
        std::vector<std::byte> bytes(2 * format.bytes);
        format.spread(std::vector<float>{1.5f, -1.5f}, 1, bytes.data());
        std::vector<float> back(2);
        format.pick(bytes.data(), 1, back);
        EXPECT_NEAR(back[0], 1.f, 1e-4f);
        EXPECT_EQ(back[1], -1.f);
    }
}
