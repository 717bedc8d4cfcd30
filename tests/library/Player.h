#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "audiounits/devices/ManualDevice.h"
#include "startup/Instrument.h"

/// The whole instrument as a player hears it, automatic gain and all, into memory. One to a
/// process.
class Player {
  public:
    Player();
    Instrument& instrument() { return m_instrument; }
    /// What `frames` more sound like; full scale is 1.
    std::vector<float> listen(std::size_t frames);
    /// All of a MIDI file, and `seconds` after its end.
    std::vector<float> play(const std::string& song, double seconds);

  private:
    std::shared_ptr<ManualDevice> m_device = std::make_shared<ManualDevice>();
    struct Use {
        explicit Use(std::shared_ptr<ManualDevice> device);
    } m_use{m_device};
    Instrument m_instrument;
};
