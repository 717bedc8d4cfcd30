#pragma once

#include <QObject>
#include <QString>
#include <functional>

/// An alert: a title, a message, a cancel button, and perhaps one other. [main]
class AlertController : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(QString cancel READ cancel NOTIFY changed)
    Q_PROPERTY(QString other READ other NOTIFY changed)
    Q_PROPERTY(bool destructive READ destructive NOTIFY changed)
    Q_PROPERTY(bool shown READ shown NOTIFY changed)

  public:
    struct Alert {
        std::uint32_t tag = 0;  // a four-character code
        QString title;
        QString message;
        QString cancel;
        QString other;             // empty: only the cancel button
        bool destructive = false;  // what the other button does cannot be undone
    };
    /// Hears the tag of the alert and which button was clicked: 0 cancel, 1 the other.
    using Answer = std::function<void(std::uint32_t tag, int button)>;

    QString title() const { return m_alert.title; }
    QString message() const { return m_alert.message; }
    QString cancel() const { return m_alert.cancel; }
    QString other() const { return m_alert.other; }
    bool destructive() const { return m_alert.destructive; }
    bool shown() const { return m_shown; }
    std::uint32_t tag() const { return m_alert.tag; }

    /// Replaces one that is shown, which counts as cancelled.
    void show(Alert alert, Answer answer);
    Q_INVOKABLE void clickedButtonAtIndex(int button);
    /// Cancels it. False when none was shown.
    Q_INVOKABLE bool dismiss();

  Q_SIGNALS:
    void changed();

  private:
    Alert m_alert;
    Answer m_answer;
    bool m_shown = false;
};
