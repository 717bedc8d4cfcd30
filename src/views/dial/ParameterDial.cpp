#include "dial/ParameterDial.h"

ParameterDial::ParameterDial(QQuickItem* parent) : DialView(parent) {
    setTarget([this](DialView&) {
        if (m_model)
            m_model->tweak(value());
    });
    connect(this, &DialView::doubleTapped, this, [this] {
        if (m_model)
            m_model->doubleTapped();
    });
}

void ParameterDial::setModel(DialState* model) {
    if (model == m_model)
        return;
    if (m_model)
        m_model->disconnect(this);
    m_model = model;
    setTooltipFormatter(model != nullptr ? this : nullptr);
    if (model != nullptr)
        takeOver();
    Q_EMIT modelChanged();
}

void ParameterDial::takeOver() {
    setMinValue(m_model->minValue());
    setMaxValue(m_model->maxValue());
    const QList<float> notches = m_model->notches();
    setNotches({notches.begin(), notches.end()});
    setValue(m_model->value());
    setGlyph(m_model->glyph());
    connect(m_model, &DialState::valueChanged, this, [this] { setValue(m_model->value()); });
    connect(m_model, &DialState::glyphChanged, this, [this] { setGlyph(m_model->glyph()); });
}

QString ParameterDial::formatDialView(const DialView& dial, bool accessible) {
    return m_model ? m_model->text(dial.value(), accessible) : QString();
}
