#include "wave/WaveView2.h"

#include <gtest/gtest.h>

#include <QNativeGestureEvent>
#include <QTest>
#include <cmath>
#include <functional>
#include <limits>
#include <random>

#include "Fingers.h"
#include "ShownItem.h"
#include "VornWave2.h"
#include "VornWaveSequence.h"
#include "audiounits/devices/AudioDevices.h"
#include "audiounits/devices/ManualDevice.h"
#include "screens/MainLoop.h"

namespace {

using Samples = std::vector<float>;
using Sound = std::shared_ptr<WaveSequenceAccess>;

constexpr int kWidth = 1000;  // points
constexpr int kWave = 200;    // points that the wave is high
constexpr int kFrames = 4'000'000;

Sound soundOf(const Samples& samples, std::uint32_t channels = 1) {
    return VornWaveSequence::sequenceWithWave(
        VornWave2::initWithCopyOfData(samples.data(), std::uint32_t(samples.size()) / channels,
                                      StreamDescription::float32(channels), "sound"));
}

Sound noise(int frames) {
    std::mt19937 random(20);
    std::uniform_real_distribution<float> sample(-0.9f, 0.9f);
    Samples samples(static_cast<std::size_t>(frames));
    for (float& value : samples)
        value = sample(random);
    return soundOf(samples);
}

bool isLit(QRgb pixel) {
    return qRed(pixel) > 100 && qBlue(pixel) < 120;
}

/// Columns of the wave that show any amber, from one to another.
int litColumns(const QImage& picture, int from = 0, int to = kWidth) {
    int count = 0;
    for (int x = from; x < to; ++x) {
        for (int y = 0; y < kWave; ++y) {
            if (isLit(picture.pixel(x, y))) {
                ++count;
                break;
            }
        }
    }
    return count;
}

class WaveView2Test : public testing::Test {
  protected:
    WaveView2Test() {
        AudioDevices::use(std::make_shared<ManualDevice>());
        view.setHearing(&hearing);
        use(noise(kFrames));
    }
    ~WaveView2Test() override { view.setHearing(nullptr); }
    void use(const Sound& sound) {
        hearing.setSound(sound);
        view.show(sound);
    }
    bool settles() {
        return QTest::qWaitFor(
            [this] { return view.tiles().complete() && !view.tiles().animating(); }, 5000);
    }
    bool scrubs() const { return !hearing.playing() && hearing.playHead() >= 0; }
    void tap(QPoint at) {
        fingers.press(0, at);
        fingers.release(0);
    }
    void expectUntouched() {
        EXPECT_EQ(view.viewStart(), 0);
        EXPECT_EQ(view.viewStop(), kFrames);
        EXPECT_FALSE(hearing.playing());
        EXPECT_FALSE(scrubs());
    }

    MainLoop loop;
    WaveHearing hearing;
    ShownItem shown{
        ShownItem::fromQml("import Ombrix.Views; WaveView2 { width: 1000; height: 218; "
                           "waveColour: '#ffcc33'; sampleColour: '#ffcc33'; "
                           "lineColour: '#202020'; playHeadColour: '#00ff00' }")};
    WaveView2& view = shown.as<WaveView2>();
    Fingers fingers{shown.window()};
};

}  // namespace

TEST_F(WaveView2Test, pinchesKeepWhatIsUnderTheFingers) {
    fingers.press(0, {300, 100});
    fingers.press(1, {500, 100});
    for (int i = 1; i <= 20; ++i) {
        const int left = view.frameAt(300 - 10 * (i - 1));
        const int right = view.frameAt(500 + 15 * (i - 1));
        fingers.move({{0, {300 - 10 * i, 100}}, {1, {500 + 15 * i, 100}}});
        EXPECT_NEAR(view.xOf(left), 300 - 10 * i, 1);
        EXPECT_NEAR(view.xOf(right), 500 + 15 * i, 1);
    }
    EXPECT_NEAR(view.viewStop() - view.viewStart(), kFrames * 200. / 700, 2);
    const int under = view.frameAt(100);
    fingers.release(1);
    fingers.move(0, {140, 110});  // the one that is left drags on
    EXPECT_NEAR(view.xOf(under), 140, 1);
    fingers.release(0);
    EXPECT_FALSE(hearing.playing()) << "no tap";
    for (int i = 0; i < 40; ++i) {
        fingers.press(0, {490, 100});
        fingers.press(1, {510, 100});
        fingers.move({{0, {100, 100}}, {1, {900, 100}}});
        fingers.cancel();
    }
    EXPECT_EQ(view.viewStop() - view.viewStart(), WaveViewport::kFewestFrames);
}

TEST_F(WaveView2Test, aDragScrollsAndAThrowGoesOnUntilItIsCaught) {
    view.setViewFrom(1'000'000, 1'100'000, 0);
    const int held = view.frameAt(700);
    fingers.press(0, {700, 100});
    for (int x = 680; x >= 400; x -= 20) {
        fingers.move(0, {x, 100});
        QTest::qWait(5);
    }
    EXPECT_NEAR(view.xOf(held), 400, 1);
    fingers.release(0);
    const int dropped = view.viewStart();
    EXPECT_TRUE(QTest::qWaitFor([&] { return view.viewStart() > dropped + 2000; }));
    EXPECT_EQ(view.viewStop() - view.viewStart(), 100'000);
    tap({500, 100});
    const int caught = view.viewStart();
    QTest::qWait(100);
    EXPECT_EQ(view.viewStart(), caught);
    EXPECT_FALSE(hearing.playing()) << "it caught the throw";
    fingers.press(0, {500, 100});
    fingers.move(0, {600, 100});
    QTest::qWait(150);
    fingers.release(0);  // rested first
    const int rested = view.viewStart();
    QTest::qWait(100);
    EXPECT_EQ(view.viewStart(), rested);
}

TEST_F(WaveView2Test, tapsPlayAndTwoShowAll) {
    view.setViewFrom(1'000'000, 1'100'000, 0);
    QTest::mouseClick(&shown.window(), Qt::LeftButton, {}, {250, 100});
    EXPECT_TRUE(hearing.playing());
    EXPECT_NEAR(hearing.playHead(), 1'025'000, 2000);
    QTest::qWait(WaveGestures::kDoubleTap + 100);
    tap({500, 100});
    EXPECT_NEAR(hearing.playHead(), 1'050'000, 2000) << "moved there";
    tap({503, 104});
    EXPECT_FALSE(hearing.playing());
    expectUntouched();
    QTest::qWait(WaveGestures::kDoubleTap + 100);
    view.setViewFrom(1'000'000, 1'100'000, 0);
    tap({500, 100});
    tap({700, 100});
    EXPECT_TRUE(hearing.playing()) << "two taps in two places are no double tap";
    EXPECT_EQ(view.viewStart(), 1'000'000);
}

TEST_F(WaveView2Test, aHeldFingerScrubsAndNothingLeavesItHanging) {
    const std::function<void()> ends[] = {
        [&] { fingers.release(0); },     [&] { fingers.cancel(); },
        [&] { view.setVisible(false); }, [&] { view.setEnabled(false); },
        [&] { shown.window().hide(); },  [&] { view.setInteractions(0); },
        [&] { use(noise(kFrames)); },
    };
    for (const auto& end : ends) {
        fingers.press(0, {300, 100});
        EXPECT_FALSE(scrubs());
        fingers.move(0, {304, 103});
        ASSERT_TRUE(QTest::qWaitFor([this] { return scrubs(); }, 2000));
        EXPECT_NEAR(hearing.playHead(), kFrames * 0.304, 3);
        fingers.move(0, {600, 100});
        EXPECT_NEAR(hearing.playHead(), kFrames * 0.6, 3);
        end();
        expectUntouched();
        view.setVisible(true);
        view.setEnabled(true);
        view.setInteractions(7);
        shown.window().show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&shown.window()));
        fingers.cancel();
        expectUntouched();
    }
    fingers.press(0, {300, 100});
    fingers.move(0, {330, 100});
    QTest::qWait(WaveGestures::kHold + 150);
    EXPECT_FALSE(scrubs()) << "a drag does not become a hold";
}

TEST_F(WaveView2Test, doesOnlyWhatIsAllowed) {
    view.setInteractions(WaveView2::select);
    tap({300, 100});
    fingers.press(0, {300, 100});
    QTest::qWait(WaveGestures::kHold + 150);
    fingers.press(1, {500, 100});
    fingers.move(1, {900, 100});
    fingers.cancel();
    QTest::keyClick(&shown.window(), Qt::Key_Plus);
    expectUntouched();
}

TEST_F(WaveView2Test, wheelTrackpadAndKeysZoomAndScroll) {
    const auto turn = [&](QPoint angle, Qt::KeyboardModifiers modifiers) {
        QWheelEvent event({250, 100}, {250, 100}, {}, angle, {}, modifiers, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(&shown.window(), &event);
    };
    const int pointed = view.frameAt(250);
    turn({0, 240}, {});
    EXPECT_NEAR(view.viewStop() - view.viewStart(), kFrames / 2, 2);
    EXPECT_NEAR(view.xOf(pointed), 250, 1);
    const int start = view.viewStart();
    turn({0, -120}, Qt::ShiftModifier);
    EXPECT_NEAR(view.viewStart() - start, kFrames / 20, 2);
    turn({120, 0}, {});
    EXPECT_NEAR(view.viewStart(), start, 2);
    QNativeGestureEvent pinch(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(), 2,
                              {250, 100}, {250, 100}, {250, 100}, 1, {});
    QCoreApplication::sendEvent(&shown.window(), &pinch);
    EXPECT_NEAR(view.viewStop() - view.viewStart(), kFrames / 4, 2);
    EXPECT_NEAR(view.xOf(pointed), 250, 1);
    view.forceActiveFocus(Qt::TabFocusReason);
    EXPECT_TRUE(view.isFocusVisible());
    const int before = view.viewStart();
    QTest::keyClick(&shown.window(), Qt::Key_Right);
    EXPECT_NEAR(view.viewStart() - before, kFrames / 40, 2);
    QTest::keyClick(&shown.window(), Qt::Key_Left);
    QTest::keyClick(&shown.window(), Qt::Key_Minus);
    QTest::keyClick(&shown.window(), Qt::Key_Plus);
    EXPECT_NEAR(view.viewStop() - view.viewStart(), kFrames / 4, 2);
    QTest::keyClick(&shown.window(), Qt::Key_Home);
    expectUntouched();
}

TEST_F(WaveView2Test, isNeverBlankWhileItChanges) {
    ASSERT_TRUE(settles());
    EXPECT_EQ(litColumns(shown.picture()), kWidth);
    std::mt19937 random(3);
    for (int i = 0; i < 60; ++i) {
        const auto dice = random() % 4;
        if (dice < 2)
            view.zoomBy(dice == 0 ? 1.2 : 0.9);
        else if (dice == 2)
            view.scrollBy(double(random() % 200) - 100);
        else
            view.setHeight(200 + int(random() % 36));
        EXPECT_GT(litColumns(shown.picture(), 100, 900), 700) << i;
        QTest::qWait(int(random() % 30));
    }
    view.setHeight(218);
    view.showAll();
    ASSERT_TRUE(settles());
    EXPECT_EQ(litColumns(shown.picture()), kWidth);
    use(noise(2'000'000));
    EXPECT_EQ(litColumns(shown.picture()), kWidth) << "the old sound stays until the new one is in";
}

TEST_F(WaveView2Test, showsSamplesAtADeepZoomWhateverTheyAre) {
    constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
    constexpr float kEndless = std::numeric_limits<float>::infinity();
    Samples samples(4000, 0.5f);
    samples[1003] = kNone;
    samples[1005] = -kEndless;
    samples[1007] = kEndless;
    for (const std::uint32_t channels : {1u, 2u}) {
        use(soundOf(samples, channels));
        const int from = 1000 / int(channels);
        view.setViewFrom(from, from + 16, 0);
        const QImage picture = shown.picture();
        EXPECT_EQ(litColumns(picture, 2), kWidth - 2);
        // Half-way up where all is well, on the line where it is no number.
        EXPECT_TRUE(isLit(picture.pixel(int(view.xOf(from + 1)), kWave / 4)));
        const int none = int(view.xOf(from + (channels == 1 ? 3 : 1)));
        EXPECT_TRUE(isLit(picture.pixel(none, kWave / 2)));
    }
    for (const int frames : {0, 1, 2, 15}) {
        use(soundOf(Samples(std::size_t(frames), 0.5f)));
        EXPECT_EQ(view.viewStop() - view.viewStart(), frames);
        EXPECT_GE(litColumns(shown.picture()), frames > 1 ? kWidth * (frames - 1) / frames - 2 : 0);
        QTest::qWait(50);
        tap({500, 100});
        QTest::keyClick(&shown.window(), Qt::Key_Plus);
        view.scrollBy(100);
        EXPECT_EQ(view.viewStart(), 0);
    }
}

TEST_F(WaveView2Test, thePlayHeadIsSeenWhereItIsHeard) {
    ASSERT_TRUE(settles());
    tap({400, 100});
    const QImage picture = shown.picture();
    const auto isHead = [&](int x) {
        return picture.pixelColor(x, 20).green() > 200 && picture.pixelColor(x, 20).red() < 100;
    };
    EXPECT_TRUE(isHead(399) || isHead(400) || isHead(401));
    hearing.stop();
}
