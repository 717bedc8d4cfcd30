#pragma once

#include <QBasicTimer>
#include <QColor>
#include <QPointer>
#include <memory>

#include "WaveTiles.h"
#include "screens/VoicesState.h"
#include "screens/WaveHearing.h"
#include "screens/WaveState.h"
#include "touch/FingersItem.h"
#include "wave/FrameClock.h"
#include "wave/TilePictures.h"
#include "wave/WaveGestures.h"
#include "wave/WaveRuler.h"
#include "wave/WaveViewport.h"

/// The sound in use: its outline, or its samples where they are seen apart, over a ruler of times;
/// where it is read by the voices, and where it is heard. Zoomed and scrolled by fingers, wheel,
/// trackpad and keys; a tap plays from there, a held finger scrubs. While nothing moves nothing is
/// drawn. [main]
class WaveView2 : public FingersItem, private WaveTilesDelegate, private WaveGesturesDelegate {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(WaveState* wave READ wave WRITE setWave NOTIFY waveChanged)
    Q_PROPERTY(VoicesState* voices READ voices WRITE setVoices NOTIFY voicesChanged)
    Q_PROPERTY(WaveHearing* hearing READ hearing WRITE setHearing NOTIFY hearingChanged)
    /// Bits of `Interaction`.
    Q_PROPERTY(int interactions READ interactions WRITE setInteractions NOTIFY interactionsChanged)
    /// Frames at the left and the right edge.
    Q_PROPERTY(int viewStart READ viewStart NOTIFY viewChanged)
    Q_PROPERTY(int viewStop READ viewStop NOTIFY viewChanged)
    /// Points that the wave takes from the top; the ruler is below.
    Q_PROPERTY(qreal waveHeight READ waveHeight NOTIFY waveHeightChanged)
    Q_PROPERTY(bool focusVisible READ isFocusVisible NOTIFY focusVisibleChanged)
    /// False: nothing fades.
    Q_PROPERTY(bool motion READ motion WRITE setMotion NOTIFY motionChanged)
    Q_PROPERTY(QColor waveColour MEMBER m_waveColour NOTIFY coloursChanged)
    Q_PROPERTY(QColor backgroundTop MEMBER m_backgroundTop NOTIFY coloursChanged)
    Q_PROPERTY(QColor backgroundBottom MEMBER m_backgroundBottom NOTIFY coloursChanged)
    Q_PROPERTY(QColor lineColour MEMBER m_lineColour NOTIFY coloursChanged)
    Q_PROPERTY(QColor labelColour MEMBER m_labelColour NOTIFY coloursChanged)
    Q_PROPERTY(QColor sampleColour MEMBER m_sampleColour NOTIFY coloursChanged)
    Q_PROPERTY(QColor headColour MEMBER m_headColour NOTIFY coloursChanged)
    Q_PROPERTY(QColor playHeadColour MEMBER m_playHeadColour NOTIFY coloursChanged)

  public:
    enum Interaction { zoomAndScroll = 1, select = 2, scrub = 4 };
    Q_ENUM(Interaction)

    explicit WaveView2(QQuickItem* parent = nullptr);
    ~WaveView2() override;

    // None is owned; all may go before the item.
    WaveState* wave() const { return m_wave; }
    void setWave(WaveState* wave);
    VoicesState* voices() const { return m_voices; }
    void setVoices(VoicesState* voices);
    WaveHearing* hearing() const { return m_hearing; }
    void setHearing(WaveHearing* hearing);

    int interactions() const { return m_interactions; }
    void setInteractions(int interactions);
    bool motion() const { return m_motion; }
    void setMotion(bool motion);
    int viewStart() const { return m_viewport.start(); }
    int viewStop() const { return m_viewport.stop(); }
    qreal waveHeight() const;
    bool isFocusVisible() const { return m_focusVisible && hasActiveFocus(); }
    /// What is shown; null for nothing.
    const std::shared_ptr<WaveSequenceAccess>& sound() const { return m_sound; }
    /// Shows this one, all of it or the same stretch as before; null for none. As `wave` says
    /// where there is one.
    void show(std::shared_ptr<WaveSequenceAccess> sound, bool sameStretch = false);

    /// The frame at a point, within the sound (its end included), and back.
    Q_INVOKABLE int frameAt(double x) const;
    Q_INVOKABLE double xOf(int frame) const { return m_viewport.xOf(frame); }
    /// @param update  a WaveUpdate
    Q_INVOKABLE void setViewFrom(int from, int to, int update);
    Q_INVOKABLE void showAll();
    /// About the middle; closer for a factor above 1.
    Q_INVOKABLE void zoomBy(double factor);
    /// To later frames for positive points.
    Q_INVOKABLE void scrollBy(double points);

    const WaveTiles& tiles() const { return m_tiles; }
    /// What can be made again is let go of.
    void didReceiveMemoryWarning();

  Q_SIGNALS:
    void waveChanged();
    void voicesChanged();
    void hearingChanged();
    void interactionsChanged();
    void motionChanged();
    void viewChanged();
    void waveHeightChanged();
    void focusVisibleChanged();
    void coloursChanged();

  protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void updatePolish() override;
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void timerEvent(QTimerEvent* event) override;
    bool event(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

    void fingerPressed(int finger, QPointF at, quint64 time) override;
    void fingerMoved(int finger, QPointF to, quint64 time) override;
    void fingerReleased(int finger, quint64 time) override;
    void fingersCancelled() override;

  private:
    void tilesChanged() override;

    void scrolled(double points) override;
    void zoomed(double about, double factor) override;
    void dropped(bool flies) override;
    void tapped(double x) override;
    void doubleTapped() override;
    void scrubbed(double x) override;
    void scrubEnded() override;

    bool may(Interaction interaction) const { return (m_interactions & interaction) != 0; }
    void followWave(bool edited);
    void applyColours();
    void rangeChanged(WaveUpdate update);
    void tick(double seconds);
    void runClock();
    void showHeads();
    void setFocusVisible(bool visible);
    void refreshCurve();
    std::vector<UprightLine> lines() const;

    QPointer<WaveState> m_wave;
    QPointer<VoicesState> m_voices;
    QPointer<WaveHearing> m_hearing;
    std::shared_ptr<WaveSequenceAccess> m_sound;
    int m_interactions = zoomAndScroll | select | scrub;
    bool m_motion = true;
    bool m_focusVisible = false;

    QColor m_waveColour = Qt::yellow;
    QColor m_backgroundTop = Qt::black;
    QColor m_backgroundBottom = Qt::black;
    QColor m_lineColour = Qt::gray;
    QColor m_labelColour = Qt::lightGray;
    QColor m_sampleColour = Qt::white;
    QColor m_headColour = Qt::gray;
    QColor m_playHeadColour = Qt::white;

    QList<float> m_heads;  // as they are shown
    WaveViewport m_viewport;
    WaveGestures m_gestures{*this};
    WaveRuler* m_ruler;
    FrameClock m_clock;
    QBasicTimer m_hold;
    QBasicTimer m_refreshSoon;  // runs while the scale has been changed shortly before
    bool m_scaleWaits = false;  // for its end
    QImage m_curve;             // null: none is seen
    bool m_curveStale = true;
    bool m_curveFresh = false;  // newer than what is shown
    TilePictures m_pictures;
    WaveTiles m_tiles;  // goes first: it reports to the others
};
