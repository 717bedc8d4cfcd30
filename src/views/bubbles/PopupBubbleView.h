#pragma once

#include <QColor>
#include <QPainterPath>
#include <QPointer>
#include <QQuickItem>

#include "bubbles/BubbleLabel.h"

/// A bubble with a line of text that floats above a target and points at it, from its making until
/// `dismiss`. The container owns it and lets it fade away; without a container it is the caller's
/// until it is dismissed. Whoever makes one says where its arrow points. [main]
class PopupBubbleView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(BubbleLabel* textLabel READ textLabel CONSTANT)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(QColor colour READ colour WRITE setColour NOTIFY colourChanged)
    Q_PROPERTY(QQuickItem* target READ target WRITE setTarget NOTIFY targetChanged)
    Q_PROPERTY(QPointF arrowTarget READ arrowTarget WRITE setArrowTarget)

  public:
    /// Appears in the container, first at the upper left with its tip at (0, 0).
    PopupBubbleView(QQuickItem* target, QQuickItem* container);
    /// Made by QML, where it is declared: it has no target, and shows at once.
    explicit PopupBubbleView(QQuickItem* parent = nullptr);

    static PopupBubbleView* popupBubbleWithTarget(QQuickItem* target, QQuickItem* container);
    /// In the target's own parent.
    static PopupBubbleView* popupBubbleWithTarget(QQuickItem* target);

    BubbleLabel* textLabel() const { return m_textLabel; }
    QString text() const { return m_textLabel->text(); }
    void setText(const QString& text) { m_textLabel->setText(text); }
    /// Stored only.
    QColor colour() const { return m_colour; }
    void setColour(const QColor& colour);
    QQuickItem* target() const { return m_target; }
    void setTarget(QQuickItem* target);

    /// Where the tip of the arrow points, in the target's coordinates; (0, 0) of the container's
    /// while there is no container or no target.
    QPointF arrowTarget() const;
    void setArrowTarget(QPointF point);
    /// Moves the bubble sideways until it lies within its container; the arrow stays where it
    /// points, as far as the body reaches.
    void keepInside();

    /// As wide as the text needs, about the same middle.
    Q_INVOKABLE void sizeToFit();
    /// Fades, and is gone half a second later. Keep no pointer to it.
    Q_INVOKABLE void dismiss();
    /// The outline of the bubble in its own coordinates.
    QPainterPath newBubblePath() const;

    QRectF frame() const { return {position(), size()}; }

  Q_SIGNALS:
    void textChanged();
    void colourChanged();
    void targetChanged();

  protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& value) override;

  private:
    void setFrame(const QRectF& frame);
    void shiftArrow(qreal shift);
    void fadeTo(qreal opacity);
    void redraw();

    BubbleLabel* m_textLabel;
    QPointer<QQuickItem> m_target;
    QColor m_colour;
    qreal m_shift = 0;  // of the arrow, from the middle
    bool m_redraw = true;
};
