#include "envelope/ADSRView.h"

#include <gtest/gtest.h>

#include <QTest>
#include <cmath>
#include <limits>

#include "Fingers.h"
#include "ShownItem.h"

namespace {

using Values = std::array<float, 4>;

Values valuesOf(const ADSRView& view) {
    return {view.attack(), view.decay(), view.sustain(), view.releaseTime()};
}

/// 400 by 100 points: with the first values 120 points are a second, the attack begins at 0, the
/// decay at 30, the plateau at 72, the release at 160.
class ADSRViewTest : public testing::Test, public ADSRViewOwner {
  protected:
    ADSRViewTest() : shown(ShownItem::fromQml(kQml)), fingers(shown.window()) {
        view.setOwner(this);
        shown.window().setColor(Qt::black);
    }

    static constexpr auto kQml = "import Ombrix.Views; EnvelopeEditor { width: 400; height: 100 }";

    void adsrViewUpdated(ADSRView& sender) override {
        EXPECT_EQ(&sender, &view);
        ++updates;
    }
    void set(Values values) {
        view.setAttack(values[0]);
        view.setDecay(values[1]);
        view.setSustain(values[2]);
        view.setReleaseTime(values[3]);
        view.redraw();
    }
    void drag(QPoint from, QPoint to) {
        fingers.press(1, from);
        fingers.move(1, to);
        fingers.release(1);
    }
    bool lit(const QImage& picture, int x, int y) { return picture.pixelColor(x, y).red() > 60; }

    ShownItem shown;
    ADSRView& view = shown.as<ADSRView>();
    Fingers fingers;
    int updates = 0;
};

}  // namespace

TEST_F(ADSRViewTest, eachTimeIsDraggedByItsSegment) {
    struct Case {
        QPoint from, to;
        std::int32_t grab;
        Values wanted;
    };
    for (const Case& the : {
             Case{{0, 50}, {40, 90}, 0, {0.35f, 0.35f, 0.5f, 2}},
             Case{{29, 50}, {-200, 50}, 0, {0, 0.35f, 0.5f, 2}},
             Case{{31, 5}, {131, 5}, 1, {0.25f, 0.6f, 0.5f, 2}},
             Case{{71, 5}, {2471, 5}, 1, {0.25f, 5, 0.5f, 2}},
             Case{{161, 50}, {-239, 50}, 3, {0.25f, 0.35f, 0.5f, 3}},
             Case{{399, 50}, {499, 50}, 3, {0.25f, 0.35f, 0.5f, 1.75f}},
             Case{{399, 50}, {-1001, 50}, 3, {0.25f, 0.35f, 0.5f, 5}},
         }) {
        SCOPED_TRACE(the.from.x());
        set({0.25f, 0.35f, 0.5f, 2});
        updates = 0;
        fingers.press(1, the.from);
        EXPECT_EQ(view.grabIndex(), the.grab);
        EXPECT_EQ(updates, 0) << "a touch alone changes nothing";
        fingers.move(1, the.to);
        EXPECT_EQ(updates, 1);
        fingers.release(1, {200, 0});
        EXPECT_EQ(view.grabIndex(), -1);
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_FLOAT_EQ(valuesOf(view)[i], the.wanted[i]) << i;
    }
}

TEST_F(ADSRViewTest, plateauDecidesByTheFirstDirection) {
    fingers.press(1, {100, 50});
    EXPECT_EQ(view.grabIndex(), 2);
    fingers.move(1, {108, 46});
    EXPECT_EQ(view.grabIndex(), 2) << "not yet beyond either threshold";
    fingers.move(1, {120, 45});
    EXPECT_EQ(view.grabIndex(), -2) << "up goes before sideways";
    EXPECT_EQ(updates, 0);
    fingers.move(1, {300, 70});
    EXPECT_FLOAT_EQ(view.sustain(), 0.3f) << "measured from where the touch began";
    fingers.move(1, {300, -200});
    EXPECT_EQ(view.sustain(), 1);
    fingers.move(1, {300, 300});
    EXPECT_EQ(view.sustain(), 0);
    fingers.release(1);

    set({0.25f, 0.35f, 0.5f, 2});
    fingers.press(1, {115, 50});
    fingers.move(1, {135, 47});
    EXPECT_EQ(view.grabIndex(), -3) << "the left half stretches attack and decay";
    EXPECT_EQ(view.grabValue(), 0.25f);
    EXPECT_EQ(view.grabValue2(), 0.35f);
    fingers.release(1);
    fingers.press(1, {117, 50});
    fingers.move(1, {97, 50});
    EXPECT_EQ(view.grabIndex(), 3) << "the right half drags the release";
    EXPECT_EQ(valuesOf(view), (Values{0.25f, 0.35f, 0.5f, 2}));
    fingers.move(1, {77, 50});
    EXPECT_FLOAT_EQ(view.releaseTime(), 2.1f);
}

TEST_F(ADSRViewTest, stretchSharesTheChange) {
    // A touch at the plateau's beginning, moved 100 points: a quarter of a second to share.
    struct Case {
        float attack, decay, wantedAttack, wantedDecay;
    };
    for (const Case& the : {
             Case{0.2f, 0.4f, 0.325f, 0.525f},
             Case{0.4f, 0.2f, 0.4f, 0.45f},
             Case{0, 0.4f, 0.25f, 0.4f},
             Case{0.4f, 0, 0.4f, 0.25f},
             Case{0, 0, 0, 0.25f},
             Case{4.9f, 4.9f, 4.9f, 5},
         }) {
        SCOPED_TRACE(testing::Message() << the.attack << ' ' << the.decay);
        set({the.attack, the.decay, 0.5f, 2});
        const int x = int(312 * (the.attack + the.decay) / (the.attack + the.decay + 2)) + 1;
        drag({x, 50}, {x + 9, 50});
        EXPECT_EQ(updates, 0);
        fingers.press(1, {x, 50});
        fingers.move(1, {x + 9, 50});
        fingers.move(1, {x + 100, 50});
        fingers.release(1);
        EXPECT_FLOAT_EQ(view.attack(), the.wantedAttack);
        EXPECT_FLOAT_EQ(view.decay(), the.wantedDecay);
        EXPECT_EQ(updates, 1);
        updates = 0;
    }
}

TEST_F(ADSRViewTest, followsOneFingerUntilItEndsHoweverItDoes) {
    for (const QPoint from : {QPoint(10, 50), QPoint(100, 50)}) {
        set({0.25f, 0.35f, 0.5f, 2});
        fingers.press(1, from);
        fingers.move(1, from + QPoint(0, 10));
        const auto grab = view.grabIndex();
        QTest::mousePress(&shown.window(), Qt::LeftButton, {}, {300, 50});
        fingers.press(2, {300, 50});
        fingers.move(2, {200, 50});
        fingers.release(2);
        QTest::mouseRelease(&shown.window(), Qt::LeftButton, {}, {300, 50});
        EXPECT_EQ(view.grabIndex(), grab);
        EXPECT_EQ(view.releaseTime(), 2);
        fingers.release(1);
        EXPECT_EQ(view.grabIndex(), -1);
    }
    const auto endsWhen = [&](auto happens) {
        view.setVisible(true);
        view.setEnabled(true);
        fingers.press(1, {10, 50});
        ASSERT_EQ(view.grabIndex(), 0);
        happens();
        EXPECT_EQ(view.grabIndex(), -1);
        fingers.cancel();
    };
    endsWhen([&] { fingers.cancel(); });
    endsWhen([&] { view.setVisible(false); });
    endsWhen([&] { view.setEnabled(false); });
    endsWhen([&] { view.ungrabTouchPoints(); });
    endsWhen([&] { shown.window().hide(); });
}

TEST_F(ADSRViewTest, mouseAndKeysDoTheSame) {
    QTest::mousePress(&shown.window(), Qt::LeftButton, {}, {200, 50});
    QTest::mouseMove(&shown.window(), {100, 50});
    QTest::mouseRelease(&shown.window(), Qt::LeftButton, {}, {100, 50});
    EXPECT_EQ(view.releaseTime(), 2.25f);
    EXPECT_EQ(view.grabIndex(), -1);

    view.forceActiveFocus();
    view.setStage(0);
    const QImage before = shown.picture();
    for (const auto key : {Qt::Key_Left, Qt::Key_Up, Qt::Key_Right, Qt::Key_Right})
        QTest::keyClick(&shown.window(), key);
    QTest::keyClick(&shown.window(), Qt::Key_Down, Qt::ShiftModifier);
    for (int times = 0; times < 2; ++times)
        QTest::keyClick(&shown.window(), Qt::Key_Right);
    for (int times = 0; times < 70; ++times)
        QTest::keyClick(&shown.window(), Qt::Key_Up);
    EXPECT_FLOAT_EQ(view.attack(), 0.3f);
    EXPECT_FLOAT_EQ(view.sustain(), 0.49f);
    EXPECT_EQ(view.releaseTime(), 5);
    EXPECT_EQ(view.spokenText().toStdString(),
              "Attack 0.30 seconds, decay 0.35 seconds, sustain 49 percent, release 5.00 seconds");
    EXPECT_NE(before, shown.picture());
}

TEST_F(ADSRViewTest, staysWholeWithoutTimeAndWithoutNumbers) {
    const float nan = std::nanf("");
    const float infinite = std::numeric_limits<float>::infinity();
    for (const Values& values :
         {Values{0, 0, 0.5f, 0}, Values{nan, nan, nan, nan}, Values{infinite, 0, nan, 0},
          Values{-1, 0.5f, 2, 0.5f}, Values{1e-30f, 0, -7, 1e30f}}) {
        SCOPED_TRACE(values[0]);
        set(values);
        shown.picture();
        for (int x = 0; x < 400; x += 50) {
            drag({x, 50}, {x + 20, 50});
            drag({x, 50}, {x, 20});
        }
    }
    set({0, 0, 0.5f, 0});
    drag({1, 50}, {-39, 50});
    EXPECT_EQ(view.releaseTime(), 0.1f) << "without any time there is only a release";
    EXPECT_FALSE(view.param(-1) || view.param(4));
}

TEST_F(ADSRViewTest, drawsBarsUnderALine) {
    // Each third column is lit below the level; between them only the line is.
    set({0.5f, 0.6f, 0.5f, 1.5f});  // 120 points a second
    QImage picture = shown.picture();
    EXPECT_TRUE(lit(picture, 45, 80));
    EXPECT_FALSE(lit(picture, 46, 80));
    EXPECT_FALSE(lit(picture, 47, 80));
    EXPECT_FALSE(lit(picture, 45, 10)) << "above the attack's level";
    EXPECT_TRUE(lit(picture, 11, 80) && lit(picture, 13, 77)) << "the attack's line";
    EXPECT_TRUE(lit(picture, 140, 50) && lit(picture, 142, 50)) << "the plateau's line";
    EXPECT_EQ(picture.pixelColor(45, 90).name(), "#604d13");
    EXPECT_EQ(picture.pixelColor(90, 90).name(), "#80661a");

    // The text of a segment that is too narrow goes, and its label with it.
    const auto texts = [&](int from, int to) {
        picture = shown.picture();
        int count = 0;
        for (int x = from; x < to; ++x) {
            for (int y = 45; y < 75; ++y)
                count += picture.pixelColor(x, y).blue() > 70;  // more than the line
        }
        return count;
    };
    set({0.5f, 0.6f, 1, 1.5f});
    EXPECT_GT(texts(0, 55), 20);
    set({0.2f, 0.6f, 1, 1.8f});
    EXPECT_EQ(texts(0, 22), 0);
    QImage first = shown.picture();
    view.setAttack(0.5f);
    EXPECT_EQ(shown.picture(), first) << "plain setters leave the picture";
    view.setProperty("decay", 0.5f);
    EXPECT_NE(shown.picture(), first) << "bound values redraw";
}

TEST_F(ADSRViewTest, levelHelperDrawsAGuideAndATick) {
    QImage image(100, 100, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setPen(QPen(Qt::white, 1));
    EXPECT_EQ(view.slideLevel(0.25f, 10, 60, painter), 70);
    EXPECT_TRUE(lit(image, 40, 5) && lit(image, 40, 95));
    EXPECT_TRUE(lit(image, 31, 75) && lit(image, 49, 75));
    EXPECT_FALSE(lit(image, 26, 75) || lit(image, 54, 75) || lit(image, 31, 25));
}
