#include "midi/backends/JackMidiPorts.h"

#include <algorithm>
#include <chrono>
#include <thread>

bool JackMidiPorts::has(const LanePointer& lane) const {
    return std::ranges::find(m_places, lane, &Place::lane) != m_places.end();
}

void JackMidiPorts::add(jack_client_t* client, const LanePointer& lane) {
    const MidiBackend::Lane& wanted = lane->wanted();
    Place* const place = findPlace(wanted);
    if (!place)
        return;
    if (!place->port) {
        place->name = portName(wanted, *place);
        place->toUs = wanted.toUs;
        place->port = makePort(client, *place);
    }
    jack_port_t* const port = place->port;
    if (!port)
        return;
    lane->setPort(port);
    place->lane = lane;
    place->cycleLane = lane.get();
    const char* const ours = m_jack->jack_port_name(port);
    const char* const theirs = wanted.key.c_str();
    if (wanted.key.empty() || (wanted.toUs ? m_jack->jack_connect(client, theirs, ours)
                                           : m_jack->jack_connect(client, ours, theirs)) == 0)
        lane->setConnected(true);
}

/// One that has served the same purpose, else one without a port; null if all are taken.
JackMidiPorts::Place* JackMidiPorts::findPlace(const MidiBackend::Lane& wanted) {
    const auto serves = [&](const Place& place) {
        return !place.lane && place.port && place.toUs == wanted.toUs &&
               place.name == portName(wanted, place);
    };
    auto found = std::ranges::find_if(m_places, serves);
    if (found == m_places.end())
        found = std::ranges::find_if(m_places, [](const Place& place) { return !place.port; });
    return found == m_places.end() ? nullptr : &*found;
}

/// Ports that others connect to as they like have names for people, the others numbers.
std::string JackMidiPorts::portName(const MidiBackend::Lane& wanted, const Place& place) const {
    if (wanted.key.empty())
        return wanted.name;
    const auto number = std::to_string(&place - m_places.data() + 1);
    return (wanted.toUs ? "midi_in_" : "midi_out_") + number;
}

/// One that the client has already is left from an earlier use of it.
jack_port_t* JackMidiPorts::makePort(jack_client_t* client, const Place& place) const {
    const auto flags = place.toUs ? JackPortIsInput : JackPortIsOutput;
    jack_port_t* const made =
        m_jack->jack_port_register(client, place.name.c_str(), JACK_DEFAULT_MIDI_TYPE, flags, 0);
    if (made)
        return made;
    const std::string whole = m_jack->jack_get_client_name(client) + (":" + place.name);
    jack_port_t* const old = m_jack->jack_port_by_name(client, whole.c_str());
    const bool usable =
        old && m_jack->jack_port_is_mine(client, old) && m_jack->jack_port_flags(old) & flags;
    return usable ? old : nullptr;
}

void JackMidiPorts::remove(jack_client_t* client, Place& place) {
    place.cycleLane = nullptr;
    waitForCycle();
    place.lane->setPort(nullptr);
    place.lane->setConnected(false);
    if (place.toUs)
        place.lane->releaseNow();
    if (client)
        m_jack->jack_port_disconnect(client, place.port);
    place.lane = nullptr;
}

void JackMidiPorts::forget() {
    for (Place& place : m_places)
        place.port = nullptr;
    waitForCycle();
}

/// The cycle counts itself in before it looks which lanes there are, so that it either sees that a
/// lane has gone or is seen here.
void JackMidiPorts::waitForCycle() const {
    while (m_inCycle.load() > 0)
        std::this_thread::sleep_for(std::chrono::microseconds(50));
}

/// Else it would say what it said last in every cycle, to whom it is connected by hand.
void JackMidiPorts::silence(jack_port_t* port, jack_nframes_t frames) noexcept {
    if (void* const buffer = m_jack->jack_port_get_buffer(port, frames))
        m_jack->jack_midi_clear_buffer(buffer);
}

bool JackMidiPorts::cycle(jack_client_t* client, jack_nframes_t frames) noexcept {
    m_inCycle.fetch_add(1);
    bool heard = false;
    for (Place& place : m_places) {
        JackMidiLane* const lane = place.cycleLane.load();
        jack_port_t* const port = place.port.load();
        if (lane)
            heard = lane->cycle(*m_jack, client, frames) || heard;
        else if (port && !place.toUs)
            silence(port, frames);
    }
    m_inCycle.fetch_sub(1);
    return heard;
}
