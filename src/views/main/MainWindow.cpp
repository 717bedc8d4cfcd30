#include "main/MainWindow.h"

#include "screens/OmbrixViewController.h"

// Shown when its size is known, so that it is laid out once.
MainWindow::MainWindow(OmbrixViewController& controller) {
    m_engine.addImportPath("qrc:/qt/qml");
    m_engine.setInitialProperties({{"controller", QVariant::fromValue(&controller)}});
    m_engine.load(QUrl("qrc:/qt/qml/Ombrix/Views/main/Main.qml"));
    if (!window())
        return;
    m_place = std::make_unique<WindowPlace>(*window(), controller.defaults());
    window()->show();
    QObject::connect(window(), &QQuickWindow::frameSwapped, &controller,
                     &OmbrixViewController::windowShown,
                     Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
}

QQuickWindow* MainWindow::window() const {
    const auto roots = m_engine.rootObjects();
    return roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(roots.first());
}
