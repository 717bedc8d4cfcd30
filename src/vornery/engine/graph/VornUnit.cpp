#include "graph/VornUnit.h"

void VornUnit::setUpstreamUnit(VornUnit&, std::uint32_t, std::uint32_t) {}

void VornUnit::disconnectUpstream(std::uint32_t) {}
