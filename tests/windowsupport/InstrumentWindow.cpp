#include "InstrumentWindow.h"

#include <qpa/qplatformdrag.h>
#include <qpa/qwindowsysteminterface.h>

#include <QMimeData>
#include <QTest>
#include <QUrl>
#include <stdexcept>

InstrumentWindow::InstrumentWindow(QSize size) {
    m_delegate.didFinishLaunchingWithOptions({});
    m_window = std::make_unique<MainWindow>(controller());
    if (!m_window->window())
        throw std::runtime_error("there is no window");
    window().resize(size);
    if (!QTest::qWaitForWindowExposed(&window()))
        throw std::runtime_error("the window is not shown");
    m_fingers = std::make_unique<Fingers>(window());
    pass(0.3);
}

InstrumentWindow::~InstrumentWindow() {
    m_window.reset();
    m_delegate.applicationWillTerminate();
}

namespace {

QQuickItem* visibleItem(QQuickItem* below, const QString& name) {
    for (QQuickItem* item : below->childItems()) {
        if (!item->isVisible())
            continue;
        if (item->objectName() == name)
            return item;
        if (QQuickItem* const found = visibleItem(item, name))
            return found;
    }
    return nullptr;
}

}  // namespace

QQuickItem* InstrumentWindow::find(const QString& objectName) {
    return visibleItem(window().contentItem(), objectName);
}

QQuickItem& InstrumentWindow::item(const QString& objectName) {
    if (QQuickItem* const found = find(objectName))
        return *found;
    throw std::runtime_error("no visible item " + objectName.toStdString());
}

QPoint InstrumentWindow::placeOf(QQuickItem& item, double across, double down) {
    return item.mapToScene({item.width() * across, item.height() * down}).toPoint();
}

void InstrumentWindow::tap(const QString& objectName) {
    tap(placeOf(item(objectName)));
}

void InstrumentWindow::tap(QPoint at) {
    m_fingers->press(0, at);
    pass(0.05);
    m_fingers->release(0);
    pass(0.05);
}

void InstrumentWindow::drag(QPoint from, QPoint to, int moves) {
    m_fingers->press(0, from);
    for (int i = 1; i <= moves; ++i) {
        m_fingers->move(0, from + (to - from) * i / moves);
        pass(0.016);
    }
    m_fingers->release(0);
    pass(0.05);
}

void InstrumentWindow::drop(const QString& path, QPoint at) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    const auto over = [&](auto event) {
        event(&window(), &data, at, Qt::CopyAction, Qt::LeftButton, Qt::NoModifier);
    };
    over(QWindowSystemInterface::handleDrag);
    over(QWindowSystemInterface::handleDrop);
    pass(0.05);
}

void InstrumentWindow::pass(double seconds) {
    QTest::qWait(static_cast<int>(seconds * 1000));
}

bool InstrumentWindow::comesTo(const std::function<bool()>& truth, double seconds) {
    return QTest::qWaitFor(truth, static_cast<int>(seconds * 1000));
}
