#pragma once

#include <QObject>
#include <array>
#include <memory>
#include <vector>

#include "parameters/Settings.h"
#include "screens/DialState.h"

/// All dials, and what turning them does: the value goes to voices and units, and the settings
/// count as changed. [main]
class DialBank : public QObject {
    Q_OBJECT

  public:
    /// `settings` answers what the chosen preset holds. None is owned.
    DialBank(Instrument& instrument, Settings& settings);
    ~DialBank() override;

    /// By the control's name, "grainSpeed" and so on; null for others.
    Q_INVOKABLE DialState* dial(const QString& key) const;
    DialState& dial(ParameterId id) const { return *m_dials[std::size_t(id)]; }
    /// In the order of the parameter table.
    std::vector<DialState*> all() const;

    /// What stands below a dial.
    static QString nameOf(ParameterId id);
    QString text(ParameterId id, float value, bool spoken) const;

    /// The same for a dial's tag; empty for a tag that no dial has.
    QString formatDialView(std::uint32_t tag, float value, bool accessible) const;

    /// A dial was turned: its value goes to voices and units as the table maps it.
    void tweak(ParameterId id, float value);
    void doubleTapped(ParameterId id);
    /// The sync switch of the grain speed. Does not count as a change.
    Q_INVOKABLE void toggleSyncSpeed();
    /// All dials from the instrument.
    void update();
    /// The four of the envelope.
    void updateEnvelope();

  Q_SIGNALS:
    /// A dial of the envelope was turned.
    void envelopeTweaked();

  private:
    void set(ParameterId id, float stored);
    void show(DialState* dial);
    void showSync();

    Instrument& m_instrument;
    Settings& m_settings;
    std::array<std::unique_ptr<DialState>, kParameterCount> m_dials;  // null where there is none
};
