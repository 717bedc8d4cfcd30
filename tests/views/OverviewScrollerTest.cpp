#include <gtest/gtest.h>

#include <QTest>

#include "Piano.h"

TEST(OverviewScrollerTest, lightsWhatIsSeen) {
    Piano piano("width: 320");
    const OverviewScroller& overview = piano.overview();
    EXPECT_NEAR(overview.highlightSize(), 38.6, 0.05);
    EXPECT_NEAR(overview.highlightX(), 160 - 38.6 / 2, 0.05);
    EXPECT_NEAR(overview.leftShader().width() + overview.highlightSize(),
                overview.rightShader().x(), 1e-4);
    piano.keys().setContentX(0);
    EXPECT_EQ(overview.leftShader().width(), 0);
    piano.keys().setLargeKeys(true);
    EXPECT_NEAR(overview.highlightSize(), 38.6 / 2, 0.05);
}

TEST(OverviewScrollerTest, centresAroundATouchBesideTheLitPart) {
    Piano piano("width: 320");
    Fingers fingers(piano.window());
    fingers.press(0, QPoint(0, 20));
    EXPECT_GT(piano.keys().contentX(), 0);  // on its way
    EXPECT_TRUE(QTest::qWaitFor([&] { return piano.keys().contentX() == 0; }));
    fingers.move(0, QPoint(319, 20));
    EXPECT_TRUE(QTest::qWaitFor([&] { return piano.keys().contentX() == 2652 - 320; }));
    fingers.move(0, QPoint(80, 20));
    EXPECT_TRUE(QTest::qWaitFor([&] { return piano.keys().contentX() == 663 - 160; }));
    fingers.release(0);
    EXPECT_EQ(piano.played(), "");
}

TEST(OverviewScrollerTest, aDragLastsBeyondItsGesture) {
    Piano piano("width: 320; keyboard.scrollTime: 0");
    const double scale = 2652 / 320.;
    Fingers fingers(piano.window());
    fingers.press(0, QPoint(160, 20));
    EXPECT_EQ(piano.keys().contentX(), 1166);
    fingers.move(0, QPoint(170, 20));
    EXPECT_NEAR(piano.keys().contentX(), 1166 + 10 * scale, 1e-3);
    fingers.move(0, QPoint(319, 20));
    EXPECT_EQ(piano.keys().contentX(), 2652 - 320);
    fingers.release(0);
    fingers.press(0, QPoint(40, 20));  // beside: centres
    EXPECT_NEAR(piano.keys().contentX(), 40 * scale - 160, 1e-3);
    fingers.move(0, QPoint(50, 20));  // from where the first drag began
    EXPECT_NEAR(piano.keys().contentX(), 1166 + 10 * scale, 1e-3);
}

TEST(OverviewScrollerTest, followsOneFingerAndTheMouse) {
    Piano piano("width: 320; keyboard.scrollTime: 0");
    Fingers fingers(piano.window());
    fingers.press(0, QPoint(0, 20));
    fingers.press(1, QPoint(319, 20));
    EXPECT_EQ(piano.keys().contentX(), 0);
    fingers.release(0);
    fingers.release(1);
    QTest::mouseClick(&piano.window(), Qt::LeftButton, {}, QPoint(319, 20));
    EXPECT_EQ(piano.keys().contentX(), 2652 - 320);
}
