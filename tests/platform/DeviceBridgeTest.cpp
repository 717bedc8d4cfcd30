#include "audiounits/devices/DeviceBridge.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

#include "RenderWatch.h"
#include "Tone.h"

namespace {

constexpr double kHertz = 1000;

// A sine at half of full scale, or every 16-bit value in turn; keeps what it hears.
class Client final : public AudioDeviceClient {
  public:
    bool ramp = false;
    std::size_t calls = 0;
    std::size_t longest = 0;
    double produced = 0;
    double nextTime = 0;
    bool timeRanOn = true;
    std::vector<float> heard;

    void produce(std::span<std::int16_t> mono, const AudioTimeStamp& time) noexcept override {
        timeRanOn = timeRanOn && time.mSampleTime == produced;
        ++calls;
        longest = std::max(longest, mono.size());
        for (std::int16_t& word : mono) {
            word = ramp ? static_cast<std::int16_t>(static_cast<int>(produced) % 65536 - 32768)
                        : static_cast<std::int16_t>(std::lround(16384 * sine(produced, 44100)));
            ++produced;
        }
    }
    void consume(std::span<const std::int16_t> mono, const AudioTimeStamp& time) noexcept override {
        timeRanOn = timeRanOn && time.mSampleTime == static_cast<double>(heard.size());
        longest = std::max(longest, mono.size());
        for (const std::int16_t word : mono)
            heard.push_back(static_cast<float>(word) / 32768.f);
    }
    static double sine(double frame, double rate) {
        return std::sin(2 * std::numbers::pi * std::fmod(frame * kHertz / rate, 1.0));
    }
};

// What is left of a recording, in decibels below the sine in it, when that sine is taken away. A
// single frame lost or doubled anywhere leaves about as much as there was.
double residueDecibels(std::span<const float> mono, double rate) {
    double withSine = 0, withCosine = 0;
    const auto angle = [&](std::size_t i) {
        return 2 * std::numbers::pi * std::fmod(static_cast<double>(i) * kHertz / rate, 1.0);
    };
    for (std::size_t i = 0; i < mono.size(); ++i) {
        withSine += static_cast<double>(mono[i]) * std::sin(angle(i));
        withCosine += static_cast<double>(mono[i]) * std::cos(angle(i));
    }
    const double scale = 2.0 / static_cast<double>(mono.size());
    double residue = 0;
    for (std::size_t i = 0; i < mono.size(); ++i) {
        const double model =
            scale * (withSine * std::sin(angle(i)) + withCosine * std::cos(angle(i)));
        residue += std::pow(static_cast<double>(mono[i]) - model, 2);
    }
    const double power = scale * scale * (withSine * withSine + withCosine * withCosine) / 2;
    return 10 * std::log10(power * static_cast<double>(mono.size()) / residue);
}

// Whole cycles of the sine from the middle of a recording, so that its ends do not count.
std::span<const float> middleOf(const std::vector<float>& mono, double rate) {
    return std::span(mono).subspan(mono.size() / 4).first(static_cast<std::size_t>(rate));
}

constexpr std::size_t kPeriods[] = {1, 16, 64, 1023, 8192, 20000};

TEST(DeviceBridge, atTheGraphsRateEveryValuePassesUnchangedBothWays) {
    for (const std::size_t period : kPeriods) {
        SCOPED_TRACE(period);
        Client client;
        client.ramp = true;
        DeviceBridge bridge(client, 44100, 44100);
        std::vector<float> frames(period);
        std::vector<float> played;
        while (played.size() < 65536) {
            bridge.produce(frames);
            bridge.consume(frames);
            played.insert(played.end(), frames.begin(), frames.end());
        }
        for (std::size_t i = 0; i < 65536; ++i)
            ASSERT_EQ(played[i], static_cast<float>(static_cast<int>(i) - 32768) / 32768.f);
        EXPECT_EQ(client.heard, played);
        EXPECT_LE(client.longest, kMaximumDeviceFrames);
        EXPECT_TRUE(client.timeRanOn);
    }
}

TEST(DeviceBridge, whatADeviceHearsBeyondFullScaleIsSaturated) {
    Client client;
    DeviceBridge bridge(client, 44100, 44100);
    bridge.consume(std::vector<float>{2.f, -2.f, NAN, INFINITY, 0.5f});
    EXPECT_THAT(client.heard,
                testing::ElementsAre(32767.f / 32768.f, -1.f, 0.f, 32767.f / 32768.f, 0.5f));
}

TEST(DeviceBridge, otherRatesKeepPitchAndContinuityAndTakeNoMemory) {
    for (const double rate : {8000.0, 22050.0, 48000.0, 96000.0, 192000.0}) {
        for (const std::size_t period : kPeriods) {
            SCOPED_TRACE(std::to_string(rate) + " Hz, period " + std::to_string(period));
            Client client;
            DeviceBridge bridge(client, rate, rate);
            ASSERT_TRUE(bridge.usable());
            client.heard.reserve(500000);
            std::vector<float> frames(period), played;
            RenderWatch watch;
            while (static_cast<double>(played.size()) < 3 * rate) {
                bridge.produce(frames);
                bridge.consume(frames);
                played.insert(played.end(), frames.begin(), frames.end());
            }
            EXPECT_THAT(watch.violations(), testing::IsEmpty());
            EXPECT_GT(residueDecibels(middleOf(played, rate), rate), 80);
            EXPECT_GT(residueDecibels(middleOf(client.heard, 44100), 44100), 80);
            EXPECT_NEAR(Tone::measure(played, rate).amplitude, 0.5, 0.005);
            EXPECT_NEAR(client.produced, static_cast<double>(played.size()) * 44100 / rate, 600);
            EXPECT_LE(client.longest, kMaximumDeviceFrames);
            EXPECT_TRUE(client.timeRanOn);
        }
    }
}

TEST(DeviceBridge, aConvertedPeriodCostsOneCallOfTheClient) {
    Client client;
    DeviceBridge bridge(client, 48000, 48000);
    std::vector<float> frames(256);
    bridge.produce(frames);  // fills the converter's look-ahead too
    client.calls = 0;
    for (int i = 0; i < 1000; ++i)
        bridge.produce(frames);
    EXPECT_LE(client.calls, 1000u);
}

TEST(DeviceBridge, ratesThatNoDeviceHasAreRefused) {
    Client client;
    for (const double rate : {0.0, -48000.0, 1.0, 1e9})
        EXPECT_FALSE(DeviceBridge(client, rate, 44100).usable()) << rate;
}

}  // namespace
