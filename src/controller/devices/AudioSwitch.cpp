#include "devices/AudioSwitch.h"

#include "audiounits/devices/AudioDevices.h"
#include "graph/Vornery.h"

namespace {

/// There may be no device at all when none was asked for.
bool answers(const std::string& device) {
    return device.empty() || AudioDevices::state().presence == AudioDeviceState::Presence::playing;
}

}  // namespace

std::string AudioSwitch::to(const AudioChoice& wanted) {
    Vornery& engine = Vornery::sharedInstance();
    const AudioChoice before = AudioChoice::current();
    const auto device = AudioDevices::current();
    engine.stop();
    std::string error = wanted.use();
    engine.play();
    if (error.empty() && !answers(wanted.device))
        error = "the device \"" + wanted.device + "\" does not answer";
    if (error.empty())
        return error;
    engine.stop();
    AudioDevices::use(device, before.device);
    AudioDevices::setPreferredPeriod(before.bufferFrames);
    std::string unused;
    AudioDevices::chooseInput(before.input, unused);
    engine.play();
    return error;
}
