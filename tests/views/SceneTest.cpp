#include "SceneTest.h"

#include <QQmlComponent>
#include <QTest>
#include <cstdlib>

namespace {

QQuickItem* itemBelow(QQuickItem* top, const QString& name) {
    for (QQuickItem* item : top->childItems()) {
        QQuickItem* const found = !item->isVisible()           ? nullptr
                                  : item->objectName() == name ? item
                                                               : itemBelow(item, name);
        if (found)
            return found;
    }
    return nullptr;
}

}  // namespace

void SceneTest::SetUp() {
    setenv("OMBRIX_DATA", m_folder.path().c_str(), 1);
    setenv("XDG_CONFIG_HOME", m_folder.path().c_str(), 1);
    m_controller = std::make_unique<OmbrixViewController>();
    m_controller->viewDidLoad();
    m_engine.addImportPath("qrc:/qt/qml");
    QQmlComponent component(&m_engine);
    component.setData(m_qml, QUrl("qrc:/test.qml"));
    m_made.reset(component.createWithInitialProperties(
        {{"controller", QVariant::fromValue(m_controller.get())}}));
    ASSERT_TRUE(m_made) << qPrintable(component.errorString());
    m_window = qobject_cast<QQuickWindow*>(m_made.get());
    m_window->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(m_window));
    ASSERT_TRUE(QTest::qWaitFor([this] { return !m_controller->arriving(); }));
    m_fingers = std::make_unique<Fingers>(*m_window);
}

QQuickItem* SceneTest::item(const QString& name) {
    return itemBelow(m_window->contentItem(), name);
}

bool SceneTest::comes(const QString& name) {
    return QTest::qWaitFor([&] { return item(name) != nullptr; });
}

bool SceneTest::goes(const QString& name) {
    return QTest::qWaitFor([&] { return item(name) == nullptr; });
}

bool SceneTest::hasFocus(const QString& name) {
    QQuickItem* const found = item(name);
    return found && found->hasActiveFocus();
}

QPoint SceneTest::middleOf(const QString& name) {
    QQuickItem* const found = item(name);
    EXPECT_TRUE(found) << qPrintable(name);
    return found ? found->mapToScene({found->width() / 2, found->height() / 2}).toPoint()
                 : QPoint();
}

void SceneTest::click(const QString& name) {
    QTest::mouseClick(m_window, Qt::LeftButton, {}, middleOf(name));
}

void SceneTest::tap(const QString& name) {
    const QPoint at = middleOf(name);
    m_fingers->press(5, at);
    m_fingers->release(5);
}

void SceneTest::key(Qt::Key key) {
    QTest::keyClick(m_window, key);
}
