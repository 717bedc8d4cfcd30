#pragma once

#include <QObject>
#include <QString>

/// The audio devices as the settings screen offers them. [main]
class AudioSetup : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString state READ state NOTIFY changed)

  public:
    /// The audio server in words.
    QString state() const { return m_state; }

  Q_SIGNALS:
    void changed();
    /// One line for the user: a device was lost, or came back.
    void told(const QString& line);

  private:
    QString m_state;
};
