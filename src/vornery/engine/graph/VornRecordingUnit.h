#pragma once

#include "graph/VornComponentUnit.h"

/// The hardware as an input only. [control]
class VornRecordingUnit : public VornComponentUnit {
  public:
    VornRecordingUnit();
    /// Every captured period calls `callback` (bus 1); frames come in `format`.
    void setRecordingCallback(const AURenderCallbackStruct& callback,
                              const StreamDescription& format);
    void record();
    void stop();
};
