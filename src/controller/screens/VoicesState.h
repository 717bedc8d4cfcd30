#pragma once

#include <QList>
#include <QObject>

#include "runloop/RunLoop.h"
#include "startup/Instrument.h"

/// What sounds right now, for the lamps, the level meter and the clip light. Looks at the voices 30
/// times a second while something sounds, and twice a second otherwise; tells only what has
/// changed. [main]
class VoicesState : public QObject, private NotesDelegate {
    Q_OBJECT
    Q_PROPERTY(QList<int> stages READ stages NOTIFY stagesChanged)
    Q_PROPERTY(bool sounding READ sounding NOTIFY soundingChanged)
    Q_PROPERTY(float level READ level NOTIFY levelChanged)
    Q_PROPERTY(bool clipped READ clipped NOTIFY clippedChanged)

  public:
    explicit VoicesState(Instrument& instrument);
    ~VoicesState() override;

    /// Of each voice: 0 rests, 1 sounds, 2 is being released.
    QList<int> stages() const { return m_stages; }
    bool sounding() const { return m_sounding; }
    /// Peak of the output, 0 to 1 of full scale.
    float level() const { return m_level; }
    /// The clip light: on for a while after each clip.
    bool clipped() const { return m_clipped; }

  Q_SIGNALS:
    void stagesChanged();
    void soundingChanged();
    void levelChanged();
    void clippedChanged();

  private:
    void keyTouched(bool down) override;
    void look();

    Instrument& m_instrument;
    QList<int> m_stages = QList<int>(kVoiceCount, 0);
    bool m_sounding = false;
    float m_level = 0;
    bool m_clipped = false;
};
