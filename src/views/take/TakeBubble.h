#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QString>

#include "bubbles/PopupBubbleView.h"

/// The bubble at the microphone button, while there is a text for it. Its arrow points at the
/// middle of the target, a quarter of its height down. [main]
class TakeBubble : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem* target READ target WRITE setTarget NOTIFY targetChanged)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)

  public:
    using QObject::QObject;
    ~TakeBubble() override { drop(); }

    QQuickItem* target() const { return m_target; }
    void setTarget(QQuickItem* target);
    const QString& text() const { return m_text; }
    /// The bubble is as wide as its first text needs. Empty: none.
    void setText(const QString& text);

  Q_SIGNALS:
    void targetChanged();
    void textChanged();

  private:
    void show();
    void drop();

    QPointer<QQuickItem> m_target;
    QPointer<PopupBubbleView> m_bubble;
    QString m_text;
};
