#pragma once

#include <QtQml/qqmlregistration.h>
#include <QPointer>
#include <QQuickItem>
#include <vector>

#include "tutorial/PopoverPlacement.h"

/// Finds the item of a name on a stage and says where a popover beside it goes; it follows the item
/// when the window is laid out anew. Everything in the stage's coordinates. [main]
class PopoverAnchor : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem* stage READ stage WRITE setStage NOTIFY changed)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY changed)
    Q_PROPERTY(QSizeF size READ size WRITE setSize NOTIFY changed)
    Q_PROPERTY(bool found READ found NOTIFY changed)
    Q_PROPERTY(QRectF frame READ frame NOTIFY changed)
    Q_PROPERTY(QPointF tip READ tip NOTIFY changed)

  public:
    using QObject::QObject;

    /// The item whose visible descendants are looked through, and whose bounds the popover keeps.
    QQuickItem* stage() const { return m_stage; }
    void setStage(QQuickItem* stage);
    /// The object name of the item that is pointed at. Setting it looks for the item anew.
    const QString& name() const { return m_name; }
    void setName(const QString& name);
    /// Of the popover, without its arrow.
    QSizeF size() const { return m_size; }
    void setSize(QSizeF size);

    bool found() const { return m_item; }
    QRectF frame() const { return m_placement.frame; }
    QPointF tip() const { return m_placement.tip; }

  Q_SIGNALS:
    void changed();

  private:
    void find();
    void follow();
    void place();

    QPointer<QQuickItem> m_stage;
    QPointer<QQuickItem> m_item;
    QString m_name;
    QSizeF m_size;
    PopoverPlacement m_placement;
    std::vector<QMetaObject::Connection> m_followed;
};
