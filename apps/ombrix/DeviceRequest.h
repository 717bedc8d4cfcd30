#pragma once

#include <string>

#include "Options.h"
#include "audiounits/devices/AudioDevice.h"

inline constexpr OptionRow kDeviceOption{
    "device", "NAME", "jack, pulse, pulse:SINK, alsa, alsa:PCM or clock (the first there is)"};
inline constexpr OptionRow kPeriodOption{
    "buffer-frames", "N", "frames per period where the device lets us choose, 16 to 8192"};
inline constexpr OptionRow kStopOption{"seconds", "S", "stop after S seconds"};

/// What every command that plays through a device is told about it.
struct DeviceRequest {
    double longest = 1e9;  // seconds

    /// Chooses the device. Answers bad use as one line, else nothing.
    [[nodiscard]] std::string read(const Arguments& arguments);
};

/// How it went, on stdout.
void tellPlayed(double seconds, const AudioDeviceInfo& device);
