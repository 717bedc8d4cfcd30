#include <gtest/gtest.h>

#include <QQmlComponent>
#include <QQmlEngine>

#include "InstrumentWindow.h"

namespace {

constexpr qreal kTouchTarget = 44;  // points

const QStringList kControls = {
    "microphoneButton",
    "waveView",
    "presetButton",
    "previousPresetButton",
    "nextPresetButton",
    "saveButton",
    "deleteButton",
    "recordButton",
    "shareButton",
    "settingsButton",
    "helpButton",
    "adsrView",
    "grainModeButton",
    "silenceButton",
    "miniKeyboard",
    "keyboard",
    "grainSpeedDial",
    "grainSizeDial",
    "fmFrequencyDial",
    "preampDial",
    "distortionStrengthDial",
    "ringModFrequencyDial",
    "ringModDepthDial",
    "filterCutoffDial",
    "filterResonanceDial",
    "filterResonanceBassDial",
    "echoDelayDial",
    "echoFeedbackDial",
    "adsrAttackDial",
    "adsrDecayDial",
    "adsrSustainDial",
    "adsrReleaseDial",
};

QRectF placeOf(QQuickItem& item) {
    return item.mapRectToScene(item.boundingRect());
}

void expectRoomForAll(InstrumentWindow& instrument) {
    const QRectF window({0, 0}, QSizeF(instrument.window().size()));
    QList<QRectF> places;
    for (const QString& name : kControls) {
        const QRectF place = placeOf(instrument.item(name));
        EXPECT_TRUE(window.contains(place)) << qPrintable(name) << " leaves the window";
        const bool isStrip = name == "miniKeyboard";  // touched anywhere along its width
        EXPECT_GE(std::min(place.width(), place.height()), isStrip ? 40 : kTouchTarget)
            << qPrintable(name);
        for (qsizetype i = 0; i < places.size(); ++i) {
            const QRectF both = place.intersected(places[i]);
            EXPECT_TRUE(both.width() < 1 || both.height() < 1)
                << qPrintable(name) << " lies on " << qPrintable(kControls[i]);
        }
        places.push_back(place);
    }
}

}  // namespace

TEST(LayoutTest, everyControlHasItsRoomAtEverySize) {
    InstrumentWindow instrument({1024, 700});
    for (const QSize size : {QSize(1024, 700), QSize(1280, 800), QSize(1900, 1000),
                             QSize(1280, 720), QSize(2800, 700), QSize(3840, 2160)}) {
        SCOPED_TRACE(testing::Message() << size.width() << " x " << size.height());
        instrument.window().resize(size);
        instrument.pass(0.3);
        expectRoomForAll(instrument);
    }
}

TEST(LayoutTest, largeTextsLeaveEveryControlItsRoom) {
    InstrumentWindow instrument({1024, 700});
    QQmlComponent finder(qmlEngine(&instrument.window()));
    finder.setData("import QtQml; import Ombrix.Views; QtObject { property QtObject it: Theme }",
                   {});
    const std::unique_ptr<QObject> found(finder.create());
    ASSERT_TRUE(found) << qPrintable(finder.errorString());
    auto* const theme = found->property("it").value<QObject*>();
    theme->setProperty("textScale", 1.5);
    instrument.pass(0.3);
    expectRoomForAll(instrument);
}

TEST(LayoutTest, anEndlessPresetNameStaysInItsButton) {
    InstrumentWindow instrument({1024, 700});
    QQuickItem& title = instrument.item("presetTitle");
    for (const QString& name :
         {QString(200, u'W'), QString("\u05e9\u05dc\u05d5\u05dd ").repeated(40),
          QString("\U0001F3B9").repeated(100), QString("<b>bold</b>")}) {
        title.setProperty("text", name);
        instrument.pass(0.1);
        EXPECT_TRUE(placeOf(instrument.item("presetButton")).contains(placeOf(title)));
        EXPECT_EQ(title.property("truncated").toBool(), name.size() > 20);
    }
    EXPECT_GT(title.width(), 60) << "markup is shown as it was typed";
}
