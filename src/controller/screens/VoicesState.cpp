#include "screens/VoicesState.h"

VoicesState::VoicesState(Instrument& instrument) : m_instrument(instrument) {
    m_instrument.notes().addDelegate(*this);
}

VoicesState::~VoicesState() {
    m_instrument.notes().removeDelegate(*this);
}

void VoicesState::keyTouched(bool) {
    look();
}

void VoicesState::look() {
    QList<int> stages;
    for (const auto& envelope : m_instrument.voices().envelopes)
        stages.append(envelope->state().triggered);
    if (stages == m_stages)
        return;
    m_stages = stages;
    Q_EMIT stagesChanged();
}
