#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

#include "audiounits/devices/DeviceBridge.h"
#include "audiounits/devices/JackGuest.h"
#include "audiounits/devices/JackLibrary.h"

/// A client of the JACK server: ports out_1 and out_2, both with the same sound, and in_1 while
/// capturing, connected to the first physical ports. Rate and period are the server's; a new period
/// is followed, a new rate wants a new start. Never starts a server. MIDI may share the client.
class JackDevice final : public AudioDevice {
  public:
    ~JackDevice() override;

    OSStatus start(AudioDeviceClient& client, bool capture) override;
    void stop() override;
    AudioDeviceInfo info() const override;
    bool alive() const override { return m_alive; }

    /// The server, if there is one.
    static std::vector<AudioDeviceInfo> list();

  private:
    bool open();
    bool registerPorts(bool capture);
    void setCallbacks();
    void setGuestCallbacks();
    void connectPorts();
    void readInfo();
    void process(jack_nframes_t frames) noexcept;
    jack_port_t* addPort(const char* name, unsigned long flags);
    std::vector<std::string> physicalPorts(unsigned long flags) const;
    double latency() const;

    const JackLibrary* m_jack = nullptr;
    jack_client_t* m_client = nullptr;
    jack_port_t* m_left = nullptr;
    jack_port_t* m_right = nullptr;
    jack_port_t* m_input = nullptr;  // null unless capturing
    std::unique_ptr<DeviceBridge> m_bridge;
    std::shared_ptr<JackGuest> m_guest;  // shared with its owner, which may go first; or null
    jack_nframes_t m_rate = 0;
    std::atomic<bool> m_alive{false};
    std::atomic<std::uint32_t> m_period{0};
    std::atomic<std::uint64_t> m_xruns{0};
    mutable std::mutex m_infoMutex;
    AudioDeviceInfo m_info;
};
