#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QWindow>

class UserDefaults;

/// Remembers how large the window was, and whether it filled the screen, in the user default
/// "window". [main]
class WindowPlace : public QObject {
    Q_OBJECT

  public:
    /// Gives the window what was kept. Neither is owned, both outlive it.
    WindowPlace(QWindow& window, UserDefaults& defaults);
    ~WindowPlace() override;

  private:
    bool eventFilter(QObject* window, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void restore();
    void keep();

    QWindow& m_window;
    UserDefaults& m_defaults;
    QSize m_size;           // when it does not fill the screen
    QBasicTimer m_resting;  // since the last change
};
