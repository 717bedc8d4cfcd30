#pragma once

#include <QObject>

#include "parameters/Settings.h"

/// The grain mode as its button shows it. [main]
class GrainModeState : public QObject {
    Q_OBJECT
    Q_PROPERTY(int index READ index NOTIFY changed)
    Q_PROPERTY(QString name READ name NOTIFY changed)
    Q_PROPERTY(QString image READ image NOTIFY changed)
    Q_PROPERTY(QString spokenLabel READ spokenLabel NOTIFY changed)

  public:
    GrainModeState(Instrument& instrument, Settings& settings)
        : m_instrument(instrument), m_settings(settings) {}

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
    Settings& m_settings;
};
