#include "devices/AudioChoice.h"

#include "audiounits/devices/AudioDevices.h"

namespace {

// Keys of the user defaults.
constexpr const char* kDevice = "audio-device";
constexpr const char* kBufferFrames = "audio-buffer-frames";
constexpr const char* kInput = "audio-input";

constexpr std::int64_t kFewestFrames = 16;

void keepText(UserDefaults& defaults, const char* key, const std::string& text) {
    if (text.empty())
        defaults.remove(key);
    else
        defaults.set(key, text);
}

}  // namespace

AudioChoice AudioChoice::current() {
    return {AudioDevices::chosen(), AudioDevices::preferredPeriod(), AudioDevices::input()};
}

AudioChoice AudioChoice::kept(const UserDefaults& defaults) {
    const std::int64_t frames = defaults.integer(kBufferFrames).value_or(0);
    const bool usable = frames >= kFewestFrames && frames <= kMaximumDeviceFrames;
    return {defaults.string(kDevice).value_or(""), usable ? static_cast<std::uint32_t>(frames) : 0,
            defaults.string(kInput).value_or("")};
}

void AudioChoice::keep(UserDefaults& defaults) const {
    keepText(defaults, kDevice, device);
    keepText(defaults, kInput, input);
    if (bufferFrames)
        defaults.set(kBufferFrames, std::int64_t{bufferFrames});
    else
        defaults.remove(kBufferFrames);
}

std::string AudioChoice::use() const {
    std::string deviceError, inputError, none;
    AudioDevices::setPreferredPeriod(bufferFrames);
    if (!AudioDevices::choose(device, deviceError))
        AudioDevices::choose("", none);
    if (!AudioDevices::chooseInput(input, inputError))
        AudioDevices::chooseInput("", none);
    return deviceError.empty() ? inputError : deviceError;
}
