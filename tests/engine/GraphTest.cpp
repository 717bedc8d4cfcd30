#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "audiounits/devices/AudioDevices.h"
#include "audiounits/devices/ManualDevice.h"
#include "graph/VornConverterUnit.h"
#include "graph/VornOutputUnit.h"
#include "graph/VornTestSignalGeneratorUnit.h"
#include "graph/Vornery.h"
#include "graph/VorniPodEQUnit.h"
#include "log/Log.h"

namespace {

/// A component that counts calls, remembers properties and fails on demand.
struct Ledger {
    int initialised = 0;
    int uninitialised = 0;
    OSStatus answer = noErr;
    std::vector<std::tuple<AudioUnitPropertyID, AudioUnitElement, std::uint32_t>> written;
};
Ledger ledger;

class CountingUnit : public AudioUnitInstance {
    OSStatus setProperty(AudioUnitPropertyID property, AudioUnitScope, AudioUnitElement element,
                         const void*, std::uint32_t size) override {
        ledger.written.emplace_back(property, element, size);
        return ledger.answer;
    }
    OSStatus propertyInfo(AudioUnitPropertyID, AudioUnitScope, AudioUnitElement,
                          std::uint32_t*) override {
        return ledger.answer;
    }
    OSStatus property(AudioUnitPropertyID, AudioUnitScope, AudioUnitElement, void*,
                      std::uint32_t*) override {
        return ledger.answer;
    }
    OSStatus initialise() override {
        ++ledger.initialised;
        return ledger.answer;
    }
    OSStatus uninitialise() override {
        ++ledger.uninitialised;
        return ledger.answer;
    }
    OSStatus render(AudioUnitRenderActionFlags*, const AudioTimeStamp*, std::uint32_t bus,
                    std::uint32_t frames, AudioBufferList* data) override {
        for (std::uint32_t i = 0; i < frames; ++i)
            data->samples<std::int16_t>()[i] = static_cast<std::int16_t>(bus);
        return ledger.answer;
    }
};

/// Puts CountingUnit in the place of a real component for one test.
class Replacement {
  public:
    Replacement(std::uint32_t type, std::uint32_t subtype) {
        ledger = {};
        m_component =
            AudioComponentRegistry::shared().add({{type, subtype, fourCC("appl"), 0, 0},
                                                  [] { return std::make_unique<CountingUnit>(); }});
    }
    ~Replacement() { AudioComponentRegistry::shared().remove(m_component); }

  private:
    AudioComponent m_component;
};

/// A callback unit that writes one number.
class Constant : public VornCallbackUnit {
  public:
    explicit Constant(std::int16_t value)
        : VornCallbackUnit(&render, StreamDescription::sint16(1)), m_value(value) {}

  private:
    static OSStatus render(void* self, AudioUnitRenderActionFlags*, const AudioTimeStamp*,
                           std::uint32_t, std::uint32_t frames, AudioBufferList* data) {
        std::fill_n(data->samples<std::int16_t>(), frames, static_cast<Constant*>(self)->m_value);
        return noErr;
    }
    std::int16_t m_value;
};

std::vector<std::int16_t> pullUpstreamOf(const VornCallbackUnit& unit, std::uint32_t bus,
                                         OSStatus expected = noErr) {
    std::vector<std::int16_t> out(8, 77);
    auto list = AudioBufferList::single(out.data(), 1, 16);
    AudioUnitRenderActionFlags flags = 0;
    const AudioTimeStamp time;
    EXPECT_EQ(unit.upstreamRenderFlags(&flags, &time, bus, 8, &list), expected);
    return out;
}

}  // namespace

TEST(VornCallbackUnit, pullsAComponentFirstAndKeepsTheCallbackBehindIt) {
    const Replacement mixer(fourCC("aumx"), fourCC("mcmx"));
    Constant seven(7);
    Constant puller(0);
    VornMixerUnit component;
    pullUpstreamOf(puller, 0, kAudioUnitErr_NoConnection);
    Vornery::sharedInstance().connect(seven, puller);
    EXPECT_EQ(pullUpstreamOf(puller, 0)[0], 7);
    Vornery::sharedInstance().connect(component, 2, puller, 5);
    EXPECT_EQ(puller.source()->sourceOutputNumber, 2u);
    EXPECT_EQ(puller.source()->destInputNumber, 5u);
    EXPECT_EQ(pullUpstreamOf(puller, 3)[0], 3) << "the bus asked for is passed on, not the stored";
    Vornery::sharedInstance().disconnect(seven, 9, puller, 9);
    pullUpstreamOf(puller, 0, kAudioUnitErr_NoConnection);
}

TEST(VornComponentUnit, initialisesOnceUninitialisesAlwaysAndLogsFailures) {
    const Replacement converter(fourCC("aufc"), fourCC("conv"));
    Log::clear();
    {
        VornConverterUnit unit;
        unit.initialise();
        unit.initialise();
        unit.uninitialise();
        unit.uninitialise();
        EXPECT_EQ(ledger.initialised, 1);
        EXPECT_EQ(ledger.uninitialised, 2);
        EXPECT_TRUE(Log::lines().empty());
        ledger.answer = -50;
        unit.setTargetFormat(StreamDescription::sint16(1));
        EXPECT_EQ(Log::lines(), std::vector<std::string>{"AU Error -50 / ffffffce"});
        unit.initialise();
        EXPECT_TRUE(unit.initialised());
        Log::clear();
        EXPECT_EQ(unit.sourceFormat(), StreamDescription{});
        EXPECT_EQ(Log::lines().size(), 2u) << "size query and read are logged each";
        ledger.answer = noErr;
    }
    EXPECT_EQ(ledger.uninitialised, 3);
}

TEST(VornComponentUnit, passesEveryValueInItsOwnSize) {
    const Replacement hardware(fourCC("auou"), fourCC("rioc"));
    using Written = std::tuple<AudioUnitPropertyID, AudioUnitElement, std::uint32_t>;
    const auto written = [](auto&&... rest) { return std::vector<Written>{rest...}; };
    VornIOUnit io;
    EXPECT_EQ(ledger.written, written(Written(kAudioOutputUnitProperty_EnableIO, 0, 1)));
    ledger.written.clear();
    VornOutputUnit output;
    EXPECT_EQ(ledger.written, written(Written(kAudioOutputUnitProperty_EnableIO, 0, 4)));
    ledger.written.clear();
    io.enableRecordingVia({}, StreamDescription::sint16(2));
    EXPECT_EQ(ledger.written, written(Written(kAudioOutputUnitProperty_EnableIO, 1, 1),
                                      Written(kAudioUnitProperty_StreamFormat, 1, 40),
                                      Written(kAudioOutputUnitProperty_SetInputCallback, 1, 16)));
    ledger.written.clear();
    Constant seven(7);
    io.setUpstreamUnit(seven, 0, 3);
    io.disconnectUpstream(3);
    EXPECT_EQ(ledger.written, written(Written(kAudioUnitProperty_StreamFormat, 3, 40),
                                      Written(kAudioUnitProperty_SetRenderCallback, 3, 16),
                                      Written(kAudioUnitProperty_MakeConnection, 3, 16),
                                      Written(kAudioUnitProperty_SetRenderCallback, 3, 16)));
}

TEST(Vornery, playsACallbackUnitThroughMixerAndHardware) {
    const auto device = std::make_shared<ManualDevice>();
    AudioDevices::use(device);
    Vornery& engine = Vornery::sharedInstance();
    Constant source(-1234);
    VorniPodEQUnit before;
    engine.connect(before, engine.mixer());
    engine.connect(source, engine.mixer());  // takes its place
    engine.mixer().setInputBusCount(1);
    EXPECT_EQ(engine.mixer().inputBusCount(), 1u);
    engine.initialise();
    engine.play();
    std::vector<std::int16_t> out(300);
    device->render(out);
    EXPECT_EQ(out, std::vector<std::int16_t>(300, -1234));
    engine.stop();
    engine.uninitialise();
    engine.disconnect(source, 0, engine.mixer(), 0);
}

TEST(Vornery, playsThroughTheMixerThatPlacesBusesInSpace) {
    const auto device = std::make_shared<ManualDevice>();
    AudioDevices::use(device);
    Vornery::set3DMixerDesired(true);
    Vornery& engine = Vornery::sharedInstance();
    auto* mixer = dynamic_cast<Vorn3DMixerUnit*>(&engine.mixer());
    ASSERT_TRUE(mixer);
    Constant source(-1234);
    VorniPodEQUnit equaliser;
    engine.connect(source, equaliser);
    engine.connect(equaliser, *mixer);
    equaliser.initialise();
    engine.initialise();
    engine.play();
    std::vector<std::int16_t> out(300);
    device->render(out);
    EXPECT_EQ(out, std::vector<std::int16_t>(300, -1234));
    mixer->setDistance(0, 4.f);
    mixer->setGain(0, 6.0206f);
    mixer->setAzimuth(0, -90.f);
    mixer->setElevation(0, 10.f);
    device->render(out);
    EXPECT_NEAR(out[0], -1234, 10) << "on its way";
    device->render(out);
    EXPECT_EQ(out, std::vector<std::int16_t>(300, -617));
    Log::clear();
    mixer->setAzimuth(7, 0.f);
    EXPECT_EQ(Log::lines(), std::vector<std::string>{"AU Error -10877 / ffffd583"});
    engine.stop();
    engine.uninitialise();
}

TEST(VorniPodEQUnit, listsItsPresetsAndKeepsTheOneChosen) {
    Log::clear();
    VorniPodEQUnit equaliser;
    const auto presets = equaliser.presets();
    ASSERT_GT(presets.size(), 10u);
    EXPECT_EQ(equaliser.currentPreset(), VorniPodEQUnit::Preset(0, "Flat"));
    for (const auto& preset : presets) {
        equaliser.setCurrentPreset({preset.first, "other"});
        EXPECT_EQ(equaliser.currentPreset(), preset);
    }
    EXPECT_TRUE(Log::lines().empty());
    equaliser.setCurrentPreset({4711, "Flat"});
    EXPECT_EQ(Log::lines(), std::vector<std::string>{"AU Error -10851 / ffffd59d"});
    EXPECT_EQ(equaliser.currentPreset(), presets.back());
}

TEST(VornTestSignalGeneratorUnit, is440HertzWhateverTheBuffers) {
    VornTestSignalGeneratorUnit tone;
    Constant puller(0);
    Vornery::sharedInstance().connect(tone, puller);
    std::vector<std::int16_t> out(2205);
    AudioUnitRenderActionFlags flags = 0;
    for (std::uint32_t at = 0; at < out.size(); at += 245) {
        const AudioTimeStamp time{static_cast<double>(at), 0};
        auto list = AudioBufferList::single(out.data() + at, 1, 490);
        ASSERT_EQ(puller.upstreamRenderFlags(&flags, &time, 0, 245, &list), noErr);
    }
    for (std::size_t k = 0; k < out.size(); ++k)
        EXPECT_NEAR(out[k], 8000 * std::sin(2 * M_PI * 440 * static_cast<double>(k) / 22050), 1.5);
}
