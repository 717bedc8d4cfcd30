#pragma once

#include <jack/jack.h>

#include <memory>

/// Who shares the client of the JACK server that plays: MIDI, whose ports then stand beside those
/// of the sound, in the same cycle.
class JackGuest {
  public:
    virtual ~JackGuest() = default;
    /// [device] The client is active and may be used from now on.
    virtual void join(jack_client_t* client) = 0;
    /// [device] When it returns the client is not used any more: it is about to be closed.
    virtual void leave(jack_client_t* client) = 0;
    /// [render] Before the sound of the same cycle, outside its RenderScope.
    virtual void process(jack_client_t* client, jack_nframes_t frames) noexcept = 0;

    // [JACK's own thread], which must not call the server.
    virtual void portRegistered(jack_client_t* client, jack_port_id_t port) = 0;
    virtual void portUnregistered(jack_client_t* client) = 0;
    virtual void portsDisconnected(jack_client_t* client, jack_port_id_t a, jack_port_id_t b) = 0;
    virtual void serverGone(jack_client_t* client) = 0;

    /// The one of this process, for clients that start from now on; null for none. [any thread but
    /// render]
    static std::shared_ptr<JackGuest> current();
    static void setCurrent(std::shared_ptr<JackGuest> guest);
};
