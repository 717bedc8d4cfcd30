#pragma once

#include "graph/VornComponentUnit.h"

/// The hardware: plays what is connected to its bus 0 and, on request, records. [control]
class VornIOUnit : public VornComponentUnit {
  public:
    VornIOUnit();

    /// From now on every captured period calls `callback` (bus 1), which fetches the frames in
    /// `format` by rendering this unit's bus 1.
    void enableRecordingVia(const AURenderCallbackStruct& callback,
                            const StreamDescription& format);
    /// Takes the callback away; the input stays enabled.
    void disableRecording();
    void start();
    void stop();
};
