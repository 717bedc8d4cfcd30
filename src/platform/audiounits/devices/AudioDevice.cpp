#include "audiounits/devices/AudioDevice.h"

AudioDeviceState AudioDevice::state() const {
    using Presence = AudioDeviceState::Presence;
    const bool plays = alive();
    return {plays ? Presence::playing : Presence::lost, info().name, "", plays ? 0u : 1u};
}
