#include "bubbles/PopupBubbleView.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <cmath>

#include "ShownItem.h"
#include "bubbles/RoundRectView.h"
#include "bubbles/SimpleGradientLayer.h"

namespace {

struct Scene {
    Scene() {
        target->setPosition({80, 60});
        target->setSize({40, 40});
    }
    ShownItem shown{ShownItem::fromQml("import QtQuick; Rectangle { width: 200; height: 120 }")};
    QQuickItem& container = shown.as<QQuickItem>();
    QQuickItem* target = new QQuickItem(&container);
};

}  // namespace

TEST(PopupBubbleViewTest, pointsWhereItIsTold) {
    Scene scene;
    auto* bubble = PopupBubbleView::popupBubbleWithTarget(scene.target);
    EXPECT_EQ(bubble->parentItem(), &scene.container);
    EXPECT_EQ(bubble->frame(), QRectF(-64, -46, 128, 46));
    bubble->setArrowTarget({20, -10});  // (100, 50) of the container
    EXPECT_EQ(bubble->frame(), QRectF(36, 4, 128, 46));
    EXPECT_EQ(bubble->arrowTarget(), QPointF(20, -10));
}

TEST(PopupBubbleViewTest, fitsItsTextAboutItsMiddle) {
    Scene scene;
    auto* bubble = PopupBubbleView::popupBubbleWithTarget(scene.target);
    for (const char* text :
         {"", "5", "1.00x", "0.50x (Synced)", "a text that is wider than it was"}) {
        bubble->setArrowTarget({20, -10});
        const qreal left = bubble->x() + std::trunc(bubble->width() / 2);
        bubble->setText(text);
        bubble->sizeToFit();
        const QQuickItem& label = *bubble->textLabel();
        EXPECT_GE(bubble->width(), label.width() + 15);
        EXPECT_LE(bubble->width(), label.width() + 17);
        EXPECT_NEAR(bubble->x(), left - std::trunc(bubble->width() / 2), 0.5) << text;
        EXPECT_EQ(bubble->y(), 4);
        EXPECT_EQ(bubble->height(), 46);
        EXPECT_NEAR(label.y() + label.height() / 2, 19, 0.5);
        EXPECT_EQ(label.x(), std::floor(label.x()));
    }
}

TEST(PopupBubbleViewTest, hasRoundCornersAndAnArrow) {
    PopupBubbleView bubble;
    const QPainterPath path = bubble.newBubblePath();
    EXPECT_EQ(path.elementAt(0), QPointF(64, 0));
    EXPECT_EQ(path.boundingRect(), QRectF(0, 0, 128, 46));
    for (const QPointF inside :
         {QPointF(4, 4), QPointF(124, 34), QPointF(64, 45), QPointF(57.5, 38.4)})
        EXPECT_TRUE(path.contains(inside)) << inside.x();
    for (const QPointF outside :
         {QPointF(1, 1), QPointF(127, 37), QPointF(55, 39), QPointF(60, 45)})
        EXPECT_FALSE(path.contains(outside)) << outside.x();
    bubble.setWidth(10);
    EXPECT_FALSE(bubble.newBubblePath().contains(QPointF(1, 1)));
}

TEST(PopupBubbleViewTest, fadesAndIsGone) {
    Scene scene;
    QPointer<PopupBubbleView> bubble = PopupBubbleView::popupBubbleWithTarget(scene.target);
    EXPECT_EQ(bubble->opacity(), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return bubble->opacity() == 1; }));
    bubble->dismiss();
    delete scene.target;
    EXPECT_EQ(bubble->arrowTarget(), QPointF());
    EXPECT_TRUE(QTest::qWaitFor([&] { return bubble->opacity() == 0; }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return bubble.isNull(); }));
    EXPECT_TRUE(scene.container.childItems().isEmpty());
}

TEST(PopupBubbleViewTest, isGlossyAndCastsAShadow) {
    Scene scene;
    auto* bubble = PopupBubbleView::popupBubbleWithTarget(scene.target);
    bubble->setArrowTarget({20, 0});  // (36, 14)
    EXPECT_TRUE(QTest::qWaitFor([&] { return bubble->opacity() == 1; }));
    const QImage picture = scene.shown.picture();
    const auto light = [&picture](int x, int y) { return qGray(picture.pixel(x, y)); };
    EXPECT_GT(light(60, 14 + 18), light(60, 14 + 22) + 30) << "the step in the middle";
    EXPECT_LT(light(60, 14 + 36), 60);
    EXPECT_LT(light(60, 14 + 41), 225) << "the shadow falls below";
    EXPECT_LT(light(60, 14 + 41), light(60, 12)) << "more than above";
    EXPECT_EQ(light(10, 60), 255);
}

TEST(DrawingHelpersTest, fillTheirShapes) {
    ShownItem shown(ShownItem::fromQml(
        "import QtQuick; import Ombrix.Views; Rectangle { width: 80; height: 40; color: \"red\"\n"
        "RoundRectView { width: 40; height: 40; borderRadius: 10 }\n"
        "SimpleGradientLayer { x: 40; width: 40; height: 40; a: Qt.point(0, 10); b: Qt.point(0, "
        "30)\n"
        "gradient: [[0, \"black\"], [1, \"white\"]] } }"));
    const QImage picture = shown.picture();
    EXPECT_EQ(picture.pixelColor(1, 1), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(20, 20), QColor(Qt::black));
    EXPECT_EQ(picture.pixelColor(60, 2), QColor(Qt::black));
    EXPECT_EQ(picture.pixelColor(60, 38), QColor(Qt::white));
    EXPECT_NEAR(picture.pixelColor(60, 20).red(), 128, 8);
    EXPECT_EQ(SimpleGradientLayer(QSizeF(7, 9)).b(), QPointF(0, 9));
}

TEST(ShadyLabelTest, isPushedByMouseAndKeys) {
    ShownItem shown(ShownItem::fromQml("import Ombrix.Views; ShadyLabel { text: \"Done\" }"));
    QSignalSpy clicks(&shown.as<QQuickItem>(), SIGNAL(clicked()));
    const QPoint middle = shown.as<QQuickItem>().boundingRect().center().toPoint();
    EXPECT_GT(qGray(shown.picture().pixel(10, middle.y())), 0);
    QTest::mouseClick(&shown.window(), Qt::LeftButton, {}, middle);
    EXPECT_EQ(clicks.count(), 1);
    QTest::keyClick(&shown.window(), Qt::Key_Space);
    QTest::keyClick(&shown.window(), Qt::Key_Return);
    EXPECT_EQ(clicks.count(), 3);
    shown.as<QQuickItem>().setEnabled(false);
    QTest::mouseClick(&shown.window(), Qt::LeftButton, {}, middle);
    EXPECT_EQ(clicks.count(), 3);
}
