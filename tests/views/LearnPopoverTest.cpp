#include <QTest>

#include "SceneTest.h"
#include "dial/DialView.h"

namespace {

constexpr const char* kScene = R"(
import QtQuick
import Ombrix.Views
Window {
    required property OmbrixViewController controller
    width: 1024; height: 700; visible: true; color: Theme.ground
    Item {
        anchors.fill: parent
        ParameterColumn { dials: controller.dials; key: "filterCutoff"; x: 100; y: 300; width: 80 }
    }
}
)";
constexpr QPoint kKnob{140, 340};
constexpr QPoint kElsewhere{600, 600};

/// The dial of the filter's cutoff, and the instrument that it turns.
class LearnPopoverTest : public SceneTest {
  protected:
    LearnPopoverTest() : SceneTest(kScene) {}
    void SetUp() override {
        SceneTest::SetUp();
        m_controller->midi()->controllers()->setEnabled(true);
        cutoff().tweak(cutoff().maxValue() / 2);
    }
    DialState& cutoff() { return m_controller->dials()->dial(ParameterId::filterCutoff); }
    void moveController(int number, int value) {
        m_controller->midiControls().perform(
            {MidiMessage::Kind::control, std::uint8_t(number), std::uint8_t(value), 1, 0}, "Knobs");
    }
    QString badge() {
        QQuickItem* const found = item("learnBadge");
        return found ? found->property("controllers").toString() : "none";
    }
};

}  // namespace

TEST_F(LearnPopoverTest, aHeldFingerLearnsAndForgets) {
    const float before = cutoff().value();
    EXPECT_EQ(badge(), "none");
    m_fingers->press(1, kKnob);
    m_fingers->move(1, kKnob + QPoint(2, -3));
    EXPECT_NE(cutoff().value(), before);
    ASSERT_TRUE(comes("learnRow"));
    EXPECT_EQ(cutoff().value(), before) << "a finger that rests is never quite still";
    m_fingers->move(1, kKnob + QPoint(3, -3));
    EXPECT_EQ(cutoff().value(), before);
    m_fingers->release(1);
    tap("learnRow");
    EXPECT_TRUE(cutoff().learning());
    EXPECT_TRUE(item("learnPrompt"));
    moveController(74, 10);
    EXPECT_TRUE(goes("learnPrompt"));
    EXPECT_EQ(badge(), "CC 74");

    QTest::mouseClick(m_window, Qt::RightButton, {}, kKnob);
    ASSERT_TRUE(comes("forgetRow"));
    tap("forgetRow");
    EXPECT_TRUE(goes("forgetRow"));
    EXPECT_EQ(badge(), "none");
}

TEST_F(LearnPopoverTest, aFingerThatGoesOnTurnsAgain) {
    m_fingers->press(1, kKnob);
    ASSERT_TRUE(comes("learnRow"));
    const float before = cutoff().value();
    m_fingers->move(1, kKnob - QPoint(0, 20));
    EXPECT_EQ(cutoff().value(), before) << "nothing jumps";
    m_fingers->move(1, kKnob - QPoint(0, 40));
    EXPECT_GT(cutoff().value(), before);
    m_fingers->release(1);
    EXPECT_TRUE(goes("learnRow"));
    EXPECT_FALSE(cutoff().learning());
}

TEST_F(LearnPopoverTest, keysDoItTooAndEscapeOrATouchElsewhereEndsIt) {
    for (const bool escapes : {true, false}) {
        item("filterCutoffDial")->childItems()[1]->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(m_window, Qt::Key_F10, Qt::ShiftModifier);
        ASSERT_TRUE(comes("learnRow"));
        ASSERT_TRUE(QTest::qWaitFor([&] { return item("learnRow")->hasActiveFocus(); }));
        QTest::keyClick(m_window, Qt::Key_Return);
        EXPECT_TRUE(cutoff().learning());
        if (escapes) {
            QTest::keyClick(m_window, Qt::Key_Escape);
        } else {
            m_fingers->press(1, kElsewhere);
            m_fingers->release(1);
        }
        EXPECT_TRUE(goes("learnPrompt"));
        EXPECT_FALSE(cutoff().learning());
        EXPECT_TRUE(qobject_cast<DialView*>(m_window->activeFocusItem())) << escapes;
    }
    // Without controllers nothing is offered.
    m_controller->midi()->controllers()->setEnabled(false);
    QTest::mouseClick(m_window, Qt::RightButton, {}, kKnob);
    QTest::keyClick(m_window, Qt::Key_Menu);
    QTest::qWait(100);
    EXPECT_FALSE(item("learnRow"));
}
