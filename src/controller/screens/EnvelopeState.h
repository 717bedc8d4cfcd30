#pragma once

#include <QObject>

#include "screens/DialBank.h"

/// The envelope as its editor shows it; the four dials beside it show the same. Times in seconds,
/// the sustain a level from 0 to 1. [main]
class EnvelopeState : public QObject {
    Q_OBJECT
    Q_PROPERTY(float attack READ attack NOTIFY changed)
    Q_PROPERTY(float decay READ decay NOTIFY changed)
    Q_PROPERTY(float sustain READ sustain NOTIFY changed)
    Q_PROPERTY(float releaseTime READ releaseTime NOTIFY changed)

  public:
    EnvelopeState(Instrument& instrument, Settings& settings, DialBank& dials);

    float attack() const { return value(ParameterId::adsrAttack); }
    float decay() const { return value(ParameterId::adsrDecay); }
    float sustain() const { return value(ParameterId::adsrSustain); }
    float releaseTime() const { return value(ParameterId::adsrRelease); }

    /// The editor was dragged: dials and all voices follow.
    Q_INVOKABLE void adsrViewUpdated(float attack, float decay, float sustain, float releaseTime);
    /// From the instrument.
    void update() { Q_EMIT changed(); }

  Q_SIGNALS:
    void changed();

  private:
    float value(ParameterId id) const { return m_instrument.parameter(id); }

    Instrument& m_instrument;
    Settings& m_settings;
    DialBank& m_dials;
};
