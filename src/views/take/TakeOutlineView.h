#pragma once

#include <QColor>
#include <QPointer>
#include <QQuickItem>

#include "screens/TakeScreen.h"

/// The outline of a take while it grows from the left; the width is the longest take. Only columns
/// that are new or have grown are drawn anew. [main]
class TakeOutlineView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(TakeScreen* take READ take WRITE setTake NOTIFY takeChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)

  public:
    explicit TakeOutlineView(QQuickItem* parent = nullptr);

    TakeScreen* take() const { return m_take; }
    void setTake(TakeScreen* take);
    QColor color() const { return m_color; }
    void setColor(const QColor& color);

  Q_SIGNALS:
    void takeChanged();
    void colorChanged();

  protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;

  private:
    void look();
    void redraw();
    QRectF frameOf(int column) const;

    QPointer<TakeScreen> m_take;
    QColor m_color = Qt::white;
    std::vector<TakeOutline::Column> m_columns;  // as they were shown last
    int m_drawn = 0;                             // columns that will not change any more
};
