#pragma once

#include <jack/jack.h>

#include <atomic>
#include <optional>

/// Where the instrument's left loudspeaker is found.
constexpr const char* kInstrumentPort = "ombrix:out_1";

/// A JACK client that listens to one port and notes the frame at which a sound begins, on the
/// server's own clock.
class LatencyProbe {
  public:
    /// Throws when there is no server.
    LatencyProbe();
    ~LatencyProbe();

    /// False when there is no such port yet.
    bool connect(const char* port);
    /// The server's time now, in frames.
    jack_nframes_t now() const { return jack_frame_time(m_client); }
    double rate() const { return jack_get_sample_rate(m_client); }
    /// From now on the first frame that is not silent is noted.
    void listen() { m_state = kListening; }
    /// When that was, on the server's clock; none while all is silent.
    std::optional<jack_nframes_t> heard() const;
    /// For longer than the gaps between grains.
    bool silent() const { return m_silentFrames > rate() / 5; }

  private:
    enum State { kIdle, kListening, kHeard };

    static int process(jack_nframes_t frames, void* probe);

    jack_client_t* m_client;
    jack_port_t* m_port = nullptr;
    std::atomic<int> m_state{kIdle};
    std::atomic<jack_nframes_t> m_silentFrames{0};
    std::atomic<jack_nframes_t> m_heard{0};
};
