#pragma once

#include <QColor>
#include <QImage>
#include <QPointer>
#include <QQuickItem>

#include "screens/WaveState.h"
#include "wave/OutlineWorker.h"

/// The outline of the whole sound in use. It is gathered in the background; until it is there the
/// one before stays, stretched to the item's size. [main]
class WaveOutline : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(WaveState* wave READ wave WRITE setWave NOTIFY waveChanged)
    Q_PROPERTY(QColor colour MEMBER m_colour NOTIFY coloursChanged)
    Q_PROPERTY(QColor lineColour MEMBER m_lineColour NOTIFY coloursChanged)

  public:
    explicit WaveOutline(QQuickItem* parent = nullptr);

    /// Not owned; may go before the item.
    WaveState* wave() const { return m_wave; }
    void setWave(WaveState* wave);
    /// What it shows; null before the first outline.
    const QImage& picture() const { return m_picture; }

  Q_SIGNALS:
    void waveChanged();
    void coloursChanged();
    /// Another outline is shown.
    void drawn();

  protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& value) override;
    void updatePolish() override;

  private:
    void show(const QImage& picture);

    QPointer<WaveState> m_wave;
    QColor m_colour = Qt::white;
    QColor m_lineColour = Qt::gray;
    QImage m_picture;
    bool m_fresh = false;    // the picture is newer than the texture
    OutlineWorker m_worker;  // goes first: what it makes is for us
};
