#include "screens/ControllerSetup.h"

#include "screens/AudioOption.h"

namespace {

QVariant option(const QString& name, const QString& title, bool chosen) {
    return QVariant::fromValue(AudioOption{name, title, {}, chosen});
}

QVariant option(int number, const QString& title, int chosen) {
    return option(QString::number(number), title, number == chosen);
}

}  // namespace

ControllerSetup::ControllerSetup(MidiControls& controls, DialBank& dials)
    : m_controls(controls), m_dials(dials) {
    for (DialState* dial : m_dials.all())
        listenTo(*dial);
    m_controls.changed = [this] { update(); };
    update();
}

ControllerSetup::~ControllerSetup() {
    m_controls.changed = {};
}

void ControllerSetup::listenTo(DialState& dial) {
    const ParameterId id = dial.id();
    connect(&dial, &DialState::learnAsked, this, [this, id](bool wanted) {
        if (wanted)
            m_controls.learn(id);
        else if (m_controls.learning() == id)
            m_controls.stopLearning();
    });
    connect(&dial, &DialState::forgetAsked, this, [this, id] { m_controls.forget(id); });
}

/// The dials show what the controls say.
void ControllerSetup::update() {
    for (DialState* dial : m_dials.all()) {
        DialState::Learning learning;
        learning.offered = enabled();
        if (learning.offered) {
            learning.waiting = m_controls.learning() == dial->id();
            learning.controllers = QString::fromStdString(m_controls.controllersOf(dial->id()));
        }
        dial->setLearning(learning);
    }
    Q_EMIT changed();
}

void ControllerSetup::setEnabled(bool enabled) {
    MidiControlSettings settings = m_controls.settings();
    settings.enabled = enabled;
    m_controls.setSettings(settings);
}

QVariantList ControllerSetup::channels() const {
    const int chosen = m_controls.settings().channel;
    QVariantList rows{option(MidiControlSettings::kAllChannels, tr("All"), chosen)};
    for (int channel = 1; channel <= 16; ++channel)
        rows.append(option(channel, QString::number(channel), chosen));
    return rows;
}

QVariantList ControllerSetup::curves() const {
    const int chosen = int(m_controls.settings().curve);
    return {option(int(VelocityCurve::linear), tr("As played"), chosen),
            option(int(VelocityCurve::soft), tr("Soft: a light touch is louder"), chosen),
            option(int(VelocityCurve::hard), tr("Hard: a light touch is quieter"), chosen),
            option(int(VelocityCurve::fixed), tr("Fixed: every key at full strength"), chosen)};
}

QVariantList ControllerSetup::bendRanges() const {
    const int chosen = m_controls.settings().bendSemitones;
    QVariantList rows{option(0, tr("None"), chosen), option(1, tr("1 semitone"), chosen)};
    for (int semitones = 2; semitones <= MidiControlSettings::kMostBendSemitones; ++semitones)
        rows.append(option(semitones, tr("%1 semitones").arg(semitones), chosen));
    return rows;
}

QVariantList ControllerSetup::wheelDials() const {
    const auto& chosen = m_controls.settings().modulation;
    QVariantList rows{option(QString(), tr("None"), !chosen)};
    for (const DialState* dial : m_dials.all())
        rows.append(option(dial->key(), dial->name(), chosen == dial->id()));
    return rows;
}

void ControllerSetup::chooseChannel(const QString& name) {
    MidiControlSettings settings = m_controls.settings();
    settings.channel = name.toInt();
    m_controls.setSettings(settings);
}

void ControllerSetup::chooseCurve(const QString& name) {
    MidiControlSettings settings = m_controls.settings();
    settings.curve = VelocityCurve(name.toInt());
    m_controls.setSettings(settings);
}

void ControllerSetup::chooseBendRange(const QString& name) {
    MidiControlSettings settings = m_controls.settings();
    settings.bendSemitones = name.toInt();
    m_controls.setSettings(settings);
}

void ControllerSetup::chooseWheelDial(const QString& name) {
    MidiControlSettings settings = m_controls.settings();
    const DialState* const dial = m_dials.dial(name);
    settings.modulation = dial ? std::optional(dial->id()) : std::nullopt;
    m_controls.setSettings(settings);
}
