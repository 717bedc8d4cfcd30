#include <gtest/gtest.h>
#include <qpa/qwindowsysteminterface.h>

#include <QTest>
#include <random>

#include "InstrumentWindow.h"
#include "bubbles/PopupBubbleView.h"
#include "dial/DialView.h"
#include "envelope/ADSRView.h"
#include "keyboard/ScrollingKeyboardView.h"

namespace {

/// Someone with ten fingers, a mouse and a computer's keyboard, who uses them all at once.
class StormTest : public testing::Test {
  protected:
    QPoint keyPlace(double across, double down = 0.9) {
        return instrument.placeOf(instrument.item("keyboard"), across, down);
    }
    /// A chord of touch, mouse and computer's keyboard, a dial, the envelope and the overview.
    void holdEverything() {
        for (int finger = 0; finger < 4; ++finger)
            instrument.fingers().press(finger, keyPlace(0.2 + 0.1 * finger));
        instrument.fingers().press(4, instrument.placeOf(instrument.item("filterCutoffDial")));
        instrument.fingers().move(4, instrument.placeOf(instrument.item("filterCutoffDial"), 0.9));
        instrument.fingers().press(5, instrument.placeOf(instrument.item("adsrView"), 0.2));
        instrument.fingers().press(6, instrument.placeOf(instrument.item("miniKeyboard"), 0.5));
        QTest::mousePress(&instrument.window(), Qt::LeftButton, {}, keyPlace(0.8));
        QTest::keyPress(&instrument.window(), Qt::Key_Z);
        ASSERT_TRUE(sounds());
    }
    void letGo() {
        for (int finger = 0; finger < 7; ++finger)
            instrument.fingers().release(finger);
        letGoOfTheRest();
    }
    void letGoOfTheRest() {
        QTest::mouseRelease(&instrument.window(), Qt::LeftButton, {}, keyPlace(0.8));
        QTest::keyRelease(&instrument.window(), Qt::Key_Z);
    }
    bool sounds() { return instrument.controller().instrument().keysSound(); }

    /// Names of what is still held, shown pressed or in the air; empty for nothing.
    std::string held() {
        std::string names = sounds() ? "a voice " : "";
        const auto& piano = static_cast<ScrollingKeyboardView&>(instrument.item("keyboard"));
        for (const PianoKeyButton* const key : piano.keyboardButtons())
            names += key->highlighted() ? "key " + std::to_string(key->tag()) + " " : "";
        lookBelow(*instrument.window().contentItem(), names);
        return names;
    }
    void expectNothingHeld() {
        EXPECT_TRUE(instrument.comesTo([this] { return held().empty(); }, 2)) << held();
    }
    /// The whole screen still answers.
    void expectPlayable() {
        instrument.fingers().press(0, keyPlace(0.5));
        EXPECT_TRUE(sounds());
        instrument.fingers().release(0);
        const auto& piano = static_cast<ScrollingKeyboardView&>(instrument.item("keyboard"));
        const qreal before = piano.contentX();
        const double far = before > piano.contentWidth() / 3 ? 0.1 : 0.9;
        QTest::mouseClick(&instrument.window(), Qt::LeftButton, {},
                          instrument.placeOf(instrument.item("miniKeyboard"), far));
        EXPECT_TRUE(instrument.comesTo([&] { return piano.contentX() != before; }, 2));
        expectNothingHeld();
    }

    InstrumentWindow instrument;

  private:
    void lookBelow(QQuickItem& item, std::string& names) {
        for (QQuickItem* const child : item.childItems())
            lookBelow(*child, names);
        const auto* const dial = qobject_cast<DialView*>(&item);
        const auto* const envelope = qobject_cast<ADSRView*>(&item);
        if (dial && (dial->isPressed() || dial->tooltip()))
            names += "a dial ";
        if (envelope && envelope->pressed())
            names += "the envelope ";
        if (qobject_cast<PopupBubbleView*>(&item) && item.isVisible())
            names += "a bubble ";
    }
};

}  // namespace

TEST_F(StormTest, nothingStaysHeldWhenTheWindowLosesItsInput) {
    using System = QWindowSystemInterface;
    using Now = System::SynchronousDelivery;
    QQuickWindow& window = instrument.window();
    // As a window manager tells of them; there is none here.
    const std::pair<const char*, std::function<void()>> losses[] = {
        {"focus", [] { System::handleWindowActivated<Now>(nullptr); }},
        {"minimised", [&] { System::handleWindowStateChanged<Now>(&window, Qt::WindowMinimized); }},
        {"hidden", [&] { window.hide(); }},
        {"closed", [&] { window.close(); }},
    };
    for (const auto& [name, lose] : losses) {
        for (const bool cancelled : {false, true}) {
            SCOPED_TRACE(name);
            SCOPED_TRACE(cancelled);
            System::handleWindowActivated<Now>(&window);
            holdEverything();
            if (cancelled)
                instrument.fingers().cancel();
            lose();
            EXPECT_FALSE(sounds());
            if (!cancelled)
                letGo();
            expectNothingHeld();
            window.showNormal();
            System::handleWindowStateChanged<Now>(&window, Qt::WindowNoState);
            ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
            if (cancelled)
                letGoOfTheRest();
            expectPlayable();
        }
    }
}

TEST_F(StormTest, nothingStaysHeldWhateverElseHappensMeanwhile) {
    OmbrixViewController& controller = instrument.controller();
    const auto change = [&](const char* what, const std::function<void()>& act) {
        SCOPED_TRACE(what);
        holdEverything();
        act();
        instrument.pass(0.1);
        instrument.fingers().move(4, instrument.placeOf(instrument.item("filterCutoffDial"), 0.1));
        letGo();
        expectNothingHeld();
        controller.closeTop();
        controller.closeTop();
        instrument.pass(0.4);
        expectPlayable();
    };
    change("presets", [&] { controller.toolbarPresetClicked(); });
    change("settings", [&] { controller.toolbarSettingsClicked(); });
    change("save", [&] { controller.toolbarSaveClicked(); });
    change("alert", [&] { controller.alert()->show({0, "Title", "Text", "OK", {}, false}, {}); });
    change("key size", [&] { controller.settings()->chooseKeySize(1); });
    change("labels", [&] { controller.settings()->setShowLabels(false); });
    change("size", [&] { instrument.window().resize(1024, 700); });
    change("presets in turn", [&] {
        for (int i = 0; i < 40; ++i) {
            i % 3 == 0 ? controller.presetBar()->previous() : controller.presetBar()->next();
            instrument.pass(0.05);
        }
    });
    change("everything silenced", [&] { controller.silence(); });
    change("take", [&] {
        controller.take()->waveRecordDown();
        instrument.window().hide();
        instrument.pass(0.1);
        controller.take()->waveRecordUp();
        instrument.window().show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&instrument.window()));
    });
    EXPECT_FALSE(controller.take()->recording());
}

TEST_F(StormTest, aTouchElsewhereDismissesAPopoverAfterOneThatWasCancelled) {
    OmbrixViewController& controller = instrument.controller();
    for (int i = 0; i < 3; ++i) {
        controller.toolbarPresetClicked();
        instrument.pass(0.4);
        instrument.fingers().press(i, keyPlace(0.9));
        EXPECT_EQ(controller.presentation()->tag(), QString()) << i;
        instrument.pass(0.1);
        instrument.fingers().cancel();
        instrument.pass(0.4);
        expectPlayable();
    }
}

TEST_F(StormTest, tenFingersEverywhere) {
    std::mt19937 random(1);
    std::map<int, QPoint> down;
    const auto anywhere = [&] {
        const QSize size = instrument.window().size();
        const bool onKeys = random() % 2 == 0;
        return QPoint(int(random() % unsigned(size.width())),
                      onKeys ? size.height() - 1 - int(random() % 229u)
                             : int(random() % unsigned(size.height())));
    };
    const char* const seconds = getenv("STORM_SECONDS");
    const int events = 1000 * (seconds ? atoi(seconds) : 4);
    for (int i = 0; i < events; ++i) {
        const int finger = int(random() % 10);
        const auto dice = random() % 1000;
        if (dice < 3) {
            instrument.fingers().cancel();
            down.clear();
        } else if (dice < 20) {
            QTest::mouseClick(&instrument.window(), Qt::LeftButton, {}, anywhere());
        } else if (!down.contains(finger)) {
            instrument.fingers().press(finger, down[finger] = anywhere());
        } else if (dice < 300) {
            instrument.fingers().release(finger);
            down.erase(finger);
        } else {
            instrument.fingers().move(
                finger, down[finger] += QPoint(int(random() % 41) - 20, int(random() % 41) - 20));
        }
        if (i % 10 == 0)
            instrument.pass(0.01);
    }
    for (const auto& [finger, at] : down)
        instrument.fingers().release(finger);
    while (instrument.controller().closeTop())
        instrument.pass(0.1);
    expectNothingHeld();
}
