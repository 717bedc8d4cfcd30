#pragma once

#include <atomic>
#include <random>
#include <string>

#include "audiounits/devices/JackLibrary.h"

/// A foreign JACK client with one MIDI port that it registers and gives up at will, and on which it
/// plays as many messages a second as it is told: random notes of all channels, half of them
/// releases.
class StormClient {
  public:
    explicit StormClient(const char* name) {
        jack_status_t status{};
        m_client = m_jack.jack_client_open(name, JackNoStartServer, &status);
        m_jack.jack_set_process_callback(
            m_client,
            [](jack_nframes_t frames, void* self) {
                static_cast<StormClient*>(self)->process(frames);
                return 0;
            },
            this);
        m_jack.jack_activate(m_client);
    }
    ~StormClient() { m_jack.jack_client_close(m_client); }

    void plug() {
        m_port =
            m_jack.jack_port_register(m_client, "out", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
    }
    void pull() {
        jack_port_t* const port = m_port.exchange(nullptr);
        while (m_inCycle) {
        }
        m_jack.jack_port_unregister(m_client, port);
    }
    void setRate(double messagesPerSecond) { m_rate = messagesPerSecond; }
    /// From now on all notes are released, one after the other.
    void setReleasing(bool on) { m_releasing = on; }
    std::uint64_t played() const { return m_played; }

  private:
    void process(jack_nframes_t frames) {
        m_inCycle = true;
        if (jack_port_t* const port = m_port)
            fill(m_jack.jack_port_get_buffer(port, frames), static_cast<std::uint32_t>(frames));
        m_inCycle = false;
    }
    void fill(void* buffer, std::uint32_t frames) {
        m_jack.jack_midi_clear_buffer(buffer);
        m_due += m_rate * frames / m_jack.jack_get_sample_rate(m_client);
        const auto count = static_cast<std::uint32_t>(m_due);
        m_due -= count;
        for (std::uint32_t i = 0; i < count; ++i) {
            const auto channel = static_cast<jack_midi_data_t>(m_random() % 16);
            const bool down = !m_releasing && m_random() % 2;
            const jack_midi_data_t message[] = {
                static_cast<jack_midi_data_t>((down ? 0x90 : 0x80) + channel),
                static_cast<jack_midi_data_t>(m_releasing ? m_next++ % 128 : m_random() % 128), 90};
            m_played += m_jack.jack_midi_event_write(buffer, i * frames / count, message, 3) == 0;
        }
    }

    const JackLibrary& m_jack = *JackLibrary::get();
    jack_client_t* m_client;
    std::atomic<jack_port_t*> m_port{nullptr};
    std::atomic<bool> m_inCycle{false};
    std::atomic<bool> m_releasing{false};
    std::atomic<double> m_rate{0};
    double m_due = 0;  // messages, of the cycle
    std::atomic<std::uint64_t> m_played{0};
    std::mt19937 m_random{17};
    unsigned m_next = 0;
};
