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

/// Uses this very device: one driven by hand, or a test's own.
void use(std::shared_ptr<AudioDevice> device);

/// The device in use; never null.
std::shared_ptr<AudioDevice> current();

/// Whether the device in use is there; cheap enough to be asked once a second.
AudioDeviceState state();

/// Everything that could be played to now, probed on each call. One of them is the default.
std::vector<AudioDeviceInfo> list();

/// Frames per period asked of devices that let us choose (16 to 8192); 0 is each device's own.
/// Holds for devices chosen later.
void setPreferredPeriod(std::uint32_t frames);

}  // namespace AudioDevices
