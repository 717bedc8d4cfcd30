#include "audiounits/SpatialMixer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <list>

#include "QuietRenders.h"
#include "StreamSource.h"

namespace {

constexpr float kAmplitude = 0.25f;
constexpr double kStep = 2 * M_PI * 100 / kGraphRate;  // of a tone of 100 Hz

/// Decibels on both channels, against the source.
struct Levels {
    double left;
    double right;
    double total;
};

class SpatialMixerTest : public testing::Test {
  protected:
    void setUp(std::uint32_t buses, const StreamDescription& output) {
        setUnit(&m_mixer, kAudioUnitProperty_ElementCount, kAudioUnitScope_Input, 0, buses);
        setUnit(&m_mixer, kAudioUnitProperty_StreamFormat, kAudioUnitScope_Output, 0, output);
        ASSERT_EQ(m_mixer.initialise(), noErr);
    }
    template <typename Sample>
    void feed(AudioUnitElement bus, StreamSource<Sample>& source, const StreamDescription& format) {
        setUnit(&m_mixer, kAudioUnitProperty_StreamFormat, kAudioUnitScope_Input, bus, format);
        setUnit(&m_mixer, kAudioUnitProperty_SetRenderCallback, kAudioUnitScope_Input, bus,
                source.callback());
    }
    OSStatus put(AudioUnitElement bus, AudioUnitParameterID parameter, float value) {
        return AudioUnitSetParameter(&m_mixer, parameter, kAudioUnitScope_Input, bus, value);
    }
    Levels at(float azimuth, float elevation = 0, float distance = 1, float gain = 0) {
        const float values[] = {azimuth, elevation, distance, gain};
        for (AudioUnitParameterID id = 0; id < 4; ++id)
            EXPECT_EQ(put(0, id, values[id]), noErr);
        renderUnit<float>(&m_mixer, 512, 2);
        const auto heard = renderUnit<float>(&m_mixer, 4410, 2);
        double power[2] = {};
        for (std::size_t i = 0; i < heard.size(); ++i)
            power[i % 2] += heard[i] * heard[i];
        const auto decibels = [](double p) {
            return 10 * std::log10(p / (4410 * kAmplitude * kAmplitude / 2) + 1e-20);
        };
        return {decibels(power[0]), decibels(power[1]), decibels(power[0] + power[1])};
    }

    StreamSource<float> m_tone{
        [](auto frame, auto) { return kAmplitude * static_cast<float>(std::sin(frame * kStep)); }};
    SpatialMixer m_mixer;
};

}  // namespace

TEST_F(SpatialMixerTest, placesAToneByDirectionAndDistance) {
    setUp(1, StreamDescription::float32(2));
    feed(0, m_tone, StreamDescription::float32(1));
    EXPECT_NEAR(at(-90).left, 0, 0.01);
    EXPECT_LT(at(-90).right, -100);
    EXPECT_NEAR(at(0).left, -3.01, 0.01);
    EXPECT_NEAR(at(0).right, -3.01, 0.01);
    EXPECT_LT(at(90).left, -100);
    EXPECT_NEAR(at(90).right, 0, 0.01);
    EXPECT_NEAR(at(45).left, 20 * std::log10(std::cos(M_PI * 3 / 8)), 0.01);
    EXPECT_NEAR(at(60).right, at(120).right, 0.01) << "behind is mirrored to the front";
    EXPECT_NEAR(at(90, 60).right, at(30, 0).right, 0.01) << "higher up is nearer the middle";
    EXPECT_NEAR(at(77, 90).left, -3.01, 0.01);
    for (float azimuth = -180; azimuth <= 180; azimuth += 22.5f) {
        for (const float elevation : {-90.f, -30.f, 0.f, 45.f})
            EXPECT_NEAR(at(azimuth, elevation).total, 0, 0.01) << azimuth << ' ' << elevation;
    }
    EXPECT_NEAR(at(30, 0, 2).total, -6.02, 0.01);
    EXPECT_NEAR(at(30, 0, 4).total, -12.04, 0.01);
    EXPECT_NEAR(at(30, 0, 0).total, 0, 0.01) << "nearer than 1 m is not louder";
    EXPECT_NEAR(at(30, 0, 10000).total, at(30, 0, 100).total, 0.01);
    EXPECT_NEAR(at(30, 0, 2, 20).total, 13.98, 0.01);
    EXPECT_NEAR(at(30, 0, 1, -40).total, -40, 0.01);
}

TEST_F(SpatialMixerTest, movesWithoutAClickOrAnythingForbidden) {
    setUp(1, StreamDescription::float32(2));
    feed(0, m_tone, StreamDescription::float32(1));
    put(0, k3DMixerParam_Azimuth, -90);
    std::vector<float> heard;
    const auto play = [&](std::uint32_t frames) {
        const auto more = renderUnit<float>(&m_mixer, frames, 2);
        heard.insert(heard.end(), more.begin(), more.end());
    };
    heard.reserve(100000);
    play(700);
    EXPECT_LT(std::abs(heard[1399]), 1e-6f) << "a bus begins where it was put";
    for (const float azimuth : {90.f, -90.f, 0.f, 180.f, 90.f}) {
        put(0, k3DMixerParam_Azimuth, azimuth);
        put(0, k3DMixerParam_Distance, azimuth > 0 ? 1.f : 8.f);
        play(512);
        play(512);
    }
    // What the tone itself does at most, and a change of its whole amplitude within a buffer.
    const auto most = kAmplitude * static_cast<float>(kStep + 1.1 / 512);
    EXPECT_LT(largestStep(heard, 2), most);
    EXPECT_LT(largestStep(heard, 2, 1), most);
    expectQuietRenders(&m_mixer, 2, [this](int turn) {
        put(0, k3DMixerParam_Azimuth, static_cast<float>(turn % 180));
    });
}

TEST_F(SpatialMixerTest, mixesBusesOfAllFormatsEachFromItsOwnDistance) {
    setUp(1, StreamDescription::sint16(1));
    StreamSource<float> pair{[](auto, auto channel) { return channel ? 0.5f : 0.25f; }};
    std::list<StreamSource<std::int16_t>> sources;
    float sum = 0;
    for (std::uint32_t count = 1; count <= 64; ++count) {
        setUnit(&m_mixer, kAudioUnitProperty_ElementCount, kAudioUnitScope_Input, 0, count);
        sources.push_back({[](auto, auto) { return std::int16_t{400}; }});
        feed(count - 1, sources.back(), StreamDescription::sint16(1));
        put(count - 1, k3DMixerParam_Distance, static_cast<float>(count));
        put(count - 1, k3DMixerParam_Azimuth, 90.f);  // means nothing in mono
        sum += 400.f / static_cast<float>(count);
        EXPECT_NEAR(renderUnit<std::int16_t>(&m_mixer, 64, 1).back(), sum, 1) << count;
    }
    feed(0, pair, StreamDescription::float32(2));
    EXPECT_NEAR(renderUnit<std::int16_t>(&m_mixer, 64, 1).back(), sum - 400 + 0.375f * 32768, 1);
}

TEST_F(SpatialMixerTest, aSingleBusAtItsStartPassesBitForBitAndAGoneOneForgetsItsPlace) {
    setUp(1, StreamDescription::sint16(1));
    StreamSource<std::int16_t> source{
        [](auto frame, auto) { return static_cast<std::int16_t>(frame * 13 - 32768); }};
    feed(0, source, StreamDescription::sint16(1));
    const auto passes = [&] {
        const auto first = source.next;
        const auto out = renderUnit<std::int16_t>(&m_mixer, 4000, 1);
        for (std::uint32_t i = 0; i < out.size(); ++i) {
            if (out[i] != static_cast<std::int16_t>((first + i) * 13 - 32768))
                return false;
        }
        return true;
    };
    EXPECT_TRUE(passes());
    put(0, k3DMixerParam_Distance, 3.f);
    EXPECT_FALSE(passes());
    for (const std::uint32_t count : {0u, 1u})
        setUnit(&m_mixer, kAudioUnitProperty_ElementCount, kAudioUnitScope_Input, 0, count);
    feed(0, source, StreamDescription::sint16(1));
    renderUnit<std::int16_t>(&m_mixer, 8, 1);
    EXPECT_TRUE(passes());
}

TEST_F(SpatialMixerTest, refusesWhatIsOutOfRange) {
    setUp(2, StreamDescription::sint16(1));
    const float far = 1e9f;
    const float nothing = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(put(1, k3DMixerParam_Distance, 7.f), noErr);
    for (AudioUnitParameterID id = 0; id < 4; ++id) {
        EXPECT_EQ(put(1, id, far), kAudioUnitErr_InvalidParameterValue);
        EXPECT_EQ(put(1, id, -far), kAudioUnitErr_InvalidParameterValue);
        EXPECT_EQ(put(1, id, nothing), kAudioUnitErr_InvalidParameterValue);
    }
    EXPECT_EQ(put(2, 0, 1.f), kAudioUnitErr_InvalidElement);
    EXPECT_EQ(put(0, 4, 1.f), kAudioUnitErr_InvalidParameter);
    EXPECT_EQ(AudioUnitSetParameter(&m_mixer, 0, kAudioUnitScope_Global, 0, 1.f),
              kAudioUnitErr_InvalidScope);
    float value = 0;
    EXPECT_EQ(
        AudioUnitGetParameter(&m_mixer, k3DMixerParam_Distance, kAudioUnitScope_Input, 1, &value),
        noErr);
    EXPECT_EQ(value, 7.f);
    EXPECT_EQ(AudioUnitGetParameter(nullptr, 0, 1, 0, &value), kAudio_ParamError);
}
