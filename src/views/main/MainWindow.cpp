#include "main/MainWindow.h"

#include "screens/OmbrixViewController.h"

MainWindow::MainWindow(OmbrixViewController& controller) {
    m_engine.addImportPath("qrc:/qt/qml");
    m_engine.setInitialProperties({{"controller", QVariant::fromValue(&controller)}});
    m_engine.load(QUrl("qrc:/qt/qml/Ombrix/Views/main/Main.qml"));
}

QQuickWindow* MainWindow::window() const {
    const auto roots = m_engine.rootObjects();
    return roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(roots.first());
}
