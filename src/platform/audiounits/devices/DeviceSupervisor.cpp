#include "audiounits/devices/DeviceSupervisor.h"

#include "audiounits/devices/DeviceWatch.h"

DeviceSupervisor::DeviceSupervisor(Choice choice) : DeviceSupervisor(std::move(choice), Pace{}) {}

DeviceSupervisor::DeviceSupervisor(Choice choice, Pace pace)
    : m_choice(std::move(choice)), m_pace(pace) {}

DeviceSupervisor::~DeviceSupervisor() {
    stop();
}

OSStatus DeviceSupervisor::start(AudioDeviceClient& client, bool capture) {
    stop();
    m_watch = std::make_shared<DeviceWatch>(m_choice, m_pace, client, capture);
    DeviceWatch::begin(m_watch);
    return noErr;
}

void DeviceSupervisor::stop() {
    if (m_watch)
        m_watch->end();
    m_watch.reset();
}

AudioDeviceState DeviceSupervisor::state() const {
    return m_watch ? m_watch->state() : AudioDeviceState{};
}

AudioDeviceInfo DeviceSupervisor::info() const {
    if (m_watch)
        return m_watch->info();
    AudioDeviceInfo info;
    info.name = m_choice.name;
    return info;
}
