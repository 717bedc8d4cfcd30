#pragma once

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "audiounits/devices/AudioDevice.h"

/// What a test does to a device that it has in hand, from any thread.
struct FakeServer {
    std::string name;
    std::atomic<bool> present{true};   // a device can be started
    std::atomic<bool> alive{true};     // a running device says so
    std::atomic<bool> silent{false};   // a running device does not call
    std::atomic<bool> hanging{false};  // stopping a device does not return
    std::atomic<int> starts{0};
};

/// A device whose server dies, falls silent or hangs as the test wishes; calls from a thread of its
/// own as fast as that is scheduled.
class FakeDevice final : public AudioDevice {
  public:
    explicit FakeDevice(std::shared_ptr<FakeServer> server);
    ~FakeDevice() override;

    OSStatus start(AudioDeviceClient& client, bool capture) override;
    void stop() override;
    AudioDeviceInfo info() const override;
    bool alive() const override { return m_server->alive; }

  private:
    void run(AudioDeviceClient& client, bool capture);

    const std::shared_ptr<FakeServer> m_server;
    std::atomic<bool> m_running{false};
    std::thread m_thread;
};

/// Counts calls and whatever a device must never do.
class StrictClient final : public AudioDeviceClient {
  public:
    void produce(std::span<std::int16_t> mono, const AudioTimeStamp& time) noexcept override;
    void consume(std::span<const std::int16_t> mono, const AudioTimeStamp& time) noexcept override;

    std::uint64_t frames() const { return m_frames; }
    std::uint64_t heard() const { return m_heard; }
    std::uint64_t faults() const { return m_faults; }
    /// Whether further frames are asked for within a generous time.
    bool playsOn() const;
    /// From now on every call is a fault, or none is.
    void expectSilence(bool silence) { m_expectSilence = silence; }
    /// Time begins anew with each start. Only while stopped.
    void restart() { m_frames = m_heard = 0; }

  private:
    std::atomic<bool> m_inside{false};
    std::atomic<bool> m_expectSilence{false};
    std::atomic<std::uint64_t> m_frames{0};
    std::atomic<std::uint64_t> m_heard{0};
    std::atomic<std::uint64_t> m_faults{0};
    std::uint64_t m_plain = 0;  // for the thread sanitizer: calls must follow one another
};
