#include "midi/MidiControls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <optional>
#include <random>

#include "HandMadeMidi.h"
#include "ScratchFolder.h"
#include "Tone.h"
#include "audiounits/devices/AudioDevices.h"
#include "audiounits/devices/ManualDevice.h"
#include "midi/InstrumentControls.h"
#include "midi/MidiInput.h"

namespace {

using enum ParameterId;
using Bytes = std::vector<std::uint8_t>;

constexpr float kRecordedHertz = 441;  // of the sound, which key 69 (440 Hz) plays as it is

/// Devices that a test plugs in play the real instrument, on a device that is driven by hand.
class MidiControlsTest : public testing::Test {
  protected:
    MidiControlsTest() {
        AudioDevices::use(m_device);
        MidiBackends::use({[this] { return m_ports; }});
        m_presets["one"].setNumber(distortion, 0.25f);
        m_presets["two"].setNumber(distortion, 0.75f);
        m_instrument.emplace();
        m_target.emplace(*m_instrument, m_presets);
        begin();
        m_ports->plug("keys");
        m_ports->plug("box");
        RunLoop::main().turn();
    }
    ~MidiControlsTest() override { m_midi.reset(); }

    void begin() {
        m_midi.reset();
        m_midi.emplace(m_defaults);
        m_midi->setNotes(&m_instrument->notes());
        controls().setTarget(&*m_target);
        RunLoop::main().turn();
    }
    void switchOn(MidiControlSettings settings = {}) {
        settings.enabled = true;
        controls().setSettings(settings);
    }
    void play(const Bytes& bytes, const char* source = "keys") {
        m_ports->play(source, bytes);
        RunLoop::main().turn();
    }
    /// MIDI notes that voices hold: "60 64".
    std::string sounding() {
        std::string notes;
        for (std::size_t key = 0; key < kKeyCount; ++key) {
            if (m_instrument->notes().triggeredNoteUnits()[key] >= 0)
                notes.append(notes.empty() ? "" : " ").append(std::to_string(key + 21));
        }
        return notes;
    }
    GrainNoteData& voiceOf(int note) {
        const auto key = static_cast<std::size_t>(note - kLowestMidiNote);
        const auto voice = m_instrument->notes().triggeredNoteUnits().at(key);
        return *m_instrument->voices().voiceSynths.at(static_cast<std::size_t>(voice))->note();
    }
    float unit(ParameterId id) { return m_instrument->parameter(id); }
    MidiControls& controls() { return m_midi->controls(); }

    ScratchFolder m_folder;
    UserDefaults m_defaults{m_folder.file("defaults")};
    std::shared_ptr<ManualDevice> m_device = std::make_shared<ManualDevice>();
    PresetList::Presets m_presets;
    std::shared_ptr<HandMadeMidi> m_ports = std::make_shared<HandMadeMidi>();
    std::optional<Instrument> m_instrument;
    std::optional<InstrumentControls> m_target;
    std::optional<MidiInput> m_midi;
};

}  // namespace

TEST_F(MidiControlsTest, untilSwitchedOnThereAreOnlyNotesOfAllChannels) {
    ASSERT_FALSE(controls().settings().enabled);
    controls().learn(grainSize);
    const Preset before = m_instrument->makePresetFromSettings();
    std::mt19937 random(6);
    std::set<int> held;
    for (int round = 0; round < 4000; ++round) {
        const auto number = static_cast<std::uint8_t>(60 + random() % 10);
        const std::uint8_t controllers[] = {1, 64, 66, 74, 120, 121, 123, 127};
        const auto status = static_cast<std::uint8_t>(0x80 + random() % 0x70);
        const bool isControl = status / 16 == 11;
        const auto value = static_cast<std::uint8_t>(random() % 128);
        play({status, isControl ? controllers[random() % 8] : number, value});
        if (status / 16 == 9 && value > 0)
            held.insert(number);
        else if (status / 16 <= 9)
            held.erase(number);
        std::string expected;
        for (const int note : held)
            expected.append(expected.empty() ? "" : " ").append(std::to_string(note));
        ASSERT_EQ(sounding(), expected) << "round " << round;
        for (const int note : held)
            ASSERT_EQ(voiceOf(note).frequency,
                      m_instrument->notes().noteFrequencies()[static_cast<std::size_t>(note - 21)]);
    }
    EXPECT_EQ(m_instrument->makePresetFromSettings(), before);
    EXPECT_EQ(controls().controllersOf(grainSize), "");
}

TEST_F(MidiControlsTest, pedalsHoldWhatTheyShould) {
    switchOn();
    const struct {
        const char* why;
        Bytes bytes;
        const char* source;
        const char* sounding;
    } steps[] = {
        {"the sustain pedal holds", {0x90, 60, 9, 0xB0, 64, 64, 0x80, 60, 0}, "keys", "60"},
        {"its own channel only", {0x91, 62, 9, 0x81, 62, 0}, "keys", "60"},
        {"and its own source", {0x90, 62, 9, 0x80, 62, 0}, "box", "60"},
        {"keys that are down stay", {0x90, 64, 9, 0xB0, 64, 63}, "keys", "64"},
        {"no more held", {0x80, 64, 0}, "keys", ""},
        {"sostenuto holds what is down", {0x90, 60, 9, 0xB0, 66, 127, 0x80, 60, 0}, "keys", "60"},
        {"and nothing later", {0x90, 62, 9, 0xB0, 66, 127, 0x80, 62, 0}, "keys", "60"},
        {"until it goes up", {0xB0, 66, 0}, "keys", ""},
        {"both", {0x90, 60, 9, 0xB0, 66, 127, 0xB0, 64, 127, 0x90, 62, 9}, "keys", "60 62"},
        {"sustained", {0x80, 60, 0, 0x80, 62, 0}, "keys", "60 62"},
        {"the caught one is left", {0xB0, 64, 0}, "keys", "60"},
        {"none is", {0xB0, 66, 0}, "keys", ""},
        {"all notes off heeds the pedal", {0xB0, 64, 99, 0x90, 60, 9, 0xB0, 123, 0}, "keys", "60"},
        {"reset lifts it", {0xB0, 121, 0}, "keys", ""},
        {"all notes off, as 127", {0x90, 60, 9, 0x90, 64, 9, 0xB0, 127, 0}, "keys", ""},
        {"all sound off", {0xB0, 64, 99, 0x90, 60, 9, 0x80, 60, 0, 0xB5, 120, 0}, "box", ""},
        {"a pedal that is left down", {0xB0, 64, 99, 0x90, 60, 9, 0x80, 60, 0}, "box", "60"},
    };
    for (const auto& step : steps) {
        play(step.bytes, step.source);
        EXPECT_EQ(sounding(), step.sounding) << step.why;
    }
    play({0x90, 62, 9}, "keys");
    m_ports->pull("box");
    RunLoop::main().turn();
    EXPECT_EQ(sounding(), "62") << "a source that goes takes along what its pedal holds";

    const float soft = voiceOf(62).gain;
    play({0xB0, 64, 127, 0x80, 62, 0, 0x91, 62, 127});
    EXPECT_GT(voiceOf(62).gain, soft) << "struck again while a pedal holds it: a new note";
    play({0xB0, 64, 0});
    EXPECT_EQ(sounding(), "62") << "which is not the pedal's any more";
    play({0xB1, 64, 127, 0x81, 62, 0});
    controls().setSettings({});
    EXPECT_EQ(sounding(), "") << "switched off";
}

TEST_F(MidiControlsTest, aChannelAVelocityAndAWheelAsChosen) {
    switchOn();
    play({0x91, 60, 1});
    switchOn({.channel = 3, .modulation = filterBass, .curve = VelocityCurve::fixed});
    EXPECT_EQ(sounding(), "") << "its release will not be heard";
    play({0x91, 60, 1, 0xB1, 1, 127, 0x92, 64, 1});
    EXPECT_EQ(sounding(), "64");
    EXPECT_FLOAT_EQ(voiceOf(64).gain, 100 / 127.f);
    EXPECT_EQ(unit(filterBass), kDefaultFilterBass);
    for (const auto& [value, dial] :
         {std::pair{0, 1.f}, {127, 441.f}, {64, 1 + 440 * 64 / 127.f}}) {
        play({0xB2, 1, std::uint8_t(value)});
        EXPECT_NEAR(unit(filterBass), storedValue(filterBass, dial), 1 / 44100.);
    }
    play({0xC2, 1});
    EXPECT_EQ(unit(distortion), 0.75f);
    play({0xC2, 2, 0xC1, 0});
    EXPECT_EQ(unit(distortion), 0.75f) << "beyond the last, and of another channel";
    for (const auto curve : {VelocityCurve::soft, VelocityCurve::hard, VelocityCurve::linear}) {
        EXPECT_EQ(curved(curve, 1), 1);
        EXPECT_EQ(curved(curve, 127), 127);
        for (std::uint8_t velocity = 2; velocity < 127; ++velocity) {
            EXPECT_GE(curved(curve, velocity), curved(curve, std::uint8_t(velocity - 1)));
            EXPECT_GE(curved(VelocityCurve::soft, velocity), velocity);
            EXPECT_LE(curved(VelocityCurve::hard, velocity), velocity);
        }
    }
    EXPECT_GT(curved(VelocityCurve::soft, 40), 60);
    EXPECT_LT(curved(VelocityCurve::hard, 40), 20);
}

TEST_F(MidiControlsTest, aBendIsHeardOnWhatSoundsAndOnWhatWill) {
    std::vector<float> samples(8000);  // short: long ones are read with rounded steps
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = std::sin(static_cast<float>(i % 100) * float(2 * std::numbers::pi / 100));
    WaveChoice::Loaded sound;
    sound.wave = VornWave2::initWithCopyOfData(samples.data(), std::uint32_t(samples.size()),
                                               StreamDescription::float32(1), "Sine");
    m_instrument->waves().use(sound);
    m_instrument->setParameter(grainSize, 1);
    m_instrument->play();
    const auto heard = [&] {
        std::vector<std::int16_t> out(44100);
        for (std::size_t i = 0; i < out.size(); i += 441)
            m_device->render(std::span(out).subspan(i, 441));
        return std::vector<float>(out.begin(), out.end());
    };
    const auto hertz = [](const std::vector<float>& mono) {
        return Tone::measure(std::span(mono).subspan(8820), 44100).hertz;
    };
    const auto steepest = [](std::span<const float> mono) {
        float most = 0;
        for (std::size_t i = 1; i < mono.size(); ++i)
            most = std::max(most, std::abs(mono[i] - mono[i - 1]));
        return most;
    };
    switchOn({.bendSemitones = 12});
    play({0x90, 69, 127});
    EXPECT_NEAR(hertz(heard()), kRecordedHertz, 1);
    for (const auto& [bend, semitones] : {std::pair{0, -12.}, {4096, -6.}, {12288, 6.}}) {
        play({0xE3, std::uint8_t(bend % 128), std::uint8_t(bend / 128)});
        const double expected = kRecordedHertz * std::exp2(semitones / 12);
        const auto mono = heard();
        EXPECT_NEAR(hertz(mono), expected, expected * 0.005) << semitones << " semitones";
        if (semitones >
            -12) {  // upwards: a bend that does not click is no steeper than what it ends in
            EXPECT_LE(steepest(mono), 1.05f * steepest(std::span(mono).subspan(22050)));
        }
    }
    play({0x80, 69, 0, 0x90, 57, 127, 0xE3, 0, 0});
    EXPECT_EQ(voiceOf(57).frequency, 110.f) << "a note that begins while bent";
    switchOn({.bendSemitones = 0});
    EXPECT_EQ(voiceOf(57).frequency, 220.f);
    switchOn({.bendSemitones = 24});
    EXPECT_EQ(voiceOf(57).frequency, 55.f);
    m_ports->pull("keys");
    RunLoop::main().turn();
    play({0x90, 57, 1}, "box");
    EXPECT_EQ(voiceOf(57).frequency, 220.f) << "who has bent it is gone";
}

TEST_F(MidiControlsTest, aLearnedControllerTakesItsDialOverWhereItMeetsIt) {
    switchOn({.modulation = distortion});
    int told = 0;
    controls().changed = [&] { ++told; };
    m_instrument->setParameter(grainSize, 0.5f);
    controls().learn(grainSize);
    EXPECT_EQ(controls().learning(), grainSize);
    play({0xB0, 64, 0, 0x90, 60, 9, 0xB0, 123, 0});
    EXPECT_EQ(controls().learning(), grainSize) << "pedals and notes have work of their own";
    const struct {
        int value;
        float dial;
        const char* why;
    } steps[] = {{10, 0.5f, "learned, far away"}, {60, 0.5f, "not there yet"},
                 {70, 70 / 127.f, "passed it"},   {127, 1, "turns it"},
                 {0, 0, "all the way"},           {-1, 0.9f, "the player turns it"},
                 {20, 0.9f, "not there"},         {113, 113 / 127.f, "near enough"},
                 {114, 114 / 127.f, "and on"}};
    for (const auto& step : steps) {
        if (step.value < 0)
            m_instrument->setParameter(grainSize, step.dial);
        else
            play({0xB0, 74, std::uint8_t(step.value)});
        EXPECT_FLOAT_EQ(unit(grainSize), step.dial) << step.why;
    }
    EXPECT_EQ(controls().controllersOf(grainSize), "CC 74");
    EXPECT_FALSE(controls().learning());
    EXPECT_EQ(told, 2);

    play({0xB0, 74, 0}, "box");
    play({0xB0, 74, 127}, "box");
    EXPECT_FLOAT_EQ(unit(grainSize), 114 / 127.f) << "another device has learned nothing";
    controls().learn(grainSize);
    play({0xB0, 1, 114}, "box");
    play({0xB0, 1, 0}, "box");
    EXPECT_EQ(unit(grainSize), 0) << "the wheel turns what it has learned,";
    EXPECT_EQ(unit(distortion), 0) << "and not what is chosen for wheels";
    EXPECT_EQ(controls().controllersOf(grainSize), "CC 1, CC 74");
    controls().learn(preamp);
    play({0xB0, 74, 5});
    EXPECT_EQ(controls().controllersOf(grainSize), "CC 1") << "one controller, one dial";

    begin();
    EXPECT_TRUE(controls().settings().enabled);
    EXPECT_EQ(controls().controllersOf(preamp), "CC 74");
    m_instrument->setParameter(grainSize, 0);
    play({0xB0, 1, 0}, "box");
    play({0xB0, 1, 64}, "box");
    EXPECT_FLOAT_EQ(unit(grainSize), 64 / 127.f) << "in the next run";
    controls().forget(grainSize);
    begin();
    EXPECT_EQ(controls().controllersOf(grainSize), "");
    EXPECT_EQ(controls().controllersOf(preamp), "CC 74");
}

TEST_F(MidiControlsTest, whatIsStoredIsReadAsFarAsItMakesSense) {
    using Dictionary = PropertyListValue::Dictionary;
    using Array = PropertyListValue::Array;
    const auto entry = [](PropertyListValue channel, PropertyListValue number,
                          PropertyListValue dial) {
        return Dictionary{{"channel", channel}, {"controller", number}, {"dial", dial}};
    };
    const Array entries{entry(1, 70, "preamp"),     entry(17, 71, "echoDelay"),
                        entry(1, 120, "echoDelay"), entry(1, "72", "echoDelay"),
                        entry(1, 73, "syncSpeed"),  entry(1, 74, "none"),
                        entry(1, 64, "echoDelay"),  "nothing"};
    m_defaults.set(
        "midi-learned",
        Dictionary{{"devices", Array{"x", Dictionary{{"name", 3}},
                                     Dictionary{{"name", "keys"}, {"controllers", 1}},
                                     Dictionary{{"name", "keys"}, {"controllers", entries}}}}});
    m_defaults.set("midi-controls", Dictionary{{"enabled", true},
                                               {"channel", 17},
                                               {"bend-semitones", std::int64_t{1} << 40},
                                               {"modulation", "grainMotion"},
                                               {"velocity-curve", 7}});
    begin();
    MidiControlSettings sane;
    sane.enabled = true;
    EXPECT_EQ(controls().settings(), sane);
    for (const Parameter& row : kParameters)
        EXPECT_EQ(controls().controllersOf(row.id), row.id == preamp ? "CC 70" : "") << row.key;

    LearnedControllers learned;
    for (std::size_t i = 0; i < LearnedControllers::kMostDevices + 2; ++i)
        learned.learn("device " + std::to_string(i == 0 ? 1 : i), {0, int(i), preamp, {}});
    learned.learn("odd \x01\xFF\xEF\xBF\xBF" + std::string(10000, 'x'), {15, 119, preamp, {}});
    learned.keep(m_defaults);
    UserDefaults again(m_folder.file("defaults"));
    LearnedControllers read = LearnedControllers::load(again);
    EXPECT_FALSE(read.find("device 2", 0, 2)) << "the oldest are forgotten";
    EXPECT_TRUE(read.find("device 3", 0, 3));
    EXPECT_TRUE(read.find("odd \x01\xFF\xEF\xBF\xBF" + std::string(10000, 'x'), 15, 119));
}
