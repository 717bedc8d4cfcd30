#pragma once

#include "handoff/Shared.h"

/// What a piece of work and those who wait for it tell each other.
struct EditWatch {
    Shared<float> progress{0.f};   // 0 to 1, by the work
    Shared<bool> unwanted{false};  // it is to end soon, without a result
};
