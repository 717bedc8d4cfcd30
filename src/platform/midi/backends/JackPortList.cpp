#include "midi/backends/JackPortList.h"

namespace {

/// Of hardware the alias says what it is.
std::string nameForPeople(const JackLibrary& jack, jack_port_t* port, const char* name) {
    std::vector<char> first(static_cast<std::size_t>(jack.jack_port_name_size()));
    std::vector<char> second(first.size());
    char* const aliases[2] = {first.data(), second.data()};
    if ((jack.jack_port_flags(port) & JackPortIsPhysical) &&
        jack.jack_port_get_aliases(port, aliases) > 0)
        return first.data();
    return name;
}

void addPorts(const JackLibrary& jack, jack_client_t* client, bool sources,
              std::vector<MidiBackendPort>& ports) {
    const auto flags = sources ? JackPortIsOutput : JackPortIsInput;
    const char** const names = jack.jack_get_ports(client, nullptr, JACK_DEFAULT_MIDI_TYPE, flags);
    for (const char** name = names; name && *name; ++name) {
        jack_port_t* const port = jack.jack_port_by_name(client, *name);
        if (!port || jack.jack_port_is_mine(client, port))
            continue;
        const std::string key = *name;
        ports.push_back({key, 0, nameForPeople(jack, port, *name), sources,
                         MIDIProperties{{kMIDIPropertyDisplayName, key.substr(0, key.find(':'))}}});
    }
    jack.jack_free(names);
}

}  // namespace

std::vector<MidiBackendPort> listJackMidiPorts(const JackLibrary& jack, jack_client_t* client) {
    std::vector<MidiBackendPort> ports;
    addPorts(jack, client, true, ports);
    addPorts(jack, client, false, ports);
    return ports;
}
