#include "wave/WaveRangeView2.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QTest>
#include <cmath>
#include <numbers>

#include "Fingers.h"
#include "ShownItem.h"
#include "VornWave2.h"
#include "VornWaveSequence.h"

namespace {

constexpr int kLength = 100000;

/// A sine of a thousand frames a period, which is 10 points when all is shown: it crosses zero
/// every 5 points.
std::shared_ptr<WaveSequenceAccess> sine() {
    std::vector<float> samples(kLength);
    for (int i = 0; i < kLength; ++i)
        samples[std::size_t(i)] = std::sin(float(2 * std::numbers::pi * (i + 0.5) / 1000));
    return VornWaveSequence::sequenceWithWave(VornWave2::initWithCopyOfData(
        samples.data(), kLength, StreamDescription::float32(1), "sine"));
}

constexpr auto kQml = R"(import QtQuick; import Ombrix.Views
    FocusScope { width: 1000; height: 200
        WaveView2 { id: wave; objectName: "wave"; anchors.fill: parent
                    backgroundTop: "#808080"; backgroundBottom: "#808080" }
        WaveRange { objectName: "range"; anchors.fill: parent; view: wave } })";

/// 1000 points wide, 100 frames a point.
class WaveRangeView2Test : public testing::Test {
  protected:
    WaveRangeView2Test() : shown(ShownItem::fromQml(kQml)), fingers(shown.window()) {
        view.show(sine());
        selection.reset(kLength);
        range.setSelection(&selection);
    }
    void select(int from, int to) { selection.select(from, to); }
    /// In the middle of a handle's grip.
    static QPoint grip(const WaveRangeHandle& handle, qreal edgeX) {
        return {int(std::lround(edgeX)), int(handle.y() + handle.height() / 2)};
    }
    QPoint startGrip() { return grip(start, view.xOf(selection.start())); }
    QPoint stopGrip() { return grip(stop, view.xOf(selection.stop())); }
    void expect(int from, int to) {
        EXPECT_EQ(selection.start(), from);
        EXPECT_EQ(selection.stop(), to);
    }
    bool nothingHeld() {
        return !range.isHeld() && !start.isPressed() && !stop.isPressed() && !start.bubble() &&
               !stop.bubble();
    }
    void key(Qt::Key key, Qt::KeyboardModifiers with = {}) {
        QTest::keyClick(&shown.window(), key, with);
    }

    ShownItem shown;
    WaveView2& view = *shown.as<QQuickItem>().findChild<WaveView2*>("wave");
    WaveRangeView2& range = *shown.as<QQuickItem>().findChild<WaveRangeView2*>("range");
    WaveRangeHandle& start = *range.startHandle();
    WaveRangeHandle& stop = *range.stopHandle();
    Fingers fingers;
    WaveSelection selection;
};

}  // namespace

TEST_F(WaveRangeView2Test, edgesAreDraggedSnapAndPushEachOtherAlong) {
    select(30000, 60000);
    const QPoint grabbed = startGrip() + QPoint(9, 3);
    fingers.press(1, grabbed);
    expect(30000, 60000);
    ASSERT_TRUE(start.bubble());
    EXPECT_EQ(start.bubble()->text(), "0:00.680");
    fingers.move(1, grabbed + QPoint(52, 0));
    expect(35000, 60000);  // not 35200: 35000 and 35500 are crossings
    EXPECT_EQ(start.bubble()->text(), "0:00.794");
    EXPECT_EQ(range.lengthText(), "0:00.567");
    fingers.move(1, grabbed + QPoint(350, 0));
    expect(65000, 65001);
    fingers.move(1, grabbed);
    expect(30000, 65001);  // what was pushed stays
    fingers.move(1, grabbed + QPoint(5000, 0));
    expect(kLength - 1, kLength);
    fingers.release(1);
    EXPECT_TRUE(nothingHeld());

    select(30000, 60000);
    QTest::mousePress(&shown.window(), Qt::LeftButton, {}, stopGrip());
    QTest::mouseMove(&shown.window(), stopGrip() - QPoint(48, 0));
    expect(30000, 55000);
    QTest::keyPress(&shown.window(), Qt::Key_Shift, Qt::ShiftModifier);
    QTest::mouseEvent(QTest::MouseMove, &shown.window(), Qt::NoButton, Qt::ShiftModifier,
                      grip(stop, 553));
    expect(30000, 55300);  // where the finger is
    QTest::mouseRelease(&shown.window(), Qt::LeftButton, {}, stopGrip());
    QTest::keyRelease(&shown.window(), Qt::Key_Shift);
    QTest::mouseDClick(&shown.window(), Qt::LeftButton, {}, stopGrip());
    expect(30000, kLength);
}

TEST_F(WaveRangeView2Test, bothHandlesAreReachedWhereverTheyAreAndByTwoFingers) {
    struct Case {
        int from, to;
        int startX, stopX;  // where to touch
    };
    for (const Case& the : {
             Case{0, kLength, 1, 998},              // at the view's ends
             Case{0, kLength, 40, 960},             // 44 points wide there too
             Case{50000, 50001, 500, 500},          // on top of each other
             Case{0, 1, 2, 2},                      // that, at the left end
             Case{kLength - 1, kLength, 998, 998},  // and at the right
         }) {
        SCOPED_TRACE(testing::Message() << the.from << ' ' << the.startX);
        select(the.from, the.to);
        const QPoint first = grip(start, the.startX);
        const QPoint second = grip(stop, the.stopX);
        fingers.press(1, first);
        EXPECT_TRUE(start.isPressed());
        fingers.press(2, second);
        EXPECT_TRUE(stop.isPressed());
        fingers.move(
            {{1, first + QPoint(400 - the.startX, 0)}, {2, second + QPoint(600 - the.stopX, 0)}});
        EXPECT_NEAR(selection.start(), 40000 + the.from - 100 * the.startX, 600);
        EXPECT_NEAR(selection.stop(), 60000 + the.to - 100 * the.stopX, 600);
        fingers.release(1);
        EXPECT_TRUE(stop.isPressed());
        fingers.release(2);
        EXPECT_TRUE(nothingHeld());
    }
    // Elsewhere, and where an edge is out of view, touches are not the range's.
    select(30000, 60000);
    for (const QPoint elsewhere : {QPoint(450, 100), QPoint(300, 150), QPoint(600, 30)}) {
        fingers.press(1, elsewhere);
        EXPECT_TRUE(nothingHeld());
        fingers.release(1);
    }
    view.setViewFrom(30001, 40000, 0);
    QTest::qWait(400);  // not the second of two taps
    fingers.press(1, grip(start, 0));
    EXPECT_TRUE(nothingHeld());
    fingers.release(1);
}

TEST_F(WaveRangeView2Test, nothingStaysHeldHoweverItEnds) {
    select(30000, 60000);
    const auto endsWhen = [&](auto happens) {
        shown.window().show();
        range.setVisible(true);
        range.setEnabled(true);
        view.setInteractions(7);
        fingers.press(1, startGrip());
        fingers.move(1, {990, 40});
        ASSERT_TRUE(start.isPressed());
        happens();
        EXPECT_TRUE(nothingHeld());
        fingers.cancel();
        selection.reset(kLength);
        select(30000, 60000);
    };
    endsWhen([&] { fingers.cancel(); });
    endsWhen([&] { range.setVisible(false); });
    endsWhen([&] { range.setEnabled(false); });
    endsWhen([&] { view.setInteractions(5); });
    endsWhen([&] { start.ungrabTouchPoints(); });
    endsWhen([&] { selection.reset(0); });
    endsWhen([&] { shown.window().hide(); });
}

TEST_F(WaveRangeView2Test, scrollsTheViewNearItsEnds) {
    view.setViewFrom(40000, 50000, 0);
    select(45000, 60000);
    fingers.press(1, startGrip());
    fingers.move(1, {995, 40});
    const int there = selection.start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return view.viewStart() > 41000; }));
    EXPECT_GT(selection.start(), there + 900) << "it stays under the finger";
    fingers.move(1, {500, 40});
    const int rests = view.viewStart();
    QTest::qWait(100);
    EXPECT_EQ(view.viewStart(), rests);
    fingers.release(1);
    // A touch alone, at the end, scrolls nothing.
    select(rests + 20, 90000);
    fingers.press(1, startGrip());
    fingers.move(1, startGrip() + QPoint(3, 0));
    QTest::qWait(100);
    EXPECT_EQ(view.viewStart(), rests);
    fingers.release(1);
}

TEST_F(WaveRangeView2Test, keysMoveEdgesAndBringThemIntoView) {
    select(30000, 60000);
    shown.as<QQuickItem>().forceActiveFocus();
    while (!start.hasActiveFocus())
        key(Qt::Key_Tab);
    EXPECT_TRUE(start.isFocusVisible());
    key(Qt::Key_Right);
    expect(30100, 60000);
    key(Qt::Key_Left, Qt::ShiftModifier);
    expect(29100, 60000);
    key(Qt::Key_Right, Qt::ControlModifier);
    expect(29101, 60000);
    key(Qt::Key_Tab);
    ASSERT_TRUE(stop.hasActiveFocus());
    key(Qt::Key_Home);
    expect(0, 1);
    key(Qt::Key_End);
    expect(0, kLength);
    view.setViewFrom(50000, 51000, 0);
    key(Qt::Key_Left);
    expect(0, kLength - 1);
    EXPECT_EQ(view.viewStop(), kLength);
    EXPECT_TRUE(stop.isInView());
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(view.viewStart(), 0) << "what has the focus is seen";

    QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(&stop);
    ASSERT_TRUE(spoken && spoken->valueInterface());
    EXPECT_EQ(spoken->role(), QAccessible::Slider);
    EXPECT_EQ(spoken->text(QAccessible::Name), "Selection end");
    EXPECT_EQ(spoken->text(QAccessible::Description), "0:02.268");
    EXPECT_NEAR(spoken->valueInterface()->currentValue().toDouble(), 2.2676, 0.0001);
    spoken->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
    expect(0, kLength - 2);
}

TEST_F(WaveRangeView2Test, whatIsNotSelectedLiesInTheShadeForEveryView) {
    const QColor plain = shown.picture().pixelColor(500, 10);
    const auto shade = [&](int x) { return shown.picture().pixelColor(x, 10); };
    const QColor amber = QColor::fromRgbF(1.0f, 0.8f, 0.2f);
    select(30000, 60000);
    EXPECT_EQ(shade(450), plain);
    EXPECT_LT(shade(100).red(), plain.red() / 2);
    EXPECT_LT(shade(900).red(), plain.red() / 2);
    EXPECT_EQ(shade(300), amber);
    EXPECT_EQ(shade(600), amber);
    EXPECT_EQ(shade(310), plain);
    view.setViewFrom(40000, 50000, 0);
    EXPECT_EQ(shade(1), plain) << "no line where there is no edge";
    EXPECT_EQ(shade(998), plain);
}
