#pragma once

#include <QObject>
#include <QTimer>

/// Turns the main run loop from Qt's event loop: sleeps until the next call is due, and wakes when
/// another thread or a handler has added one. Also formats what the audio thread had to say. [main]
class MainLoop : public QObject {
    Q_OBJECT

  public:
    MainLoop();
    ~MainLoop() override;

  private:
    void turn();
    void sleep();

    QTimer m_timer;
};
