#include "screens/DialBank.h"

DialBank::DialBank(Instrument& instrument, Settings& settings)
    : m_instrument(instrument), m_settings(settings) {
    for (const Parameter& row : kParameters) {
        if (row.dialName.empty())
            continue;
        auto& dial = m_dials[std::size_t(row.id)];
        dial = std::make_unique<DialState>(*this, row.id);
        dial->setParent(this);  // or QML, which is given it by `dial`, would destroy it
    }
}

DialBank::~DialBank() = default;

DialState* DialBank::dial(const QString& key) const {
    for (const auto& dial : m_dials) {
        if (dial && dial->key() == key)
            return dial.get();
    }
    return nullptr;
}

QString DialBank::nameOf(ParameterId id) {
    switch (id) {
        case ParameterId::grainSpeed:
            return tr("Speed");
        case ParameterId::grainSize:
            return tr("Size");
        case ParameterId::preamp:
            return tr("Preamp");
        case ParameterId::fmFrequency:
            return tr("FM");
        case ParameterId::echoDelay:
            return tr("Delay");
        case ParameterId::echoFeedback:
            return tr("Feedback");
        case ParameterId::filterCutoff:
            return tr("Cutoff");
        case ParameterId::filterResonance:
            return tr("Resonance");
        case ParameterId::filterBass:
            return tr("Bass");
        case ParameterId::ringModFrequency:
            return tr("Freq");
        case ParameterId::ringModDepth:
            return tr("Depth");
        case ParameterId::distortion:
            return tr("Dist");
        case ParameterId::adsrAttack:
            return tr("Attack");
        case ParameterId::adsrDecay:
            return tr("Decay");
        case ParameterId::adsrSustain:
            return tr("Sustain");
        case ParameterId::adsrRelease:
            return tr("Release");
        default:
            return {};
    }
}

QString DialBank::text(ParameterId id, float value, bool spoken) const {
    return QString::fromStdString(dialText(id, value, spoken, m_instrument.syncSpeed()));
}

void DialBank::tweak(ParameterId id, float value) {
    m_instrument.setParameter(id, storedValue(id, value));
    m_settings.modify();
    if (id >= ParameterId::adsrAttack)
        Q_EMIT envelopeTweaked();
}

void DialBank::doubleTapped(ParameterId id) {
    if (id == ParameterId::grainSpeed)
        return toggleSyncSpeed();
    const auto& preset = m_settings.currentPreset();
    if (preset)
        dial(id).tweak(dialValue(id, preset->number(id)));
}

void DialBank::toggleSyncSpeed() {
    m_instrument.setSyncSpeed(!m_instrument.syncSpeed());
    showSync();
}

void DialBank::showSync() {
    dial(ParameterId::grainSpeed).setGlyph(m_instrument.syncSpeed() ? "Circle-Sync.png" : "");
}

void DialBank::update() {
    for (const auto& dial : m_dials) {
        if (dial)
            dial->setValue(dialValue(dial->id(), m_instrument.parameter(dial->id())));
    }
    showSync();
}
