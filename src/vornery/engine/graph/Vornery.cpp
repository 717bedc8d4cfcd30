#include "graph/Vornery.h"

namespace {
bool spatialMixerDesired = false;
}

void Vornery::set3DMixerDesired(bool desired) {
    spatialMixerDesired = desired;
}

Vornery& Vornery::sharedInstance() {
    static auto* const shared = new Vornery;  // outlives every unit that a static may own
    return *shared;
}

Vornery::Vornery()
    : m_hardware(std::make_unique<VornIOUnit>()),
      m_mixer(spatialMixerDesired ? std::make_unique<Vorn3DMixerUnit>()
                                  : std::make_unique<VornMixerUnit>()) {
    connect(*m_mixer, *m_hardware);
}

Vornery::~Vornery() {
    m_hardware->stop();
    m_hardware.reset();  // before the mixer that it pulls
}

void Vornery::connect(VornUnit& a, std::int32_t elementA, VornUnit& b, std::int32_t elementB) {
    b.setUpstreamUnit(a, static_cast<std::uint32_t>(elementA),
                      static_cast<std::uint32_t>(elementB));
}

void Vornery::disconnect(VornUnit&, std::int32_t, VornUnit& b, std::int32_t elementB) {
    b.disconnectUpstream(static_cast<std::uint32_t>(elementB));
}

void Vornery::play() {
    m_hardware->start();
}

void Vornery::stop() {
    m_hardware->stop();
}

void Vornery::initialise() {
    m_mixer->initialise();
    m_hardware->initialise();
}

void Vornery::uninitialise() {
    m_mixer->uninitialise();
    m_hardware->uninitialise();
}
