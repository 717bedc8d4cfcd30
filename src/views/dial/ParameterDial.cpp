#include "dial/ParameterDial.h"

ParameterDial::ParameterDial(QQuickItem* parent) : DialView(parent) {
    setTarget([this](DialView&) {
        if (m_state)
            m_state->tweak(value());
    });
    connect(this, &DialView::doubleTapped, this, [this] {
        if (m_state)
            m_state->doubleTapped();
    });
}

void ParameterDial::setDialState(DialState* state) {
    if (state == m_state)
        return;
    if (m_state)
        m_state->disconnect(this);
    m_state = state;
    setTooltipFormatter(state != nullptr ? this : nullptr);
    if (state != nullptr)
        takeOver();
    Q_EMIT dialStateChanged();
}

void ParameterDial::takeOver() {
    setMinValue(m_state->minValue());
    setMaxValue(m_state->maxValue());
    const QList<float> notches = m_state->notches();
    setNotches({notches.begin(), notches.end()});
    setValue(m_state->value());
    setGlyph(m_state->glyph());
    connect(m_state, &DialState::valueChanged, this, [this] {
        if (m_state->value() != value())  // our own: the way there and back would round
            setValue(m_state->value());
    });
    connect(m_state, &DialState::glyphChanged, this, [this] { setGlyph(m_state->glyph()); });
}

QString ParameterDial::formatDialView(const DialView& dial, bool accessible) {
    return m_state ? m_state->text(dial.value(), accessible) : QString();
}
