#include "screens/EnvelopeState.h"

EnvelopeState::EnvelopeState(Instrument& instrument, Settings& settings, DialBank& dials)
    : m_instrument(instrument), m_settings(settings), m_dials(dials) {
    connect(&dials, &DialBank::envelopeTweaked, this, &EnvelopeState::changed);
}

void EnvelopeState::adsrViewUpdated(float attack, float decay, float sustain, float releaseTime) {
    m_instrument.setEnvelopes({attack, decay, sustain, releaseTime});
    m_dials.updateEnvelope();
    m_settings.modify();
    Q_EMIT changed();
}
