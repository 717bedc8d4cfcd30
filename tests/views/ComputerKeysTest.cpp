#include "keyboard/ComputerKeys.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include "Piano.h"

namespace {

constexpr int kC3 = 27;
constexpr int kC4 = 39;

class ComputerKeysTest : public testing::Test {
  protected:
    void press(Qt::Key key, Qt::KeyboardModifiers with = {}) {
        QTest::keyPress(&m_piano.window(), key, with);
    }
    void release(Qt::Key key) { QTest::keyRelease(&m_piano.window(), key); }
    void click(Qt::Key key) {
        press(key);
        release(key);
    }

    Piano m_piano;
    ComputerKeys& m_keys = *m_piano.item().findChild<ComputerKeys*>();
};

}  // namespace

TEST_F(ComputerKeysTest, playsTwoOctaves) {
    const char lower[] = "ZSXDCVGBHNJM";
    const char upper[] = "Q2W3ER5T6Y7U";
    for (int semitone = 0; semitone < 12; ++semitone) {
        const auto at = static_cast<std::size_t>(semitone);
        press(static_cast<Qt::Key>(lower[at]));
        press(static_cast<Qt::Key>(upper[at]));
        EXPECT_EQ(m_piano.lit(), m_piano.sounding());
        release(static_cast<Qt::Key>(lower[at]));
        release(static_cast<Qt::Key>(upper[at]));
        const std::string low = std::to_string(kC3 + semitone);
        const std::string high = std::to_string(kC4 + semitone);
        EXPECT_EQ(m_piano.played(), "+" + low + " +" + high + " -" + low + " -" + high + " ");
    }
}

TEST_F(ComputerKeysTest, leavesOtherKeysAlone) {
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_A);
    EXPECT_EQ(m_piano.played(), "");
    auto field = ShownItem::fromQml("import QtQuick; TextInput { focus: true; width: 90 }");
    field->setParentItem(&m_piano.item());
    field->forceActiveFocus();
    click(Qt::Key_Z);
    EXPECT_EQ(m_piano.played(), "");
    EXPECT_EQ(field->property("text"), "z");
}

TEST_F(ComputerKeysTest, octavesHaveLimitsAndHeldKeysStayTheirOwn) {
    press(Qt::Key_Z);
    for (int i = 0; i < 20; ++i)
        click(Qt::Key_BracketRight);
    EXPECT_EQ(m_keys.lowestKey(), 75);
    click(Qt::Key_Q);
    click(Qt::Key_W);  // beyond the last
    release(Qt::Key_Z);
    EXPECT_EQ(m_piano.played(), "+27 +87 -87 -27 ");
    for (int i = 0; i < 20; ++i)
        click(Qt::Key_BracketLeft);
    EXPECT_EQ(m_keys.lowestKey(), -9);
    click(Qt::Key_Z);
    click(Qt::Key_N);
    EXPECT_EQ(m_piano.played(), "+0 -0 ");
}

TEST_F(ComputerKeysTest, theSpaceBarHolds) {
    press(Qt::Key_Space);
    click(Qt::Key_Z);
    press(Qt::Key_X);
    EXPECT_EQ(m_piano.played(), "+27 +29 ");
    click(Qt::Key_Z);
    EXPECT_EQ(m_piano.played(), "-27 +27 ");  // struck again
    release(Qt::Key_Space);
    EXPECT_EQ(m_piano.played(), "-27 ");
    release(Qt::Key_X);
    EXPECT_EQ(m_piano.sounding(), "");
}

TEST_F(ComputerKeysTest, aKeyHeldTwiceSoundsUntilBothLetGo) {
    press(Qt::Key_Q);
    click(Qt::Key_BracketRight);
    click(Qt::Key_Z);  // the same key, one octave up
    EXPECT_EQ(m_piano.sounding(), "39 ");
    Fingers fingers(m_piano.window());
    fingers.press(0, m_piano.onWhite(kC4));
    fingers.release(0);
    EXPECT_EQ(m_piano.sounding(), "39 ");
    EXPECT_EQ(m_piano.lit(), "39 ");
    fingers.press(0, m_piano.onWhite(kC4));
    release(Qt::Key_Q);
    EXPECT_EQ(m_piano.sounding(), "39 ");
    fingers.release(0);
    EXPECT_EQ(m_piano.sounding(), "");
    EXPECT_EQ(m_piano.lit(), "");
}

TEST_F(ComputerKeysTest, aMidiReleaseIsARelease) {
    Fingers fingers(m_piano.window());
    fingers.press(0, m_piano.onWhite(kC4));
    m_piano.keys().showKey(kC4, false);
    press(Qt::Key_Q);
    release(Qt::Key_Q);
    EXPECT_EQ(m_piano.sounding(), "");
    fingers.release(0);
    EXPECT_EQ(m_piano.lit(), "");
}

TEST_F(ComputerKeysTest, leavingTheWindowReleasesAlsoWhatIsHeld) {
    press(Qt::Key_Space);
    click(Qt::Key_Z);
    press(Qt::Key_X);
    QFocusEvent event(QEvent::FocusOut);
    QCoreApplication::sendEvent(&m_piano.window(), &event);
    EXPECT_EQ(m_piano.sounding(), "");
    EXPECT_EQ(m_piano.lit(), "");
    click(Qt::Key_C);  // the space bar no longer holds
    EXPECT_EQ(m_piano.sounding(), "");
}

TEST_F(ComputerKeysTest, escapeClosesAndTwiceSilences) {
    QSignalSpy close(&m_keys, &ComputerKeys::closeTop);
    QSignalSpy silence(&m_keys, &ComputerKeys::silenceEverything);
    press(Qt::Key_Space);
    click(Qt::Key_Z);
    click(Qt::Key_Escape);
    EXPECT_EQ(close.count(), 1);
    EXPECT_EQ(m_piano.sounding(), "27 ");
    click(Qt::Key_Escape);
    EXPECT_EQ(close.count(), 1);
    EXPECT_EQ(silence.count(), 1);
    EXPECT_EQ(m_piano.sounding(), "");
}

// What is printed on the keys does not matter where the window system says which key it is.
TEST(KeyPositionTest, goesByPlaceWhereItIsKnown) {
    const QKeyEvent german(QEvent::KeyPress, Qt::Key_Y, {}, 44 + 8, 0, 0);
    EXPECT_EQ(keyPosition(german, true)->semitone, 0);
    EXPECT_EQ(keyPosition(german, false)->semitone, 21);
    const QKeyEvent unknown(QEvent::KeyPress, Qt::Key_Z, {}, 0, 0, 0);
    EXPECT_EQ(keyPosition(unknown, true)->semitone, 0);
}
