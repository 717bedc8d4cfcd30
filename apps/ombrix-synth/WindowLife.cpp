#include "WindowLife.h"

#include "screens/OmbrixAppDelegate.h"

WindowLife::WindowLife(OmbrixAppDelegate& delegate, QWindow& window)
    : m_delegate(delegate), m_window(window) {
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, &WindowLife::look);
    connect(&window, &QWindow::visibilityChanged, this, &WindowLife::look);
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this,
            [this] { become(Life::background); });
    connect(qGuiApp, &QGuiApplication::aboutToQuit, this,
            [this] { m_delegate.applicationWillTerminate(); });
}

void WindowLife::look() {
    const auto visibility = m_window.visibility();
    const auto state = QGuiApplication::applicationState();
    if (visibility == QWindow::Hidden || visibility == QWindow::Minimized ||
        state < Qt::ApplicationInactive)
        become(Life::background);
    else
        become(state == Qt::ApplicationActive ? Life::active : Life::inactive);
}

// From the background the window comes back first, then perhaps without the focus.
void WindowLife::become(Life life) {
    if (life == m_life)
        return;
    const Life before = m_life;
    m_life = life;
    if (life == Life::background)
        return m_delegate.applicationDidEnterBackground();
    if (before == Life::background)
        m_delegate.applicationWillEnterForeground();
    if (life == Life::inactive)
        m_delegate.applicationWillResignActive();
    else if (before == Life::inactive)
        m_delegate.applicationDidBecomeActive();
}
