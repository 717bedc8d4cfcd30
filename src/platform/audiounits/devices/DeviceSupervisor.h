#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "audiounits/devices/AudioDevice.h"

class DeviceWatch;

/// Plays through the first of several devices that works, and through the clock while none does,
/// so that time goes on and every note ends. A thread of its own looks for a device once a second
/// while there is none; a device counts as found when it has asked for frames. It is dropped when
/// it says that it is gone or has not asked for two seconds (some servers die without a word), and
/// is then looked for again. One line tells the user, once, that there is no device.
class DeviceSupervisor final : public AudioDevice {
  public:
    using Maker = std::function<std::shared_ptr<AudioDevice>()>;
    struct Choice {
        std::vector<Maker> devices;  // the first that works is taken
        Maker clock;                 // always works
        std::string name;            // of the choice: "", or as AudioDevices::choose has it
        std::string absence;         // the line for the user when none works
    };
    /// Shortened by tests.
    struct Pace {
        std::chrono::milliseconds tick{100};       // how often a device's health is looked at
        std::chrono::milliseconds probe{1000};     // how often devices are looked for
        int silentTicks = 20;                      // without a call before a device counts as dead
        std::chrono::milliseconds patience{2000};  // for a start that may hang
        std::chrono::milliseconds stopPatience{600};   // for a stop; closing takes below a second
        std::chrono::milliseconds shortPatience{250};  // for a stop after the device has gone
    };

    explicit DeviceSupervisor(Choice choice);
    DeviceSupervisor(Choice choice, Pace pace);
    ~DeviceSupervisor() override;

    /// Returns when the first device has been found, or the clock has taken over.
    OSStatus start(AudioDeviceClient& client, bool capture) override;
    void stop() override;
    /// Of the device that plays now; the lost periods are those of all devices since start.
    AudioDeviceInfo info() const override;
    AudioDeviceState state() const override;

  private:
    const Choice m_choice;
    const Pace m_pace;
    std::shared_ptr<DeviceWatch>
        m_watch;  // shared with its thread, which may outlive a stop that hangs
};
