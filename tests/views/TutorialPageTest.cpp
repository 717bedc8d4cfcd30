#include <gtest/gtest.h>

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTest>

#include "ScratchFolder.h"
#include "defaults/UserDefaults.h"
#include "screens/iPadTutorialManager.h"
#include "tutorial/PopoverPlacement.h"

namespace {

constexpr auto kView = TutorialAnchor::Kind::view;
constexpr auto kQml = R"(
import QtQuick
import QtQuick.Window
import Ombrix.Views
Window {
    id: window
    required property TutorialManager manager
    width: 640; height: 400; visible: true; color: "white"
    Item {
        y: 200
        Item { objectName: "low"; x: window.width - 100; y: 100; width: 40; height: 40 }
    }
    Item { objectName: "high"; x: 10; y: 10; width: 40; height: 40 }
    TutorialPage { manager: window.manager }
}
)";

/// The middle of all that is black.
QPoint middleOfPage(const QImage& picture) {
    QRect black;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, y) == Qt::black)
                black |= QRect(x, y, 1, 1);
        }
    }
    return black.isNull() ? QPoint(-1, -1) : black.center();
}

}  // namespace

TEST(TutorialPageTest, pointsAtItsAnchorsUntilItIsDone) {
    ScratchFolder folder;
    UserDefaults defaults(folder.file("defaults"));
    iPadTutorialManager manager({{"Down there.", {kView, "low"}},
                                 {"Up here.", {kView, "high"}},
                                 {"Nowhere.", {kView, "lost"}}},
                                "progress", defaults);
    QQmlEngine engine;
    engine.addImportPath("qrc:/qt/qml");
    QQmlComponent component(&engine);
    component.setData(kQml, {});
    const std::unique_ptr<QObject> made(
        component.createWithInitialProperties({{"manager", QVariant::fromValue(&manager)}}));
    ASSERT_TRUE(made) << qPrintable(component.errorString());
    auto& window = *qobject_cast<QQuickWindow*>(made.get());
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const auto middle = [&] { return middleOfPage(window.grabWindow()); };
    EXPECT_EQ(middle(), QPoint(-1, -1));

    manager.show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return std::abs(middle().x() - 560) < 15; }));
    EXPECT_LT(middle().y(), 290) << "above its anchor";
    window.resize(500, 400);
    EXPECT_TRUE(QTest::qWaitFor([&] { return std::abs(middle().x() - 420) < 15; }));

    QTest::keyClick(&window, Qt::Key_Return);
    EXPECT_EQ(manager.progress(), 2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return middle().x() < 200; }));
    EXPECT_GT(middle().y(), 60) << "below, where there is no room above";
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(manager.popover());
    EXPECT_TRUE(QTest::qWaitFor([&] { return middle() == QPoint(-1, -1); }));

    manager.show();
    EXPECT_FALSE(manager.popover()) << "the window has nothing of this name";
}

TEST(TutorialPageTest, keepsWithinBoundsAndPointsFromItsEdge) {
    const QRectF bounds(0, 0, 400, 300);
    const QSizeF size(200, 100);
    for (int x = -20; x <= 400; x += 20) {
        for (int y = -20; y <= 300; y += 20) {
            const QRectF anchor(x, y, 20, 20);
            const auto place = PopoverPlacement::beside(anchor, size, bounds);
            SCOPED_TRACE(testing::Message() << x << ' ' << y);
            EXPECT_TRUE(bounds.contains(place.frame));
            EXPECT_FALSE(place.frame.contains(place.tip));
            EXPECT_TRUE(place.frame.adjusted(-10, -10, 10, 10).contains(place.tip));
            EXPECT_FALSE(place.frame.intersects(anchor));
        }
    }
    using Placement = PopoverPlacement;
    EXPECT_EQ(Placement::beside({0, 10, 30, 280}, size, bounds).side, Placement::right);
    EXPECT_EQ(Placement::beside({370, 10, 30, 280}, size, bounds).side, Placement::left);
    EXPECT_TRUE(bounds.contains(Placement::beside(bounds, size, bounds).frame));
    Placement::beside(bounds, {900, 900}, bounds);
}
