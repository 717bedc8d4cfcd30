#pragma once

#include <QFont>
#include <QQuickPaintedItem>

/// A line of bold white text, centred, with a dark upper edge. Text wider than the label is
/// shortened. [main]
class BubbleLabel : public QQuickPaintedItem {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)

  public:
    explicit BubbleLabel(QQuickItem* parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString& text);
    /// As large as its text; the position stays.
    void sizeToFit();

    void paint(QPainter* painter) override;

  Q_SIGNALS:
    void textChanged();

  private:
    QFont m_font;
    QString m_text;
};
