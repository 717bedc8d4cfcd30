#include "DeviceRequest.h"

#include <cstdio>

#include "CommandFrame.h"
#include "audiounits/devices/AudioDevices.h"
#include "log/Log.h"

std::string DeviceRequest::read(const Arguments& arguments) {
    if (const auto text = arguments.value("buffer-frames")) {
        const auto frames = wholeNumber(*text, 16, kMaximumDeviceFrames);
        if (!frames)
            return "--buffer-frames " + *text + ": a whole number from 16 to 8192 is wanted";
        AudioDevices::setPreferredPeriod(static_cast<std::uint32_t>(*frames));
    }
    if (const auto text = arguments.value("seconds")) {
        const auto seconds = decimalNumber(*text);
        if (!seconds || *seconds < 0)
            return "--seconds " + *text + ": a number from 0 on is wanted";
        longest = *seconds;
    }
    std::string error;
    if (!AudioDevices::choose(arguments.value("device").value_or(""), error))
        return error;
    return "";
}

void endPlaying(Instrument& instrument, double seconds) {
    const AudioDeviceInfo device = AudioDevices::current()->info();
    instrument.stop();
    Log::drain();
    std::printf("%.2f s played on %s, %llu periods lost\n", seconds, device.name.c_str(),
                static_cast<unsigned long long>(device.xruns));
}
