#pragma once

#include <QObject>
#include <QString>

class iPadTutorialManager;

/// One page of a tutorial, as its popover shows it. A plain value.
class iPadTutorialViewController {
    Q_GADGET
    Q_PROPERTY(QString message READ message)
    Q_PROPERTY(bool isLast READ isLast)
    Q_PROPERTY(QString title READ title)
    Q_PROPERTY(QString buttonTitle READ buttonTitle)

  public:
    iPadTutorialViewController() = default;
    /// The manager, not owned, is asked for the next page.
    iPadTutorialViewController(QString message, iPadTutorialManager* manager, bool isLast)
        : m_message(std::move(message)), m_manager(manager), m_isLast(isLast) {}

    const QString& message() const { return m_message; }
    bool isLast() const { return m_isLast; }
    QString title() const;
    /// "Done" on the last page, "Next" before.
    QString buttonTitle() const;
    /// The button was pressed.
    Q_INVOKABLE void next() const;

  private:
    QString m_message;
    iPadTutorialManager* m_manager = nullptr;
    bool m_isLast = false;
};
