#include <gtest/gtest.h>

#include <QTest>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "ApprovedPicture.h"
#include "InstrumentWindow.h"
#include "JackServer.h"
#include "ScratchFolder.h"
#include "SoundFiles.h"
#include "audiounits/devices/AudioDevices.h"
#include "wave/WaveView2.h"

namespace {

/// Struck ten times in 20 seconds, the last ones louder.
std::vector<std::int16_t> bells() {
    std::vector<std::int16_t> samples;
    for (int frame = 0; frame < 20 * 44100; ++frame) {
        const double seconds = frame / 44100.;
        const double since = std::fmod(seconds, 2);
        const double loud = (0.45 + 0.025 * seconds) * std::exp(-2.5 * since);
        double tone = 0;
        for (const double partial : {1., 2.76, 5.4, 8.93})
            tone += std::sin(2 * M_PI * 220 * partial * since) / partial;
        samples.push_back(std::int16_t(std::lround(22000 * loud * tone / 1.2)));
    }
    return samples;
}

constexpr double kFaded = 0.6;  // seconds after which nothing moves

/// Each screen as it opens, beside its approved picture. The sound goes nowhere, and the pointer is
/// not in the pictures.
class ScreensTest : public testing::Test {
  protected:
    void open(const std::string& device = "clock") {
        std::string error;
        ASSERT_TRUE(AudioDevices::choose(device, error)) << error;
        m_instrument = std::make_unique<InstrumentWindow>(QSize(1280, 800));
        m_instrument->window().requestActivate();
        ASSERT_TRUE(m_instrument->comesTo([this] { return m_instrument->window().isActive(); }));
        ASSERT_TRUE(m_instrument->comesTo([this] { return !controller().arriving(); }));
        controller().presetBar()->choose("Default Sound");
        ASSERT_TRUE(m_instrument->comesTo([this] { return !controller().arriving(); }));
        controller().notices()->close();
        m_instrument->pass(kFaded);
    }
    void close() { m_instrument.reset(); }
    InstrumentWindow& instrument() { return *m_instrument; }
    OmbrixViewController& controller() { return m_instrument->controller(); }

    void tap(const QString& button) {
        m_instrument->tap(button);
        m_instrument->pass(kFaded);
    }
    void type(const QString& text) {
        for (const QChar letter : text)
            QTest::sendKeyEvent(QTest::Click, &m_instrument->window(), Qt::Key_unknown, letter, {});
        m_instrument->pass(kFaded);
    }
    void closeTop() {
        controller().closeTop();
        m_instrument->pass(kFaded);
    }
    void expectLook(const std::string& name) {
        EXPECT_TRUE(looksApproved(m_instrument->picture(), name));
    }

  private:
    std::unique_ptr<InstrumentWindow> m_instrument;
};

}  // namespace

TEST_F(ScreensTest, main) {
    open();
    expectLook("main");
    instrument().window().resize(1024, 700);
    instrument().pass(kFaded);
    expectLook("main-small");
}

TEST_F(ScreensTest, presets) {
    open();
    tap("presetButton");
    expectLook("presets");
    type("gla");
    expectLook("presets-search");
    closeTop();
    tap("saveButton");
    type("My Own");
    expectLook("save");
    instrument().tap("performSaveButton");
    instrument().pass(kFaded);
    tap("deleteButton");
    expectLook("delete");
}

TEST_F(ScreensTest, grainModes) {
    open();
    tap("grainModeButton");
    expectLook("grain-modes");
}

TEST_F(ScreensTest, settings) {
    open();
    tap("settingsButton");
    ASSERT_TRUE(instrument().comesTo([this] { return !controller().audio()->looking(); }));
    instrument().pass(kFaded);
    expectLook("settings");
    controller().midi()->network()->chooseMode("off");  // it tells the name of the machine
    instrument().window().resize(1024, 700);
    instrument().pass(kFaded);
    QQuickItem& list = instrument().item("settingsList");
    list.setProperty("contentY", list.property("contentHeight").toReal() - list.height());
    instrument().pass(kFaded);
    expectLook("settings-below");
}

TEST_F(ScreensTest, edit) {
    open();
    QTest::keySequence(&instrument().window(), QKeySequence("Ctrl+E"));
    instrument().pass(kFaded);
    EXPECT_TRUE(instrument().has("cropButton"));
    closeTop();
    tap("editButton");
    WaveSelection& selection = *controller().selection();
    const int length = selection.length();
    selection.select(length / 5, length / 2);
    tap("reverseButton");
    ASSERT_TRUE(instrument().comesTo([this] { return !controller().editor()->working(); }));
    instrument().pass(kFaded);
    expectLook("edit");
    tap("cropButton");
    EXPECT_EQ(selection.length(), length / 2 - length / 5);
    QTest::keySequence(&instrument().window(), QKeySequence("Ctrl+Z"));
    EXPECT_EQ(selection.length(), length);
    QTest::keyClick(&instrument().window(), Qt::Key_Delete);
    EXPECT_EQ(selection.length(), length - length / 2 + length / 5);
    QTest::keySequence(&instrument().window(), QKeySequence("Ctrl+Z"));
    instrument().window().resize(1024, 700);
    instrument().pass(kFaded);
    expectLook("edit-small");
    tap("editDoneButton");
    EXPECT_FALSE(instrument().has("cropButton"));
    EXPECT_EQ(controller().editor()->undoText(), "Undo Reverse");
}

TEST_F(ScreensTest, playing) {
    open();
    Fingers& fingers = instrument().fingers();
    QQuickItem& keyboard = instrument().item("keyboard");
    controller().notices()->tell("The sound device was lost for a moment; playing through jack.");
    for (int finger = 0; finger < 3; ++finger)
        fingers.press(finger, instrument().placeOf(keyboard, 0.3 + 0.12 * finger, 0.85));
    QQuickItem& dial = instrument().item("filterCutoffDial");
    const QPoint knob = dial.mapToScene({dial.width() / 2, 40}).toPoint();
    fingers.press(3, knob);
    fingers.move(3, knob - QPoint(0, 30));
    instrument().pass(kFaded);
    expectLook("playing");
    for (int finger = 0; finger < 4; ++finger)
        fingers.release(finger);
}

TEST_F(ScreensTest, recorded) {
    open();
    controller().sharing()->performanceComplete("performance.wav");
    instrument().pass(kFaded);
    expectLook("recorded");
}

TEST_F(ScreensTest, take) {
    JackServer server;
    server.start();
    open("jack");
    const QPoint microphone = instrument().placeOf(instrument().item("microphoneButton"));
    instrument().fingers().press(0, microphone);
    instrument().pass(kFaded);
    expectLook("take");
    instrument().fingers().release(0);
    close();
}

TEST_F(ScreensTest, nothingHeard) {
    open();
    Q_EMIT controller().take()->alert("No Audio Recorded",
                                      "To record audio to use as a new instrument, hold the "
                                      "microphone button down, and release it to end recording.",
                                      "OK");
    instrument().pass(kFaded);
    expectLook("nothing-heard");
}

TEST_F(ScreensTest, afterACrash) {
    // As a run leaves it that did not end.
    const std::filesystem::path data = std::getenv("OMBRIX_DATA");
    std::filesystem::create_directories(data);
    std::ofstream marker(data / ".running.marker");
    open();
    expectLook("crash");
}

TEST_F(ScreensTest, loading) {
    open();
    ScratchFolder folder;
    const std::string file = folder.file("A Long Night.wav");
    constexpr std::uint32_t kBytes = 200'000'000;
    SoundFiles::write(file, SoundFiles::wav({.rate = 48000, .channels = 2, .claim = kBytes}, ""));
    std::filesystem::resize_file(file, kBytes + 44);
    controller().openFiles({QString::fromStdString(file)});
    ASSERT_TRUE(instrument().comesTo([this] { return controller().wave()->loading(); }));
    instrument().pass(0.05);
    expectLook("loading");
    instrument().tap("cancelLoadingButton");
    EXPECT_TRUE(instrument().comesTo([this] { return !controller().wave()->loading(); }));
}

TEST_F(ScreensTest, waveAtFiveZooms) {
    open();
    ScratchFolder folder;
    const std::string file = folder.file("Bells.wav");
    SoundFiles::write(file, SoundFiles::wav({}, SoundFiles::bytes(bells())));
    controller().openFiles({QString::fromStdString(file)});
    ASSERT_TRUE(instrument().comesTo([this] { return controller().wave()->name() == "Bells"; }));
    auto& view = static_cast<WaveView2&>(instrument().item("waveView"));
    constexpr int kFrom = 264'596;
    const std::pair<const char*, int> zooms[] = {{"wave-all", 20 * 44100},
                                                 {"wave-seconds", 3 * 44100},
                                                 {"wave-milliseconds", 4410},
                                                 {"wave-samples", 300},
                                                 {"wave-16", 16}};
    for (const auto& [name, frames] : zooms) {
        const int from = frames > kFrom ? 0 : kFrom;
        view.setViewFrom(from, from + frames, int(WaveUpdate::refresh));
        ASSERT_TRUE(instrument().comesTo([&] { return view.tiles().complete(); })) << name;
        instrument().pass(kFaded);
        expectLook(name);
    }
}

TEST_F(ScreensTest, tutorial) {
    open();
    tap("helpButton");
    expectLook("tutorial");
    tap("tutorialNextButton");
    tap("tutorialNextButton");
    expectLook("tutorial-dial");
}
