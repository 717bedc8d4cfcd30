#pragma once

#include <string>

#include "Options.h"
#include "startup/Instrument.h"

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

/// Ends what has played for so long, and tells on stdout how it went.
void endPlaying(Instrument& instrument, double seconds);
