#pragma once

#include <QObject>
#include <QString>

#include "runloop/RunLoop.h"

/// The calm line at the edge of the screen that says what happened and what to do. The latest one
/// stands until it is closed, or a while has passed. [main]
class Notices : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString text READ text NOTIFY changed)

  public:
    static constexpr double kShownSeconds = 12;

    ~Notices() override;

    QString text() const { return m_text; }
    void tell(const std::string& line);
    Q_INVOKABLE void close();

  Q_SIGNALS:
    void changed();

  private:
    QString m_text;
    RunLoop::Token m_timer = 0;  // 0: none
};
