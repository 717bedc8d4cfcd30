#pragma once

#include <QObject>
#include <QVariantList>

#include "midi/MidiControls.h"
#include "screens/DialBank.h"

/// What MIDI controllers do, as the settings screen offers it and the dials show it. A choice takes
/// effect at once and is kept. [main]
class ControllerSetup : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool enabled READ enabled WRITE setEnabled NOTIFY changed)
    Q_PROPERTY(QVariantList channels READ channels NOTIFY changed)
    Q_PROPERTY(QVariantList curves READ curves NOTIFY changed)
    Q_PROPERTY(QVariantList bendRanges READ bendRanges NOTIFY changed)
    Q_PROPERTY(QVariantList wheelDials READ wheelDials NOTIFY changed)

  public:
    /// Hears of every change from `controls`. None is owned.
    ControllerSetup(MidiControls& controls, DialBank& dials);
    ~ControllerSetup() override;

    bool enabled() const { return m_controls.settings().enabled; }
    void setEnabled(bool enabled);

    /// AudioOptions.
    QVariantList channels() const;
    QVariantList curves() const;
    QVariantList bendRanges() const;
    QVariantList wheelDials() const;

    /// By the name of an option.
    Q_INVOKABLE void chooseChannel(const QString& name);
    Q_INVOKABLE void chooseCurve(const QString& name);
    Q_INVOKABLE void chooseBendRange(const QString& name);
    Q_INVOKABLE void chooseWheelDial(const QString& name);

  Q_SIGNALS:
    void changed();

  private:
    void listenTo(DialState& dial);
    void update();

    MidiControls& m_controls;
    DialBank& m_dials;
};
