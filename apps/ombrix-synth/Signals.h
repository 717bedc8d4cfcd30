#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <memory>

/// What the outside asks by signals, as calls on the main thread: SIGTERM, SIGINT and (unless it is
/// ignored) SIGHUP to end, SIGUSR1 to silence everything. One to a program. [main]
class Signals : public QObject {
    Q_OBJECT

  public:
    Signals();
    ~Signals() override;

  Q_SIGNALS:
    void stopWanted();
    void silenceWanted();

  private:
    void read();

    std::unique_ptr<QSocketNotifier> m_notifier;
};
