#include "dial/DialView.h"

#include <gtest/gtest.h>

#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>
#include <QSignalSpy>
#include <QTest>
#include <cmath>
#include <limits>

#include "Fingers.h"
#include "ShownItem.h"
#include "dial/DialGeometry.h"

namespace {

constexpr QPoint kMiddle{40, 140};

/// A dial below the place for its bubble, and what it tells.
class DialViewTest : public testing::Test {
  protected:
    DialViewTest()
        : m_shown(ShownItem::fromQml("import QtQuick; import Ombrix.Views; Rectangle { width: 240; "
                                     "height: 180; color: \"black\"; DialView { y: 100 } }")) {
        dial().setTarget([this](DialView& sender) { m_reported.push_back(sender.value()); });
    }
    DialView& dial() { return *qobject_cast<DialView*>(parent().childItems().first()); }
    QQuickItem& parent() { return m_shown.as<QQuickItem>(); }
    QQuickWindow& window() { return m_shown.window(); }
    qsizetype bubbles() { return parent().findChildren<PopupBubbleView*>().size(); }

    void wheel(QPoint angle, Qt::KeyboardModifiers modifiers = {}) {
        QWheelEvent event(kMiddle, kMiddle, {}, angle, Qt::NoButton, modifiers, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(&window(), &event);
    }
    void tapWithFinger() {
        m_fingers.press(1, kMiddle);
        m_fingers.release(1);
    }
    int lightAt(QPointF place) {
        return m_shown.picture().pixelColor((place + QPointF(0, 100)).toPoint()).red();
    }

    ShownItem m_shown;
    Fingers m_fingers{m_shown.window()};
    std::vector<float> m_reported;
};

void expectNear(QPointF at, QPointF wanted) {
    EXPECT_NEAR(at.x(), wanted.x(), 2e-5);
    EXPECT_NEAR(at.y(), wanted.y(), 2e-5);
}

class CountingDial : public DialView {
  public:
    using DialView::DialView;
    void announce() override {
        DialView::announce();
        ++announcements;
    }
    int announcements = 0;
};

}  // namespace

TEST(DialGeometryTest, placesNotchAndLamps) {
    const struct {
        float position;
        QPointF fine, coarse;  // on screens of scale 2 and 1
    } notches[] = {{0, {28.68629, 51.31371}, {29.5, 50.5}},
                   {0.3f, {27.05573, 30.59544}, {28.5, 30.5}},
                   {0.5f, {40, 24}, {40.5, 23.5}},
                   {1, {51.31371, 51.31371}, {51.5, 50.5}}};
    for (const auto& row : notches) {
        expectNear(DialGeometry::notchCentre({40, 40}, row.position, 16, 2), row.fine);
        expectNear(DialGeometry::notchCentre({40, 40}, row.position, 16, 1.5), row.coarse);
    }
    const DialView dial;
    expectNear(dial.lampCentre(0), {18.78680, 61.21320});
    expectNear(dial.lampCentre(5), {18.78680, 18.78680});
    expectNear(dial.lampCentre(15), {61.21320, 61.21320});
}

TEST(DialGeometryTest, fillsLampsOneAfterTheOther) {
    DialView dial;
    dial.setValue(0.53f);
    for (std::uint32_t lamp = 0; lamp < 16; ++lamp)
        EXPECT_NEAR(dial.lampAlpha(lamp), lamp < 8 ? 1 : lamp == 8 ? 0.48 : 0, 1e-5) << lamp;
    dial.setValue(1);
    EXPECT_EQ(dial.lampAlpha(15), 1.f);
    EXPECT_EQ(DialGeometry::lampAlpha(0, 1, 0.25f), 0.25f);
    EXPECT_EQ(DialGeometry::lampPlace(0, 1), 0.f);
}

TEST_F(DialViewTest, keepsItsValueWithinItsRange) {
    dial().setMinValue(-2);
    dial().setMaxValue(2);
    EXPECT_EQ(dial().normalisedValue(), 0.f) << "a range does not move the notch";
    const float infinite = std::numeric_limits<float>::infinity();
    const std::pair<float, float> rows[] = {{-9, -2}, {9, 2},        {1, 1},
                                            {-2, -2}, {infinite, 2}, {std::nanf(""), -2}};
    for (const auto& [given, kept] : rows) {
        dial().setValue(given);
        EXPECT_EQ(dial().value(), kept) << given;
    }
    dial().setMinValue(5);
    dial().setMaxValue(5);
    const std::pair<float, float> withoutRange[] = {{7, 1}, {5, 0}, {3, 0}};
    for (const auto& [given, position] : withoutRange) {
        dial().setValue(given);
        EXPECT_EQ(dial().normalisedValue(), position) << given;
    }
    EXPECT_TRUE(m_reported.empty());
}

TEST_F(DialViewTest, takesItsValueAfterItsRangeFromQml) {
    const auto item = ShownItem::fromQml(
        "import Ombrix.Views; DialView { value: 330; minValue: 1; maxValue: 441; notches: [0.5] }");
    EXPECT_EQ(qobject_cast<DialView*>(item.get())->value(), 330.f);
    EXPECT_EQ(qobject_cast<DialView*>(item.get())->notches(), QList<qreal>{0.5});
}

TEST_F(DialViewTest, isTurnedByOneFingerAlongTheAxesOfItsMode) {
    const struct {
        int mode;
        QPoint way;
        float position;
    } rows[] = {{3, {20, 0}, 0.6f},   {3, {0, 20}, 0.4f},    {3, {20, -20}, 0.7f},
                {1, {20, -30}, 0.6f}, {2, {20, -30}, 0.65f}, {0, {20, -30}, 0.5f},
                {3, {150, 0}, 1},     {1, {-101, 0}, 0}};
    for (const auto& [mode, way, position] : rows) {
        dial().setMode(mode);
        dial().setValue(0.5f);
        m_reported.clear();
        m_fingers.press(1, kMiddle);
        m_fingers.press(2, kMiddle + QPoint(9, 9));
        m_fingers.move(2, kMiddle + QPoint(30, 9));
        EXPECT_EQ(dial().normalisedValue(), 0.5f) << "only the first finger counts";
        EXPECT_TRUE(m_reported.empty()) << "and it rests";
        m_fingers.move(1, kMiddle + way);
        EXPECT_NEAR(dial().normalisedValue(), position, 1e-6) << mode;
        EXPECT_EQ(m_reported.back(), dial().value());
        m_fingers.release(1);
        m_fingers.release(2);
        QTest::mousePress(&window(), Qt::LeftButton, {}, kMiddle);
        QTest::mouseMove(&window(), kMiddle - way);
        QTest::mouseRelease(&window(), Qt::LeftButton, {}, kMiddle - way);
    }
    const auto reports = m_reported.size();
    QTest::mouseMove(&window(), kMiddle);
    EXPECT_EQ(m_reported.size(), reports) << "nothing holds it any more";
    EXPECT_EQ(bubbles(), 0) << "it has no text to show";
}

TEST_F(DialViewTest, snapsToTheNotchThatWasAddedFirst) {
    dial().addNotchAt(0.54f);
    dial().addNotchAt(0.5f);
    m_fingers.press(1, kMiddle);
    const std::pair<int, float> rows[] = {
        {94, 0.47f}, {96, 0.5f}, {104, 0.54f}, {113, 0.54f}, {114, 0.57f}};
    for (const auto& [points, position] : rows) {
        m_fingers.move(1, kMiddle + QPoint(points, 0));
        EXPECT_FLOAT_EQ(dial().normalisedValue(), position) << points;
    }
}

TEST_F(DialViewTest, showsItsTextWhileItIsHeld) {
    dial().setTooltipFormat("%2.0f%%");
    dial().setTooltipScale(100);
    m_fingers.press(1, kMiddle);
    ASSERT_EQ(bubbles(), 1);
    PopupBubbleView& bubble = *dial().tooltip();
    EXPECT_EQ(bubble.text(), " 0%");
    const QPointF tip(bubble.x() + bubble.width() / 2, bubble.y() + bubble.height());
    EXPECT_NEAR(tip.x(), 40, 1) << "above the dial's middle";
    EXPECT_NEAR(tip.y(), 100 + 80. / 6, 1);
    const qreal width = bubble.width();
    m_fingers.move(1, kMiddle + QPoint(200, 0));
    EXPECT_EQ(bubble.text(), "100%");
    EXPECT_EQ(bubble.width(), width);
    dial().setValue(0.25f);
    EXPECT_EQ(bubble.text(), "25%") << "a preset may come while a finger holds it";
    m_fingers.release(1);
    EXPECT_EQ(dial().tooltip(), nullptr);
    EXPECT_TRUE(QTest::qWaitFor([this] { return bubbles() == 0; }));
}

TEST_F(DialViewTest, writesOnlyFormatsOfOneNumber) {
    const std::pair<const char*, const char*> rows[] = {{"%2.2fs", "0.50s"}, {"%s", "%s"},
                                                        {"%f %f", "%f %f"},  {"%n", "%n"},
                                                        {"%5d", "%5d"},      {"half", "half"}};
    dial().setValue(0.5f);
    for (const auto& [format, text] : rows) {
        dial().setTooltipFormat(format);
        EXPECT_EQ(dial().formatTooltip(true), text);
    }
    dial().setAccessibleTooltipFormat("%.1f seconds");
    EXPECT_EQ(dial().formatTooltip(true), "0.5 seconds");
    EXPECT_EQ(dial().formatTooltip(false), "half");
}

TEST_F(DialViewTest, letsGoWhenItIsTakenAway) {
    dial().setTooltipFormat("%f");
    const std::function<void()> ways[] = {
        [this] { m_fingers.cancel(); },       [this] { dial().ungrabTouchPoints(); },
        [this] { dial().setVisible(false); }, [this] { parent().setEnabled(false); },
        [this] { window().hide(); },
    };
    for (const auto& takeAway : ways) {
        for (const bool mouse : {false, true}) {
            SCOPED_TRACE(&takeAway - ways);
            if (mouse)
                QTest::mousePress(&window(), Qt::LeftButton, {}, kMiddle);
            else
                m_fingers.press(1, kMiddle);
            ASSERT_TRUE(dial().isPressed());
            if (mouse && &takeAway < ways + 2)
                dial().ungrabMouse();
            else
                takeAway();
            EXPECT_FALSE(dial().isPressed());
            EXPECT_EQ(dial().tooltip(), nullptr);
            m_reported.clear();
            QTest::mouseRelease(&window(), Qt::LeftButton, {}, kMiddle);
            m_fingers.cancel();
            EXPECT_TRUE(m_reported.empty());
            dial().setVisible(true);
            parent().setEnabled(true);
            window().show();
        }
    }
    EXPECT_TRUE(QTest::qWaitFor([this] { return bubbles() == 0; }));
}

TEST_F(DialViewTest, isTurnedByWheelAndKeys) {
    dial().setTooltipFormat("%f");
    dial().setValue(0.5f);
    dial().addNotchAt(0.5f);
    wheel({0, 120});
    EXPECT_NEAR(dial().normalisedValue(), 0.52, 1e-6) << "notches do not hold it";
    wheel({-60, 0}, Qt::ShiftModifier);
    EXPECT_NEAR(dial().normalisedValue(), 0.519, 1e-6);
    EXPECT_EQ(bubbles(), 1);
    dial().forceActiveFocus(Qt::TabFocusReason);
    EXPECT_TRUE(dial().isFocusVisible());
    const struct {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        float position;
    } rows[] = {{Qt::Key_End, {}, 1},          {Qt::Key_Left, {}, 0.98f},
                {Qt::Key_PageDown, {}, 0.88f}, {Qt::Key_Up, Qt::ShiftModifier, 0.882f},
                {Qt::Key_Home, {}, 0},         {Qt::Key_Down, {}, 0}};
    m_reported.clear();
    for (const auto& [key, modifiers, position] : rows) {
        QTest::keyClick(&window(), key, modifiers);
        EXPECT_NEAR(dial().normalisedValue(), position, 1e-6);
    }
    EXPECT_EQ(m_reported.size(), 5u) << "the last one turned nothing";
    EXPECT_TRUE(QTest::qWaitFor([this] { return bubbles() == 0; })) << "no finger lets it go";
}

TEST_F(DialViewTest, turnsFinelyWithShift) {
    dial().addNotchAt(0.5f);
    const auto moveTo = [this](int x, Qt::KeyboardModifiers modifiers) {
        const QPointF at = kMiddle + QPoint(x, 0);
        QMouseEvent move(QEvent::MouseMove, at, at, Qt::NoButton, Qt::LeftButton, modifiers);
        QCoreApplication::sendEvent(&window(), &move);
    };
    QTest::mousePress(&window(), Qt::LeftButton, {}, kMiddle);
    moveTo(100, {});
    EXPECT_EQ(dial().normalisedValue(), 0.5f);
    moveTo(110, Qt::ShiftModifier);
    EXPECT_NEAR(dial().normalisedValue(), 0.505, 1e-6) << "no jump, no notch";
    moveTo(130, {});
    EXPECT_NEAR(dial().normalisedValue(), 0.605, 1e-6);
}

TEST_F(DialViewTest, tellsDoubleTapsFromDrags) {
    QSignalSpy taps(&dial(), &DialView::doubleTapped);
    tapWithFinger();
    EXPECT_EQ(taps.count(), 0);
    tapWithFinger();
    EXPECT_EQ(taps.count(), 1);
    tapWithFinger();
    EXPECT_EQ(taps.count(), 1) << "a third tap begins anew";
    m_fingers.press(1, kMiddle);
    m_fingers.move(1, kMiddle + QPoint(30, 0));
    m_fingers.move(1, kMiddle);
    m_fingers.release(1);
    EXPECT_EQ(taps.count(), 1);
    QTest::mouseDClick(&window(), Qt::LeftButton, {}, kMiddle);
    EXPECT_EQ(taps.count(), 2);
    QTest::keyClick(&window(), Qt::Key_Return);
    EXPECT_EQ(taps.count(), 3);
}

TEST_F(DialViewTest, speaksOnceAfterAQuickTurn) {
    dial().setMaxValue(4);
    dial().accessibilityIncrement();
    EXPECT_FLOAT_EQ(dial().value(), 0.05f) << "a step in the dial's own units";
    dial().accessibilityDecrement();
    EXPECT_EQ(dial().value(), 0.f);
    EXPECT_TRUE(m_reported.empty());
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
    auto* counting = new CountingDial(&parent());
    counting->setPosition({100, 100});
    m_fingers.press(1, kMiddle + QPoint(100, 0));
    for (int points = 1; points < 20; ++points)
        m_fingers.move(1, kMiddle + QPoint(100 + points, 0));
    EXPECT_EQ(counting->announcements, 0);
    EXPECT_TRUE(QTest::qWaitFor([counting] { return counting->announcements > 0; }));
    QTest::qWait(600);
    EXPECT_EQ(counting->announcements, 1);
}

TEST_F(DialViewTest, drawsWhatChangesInItsPlace) {
    EXPECT_LT(lightAt(dial().lampCentre(12)), 100);
    dial().setValue(1);
    for (const std::uint32_t lamp : {0u, 12u, 15u})
        EXPECT_GT(lightAt(dial().lampCentre(lamp)), 180) << lamp;
    EXPECT_GT(lightAt(dial().notchCentre()), 180);
    dial().setValue(0.25f);
    EXPECT_LT(lightAt(dial().lampCentre(12)), 100);
    EXPECT_GT(lightAt(dial().lampCentre(3)), 180);
}
