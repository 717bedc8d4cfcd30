#include "ShownItem.h"

#include <gtest/gtest.h>

#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

ShownItem::ShownItem(std::unique_ptr<QQuickItem> item) : m_item(std::move(item)) {
    m_window.resize(m_item->size().toSize());
    m_item->setParentItem(m_window.contentItem());
    m_window.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_window));
}

std::unique_ptr<QQuickItem> ShownItem::fromQml(const std::string& qml) {
    static QQmlEngine engine;
    engine.addImportPath("qrc:/qt/qml");
    QQmlComponent component(&engine);
    component.setData(QByteArray::fromStdString(qml), QUrl("qrc:/test.qml"));
    std::unique_ptr<QObject> made(component.create());
    EXPECT_TRUE(made) << qPrintable(component.errorString());
    return std::unique_ptr<QQuickItem>(qobject_cast<QQuickItem*>(made.release()));
}

QImage ShownItem::picture() {
    return m_window.grabWindow();
}
