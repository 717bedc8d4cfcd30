#pragma once

#include <QDBusPendingCallWatcher>
#include <QObject>
#include <QTimer>
#include <memory>

class OmbrixViewController;

/// Asks the desktop to leave the screen on while notes sound or something is recorded, and for a
/// short while after. Without a session bus, or a desktop that answers, nothing happens. [main]
class ScreenAwake : public QObject {
    Q_OBJECT

  public:
    /// Not owned.
    explicit ScreenAwake(OmbrixViewController& controller);
    ~ScreenAwake() override;

  private:
    enum class Service { screenSaver, portal, none };

    void look();
    void inhibit();
    void answered();
    void release();

    OmbrixViewController& m_controller;
    QTimer m_quiet;  // runs since nothing sounds
    Service m_service = Service::screenSaver;
    bool m_wanted = false;
    QVariant m_hold;  // what the desktop answered; invalid for none
    std::unique_ptr<QDBusPendingCallWatcher> m_asking;
};
