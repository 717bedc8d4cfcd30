#pragma once

#include <jack/jack.h>
#include <jack/midiport.h>

#include <atomic>
#include <chrono>
#include <random>
#include <string>
#include <utility>

/// A foreign JACK client with one MIDI port that it registers and gives up at will, and on which it
/// plays as many messages a second as it is told: random notes of all channels, half of them
/// releases. [main] but for the cycle.
class StormClient {
  public:
    explicit StormClient(const char* name) : m_name(name) { open(); }
    ~StormClient() { close(); }

    /// Has a port from now on; anew if the server has dropped the client, or runs it no more, as
    /// one under load does.
    void plug() {
        if (m_dropped || forgotten()) {
            close();
            open();
        }
        if (m_client && !m_port)
            m_port =
                jack_port_register(m_client, "out", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
    }
    void pull() {
        jack_port_t* const port = m_port.exchange(nullptr);
        while (m_inCycle && !m_dropped) {
        }
        if (port && !m_dropped)
            jack_port_unregister(m_client, port);
    }
    void setRate(double messagesPerSecond) { m_rate = messagesPerSecond; }
    /// From now on all notes are released, one after the other.
    void setReleasing(bool on) { m_releasing = on; }

  private:
    void open() {
        m_dropped = false;
        m_inCycle = false;
        m_lastRun = std::chrono::steady_clock::now();
        jack_status_t status{};
        m_client = jack_client_open(m_name.c_str(), JackNoStartServer, &status);
        if (!m_client) {
            m_dropped = true;
            return;
        }
        jack_set_process_callback(
            m_client,
            [](jack_nframes_t frames, void* self) {
                static_cast<StormClient*>(self)->process(frames);
                return 0;
            },
            this);
        jack_on_info_shutdown(
            m_client,
            [](jack_status_t, const char*, void* self) {
                static_cast<StormClient*>(self)->m_dropped = true;
            },
            this);
        jack_activate(m_client);
    }
    bool forgotten() {
        const auto now = std::chrono::steady_clock::now();
        const std::uint64_t cycles = m_cycles;
        if (std::exchange(m_cyclesSeen, cycles) != cycles)
            m_lastRun = now;
        return now - m_lastRun > std::chrono::seconds(1);
    }
    void close() {
        m_port = nullptr;
        if (m_client)
            jack_client_close(m_client);
        m_client = nullptr;
    }
    void process(jack_nframes_t frames) {
        m_inCycle = true;
        ++m_cycles;
        if (jack_port_t* const port = m_port)
            fill(jack_port_get_buffer(port, frames), static_cast<std::uint32_t>(frames));
        m_inCycle = false;
    }
    void fill(void* buffer, std::uint32_t frames) {
        jack_midi_clear_buffer(buffer);
        m_due += m_rate * frames / jack_get_sample_rate(m_client);
        const auto count = static_cast<std::uint32_t>(m_due);
        m_due -= count;
        for (std::uint32_t i = 0; i < count; ++i) {
            const auto channel = static_cast<jack_midi_data_t>(m_random() % 16);
            const bool down = !m_releasing && m_random() % 2;
            const jack_midi_data_t message[] = {
                static_cast<jack_midi_data_t>((down ? 0x90 : 0x80) + channel),
                static_cast<jack_midi_data_t>(m_releasing ? m_next++ % 128 : m_random() % 128), 90};
            jack_midi_event_write(buffer, i * frames / count, message, 3);
        }
    }

    const std::string m_name;
    jack_client_t* m_client = nullptr;
    std::atomic<bool> m_dropped{false};
    std::atomic<std::uint64_t> m_cycles{0};
    std::uint64_t m_cyclesSeen = 0;
    std::chrono::steady_clock::time_point m_lastRun;
    std::atomic<jack_port_t*> m_port{nullptr};
    std::atomic<bool> m_inCycle{false};
    std::atomic<bool> m_releasing{false};
    std::atomic<double> m_rate{0};
    double m_due = 0;  // messages, of the cycle
    std::mt19937 m_random{17};
    unsigned m_next = 0;
};
