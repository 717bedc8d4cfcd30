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

std::vector<DialState*> DialBank::all() const {
    std::vector<DialState*> dials;
    for (const auto& dial : m_dials) {
        if (dial)
            dials.push_back(dial.get());
    }
    return dials;
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

QString DialBank::formatDialView(std::uint32_t tag, float value, bool accessible) const {
    const Parameter* row = parameterWithTag(tag);
    return row ? text(row->id, value, accessible) : QString();
}

void DialBank::tweak(ParameterId id, float value) {
    set(id, storedValue(id, value));
}

void DialBank::set(ParameterId id, float stored) {
    m_settings.setParameter(id, stored);
    m_settings.modify();
    if (isOfEnvelope(id))
        Q_EMIT envelopeTweaked();
}

// The stored value: an envelope time may be longer than its dial can say.
void DialBank::doubleTapped(ParameterId id) {
    if (id == ParameterId::grainSpeed)
        return toggleSyncSpeed();
    const auto& preset = m_settings.currentPreset();
    if (!preset)
        return;
    const float stored = preset->number(id);
    dial(id).setValue(dialValue(id, stored));
    set(id, stored);
}

void DialBank::toggleSyncSpeed() {
    m_settings.setSyncSpeed(!m_instrument.syncSpeed());
    showSync();
}

void DialBank::showSync() {
    dial(ParameterId::grainSpeed).setGlyph(m_instrument.syncSpeed() ? "Circle-Sync.png" : "");
}

void DialBank::update() {
    for (const auto& dial : m_dials)
        show(dial.get());
    showSync();
}

void DialBank::updateEnvelope() {
    for (const auto& dial : m_dials) {
        if (dial && isOfEnvelope(dial->id()))
            show(dial.get());
    }
}

void DialBank::show(DialState* dial) {
    if (dial)
        dial->setValue(dialValue(dial->id(), m_instrument.parameter(dial->id())));
}
