#include "screens/OmbrixViewController.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>

#include "ScratchFolder.h"
#include "SoundFiles.h"
#include "audiounits/devices/AudioDevices.h"
#include "audiounits/devices/ManualDevice.h"
#include "notifications/NotificationCentre.h"
#include "runloop/Clock.h"
#include "screens/OmbrixAppDelegate.h"

namespace {

using testing::HasSubstr;
namespace fs = std::filesystem;

/// The application without its window, on a device driven by hand.
class OmbrixViewControllerTest : public testing::Test {
  protected:
    OmbrixViewControllerTest() {
        setenv("OMBRIX_DATA", m_folder.path().c_str(), 1);
        setenv("XDG_CONFIG_HOME", m_folder.file("config").c_str(), 1);
        AudioDevices::use(m_device);
    }
    void start(const QStringList& files = {}) {
        m_application.emplace();
        m_application->didFinishLaunchingWithOptions(files);
        settle();
    }
    void end() {
        m_application->applicationWillTerminate();
        m_application.reset();
    }
    /// As after a crash: nothing is told.
    void crash() { m_application.reset(); }

    void settle() {
        int still = 0;
        while (still < 3) {
            RunLoop::main().turn();
            still = controller().arriving() ? 0 : still + 1;
        }
    }
    OmbrixViewController& controller() { return *m_application->viewController(); }
    DialState& dial(const char* key) { return *controller().dials()->dial(key); }
    float unit(ParameterId id) { return controller().instrument().parameter(id); }
    bool marker() const { return fs::exists(m_folder.file(".running.marker")); }
    std::string title() { return controller().presetBar()->title().toStdString(); }
    void choose(const char* name) {
        controller().presetBar()->choose(name);
        settle();
    }

    ScratchFolder m_folder;
    std::shared_ptr<ManualDevice> m_device = std::make_shared<ManualDevice>();
    std::optional<OmbrixAppDelegate> m_application;
};

}  // namespace

TEST_F(OmbrixViewControllerTest, aSessionIsKeptAndACrashIsAskedAbout) {
    using enum ParameterId;
    start();
    EXPECT_FALSE(controller().alert()->shown());
    EXPECT_TRUE(marker());
    EXPECT_NE(title(), "");
    EXPECT_TRUE(controller().wave()->wave());
    for (const int voice : controller().instrument().notes().triggeredNoteUnits())
        EXPECT_EQ(voice, -1);
    const std::string first = title();
    dial("grainSize").tweak(0.75f);
    EXPECT_TRUE(controller().presetBar()->modificationNotice());
    m_application->applicationWillResignActive();
    EXPECT_FALSE(marker());
    m_application->applicationDidBecomeActive();
    EXPECT_TRUE(marker());
    m_application->applicationDidEnterBackground();
    EXPECT_FALSE(marker());
    m_application->applicationWillEnterForeground();
    crash();

    start();
    EXPECT_EQ(title(), first);
    EXPECT_EQ(unit(grainSize), 0.75f) << "what was kept in the background";
    AlertController& alert = *controller().alert();
    ASSERT_TRUE(alert.shown());
    EXPECT_EQ(alert.title(), "Crash Detected");
    EXPECT_EQ(alert.tag(), 0x63727368u);
    alert.clickedButtonAtIndex(0);
    EXPECT_EQ(unit(grainSize), 0.75f);
    crash();

    start();
    ASSERT_TRUE(controller().alert()->shown());
    controller().alert()->clickedButtonAtIndex(1);
    settle();
    EXPECT_EQ(title(), "Default Sound");
    EXPECT_FALSE(controller().presetBar()->modificationNotice());
    end();
    EXPECT_FALSE(marker());

    start();
    EXPECT_FALSE(controller().alert()->shown());
    EXPECT_EQ(title(), "Default Sound");
    // Ended before anything was restored: what is kept stays.
    dial("grainSize").tweak(0.5f);
    end();
    m_application.emplace();
    m_application->didFinishLaunchingWithOptions({});
    end();
    start();
    EXPECT_EQ(unit(grainSize), 0.5f);
    end();
}

TEST_F(OmbrixViewControllerTest, everyDialGoesToItsUnitAndComesBackWithThePreset) {
    start();
    for (const Parameter& row : kParameters) {
        if (row.dialName.empty())
            continue;
        SCOPED_TRACE(std::string(row.key));
        DialState& turned = dial(std::string(row.dialName).c_str());
        const float value = row.dial.low + 0.625f * (row.dial.high - row.dial.low);
        turned.tweak(value);
        EXPECT_EQ(unit(row.id), storedValue(row.id, value));
        turned.tweak(1000.f);
        EXPECT_EQ(turned.value(), row.dial.high);
        turned.tweak(value);
    }
    controller().dials()->toggleSyncSpeed();
    Preset saved = controller().instrument().makePresetFromSettings();
    saved.setNumber(ParameterId::adsrRelease, 5.f);
    saved.name = "Turned";
    ASSERT_EQ(controller().presetBar()->store().save(saved), "");
    choose("Default Sound");
    EXPECT_NE(unit(ParameterId::grainSize), 0.625f);
    choose("Turned");
    EXPECT_EQ(dial("grainSpeed").glyph(), "Circle-Sync.png");
    for (const Parameter& row : kParameters) {
        if (row.dialName.empty() || row.id == ParameterId::adsrRelease)
            continue;
        const float value = row.dial.low + 0.625f * (row.dial.high - row.dial.low);
        EXPECT_NEAR(dial(std::string(row.dialName).c_str()).value(), value,
                    2e-6f * std::max(1.f, row.dial.high))
            << row.key;
    }
    EXPECT_FALSE(controller().presetBar()->modificationNotice());
    EXPECT_EQ(dial("adsrRelease").value(), 2.f) << "shown at the dial's end";
    dial("adsrAttack").tweak(0.25f);
    EXPECT_EQ(unit(ParameterId::adsrRelease), 5.f) << "and kept as it is";
    for (const auto& envelope : controller().instrument().voices().voiceEnvelopes)
        EXPECT_EQ(envelope->settings(), (ADSRSettings{0.25f, 1.25f, 0.625f, 5.f}));
    dial("adsrRelease").tweak(1.f);
    dial("adsrRelease").doubleTapped();
    EXPECT_EQ(unit(ParameterId::adsrRelease), 5.f);
    end();
}

TEST_F(OmbrixViewControllerTest, aDialTurnedWhileThePresetsSoundIsOnItsWayStays) {
    start();
    SoundFiles::write(m_folder.file("long.wav"),
                      SoundFiles::wav({.rate = 48000}, std::string(30'000'000, '\1')));
    Preset preset;
    preset.name = "Long";
    preset.wave = "long.wav";
    preset.setNumber(ParameterId::grainSize, 0.25f);
    preset.setNumber(ParameterId::preamp, 0.75f);
    preset.setNumber(ParameterId::ringModDepth, 0.25f);
    ASSERT_EQ(controller().presetBar()->store().save(preset), "");
    const QString before = controller().wave()->name();
    controller().presetBar()->choose("Long");
    EXPECT_EQ(unit(ParameterId::ringModDepth), 0.25f);
    EXPECT_NE(unit(ParameterId::preamp), 0.75f) << "not in the old sound";
    EXPECT_EQ(controller().wave()->name(), before);
    dial("grainSize").tweak(0.375f);
    controller().willBackground(true);
    settle();
    EXPECT_EQ(controller().wave()->name(), "long");
    EXPECT_EQ(unit(ParameterId::preamp), 0.75f);
    EXPECT_EQ(unit(ParameterId::grainSize), 0.375f);
    EXPECT_TRUE(controller().presetBar()->modificationNotice());
    crash();
    start();  // as it was kept while the sound was on its way
    EXPECT_EQ(controller().wave()->name(), "long");
    EXPECT_EQ(unit(ParameterId::preamp), 0.75f);
    EXPECT_EQ(unit(ParameterId::grainSize), 0.375f);
    end();
}

TEST_F(OmbrixViewControllerTest, filesAreOpenedByWhatTheyHold) {
    ScratchFolder elsewhere;
    SoundFiles::write(elsewhere.file("a.bin"), SoundFiles::wav({}, std::string(2000, '\1')));
    Preset preset;
    preset.name = "Brought";
    SoundFiles::write(elsewhere.file("text.wav"), "hello");
    {
        PresetStore other(elsewhere.file("b.txt"), "", [](const std::string&) {});
        ASSERT_EQ(other.save(preset), "");
    }
    const auto file = [&](const char* name) {
        return QString::fromStdString(elsewhere.file(name));
    };
    start({file("b.txt"), file("none.wav"), "file://" + file("a.bin")});
    EXPECT_EQ(title(), "Brought");
    EXPECT_EQ(controller().wave()->name(), "a");
    EXPECT_TRUE(controller().presetBar()->modificationNotice());
    EXPECT_TRUE(fs::exists(m_folder.file("a.bin")));
    EXPECT_THAT(controller().notices()->text().toStdString(), HasSubstr("none.wav"));
    controller().openFiles({file("text.wav")});
    settle();
    EXPECT_EQ(controller().wave()->name(), "a");
    EXPECT_THAT(controller().notices()->text().toStdString(), HasSubstr("text.wav"));
    end();
}

TEST_F(OmbrixViewControllerTest, whatIsSelectedAndHeardFollowsTheSoundInUse) {
    start();
    WaveSelection& selection = *controller().selection();
    WaveHearing& hearing = *controller().hearing();
    WaveChoice& waves = controller().instrument().waves();
    int notices = 0;
    const auto observer = NotificationCentre::defaultCentre().addObserver(
        "com.quaddle.waveview.selection", [&] { ++notices; });
    const int length = static_cast<int>(controller().wave()->wave()->sampleCount());
    EXPECT_EQ(selection.length(), length);
    EXPECT_TRUE(selection.everything());
    selection.select(length + 5, -3);
    EXPECT_EQ(notices, 0) << "all of it still";
    selection.select(900, 300);
    EXPECT_EQ(notices, 1);

    const auto shorten = [&](int frames, bool edited) {
        waves.useUnsaved(waves.currentWave()->sliceFrom(0, unsigned(frames))->flattenInto("", 1));
        edited ? controller().wave()->updateEdited() : controller().wave()->update();
    };
    const auto isHeard = [&] {
        hearing.playFrom(0);
        return hearing.playing();
    };
    ASSERT_TRUE(isHeard());
    shorten(500, true);
    EXPECT_FALSE(hearing.playing());
    EXPECT_EQ(selection.start(), 300);
    EXPECT_EQ(selection.stop(), 500);
    shorten(200, true);
    EXPECT_EQ(selection.start(), 200);
    EXPECT_EQ(selection.stop(), 200);
    shorten(150, false);
    EXPECT_TRUE(selection.everything());
    shorten(100, true);
    EXPECT_TRUE(selection.everything()) << "all stays all";
    ASSERT_TRUE(isHeard());
    controller().silence();
    EXPECT_FALSE(hearing.playing());
    ASSERT_TRUE(isHeard());
    controller().performance()->toolbarRecordClicked();
    EXPECT_TRUE(hearing.playing());
    controller().tinkleIvory(40);
    EXPECT_FALSE(hearing.playing()) << "it is not in the recording";
    ASSERT_TRUE(isHeard());
    controller().take()->waveRecordDown();
    EXPECT_FALSE(hearing.playing()) << "the microphone would hear it";
    NotificationCentre::defaultCentre().removeObserver(observer);
    end();
}

TEST_F(OmbrixViewControllerTest, anEditedSoundIsSavedWithItsPresetAndComesBackAtTheNextStart) {
    start();
    choose("Default Sound");
    WaveEditor& editor = *controller().editor();
    WaveSelection& selection = *controller().selection();
    EXPECT_TRUE(editor.canEdit());
    EXPECT_FALSE(editor.canCut()) << "an instrument needs a sound";
    editor.cut();
    EXPECT_FALSE(editor.canUndo());
    selection.select(100, 300);
    editor.crop();
    EXPECT_EQ(selection.length(), 200);
    EXPECT_TRUE(selection.everything());
    EXPECT_TRUE(controller().presetBar()->modificationNotice());
    EXPECT_EQ(editor.undoText(), "Undo Crop");
    selection.select(0, 50);
    editor.reverse();
    while (editor.working())
        RunLoop::main().turn();
    EXPECT_EQ(selection.stop(), 50);
    editor.cut();
    ASSERT_TRUE(editor.working());
    controller().toolbarSaveClicked();  // the voices do not have it yet
    auto& panel = *static_cast<PresetSaveController*>(controller().presentation()->content());
    panel.textChanged("Mine");
    panel.performSave();
    EXPECT_EQ(controller().wave()->name(), "Mine Audio");
    EXPECT_EQ(WaveChoice::load(m_folder.file("Mine Audio.wav")).wave->sampleCount(), 150u);

    editor.undo();
    EXPECT_EQ(selection.stop(), 50);
    EXPECT_EQ(controller().wave()->name(), "");
    end();
    start();
    EXPECT_EQ(controller().selection()->length(), 200);
    EXPECT_EQ(controller().wave()->name(), "");
    EXPECT_FALSE(controller().editor()->canUndo());
    choose("Mine");
    EXPECT_EQ(controller().selection()->length(), 150);
    end();
}

TEST_F(OmbrixViewControllerTest, whatSoundsIsSeenAndThenNothingRuns) {
    start();
    VoicesState& voices = *controller().voices();
    controller().envelope()->adsrViewUpdated(0, 0, 1, 0.02f);
    dial("preamp").tweak(1.25f);
    std::vector<std::int16_t> frames(512);
    const auto pass = [&](double seconds) {
        const double until = Clock::monotonic() + seconds;
        while (Clock::monotonic() < until) {
            m_device->render(frames);
            RunLoop::main().turn();
        }
    };
    controller().tinkleIvory(40);
    pass(0.1);
    EXPECT_TRUE(voices.sounding());
    EXPECT_EQ(voices.stages().count(1), 1);
    EXPECT_EQ(voices.heads().size(), 2);
    EXPECT_GT(voices.level(), 0.1f);
    NotificationCentre::defaultCentre().post(kAudioClippedNotification);
    pass(0.1);
    EXPECT_TRUE(voices.clipped());
    controller().untinkleIvory(40);
    controller().silence();
    pass(1.5);
    EXPECT_FALSE(voices.sounding());
    EXPECT_FALSE(voices.clipped());
    EXPECT_EQ(voices.level(), 0.f);
    EXPECT_TRUE(voices.heads().isEmpty());
    EXPECT_GT(RunLoop::main().nextDue() - Clock::monotonic(), 0.05) << "no more looks";
    end();
}

TEST_F(OmbrixViewControllerTest, midiControllersTurnTheDialsAndPickThePresetsOfTheScreen) {
    using Kind = MidiMessage::Kind;
    start();
    const auto send = [this](Kind kind, std::uint8_t number, std::uint8_t value = 0) {
        controller().midiControls().perform({kind, number, value, 1}, "keys");
        settle();
    };
    const std::string restored = title();
    send(Kind::control, 1, 127);
    send(Kind::program, 1);
    EXPECT_EQ(title(), restored) << "before they are switched on";
    MidiControlSettings settings;
    settings.enabled = true;
    settings.modulation = ParameterId::grainSize;
    controller().midiControls().setSettings(settings);
    send(Kind::program, 0);
    const std::string first = title();
    send(Kind::program, 1);
    EXPECT_GT(title(), first);
    EXPECT_FALSE(controller().presetBar()->modificationNotice());
    send(Kind::control, 1, 127);
    EXPECT_EQ(dial("grainSize").value(), 1.f);
    EXPECT_EQ(unit(ParameterId::grainSize), 1.f);
    EXPECT_TRUE(controller().presetBar()->modificationNotice());
    controller().tinkleIvory(30);
    send(Kind::control, kMidiAllSoundOff);
    EXPECT_FALSE(controller().instrument().keysSound());
    end();
    start();
    EXPECT_EQ(controller().midiControls().settings(), settings);
    send(Kind::control, 1, 0);
    EXPECT_EQ(dial("grainSize").value(), 0.f);
}
