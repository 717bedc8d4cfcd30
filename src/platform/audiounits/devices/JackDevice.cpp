#include "audiounits/devices/JackDevice.h"

#include <algorithm>

#include "audiounits/devices/JackCycle.h"

JackDevice::~JackDevice() {
    stop();
}

OSStatus JackDevice::start(AudioDeviceClient& client, bool capture) {
    stop();
    if (!open())
        return kAudioUnitErr_FailedInitialization;
    m_bridge = std::make_unique<DeviceBridge>(client, m_rate, m_rate);
    m_xruns = 0;
    m_alive = true;
    m_guest = JackGuest::current();
    setCallbacks();
    if (!m_bridge->usable() || !registerPorts(capture) || m_jack->jack_activate(m_client) != 0) {
        stop();
        return kAudioUnitErr_FailedInitialization;
    }
    connectPorts();
    readInfo();
    if (m_guest)
        m_guest->join(m_client);
    return noErr;
}

// Closing is the one call that is right whether the server lives or not.
void JackDevice::stop() {
    if (m_client && m_guest)
        m_guest->leave(m_client);
    if (m_client)
        m_jack->jack_client_close(m_client);
    m_client = nullptr;
    m_input = nullptr;
    m_alive = false;
}

AudioDeviceInfo JackDevice::info() const {
    std::lock_guard guard(m_infoMutex);
    AudioDeviceInfo info = m_info;
    info.periodFrames = m_period;
    info.xruns = m_xruns;
    return info;
}

std::vector<AudioDeviceInfo> JackDevice::list() {
    JackDevice device;
    if (!device.open())
        return {};
    device.readInfo();
    return {device.info()};
}

bool JackDevice::open() {
    m_jack = JackLibrary::get();
    jack_status_t status{};
    if (m_jack)
        m_client = m_jack->jack_client_open("ombrix", JackNoStartServer, &status);
    if (!m_client)
        return false;
    m_rate = m_jack->jack_get_sample_rate(m_client);
    m_period = m_jack->jack_get_buffer_size(m_client);
    return true;
}

bool JackDevice::registerPorts(bool capture) {
    m_left = addPort("out_1", JackPortIsOutput);
    m_right = addPort("out_2", JackPortIsOutput);
    if (capture)
        m_input = addPort("in_1", JackPortIsInput);
    return m_left && m_right && (m_input || !capture);
}

jack_port_t* JackDevice::addPort(const char* name, unsigned long flags) {
    return m_jack->jack_port_register(m_client, name, JACK_DEFAULT_AUDIO_TYPE, flags, 0);
}

void JackDevice::setCallbacks() {
    m_jack->jack_set_process_callback(
        m_client,
        [](jack_nframes_t frames, void* self) {
            runJackCycle([&] { static_cast<JackDevice*>(self)->process(frames); });
            return 0;
        },
        this);
    m_jack->jack_set_xrun_callback(
        m_client,
        [](void* self) {
            ++static_cast<JackDevice*>(self)->m_xruns;
            return 0;
        },
        this);
    m_jack->jack_set_buffer_size_callback(
        m_client,
        [](jack_nframes_t frames, void* self) {
            static_cast<JackDevice*>(self)->m_period = frames;
            return 0;
        },
        this);
    m_jack->jack_set_sample_rate_callback(
        m_client,
        [](jack_nframes_t rate, void* self) {
            auto* const device = static_cast<JackDevice*>(self);
            if (rate != device->m_rate)
                device->m_alive = false;
            return 0;
        },
        this);
    m_jack->jack_on_info_shutdown(
        m_client,
        [](jack_status_t, const char*, void* self) {
            auto* const device = static_cast<JackDevice*>(self);
            device->m_alive = false;
            if (device->m_guest)
                device->m_guest->serverGone(device->m_client);
        },
        this);
    if (m_guest)
        setGuestCallbacks();
}

void JackDevice::setGuestCallbacks() {
    m_jack->jack_set_port_registration_callback(
        m_client,
        [](jack_port_id_t port, int registered, void* self) {
            auto* const device = static_cast<JackDevice*>(self);
            if (registered)
                device->m_guest->portRegistered(device->m_client, port);
            else
                device->m_guest->portUnregistered(device->m_client);
        },
        this);
    m_jack->jack_set_port_connect_callback(
        m_client,
        [](jack_port_id_t a, jack_port_id_t b, int connected, void* self) {
            auto* const device = static_cast<JackDevice*>(self);
            if (!connected)
                device->m_guest->portsDisconnected(device->m_client, a, b);
        },
        this);
}

void JackDevice::process(jack_nframes_t frames) noexcept {
    if (m_guest)
        m_guest->process(m_client, frames);
    const auto buffer = [&](jack_port_t* port) {
        return static_cast<float*>(m_jack->jack_port_get_buffer(port, frames));
    };
    if (m_input)
        m_bridge->consume({buffer(m_input), frames});
    float* const left = buffer(m_left);
    m_bridge->produce({left, frames});
    std::copy_n(left, frames, buffer(m_right));
}

std::vector<std::string> JackDevice::physicalPorts(unsigned long flags) const {
    const char** const names = m_jack->jack_get_ports(m_client, nullptr, JACK_DEFAULT_AUDIO_TYPE,
                                                      JackPortIsPhysical | flags);
    std::vector<std::string> ports;
    for (const char** name = names; name && *name; ++name)
        ports.emplace_back(*name);
    m_jack->jack_free(names);
    return ports;
}

void JackDevice::connectPorts() {
    const auto connect = [this](const char* from, const char* to) {
        m_jack->jack_connect(m_client, from, to);
    };
    const auto speakers = physicalPorts(JackPortIsInput);
    if (!speakers.empty())
        connect(m_jack->jack_port_name(m_left), speakers[0].c_str());
    if (speakers.size() > 1)
        connect(m_jack->jack_port_name(m_right), speakers[1].c_str());
    const auto microphones = m_input ? physicalPorts(JackPortIsOutput) : std::vector<std::string>();
    if (!microphones.empty())
        connect(microphones[0].c_str(), m_jack->jack_port_name(m_input));
}

// The server reports a loudspeaker's latency without the period that it is working on.
double JackDevice::latency() const {
    const auto speakers = physicalPorts(JackPortIsInput);
    jack_latency_range_t range{};
    if (!speakers.empty())
        m_jack->jack_port_get_latency_range(
            m_jack->jack_port_by_name(m_client, speakers[0].c_str()), JackPlaybackLatency, &range);
    return static_cast<double>(std::max(range.max, m_period.load())) / m_rate;
}

void JackDevice::readInfo() {
    std::lock_guard guard(m_infoMutex);
    m_info.name = "jack";
    m_info.description = "JACK server";
    m_info.rate = m_rate;
    m_info.latencySeconds = latency();
    m_info.realTime = m_jack->jack_is_realtime(m_client) != 0;
}
