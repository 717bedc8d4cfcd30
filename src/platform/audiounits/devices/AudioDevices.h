#pragma once

#include <memory>
#include <string>
#include <vector>

#include "audiounits/devices/AudioDevice.h"

/// Which device the hardware I/O component plays through, chosen before it starts. [control]
namespace AudioDevices {

/// Uses the device of that stable name ("jack", "pulse", "pulse:SINK", "alsa", "alsa:PCM",
/// "clock"), or with "" the first that works of JACK, PulseAudio and ALSA, else the clock.
/// False, with `error` saying why in one line, for a name that is none.
bool choose(const std::string& name, std::string& error);

/// Uses this very device: one driven by hand, a test's own, or the one before, under the name that
/// it had been chosen by.
void use(std::shared_ptr<AudioDevice> device);
void use(std::shared_ptr<AudioDevice> device, const std::string& name);

/// As `choose` was told last, or the name of the very device in use.
std::string chosen();

/// The device in use; never null.
std::shared_ptr<AudioDevice> current();

/// Whether the device in use is there; cheap enough to be asked once a second.
AudioDeviceState state();

/// Everything that could be played to now, probed on each call. One of them is the default.
std::vector<AudioDeviceInfo> list();

/// Hears that source from the device's next start on: "pulse:SOURCE", which PulseAudio alone
/// offers, or with "" what the device in use hears by itself. False, with `error` saying why in one
/// line, for a name that is none.
bool chooseInput(const std::string& name, std::string& error);

/// As it was chosen.
std::string input();

/// Every input that could be chosen now, probed on each call, the usual one first.
std::vector<AudioDeviceInfo> listInputs();

/// Frames per period asked of devices that let us choose (16 to 8192); 0 is each device's own.
/// Holds from a device's next start on.
void setPreferredPeriod(std::uint32_t frames);
std::uint32_t preferredPeriod();

}  // namespace AudioDevices
