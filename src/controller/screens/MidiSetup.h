#pragma once

#include <QObject>
#include <QStringList>

#include "midi/MidiInput.h"
#include "screens/ControllerSetup.h"
#include "screens/NetworkSetup.h"

/// MIDI as the settings screen shows it: what is connected, the network, and the controllers.
/// [main]
class MidiSetup : public QObject {
    Q_OBJECT
    Q_PROPERTY(QStringList sources READ sources NOTIFY sourcesChanged)
    Q_PROPERTY(QString port READ port CONSTANT)
    Q_PROPERTY(NetworkSetup* network READ network CONSTANT)
    Q_PROPERTY(ControllerSetup* controllers READ controllers CONSTANT)

  public:
    /// What was kept from an earlier run is used from now on. None is owned.
    MidiSetup(MidiInput& input, MidiControls& controls, DialBank& dials, UserDefaults& defaults);
    ~MidiSetup() override;

    /// Names of all that can be heard, in the order of their appearance.
    QStringList sources() const;
    /// What other programs can send to.
    QString port() const;
    NetworkSetup* network() { return &m_network; }
    ControllerSetup* controllers() { return &m_controllers; }

  Q_SIGNALS:
    void sourcesChanged();

  private:
    QrMidi& m_hub;
    NetworkSetup m_network;
    ControllerSetup m_controllers;
    std::array<NotificationCentre::Token, 2> m_observers;
};
