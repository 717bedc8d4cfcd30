#include "parameters/Settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "ScratchFolder.h"
#include "startup/Lifecycle.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using enum ParameterId;

class SettingsTest : public testing::Test, protected SettingsDelegate {
  protected:
    /// One run of the program on the same data folder; there is one instrument to a process.
    struct Run {
        explicit Run(SettingsTest& test)
            : place(test.m_folder.path().string()),
              marker(test.m_folder.path().string(), place),
              unsaved(place),
              defaults(test.m_folder.file("defaults")),
              store(test.m_folder.file("presets.plist"), "", [](const std::string&) {}),
              sounds(test.m_instrument.waves()),
              settings(test.m_instrument, sounds, store, defaults, unsaved, test),
              lifecycle(test.m_instrument, settings, marker) {
            test.m_instrument.updateSettingsFromPreset(Preset{});
            settings.restoreLastPreset();
            settle();
        }
        /// Until the sound on its way is there.
        void settle() const {
            while (sounds.loading())
                RunLoop::main().turn();
        }
        InstanceLock place;
        RunningMarker marker;
        UnsavedTake unsaved;
        UserDefaults defaults;
        PresetStore store;
        WaveLoading sounds;
        Settings settings;
        Lifecycle lifecycle;
    };

    SettingsTest() { setenv("OMBRIX_DATA", m_folder.path().c_str(), 1); }
    void told(const std::string& line) override { m_told.push_back(line); }

    void useUnsavedSound() {
        SampleMemory samples(1000);
        std::fill_n(samples.data(), 1000, 0.25f);
        m_instrument.waves().useUnsaved(VornWave2::initWithOwnershipOfData(
            std::move(samples), 1000, StreamDescription::float32(1), "Recording"));
    }

    Preset presetOf(const std::string& name, float size) {
        Preset preset;
        preset.name = name;
        preset.wave = "Square Wave.wav";
        preset.setNumber(grainSize, size);
        return preset;
    }

    ScratchFolder m_folder;
    Instrument m_instrument;
    std::vector<std::string> m_told;
};

}  // namespace

TEST_F(SettingsTest, comeBackAsTheyWereLeft) {
    {
        Run run(*this);
        EXPECT_EQ(m_instrument.waves().currentWaveFilename(), "Sine Wave.wav");
        EXPECT_EQ(run.settings.savedPreset(presetOf("x", 0.25f), " Änna "), "");
        EXPECT_EQ(run.settings.savedPreset(presetOf("x", 0.5f), "Zora"), "");
        EXPECT_EQ(run.settings.savedPreset(presetOf("x", 0.75f), "default sound"), "");
        run.settings.pick(*run.store.find("ÄNNA"));
        run.settle();
        EXPECT_TRUE(run.settings.canDelete());
        run.lifecycle.willBackground(true);
    }
    {
        Run run(*this);
        EXPECT_EQ(run.settings.pickerTitle(), "Änna");
        EXPECT_FALSE(run.settings.isModified());
        EXPECT_EQ(m_instrument.parameter(grainSize), 0.25f);
        m_instrument.setParameter(grainSize, 0.3f);
        run.settings.modify();
        run.lifecycle.willBackground(false);  // keeps nothing
        run.lifecycle.willForeground(false);
    }
    {
        Run run(*this);
        EXPECT_TRUE(run.marker.previousRunCrashed());
        EXPECT_EQ(m_instrument.parameter(grainSize), 0.25f);
        run.settings.resetAfterCrash();
        run.settle();
        EXPECT_EQ(run.settings.pickerTitle(), "default sound");
        EXPECT_EQ(m_instrument.parameter(grainSize), 0.75f);
        m_instrument.setParameter(grainSize, 0.3f);
        run.settings.modify();
        run.lifecycle.willBackground(true);
    }
    Run run(*this);
    EXPECT_FALSE(run.marker.previousRunCrashed());
    EXPECT_TRUE(run.settings.isModified());
    EXPECT_EQ(m_instrument.parameter(grainSize), 0.3f);
    EXPECT_EQ(run.settings.deleteCurrentPreset(), "");
    run.settle();
    EXPECT_EQ(run.settings.pickerTitle(), "Änna");  // behind "zora" in the order of the keys
    EXPECT_FALSE(run.settings.isModified());
    EXPECT_THAT(m_told, IsEmpty());
}

TEST_F(SettingsTest, keepASoundWithoutAFileUntilItHasAName) {
    {
        Run run(*this);
        useUnsavedSound();
        run.settings.modify();
        run.lifecycle.willBackground(true);
    }
    ASSERT_TRUE(std::filesystem::exists(WaveChoice::temporaryRecordingFile()));
    Run run(*this);
    EXPECT_FALSE(m_instrument.waves().currentWaveFilename());
    EXPECT_EQ(m_instrument.waves().currentWave()->sampleCount(), 1000u);
    EXPECT_TRUE(run.settings.isModified());
    const std::string lock = m_folder.file(".presets.lock");
    std::filesystem::remove(lock);
    std::filesystem::create_directory(lock);
    EXPECT_NE(run.settings.savedPreset(run.settings.makePresetFromSettings(), "AC/DC"), "");
    EXPECT_FALSE(std::filesystem::exists(m_folder.file("AC-DC Audio.wav")));
    EXPECT_TRUE(std::filesystem::exists(run.unsaved.path()));
    std::filesystem::remove(lock);
    EXPECT_EQ(run.settings.savedPreset(run.settings.makePresetFromSettings(), "AC/DC"), "");
    EXPECT_EQ(run.settings.currentPreset()->wave, "AC-DC Audio.wav");
    EXPECT_TRUE(std::filesystem::exists(m_folder.file("AC-DC Audio.wav")));
    EXPECT_FALSE(std::filesystem::exists(WaveChoice::temporaryRecordingFile()));
    EXPECT_THAT(m_told, IsEmpty());

    std::filesystem::remove(m_folder.file("AC-DC Audio.wav"));
    run.settings.pick(*run.store.find("ac/dc"));
    run.settle();
    EXPECT_THAT(m_told, testing::ElementsAre(HasSubstr("\"AC-DC Audio.wav\" is not there")));
    EXPECT_EQ(m_instrument.waves().currentWaveFilename(), "Sine Wave.wav");

    // A preset that names no sound gets what sounds, wherever that is from.
    EXPECT_EQ(run.settings.savedPreset(Preset{}, "Mine"), "");
    EXPECT_EQ(run.settings.currentPreset()->wave, "Mine Audio.wav");
    EXPECT_EQ(m_instrument.waves().currentWaveFilename(), "Mine Audio.wav");
}

TEST_F(SettingsTest, aStartWithoutAnySoundHasTheDefaultOne) {
    Preset edited;
    edited.setNumber(grainSize, 0.25f);
    UserDefaults(m_folder.file("defaults")).set("current-settings", edited.toPropertyList());
    Run run(*this);
    EXPECT_EQ(m_instrument.waves().currentWaveFilename(), "Sine Wave.wav");
    EXPECT_EQ(m_instrument.parameter(grainSize), 0.25f);
    EXPECT_TRUE(run.settings.isModified());
}
