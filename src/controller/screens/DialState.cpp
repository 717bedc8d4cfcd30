#include "screens/DialState.h"

#include <algorithm>

#include "screens/DialBank.h"

DialState::DialState(DialBank& bank, ParameterId id)
    : m_bank(bank), m_id(id), m_value(parameter(id).dialInitial) {}

QString DialState::key() const {
    const std::string_view name = parameter(m_id).dialName;
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

QString DialState::name() const {
    return DialBank::nameOf(m_id);
}

QList<float> DialState::notches() const {
    const auto notches = parameter(m_id).notches;
    return {notches.begin(), notches.end()};
}

QString DialState::text(float value, bool spoken) const {
    return m_bank.text(m_id, value, spoken);
}

void DialState::tweak(float value) {
    m_value = limited(value);
    m_bank.tweak(m_id, m_value);
    Q_EMIT valueChanged();
}

void DialState::doubleTapped() {
    m_bank.doubleTapped(m_id);
}

void DialState::setValue(float value) {
    value = limited(value);
    if (value == m_value)
        return;
    m_value = value;
    Q_EMIT valueChanged();
}

/// What is no number leaves the dial where it is.
float DialState::limited(float value) const {
    return value == value ? std::clamp(value, minValue(), maxValue()) : m_value;
}

void DialState::setGlyph(const QString& glyph) {
    if (glyph == m_glyph)
        return;
    m_glyph = glyph;
    Q_EMIT glyphChanged();
}

void DialState::setLearning(const Learning& learning) {
    if (learning == m_learning)
        return;
    m_learning = learning;
    Q_EMIT learningChanged();
}
