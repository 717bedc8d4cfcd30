#include "LatencyProbe.h"

#include <algorithm>
#include <span>
#include <stdexcept>

LatencyProbe::LatencyProbe() : m_client(jack_client_open("probe", JackNoStartServer, nullptr)) {
    if (!m_client)
        throw std::runtime_error("no JACK server");
    m_port = jack_port_register(m_client, "in", JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0);
    jack_set_process_callback(m_client, process, this);
    jack_activate(m_client);
}

LatencyProbe::~LatencyProbe() {
    jack_client_close(m_client);
}

bool LatencyProbe::connect(const char* port) {
    return jack_port_by_name(m_client, port) &&
           jack_connect(m_client, port, jack_port_name(m_port)) == 0;
}

std::optional<jack_nframes_t> LatencyProbe::heard() const {
    return m_state == kHeard ? std::optional(m_heard.load()) : std::nullopt;
}

int LatencyProbe::process(jack_nframes_t frames, void* self) {
    auto& probe = *static_cast<LatencyProbe*>(self);
    const std::span samples(static_cast<float*>(jack_port_get_buffer(probe.m_port, frames)),
                            frames);
    const auto first = std::ranges::find_if(samples, [](float sample) { return sample != 0; });
    probe.m_silentFrames = first == samples.end() ? probe.m_silentFrames + frames : 0;
    if (first != samples.end() && probe.m_state == kListening) {
        probe.m_heard = jack_last_frame_time(probe.m_client) +
                        static_cast<jack_nframes_t>(first - samples.begin());
        probe.m_state = kHeard;
    }
    return 0;
}
