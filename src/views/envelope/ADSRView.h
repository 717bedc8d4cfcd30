#pragma once

#include <QtQml/qqmlregistration.h>
#include <QFont>
#include <QPainter>
#include <array>
#include <cstdint>

#include "envelope/ADSRViewOwner.h"
#include "envelope/OutlinedText.h"
#include "touch/OneFingerItem.h"

/// The envelope as a graph of four segments, which is changed by dragging it. The sustain always
/// takes 88 points; attack, decay and release share the rest by their times. A drag across the
/// whole width changes a time by one second. Times are seconds, 0 to 5 once dragged; the sustain is
/// a level from 0 to 1. [main]
///
/// The plain setters do not redraw, so that an owner can set all four and then call `redraw`;
/// values bound in QML redraw by themselves.
class ADSRView : public OneFingerItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(float attack READ attack WRITE showAttack NOTIFY shown)
    Q_PROPERTY(float decay READ decay WRITE showDecay NOTIFY shown)
    Q_PROPERTY(float sustain READ sustain WRITE showSustain NOTIFY shown)
    Q_PROPERTY(float releaseTime READ releaseTime WRITE showReleaseTime NOTIFY shown)
    Q_PROPERTY(QString spokenText READ spokenText NOTIFY shown)
    Q_PROPERTY(bool pressed READ pressed NOTIFY pressedChanged)
    Q_PROPERTY(int stage READ stage WRITE setStage NOTIFY stageChanged)
    Q_PROPERTY(float stageValue READ stageValue NOTIFY stageFrameChanged)
    Q_PROPERTY(float stageHighest READ stageHighest NOTIFY stageChanged)
    Q_PROPERTY(QRectF stageFrame READ stageFrame NOTIFY stageFrameChanged)

  public:
    /// What a drag changes. 0 to 3 are also the indices of `param`.
    enum Grab : std::int32_t {
        kGrabNothing = -1,
        kGrabAttack = 0,
        kGrabDecay = 1,
        kGrabPlateau = 2,  // which way it goes is not decided yet
        kGrabRelease = 3,
        kGrabSustain = -2,
        kGrabAttackAndDecay = -3,
    };

    explicit ADSRView(QQuickItem* parent = nullptr);

    /// Not owned; may be null, and must outlive the view or be taken back.
    ADSRViewOwner* owner() const { return m_owner; }
    void setOwner(ADSRViewOwner* owner) { m_owner = owner; }

    float attack() const { return m_attack; }
    float decay() const { return m_decay; }
    float sustain() const { return m_sustain; }
    float releaseTime() const { return m_releaseTime; }
    void setAttack(float seconds) { m_attack = seconds; }
    void setDecay(float seconds) { m_decay = seconds; }
    void setSustain(float level) { m_sustain = level; }
    void setReleaseTime(float seconds) { m_releaseTime = seconds; }
    void showAttack(float seconds) { show(m_attack, seconds); }
    void showDecay(float seconds) { show(m_decay, seconds); }
    void showSustain(float level) { show(m_sustain, level); }
    void showReleaseTime(float seconds) { show(m_releaseTime, seconds); }

    std::int32_t grabIndex() const { return m_grabIndex; }
    /// Where the touch began, in points.
    QPointF grabPos() const { return m_grabPos; }
    /// The dragged value when the drag began; the second is the decay where both are dragged.
    float grabValue() const { return m_grabValue; }
    float grabValue2() const { return m_grabValue2; }
    const QFont& labelFont() const { return m_labelFont; }

    /// Attack, decay, sustain or release time by index 0 to 3; null for another.
    float* param(std::int32_t index);
    /// Shows the values as they are now, and tells nobody but bindings to them.
    void redraw();
    /// Redraws and tells the owner.
    void updated();

    void touchBegan(QPointF at) override;
    void touchMoved(QPointF at) override;
    void touchEnded() override;
    void touchCancelled() override { touchEnded(); }
    bool pressed() const { return m_grabIndex != kGrabNothing; }

    /// The segment that keys change, as an index of `param`: the one that was touched last, or was
    /// chosen by a key.
    int stage() const { return m_stage; }
    /// Limited to 0 to 3.
    void setStage(int stage);
    float stageValue() const { return values()[std::size_t(m_stage)]; }
    /// What it can be set to.
    float stageHighest() const;
    /// Where that segment is drawn, over the whole height.
    QRectF stageFrame() const;
    /// One step up (1) or down (-1): 0.05 of a second or of the level, or 0.01 of it.
    Q_INVOKABLE void step(int direction, bool fine);
    /// All four values in words.
    QString spokenText() const;

    void paint(QPainter* painter) override;
    /// Draws one segment: bars in the painter's brush below a line in its pen, and two texts where
    /// they fit. `from` and `to` are levels. Returns where the next segment begins.
    float graphFrom(float from, float to, float x, float width, const QString& label,
                    const QString& label2, QPainter& painter) const;
    /// Draws a level as a tick on a guide line in the painter's pen. Returns x + width.
    float slideLevel(float level, float x, float width, QPainter& painter) const;

  Q_SIGNALS:
    /// The player has changed a value.
    void adsrViewUpdated();
    void shown();
    void pressedChanged();
    void stageChanged();
    void stageFrameChanged();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;

  private:
    std::array<float, 4> values() const { return {m_attack, m_decay, m_sustain, m_releaseTime}; }
    void show(float& shownValue, float value);
    /// Points for one second.
    float timeScale(float total) const;
    /// Attack, decay, sustain and release in points, as they are drawn.
    std::array<float, 4> widths() const;
    void decideDirection(float dx, float dy);
    void dragTime(float dx);
    void stretch(float dx);

    ADSRViewOwner* m_owner = nullptr;
    float m_attack = 0.25f;
    float m_decay = 0.35f;
    float m_sustain = 0.5f;
    float m_releaseTime = 2.f;
    std::int32_t m_grabIndex = kGrabNothing;
    QPointF m_grabPos;
    float m_grabValue = 0;
    float m_grabValue2 = 0;
    QFont m_labelFont;
    mutable OutlinedText m_texts;  // of that font
    int m_stage = 0;
};
