#pragma once

#include <vector>

#include "audiounits/devices/JackLibrary.h"
#include "midi/backends/MidiBackend.h"

/// All MIDI ports at the client's JACK server but those of the client; instances are left at 0.
/// Asks the server: [keeper].
std::vector<MidiBackendPort> listJackMidiPorts(const JackLibrary& jack, jack_client_t* client);
