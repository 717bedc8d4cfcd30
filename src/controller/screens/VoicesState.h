#pragma once

#include <QList>
#include <QObject>
#include <atomic>

#include "notifications/NotificationCentre.h"
#include "runloop/RunLoop.h"
#include "startup/Instrument.h"

/// What sounds right now, for the lamps, the level meter, the clip light and the read heads. Looks
/// 30 times a second from the first key on until all is quiet, and tells only what has changed;
/// while nothing sounds nothing runs. [main]
class VoicesState : public QObject, private NotesDelegate {
    Q_OBJECT
    Q_PROPERTY(QList<int> stages READ stages NOTIFY stagesChanged)
    Q_PROPERTY(bool sounding READ sounding NOTIFY soundingChanged)
    Q_PROPERTY(float level READ level NOTIFY levelChanged)
    Q_PROPERTY(bool clipped READ clipped NOTIFY clippedChanged)
    Q_PROPERTY(QList<float> heads READ heads NOTIFY headsChanged)

  public:
    explicit VoicesState(Instrument& instrument);
    ~VoicesState() override;

    /// Of each voice: 0 rests, 1 sounds, 2 is being released.
    QList<int> stages() const { return m_stages; }
    /// Whether any voice does not rest, or the effects still ring.
    bool sounding() const { return m_sounding; }
    /// Peak of the output, 0 to 1 of full scale; falls by half in a sixth of a second.
    float level() const { return m_level; }
    /// The clip light: on for half a second after each clip.
    bool clipped() const { return m_clipped; }
    /// Both read positions of each voice that does not rest, one behind the other, in samples of
    /// the sound.
    QList<float> heads() const { return m_heads; }
    /// The same read this very moment, for what is drawn with every frame; at most one buffer old.
    QList<float> headsNow() const;

  Q_SIGNALS:
    void stagesChanged();
    void soundingChanged();
    void levelChanged();
    void clippedChanged();
    void headsChanged();

  private:
    void keyTouched(bool down) override;
    /// [render] All that the observer of the notice does.
    void audioClipped() { m_clipHeard = true; }
    void look();
    void lookAtVoices();
    void lookAtLevel();
    void lookAtClips();
    void rest();

    Instrument& m_instrument;
    QList<int> m_stages = QList<int>(kVoiceCount, 0);
    QList<float> m_heads;
    bool m_sounding = false;
    float m_level = 0;
    bool m_clipped = false;
    double m_clippedUntil = 0;     // on Clock::monotonic
    RunLoop::Token m_looking = 0;  // 0: nothing sounds
    RunLoop::Token m_soon = 0;     // a look at the next turn
    std::atomic<bool> m_clipHeard{false};
    NotificationCentre::Token m_clipObserver;
};
