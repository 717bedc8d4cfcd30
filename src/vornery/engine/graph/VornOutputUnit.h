#pragma once

#include "graph/VornComponentUnit.h"

/// The hardware as an output only. [control]
class VornOutputUnit : public VornComponentUnit {
  public:
    VornOutputUnit();
    void play();
    void stop();
};
