#pragma once

#include <cstdint>
#include <string>

#include "audiounits/devices/AudioDevice.h"
#include "defaults/UserDefaults.h"

/// What sounds are played through and heard from: device, period and input together. A plain value.
/// [main]
struct AudioChoice {
    std::string device;              // as AudioDevices::choose takes it
    std::uint32_t bufferFrames = 0;  // 16 to kMaximumDeviceFrames; 0 is as the device likes
    std::string input;               // as AudioDevices::chooseInput takes it

    bool operator==(const AudioChoice&) const = default;

    /// In use now.
    static AudioChoice current();
    /// What was kept from an earlier run. A period out of range counts as none.
    static AudioChoice kept(const UserDefaults& defaults);
    void keep(UserDefaults& defaults) const;

    /// Everything that can be used is, from the engine's next start on. Answers one line for what
    /// cannot, which is then left to be found, else nothing.
    [[nodiscard]] std::string use() const;
};
