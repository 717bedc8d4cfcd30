#pragma once

#include <QColor>
#include <QPointer>
#include <array>

#include "notifications/NotificationCentre.h"
#include "screens/WaveSelection.h"
#include "wave/FrameClock.h"
#include "wave/WaveRangeHandle.h"
#include "wave/WaveView2.h"

/// The selected stretch over a wave view of the same place and size: what is not selected lies in
/// the shade, and the two edges are dragged by handles, which alone take touches. An edge snaps to
/// a zero crossing near the finger, unless Shift is held, pushes the other along, and near the end
/// of the view scrolls it. Looks again at every notice of the selection. [main]
class WaveRangeView2 : public QQuickItem, private WaveRangeHandleDelegate {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(WaveView2* view READ view WRITE setView NOTIFY viewChanged)
    Q_PROPERTY(WaveSelection* selection READ selection WRITE setSelection NOTIFY selectionChanged)
    Q_PROPERTY(QColor lineColour MEMBER m_lineColour NOTIFY coloursChanged)
    Q_PROPERTY(QColor shadeColour MEMBER m_shadeColour NOTIFY coloursChanged)
    Q_PROPERTY(WaveRangeHandle* startHandle READ startHandle CONSTANT)
    Q_PROPERTY(WaveRangeHandle* stopHandle READ stopHandle CONSTANT)
    Q_PROPERTY(bool held READ isHeld NOTIFY heldChanged)
    Q_PROPERTY(QString lengthText READ lengthText NOTIFY laidOut)
    Q_PROPERTY(QRectF selectedFrame READ selectedFrame NOTIFY laidOut)

  public:
    /// Points from the finger to a zero crossing that an edge snaps to.
    static constexpr qreal kSnap = 6;

    explicit WaveRangeView2(QQuickItem* parent = nullptr);
    ~WaveRangeView2() override;

    // Neither is owned; both may go before the item.
    WaveView2* view() const { return m_view; }
    void setView(WaveView2* view);
    WaveSelection* selection() const { return m_selection; }
    void setSelection(WaveSelection* selection);

    WaveRangeHandle* startHandle() const { return m_handles[WaveRangeEdges::atStart]; }
    WaveRangeHandle* stopHandle() const { return m_handles[WaveRangeEdges::atStop]; }
    /// Whether a handle is.
    bool isHeld() const;
    QString lengthText() const;
    /// What is not in the shade, in points, as far as it is in view.
    QRectF selectedFrame() const { return m_selected; }

  Q_SIGNALS:
    void viewChanged();
    void selectionChanged();
    void coloursChanged();
    void heldChanged();
    void laidOut();

  protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;

  private:
    /// Of a finger on a handle.
    struct Drag {
        bool active = false;
        bool scrolls = false;  // it has been moved far enough to mean it
        qreal began = 0;
        qreal x = 0;  // where the edge is wanted
    };

    void handleDragged(WaveRangeHandle& handle, qreal edgeX) override;
    void handleLetGo(WaveRangeHandle& handle) override;
    void handleDoubleTapped(WaveRangeHandle& handle) override;
    void handleStepped(WaveRangeHandle& handle, int steps, bool ofFrames) override;
    void handleSentTo(WaveRangeHandle& handle, bool end) override;
    void handleFocused(WaveRangeHandle& handle) override;

    bool mayBeMoved() const;
    bool isInView(int frame) const;
    void layOut();
    void placeHandle(WaveRangeHandle& handle, qreal waveHeight);
    WaveRangeEdges edges() const;
    void move(WaveRangeEdges::Edge edge, int frame);
    void follow(WaveRangeEdges::Edge edge);
    void bringIntoView(WaveRangeEdges::Edge edge);
    qreal framesPerPoint() const;
    qreal scrollSpeed(const Drag& drag) const;
    void scroll(double seconds);
    void runClock();

    QPointer<WaveView2> m_view;
    QPointer<WaveSelection> m_selection;
    QColor m_lineColour = Qt::yellow;
    QColor m_shadeColour = QColor(0, 0, 0, 128);
    std::array<WaveRangeHandle*, 2> m_handles;
    std::array<Drag, 2> m_drags;
    QRectF m_selected;
    bool m_shown = false;  // there is something to select from
    FrameClock m_clock{[this](double seconds) { scroll(seconds); }};
    NotificationCentre::Token m_observer;
};
