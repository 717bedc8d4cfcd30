#include "audiounits/Equaliser.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>

#include "QuietRenders.h"
#include "StreamSource.h"
#include "audiounits/EqualiserPresets.h"

namespace {

class EqualiserTest : public testing::Test {
  protected:
    template <typename Sample>
    void feed(StreamSource<Sample>& source, const StreamDescription& format) {
        EXPECT_EQ(
            setUnit(&m_unit, kAudioUnitProperty_StreamFormat, kAudioUnitScope_Input, 0, format),
            noErr);
        setUnit(&m_unit, kAudioUnitProperty_SetRenderCallback, kAudioUnitScope_Input, 0,
                source.callback());
        EXPECT_EQ(m_unit.initialise(), noErr);
    }
    OSStatus choose(std::int32_t number) {
        const AUPreset record{number, "a name that does not count"};
        return setUnit(&m_unit, kAudioUnitProperty_PresentPreset, kAudioUnitScope_Global, 0,
                       &record);
    }
    template <typename T>
    OSStatus read(AudioUnitPropertyID property, T& value) {
        T* place = &value;
        std::uint32_t size = sizeof place;
        return AudioUnitGetProperty(&m_unit, property, kAudioUnitScope_Global, 0, &place, &size);
    }

    Equaliser m_unit;
};

/// Level of an impulse response at one frequency: its Fourier sum.
double decibelsAt(double hertz, const std::vector<float>& response) {
    std::complex<double> sum = 0;
    for (std::size_t i = 0; i < response.size() / 2; ++i)
        sum += std::polar<double>(response[2 * i], -2 * M_PI * hertz * double(i) / kGraphRate);
    return 20 * std::log10(std::abs(sum));
}

}  // namespace

TEST_F(EqualiserTest, everyPresetSoundsAsItsTableSays) {
    const auto presets = EqualiserPresets::all();
    EXPECT_GE(presets.size(), 20u);
    for (std::size_t number = 0; number < presets.size(); ++number) {
        StreamSource<float> impulse{
            [](auto frame, auto channel) { return frame == 0 && channel == 0 ? 1.f : 0.f; }};
        ASSERT_EQ(choose(static_cast<std::int32_t>(number)), noErr);
        feed(impulse, StreamDescription::float32(2));
        const auto heard = renderUnit<float>(&m_unit, 16384, 2, 441);
        for (std::size_t band = 0; band < EqualiserPresets::kBandHertz.size(); ++band)
            EXPECT_NEAR(decibelsAt(EqualiserPresets::kBandHertz[band], heard),
                        presets[number].decibels[band], 0.1)
                << presets[number].name << " band " << band;
        // The ends go on, and nothing between the bands is wilder than the bands.
        const auto [least, most] = std::ranges::minmax(presets[number].decibels);
        for (double hertz = 20; hertz < 20000; hertz *= 1.1) {
            EXPECT_LT(decibelsAt(hertz, heard), most + 2.5) << presets[number].name << hertz;
            EXPECT_GT(decibelsAt(hertz, heard), least - 2.5) << presets[number].name << hertz;
        }
        for (std::size_t i = 1; i < heard.size(); i += 2)
            ASSERT_EQ(heard[i], 0.f) << "channels do not mix";
    }
}

TEST_F(EqualiserTest, flatHandsOnEveryBit) {
    StreamSource<std::int16_t> noise{[](auto frame, auto channel) {
        return static_cast<std::int16_t>((frame * 2 + channel) * 40503u >> 3);
    }};
    feed(noise, StreamDescription::sint16(2));
    const auto passes = [&] {
        const std::uint32_t first = noise.next;
        const auto heard = renderUnit<std::int16_t>(&m_unit, 40000, 2);
        for (std::uint32_t i = 0; i < heard.size(); ++i) {
            if (heard[i] != noise.sample(first + i / 2, i % 2))
                return false;
        }
        return heard.size() == 80000;
    };
    EXPECT_TRUE(passes());
    choose(1);
    EXPECT_FALSE(passes());
    choose(0);
    renderUnit<std::int16_t>(&m_unit, 44100, 2);
    EXPECT_TRUE(passes());
}

TEST_F(EqualiserTest, changesWithoutAClickOrAnythingForbidden) {
    constexpr double kStep = 2 * M_PI * 100 / kGraphRate;
    StreamSource<float> tone{
        [](auto frame, auto) { return 0.25f * static_cast<float>(std::sin(frame * kStep)); }};
    for (const std::uint32_t buffer : {1u, 64u, 1000u}) {
        choose(0);
        feed(tone, StreamDescription::float32(1));
        std::vector<float> heard;
        for (const std::int32_t number : {0, 1, 2, 1, 21, 0, 24, 1}) {
            choose(number);
            for (const std::uint32_t frames : {300u, 2000u}) {  // some glides are cut short
                const auto more = renderUnit<float>(&m_unit, frames, 1, buffer);
                heard.insert(heard.end(), more.begin(), more.end());
                choose(number);
            }
        }
        // The tone at 6 dB more, and a change of as much within 512 frames.
        EXPECT_LT(largestStep(heard), 0.5 * (kStep + 1.0 / 512)) << buffer;
    }
    expectQuietRenders(&m_unit, 1, [this](int turn) { choose(turn % 25); });
}

TEST_F(EqualiserTest, aTailRingsOutIntoSilence) {
    StreamSource<float> burst{[](auto frame, auto) { return frame < 64 ? 0.5f : 0.f; }};
    const AURenderCallbackStruct flagged{
        [](void* source, AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
           std::uint32_t bus, std::uint32_t frames, AudioBufferList* data) {
            if (static_cast<StreamSource<float>*>(source)->next >= 64)
                *flags |= kAudioUnitRenderAction_OutputIsSilence;
            return StreamSource<float>::render(source, flags, time, bus, frames, data);
        },
        &burst};
    choose(1);
    feed(burst, StreamDescription::float32(1));
    setUnit(&m_unit, kAudioUnitProperty_SetRenderCallback, kAudioUnitScope_Input, 0, flagged);
    renderUnit<float>(&m_unit, 64, 1, 64);
    EXPECT_GT(largestStep(renderUnit<float>(&m_unit, 64, 1, 64)), 1e-5f);
    renderUnit<float>(&m_unit, 44100, 1);
    EXPECT_EQ(renderUnit<float>(&m_unit, 512, 1), std::vector<float>(512, 0.f));
}

TEST_F(EqualiserTest, answersForPresetsAndFormats) {
    std::vector<AUPreset> list;
    ASSERT_EQ(read(kAudioUnitProperty_FactoryPresets, list), noErr);
    ASSERT_EQ(list.size(), EqualiserPresets::all().size());
    EXPECT_EQ(list[0].presetName, "Flat");
    EXPECT_EQ(choose(3), noErr);
    for (const std::int32_t unknown : {-1, static_cast<std::int32_t>(list.size()), 1 << 30})
        EXPECT_EQ(choose(unknown), kAudioUnitErr_InvalidPropertyValue);
    AUPreset present;
    ASSERT_EQ(read(kAudioUnitProperty_PresentPreset, present), noErr);
    EXPECT_EQ(present.presetNumber, 3);
    EXPECT_EQ(present.presetName, list[3].presetName);
    const AUPreset* none = nullptr;
    const auto set = [&](auto property, auto scope, const auto& value) {
        return setUnit(&m_unit, property, scope, 0, value);
    };
    constexpr auto input = kAudioUnitScope_Input;
    constexpr auto output = kAudioUnitScope_Output;
    EXPECT_EQ(set(kAudioUnitProperty_PresentPreset, kAudioUnitScope_Global, none),
              kAudioUnitErr_InvalidPropertyValue);
    EXPECT_EQ(set(kAudioUnitProperty_PresentPreset, input, none), kAudioUnitErr_InvalidScope);
    EXPECT_EQ(set(kAudioUnitProperty_FactoryPresets, kAudioUnitScope_Global, none),
              kAudioUnitErr_PropertyNotWritable);

    const auto stereo = StreamDescription::float32(2);
    EXPECT_EQ(set(kAudioUnitProperty_StreamFormat, output, stereo), noErr);
    StreamSource<float> source{[](auto, auto) { return 0.f; }};
    EXPECT_EQ(set(kAudioUnitProperty_SetRenderCallback, input, source.callback()), noErr);
    StreamDescription format;
    std::uint32_t size = sizeof format;
    EXPECT_EQ(m_unit.property(kAudioUnitProperty_StreamFormat, input, 0, &format, &size), noErr);
    EXPECT_EQ(format, stereo);
    EXPECT_EQ(set(kAudioUnitProperty_StreamFormat, output, StreamDescription::sint16(1)),
              kAudioUnitErr_FormatNotSupported);
    EXPECT_EQ(set(kAudioUnitProperty_StreamFormat, input, StreamDescription::float32(1, 48000)),
              kAudioUnitErr_FormatNotSupported);
}
