#pragma once

#include <QGuiApplication>
#include <QWindow>

class OmbrixAppDelegate;

/// Tells the application what becomes of its window and its session: the window without the focus
/// is inactive; hidden, minimised or suspended it is in the background; the end of the session
/// saves at once, because nothing may come after it. [main]
class WindowLife : public QObject {
    Q_OBJECT

  public:
    /// None is owned.
    WindowLife(OmbrixAppDelegate& delegate, QWindow& window);

  private:
    enum class Life { active, inactive, background };

    void look();
    void become(Life life);

    OmbrixAppDelegate& m_delegate;
    QWindow& m_window;
    Life m_life = Life::active;  // as after the start, whoever has the focus
};
