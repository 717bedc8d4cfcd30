#pragma once

#include <QObject>

#include "startup/Instrument.h"

/// The grain mode as its button shows it. [main]
class GrainModeState : public QObject {
    Q_OBJECT
    Q_PROPERTY(int index READ index NOTIFY changed)
    Q_PROPERTY(QString name READ name NOTIFY changed)
    Q_PROPERTY(QString image READ image NOTIFY changed)
    Q_PROPERTY(QString spokenLabel READ spokenLabel NOTIFY changed)

  public:
    explicit GrainModeState(Instrument& instrument) : m_instrument(instrument) {}

    int index() const { return m_instrument.grainMode(); }
    QString name() const;
    QString image() const;
    QString spokenLabel() const;

    /// The player chose a mode, 0 to 6; others are ignored.
    void pick(int index);
    /// From the instrument.
    void update() { Q_EMIT changed(); }

  Q_SIGNALS:
    void changed();

  private:
    Instrument& m_instrument;
};
