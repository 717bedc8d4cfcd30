#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "audiounits/devices/PulseLibrary.h"

/// A conversation with a PulseAudio server, on a thread of libpulse's own. Never starts a server.
/// All calls but the destructor's want the lock. [control]
class PulseConnection {
  public:
    /// Null where no server answers within `kPatience`.
    static std::unique_ptr<PulseConnection> open();
    ~PulseConnection();
    PulseConnection(const PulseConnection&) = delete;
    PulseConnection& operator=(const PulseConnection&) = delete;

    static constexpr pa_usec_t kPatience = 1'000'000;  // microseconds for an answer

    /// Held around every call into the library, and by it around every callback.
    class Lock {
      public:
        explicit Lock(const PulseConnection& connection) : m_connection(connection) {
            m_connection.m_pulse.pa_threaded_mainloop_lock(m_connection.m_loop);
        }
        ~Lock() { m_connection.m_pulse.pa_threaded_mainloop_unlock(m_connection.m_loop); }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

      private:
        const PulseConnection& m_connection;
    };

    /// A sink, or the source that is heard.
    struct Endpoint {
        std::string name;
        std::string description;
        std::uint32_t rate = 0;
        double latencySeconds = 0;
    };
    struct Defaults {
        std::string sink;
        std::string source;
    };
    Defaults defaults();
    std::vector<Endpoint> sinks();
    std::vector<Endpoint> sources();
    /// Without a name where there is none of that name.
    Endpoint sink(const std::string& name);
    Endpoint source(const std::string& name);

    /// Waits until `done`, which callbacks make true before they `signal`; false if the server is
    /// gone or does not answer in time.
    bool await(const std::function<bool()>& done);
    void signal() { m_pulse.pa_threaded_mainloop_signal(m_loop, 0); }
    bool good() const;

    /// Has work done once on the thread that calls back, where it does not hold the lock.
    void runOnThread(void (*work)(pa_threaded_mainloop*, void*), void* context) {
        m_pulse.pa_threaded_mainloop_once_unlocked(m_loop, work, context);
    }
    /// Called, on the connection's thread, when the server has gone.
    void whenGone(std::function<void()> gone) { m_gone = std::move(gone); }

    const PulseLibrary& library() const { return m_pulse; }
    pa_context* context() { return m_context; }

  private:
    explicit PulseConnection(const PulseLibrary& pulse);
    bool connect();
    void stateChanged();

    const PulseLibrary& m_pulse;
    pa_threaded_mainloop* m_loop;
    pa_context* m_context = nullptr;
    std::function<void()> m_gone;
};
