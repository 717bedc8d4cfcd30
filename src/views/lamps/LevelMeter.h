#pragma once

#include <QColor>
#include <QQuickItem>

/// A row of segments, of which a level lights some: each stands for four decibels, the last one for
/// full scale. Redraws only when another number of them is lit. [main]
class LevelMeter : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// Peak, 1 is full scale.
    Q_PROPERTY(float level READ level WRITE setLevel NOTIFY levelChanged)
    Q_PROPERTY(int litSegments READ litSegments NOTIFY levelChanged)
    Q_PROPERTY(QColor litColour READ litColour WRITE setLitColour NOTIFY coloursChanged)
    Q_PROPERTY(QColor unlitColour READ unlitColour WRITE setUnlitColour NOTIFY coloursChanged)

  public:
    static constexpr int kSegments = 12;
    static constexpr float kSegmentDecibels = 4;

    explicit LevelMeter(QQuickItem* parent = nullptr);

    float level() const { return m_level; }
    void setLevel(float level);
    /// 0 to kSegments; anything above -48 dB lights the first.
    int litSegments() const { return m_lit; }
    QColor litColour() const { return m_litColour; }
    void setLitColour(const QColor& colour);
    QColor unlitColour() const { return m_unlitColour; }
    void setUnlitColour(const QColor& colour);

  Q_SIGNALS:
    void levelChanged();
    void coloursChanged();

  protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;

  private:
    QRectF segment(int index) const;

    float m_level = 0;
    int m_lit = 0;
    QColor m_litColour = Qt::white;
    QColor m_unlitColour = Qt::black;
};
