#pragma once

#include <memory>

#include "graph/VornIOUnit.h"
#include "graph/VornMixerUnit.h"

/// The engine: owns the hardware unit and the final mixer, and offers what builds and runs the
/// graph. One to a process; made on first use and never released. [control]
///
/// Build a graph so: make the units, connect them, the last one to `mixer`; set the mixer's bus
/// count; initialise the units that need it, then the engine; `play`.
class Vornery {
  public:
    /// Whether the final mixer places its buses in space; read only when the engine is made.
    static void set3DMixerDesired(bool desired);
    static Vornery& sharedInstance();

    /// Output bus `elementA` of `a` feeds input bus `elementB` of `b`.
    void connect(VornUnit& a, std::int32_t elementA, VornUnit& b, std::int32_t elementB);
    void connect(VornUnit& a, VornUnit& b) { connect(a, 0, b, 0); }
    /// Clears input `elementB` of `b`, whatever feeds it.
    void disconnect(VornUnit& a, std::int32_t elementA, VornUnit& b, std::int32_t elementB);

    void play();
    void stop();
    /// The mixer, then the hardware.
    void initialise();
    void uninitialise();

    VornMixerUnit& mixer() { return *m_mixer; }
    VornIOUnit& hardware() { return *m_hardware; }

    ~Vornery();

  private:
    Vornery();

    std::unique_ptr<VornIOUnit> m_hardware;
    std::unique_ptr<VornMixerUnit> m_mixer;
};
