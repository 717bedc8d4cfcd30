#include "take/HoldButton.h"

#include <gtest/gtest.h>

#include <QTest>

#include "Fingers.h"
#include "ShownItem.h"

namespace {

class HoldButtonTest : public testing::Test {
  protected:
    HoldButtonTest() {
        QObject::connect(&m_button, &HoldButton::pressed, [this] { ++m_pressed; });
        QObject::connect(&m_button, &HoldButton::released, [this] { ++m_released; });
    }
    /// Was held once more, and has been let go since.
    void expectOneHold(const char* by) {
        EXPECT_EQ(std::exchange(m_pressed, 0), 1) << by;
        EXPECT_EQ(std::exchange(m_released, 0), 1) << by;
        EXPECT_FALSE(m_button.held()) << by;
    }

    ShownItem m_shown{
        ShownItem::fromQml("import Ombrix.Views; HoldButton { width: 60; height: 60 }")};
    HoldButton& m_button = m_shown.as<HoldButton>();
    Fingers m_fingers{m_shown.window()};
    int m_pressed = 0;
    int m_released = 0;
};

}  // namespace

TEST_F(HoldButtonTest, isHeldByWhoeverComesFirst) {
    m_fingers.press(1, {30, 30});
    EXPECT_TRUE(m_button.held());
    m_fingers.press(2, {20, 20});
    m_fingers.release(2);
    m_fingers.move(1, {500, 500});
    EXPECT_TRUE(m_button.held());
    m_fingers.release(1);
    expectOneHold("finger");
    QTest::mousePress(&m_shown.window(), Qt::LeftButton, {}, {30, 30});
    EXPECT_TRUE(m_button.held());
    QTest::mouseRelease(&m_shown.window(), Qt::LeftButton, {}, {200, 200});
    expectOneHold("mouse");
    m_button.forceActiveFocus();
    for (const auto key : {Qt::Key_Space, Qt::Key_Return}) {
        QTest::keyPress(&m_shown.window(), key);
        EXPECT_TRUE(m_button.held());
        QTest::keyRelease(&m_shown.window(), key);
        expectOneHold("key");
    }
}

TEST_F(HoldButtonTest, isLetGoByWhateverTakesTheHolderAway) {
    m_fingers.press(1, {30, 30});
    m_fingers.cancel();
    expectOneHold("touch cancelled");
    m_fingers.press(1, {30, 30});
    m_button.setEnabled(false);
    expectOneHold("disabled");
    m_button.setEnabled(true);
    m_fingers.cancel();
    m_button.forceActiveFocus();
    QTest::keyPress(&m_shown.window(), Qt::Key_Space);
    m_button.setFocus(false);
    expectOneHold("focus lost");
    QTest::mousePress(&m_shown.window(), Qt::LeftButton, {}, {30, 30});
    QEvent inactive(QEvent::WindowDeactivate);
    QCoreApplication::sendEvent(&m_shown.window(), &inactive);
    expectOneHold("window inactive");
    m_fingers.press(1, {30, 30});
    m_shown.window().hide();
    expectOneHold("window hidden");
}
