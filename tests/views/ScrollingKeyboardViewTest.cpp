#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QTest>
#include <random>
#include <set>

#include "Piano.h"

namespace {

constexpr int kC4 = 39;
constexpr int kD4 = 41;
constexpr int kE4 = 43;

}  // namespace

TEST(ScrollingKeyboardViewTest, aFingerThatSlidesPlaysEachKeyInTurn) {
    Piano piano;
    Fingers fingers(piano.window());
    fingers.press(0, piano.onWhite(kC4));
    EXPECT_EQ(piano.played(), "+39 ");
    fingers.move(0, piano.onBlack(40));
    fingers.move(0, piano.onWhite(kD4));
    fingers.move(0, piano.onWhite(kD4) + QPoint(3, 3));
    fingers.move(0, piano.onWhite(kE4));
    EXPECT_EQ(piano.played(), "-39 +40 -40 +41 -41 +43 ");
    fingers.release(0);
    EXPECT_EQ(piano.played(), "-43 ");
    EXPECT_EQ(piano.lit(), "");
}

TEST(ScrollingKeyboardViewTest, saysInsideWhereLiftedAndOutsideWhereLeft) {
    Piano piano;
    std::string events;
    for (const int key : {kC4, kD4}) {
        for (const auto event : {ControlEvents::touchDown, ControlEvents::touchUpInside,
                                 ControlEvents::touchUpOutside, ControlEvents::touchCancel}) {
            piano.key(key).addTarget(event, [&events, event](PianoKeyButton& sender) {
                events += std::to_string(sender.tag()) + ":" +
                          std::to_string(static_cast<unsigned>(event)) + " ";
            });
        }
    }
    Fingers fingers(piano.window());
    fingers.press(0, piano.onWhite(kC4));
    fingers.move(0, piano.onWhite(kD4));
    fingers.release(0);
    EXPECT_EQ(events, "39:1 39:128 41:1 41:64 ");
    events.clear();
    fingers.press(0, piano.onWhite(kC4));
    fingers.cancel();
    EXPECT_EQ(events, "39:1 39:64 ");
    events.clear();
    fingers.press(0, piano.onWhite(kC4));
    fingers.release(0, piano.onWhite(kD4));  // lifted elsewhere than it last moved to
    EXPECT_EQ(events, "39:1 39:128 ");
}

TEST(ScrollingKeyboardViewTest, theFirstFingerToLeaveReleases) {
    Piano piano;
    Fingers fingers(piano.window());
    fingers.press(0, piano.onWhite(kC4));
    fingers.press(1, piano.onWhite(kC4) + QPoint(9, 0));
    fingers.press(2, piano.onWhite(kE4));
    EXPECT_EQ(piano.played(), "+39 +39 +43 ");
    fingers.release(0);
    EXPECT_EQ(piano.played(), "-39 ");
    EXPECT_EQ(piano.lit(), "43 ");
    fingers.release(1);
    EXPECT_EQ(piano.played(), "");
    EXPECT_EQ(piano.sounding(), "43 ");
}

TEST(ScrollingKeyboardViewTest, leavingTheKeysReleases) {
    Piano piano;
    Fingers fingers(piano.window());
    fingers.press(0, piano.onWhite(kC4));
    fingers.move(0, QPoint(piano.onWhite(kC4).x(), 20));  // over the overview
    EXPECT_EQ(piano.played(), "+39 -39 ");
    fingers.press(1, piano.onWhite(kE4));  // its event names a finger beside the view as well
    EXPECT_EQ(piano.played(), "+43 ");
    fingers.release(1);
    EXPECT_EQ(piano.played(), "-43 ");
    fingers.move(0, piano.onWhite(kD4));
    EXPECT_EQ(piano.played(), "+41 ");
    fingers.move(0, QPoint(piano.onWhite(kD4).x(), 400));
    fingers.release(0);
    EXPECT_EQ(piano.played(), "-41 ");
}

TEST(ScrollingKeyboardViewTest, aHeldKeyIsReleasedWhereverItWasScrolled) {
    Piano piano;
    Fingers fingers(piano.window());
    fingers.press(0, piano.onWhite(kC4));
    piano.keys().scrollTo(0, false);
    EXPECT_EQ(piano.played(), "+39 ");
    fingers.release(0);
    EXPECT_EQ(piano.played(), "-39 ");
    EXPECT_EQ(piano.lit(), "");
}

TEST(ScrollingKeyboardViewTest, aChordEndsWhenItsFingersAreTakenAway) {
    const std::pair<const char*, std::function<void(Piano&)>> takers[] = {
        {"cancel", [](Piano& piano) { Fingers(piano.window()).cancel(); }},
        {"disable", [](Piano& piano) { piano.item().setEnabled(false); }},
        {"hide", [](Piano& piano) { piano.item().setVisible(false); }},
        {"labels", [](Piano& piano) { piano.keys().setShowLabels(false); }},
        {"size", [](Piano& piano) { piano.keys().setLargeKeys(true); }},
        {"window hidden", [](Piano& piano) { piano.window().hide(); }},
        {"window closed", [](Piano& piano) { piano.window().close(); }},
        {"focus",
         [](Piano& piano) {
             QFocusEvent event(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
             QCoreApplication::sendEvent(&piano.window(), &event);
         }},
        {"moved away", [](Piano& piano) { piano.item().setParentItem(nullptr); }},
        {"stolen",
         [](Piano& piano) {
             piano.keys().ungrabTouchPoints();
             piano.keys().ungrabMouse();
         }},
    };
    for (const auto& [name, take] : takers) {
        SCOPED_TRACE(name);
        Piano piano;
        Fingers fingers(piano.window());
        fingers.press(0, piano.onWhite(kC4));
        fingers.press(1, piano.onWhite(kE4));
        QTest::mousePress(&piano.window(), Qt::LeftButton, {}, piano.onBlack(45));
        EXPECT_EQ(piano.sounding(), "39 43 45 ");
        take(piano);
        if (std::string(name) == "cancel")
            QTest::mouseRelease(&piano.window(), Qt::LeftButton, {}, piano.onBlack(45));
        EXPECT_EQ(piano.sounding(), "");
        EXPECT_EQ(piano.lit(), "");
    }
}

TEST(ScrollingKeyboardViewTest, fingersThatVanishOrComeTwiceLeaveNothing) {
    Piano piano;
    Fingers lost(piano.window());
    lost.press(0, piano.onWhite(kC4));
    lost.press(0, piano.onWhite(kD4));
    EXPECT_EQ(piano.sounding(), "41 ");
    Fingers others(piano.window());  // they do not know of the first
    others.press(1, piano.onWhite(kE4));
    EXPECT_EQ(piano.sounding(), "43 ");
    others.release(1);
    EXPECT_EQ(piano.lit(), "");
}

// Ten fingers, with cancelled touches, scrolls and new keys in between: whatever comes,
// each key that is lit sounds, and at the end none does.
TEST(ScrollingKeyboardViewTest, aStormLeavesNothingBehind) {
    const unsigned seed = 20260711;
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    const auto upTo = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    Piano piano;
    Fingers fingers(piano.window());
    std::set<int> down;
    for (int step = 0; step < 20000; ++step) {
        const int finger = upTo(10);
        const QPoint at(upTo(1280), upTo(300));
        if (const int what = upTo(1000); what == 0) {
            fingers.cancel();
            down.clear();
        } else if (what == 1) {
            piano.keys().setLargeKeys(!piano.keys().largeKeys());
        } else if (what < 10) {
            piano.keys().scrollTo(upTo(2000), false);
        } else if (!down.contains(finger)) {
            fingers.press(finger, at);
            down.insert(finger);
        } else if (what < 200) {
            fingers.release(finger, at);
            down.erase(finger);
        } else {
            fingers.move(finger, at);
        }
        ASSERT_EQ(piano.lit(), piano.sounding()) << step;
    }
    for (const int finger : down)
        fingers.release(finger);
    EXPECT_EQ(piano.sounding(), "");
    EXPECT_EQ(piano.lit(), "");
}

TEST(ScrollingKeyboardViewTest, onlyTheKeyThatChangedIsDrawn) {
    Piano piano;
    const QImage before = piano.picture();
    piano.keys().showKey(kC4, true);
    const QImage after = piano.picture();
    QRect changed;
    for (int y = 0; y < before.height(); ++y) {
        for (int x = 0; x < before.width(); ++x) {
            if (before.pixel(x, y) != after.pixel(x, y))
                changed |= QRect(x, y, 1, 1);
        }
    }
    const QRect key(piano.at(piano.key(kC4).x(), 0), piano.key(kC4).size().toSize());
    EXPECT_FALSE(changed.isEmpty());
    EXPECT_TRUE(key.contains(changed));
    piano.keys().showKey(kC4, false);
    EXPECT_EQ(piano.picture(), before);
}
