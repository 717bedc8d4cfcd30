#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "audiounits/devices/AudioDevice.h"

/// The client behind all gates, and what it has been given so far, so that its time runs on while
/// devices come and go. Touched by the thread of the open gate only.
struct GatedClient {
    AudioDeviceClient* client = nullptr;
    std::uint64_t produced = 0;  // frames
    std::uint64_t consumed = 0;
};

/// Stands between one running device and the client. While it is closed the device is given
/// silence and the client knows nothing of it, so a new device can be seen to work before it takes
/// over, and a device that hangs while it stops does no harm. At most one gate of a client is open.
class ClientGate final : public AudioDeviceClient {
  public:
    explicit ClientGate(std::shared_ptr<GatedClient> client) : m_client(std::move(client)) {}

    /// [control]
    void open() { m_open.store(true); }
    /// [control] Returns when no call of the client is under way and none will come.
    void close();
    /// [any thread] How often the device has asked for frames: its sign of life.
    std::uint64_t calls() const { return m_calls.load(std::memory_order_relaxed); }

    void produce(std::span<std::int16_t> mono, const AudioTimeStamp& time) noexcept override;
    void consume(std::span<const std::int16_t> mono, const AudioTimeStamp& time) noexcept override;

  private:
    // Either the device's thread sees the gate closed or `close` sees the thread inside: both sides
    // write their own flag before they read the other's, in one order for all threads.
    bool enter() noexcept;
    void leave() noexcept { m_inside.store(false); }

    std::shared_ptr<GatedClient> m_client;
    std::atomic<bool> m_open{false};
    std::atomic<bool> m_inside{false};
    std::atomic<std::uint64_t> m_calls{0};
};
