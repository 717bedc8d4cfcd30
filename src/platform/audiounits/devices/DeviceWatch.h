#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "audiounits/devices/ClientGate.h"
#include "audiounits/devices/DeviceSupervisor.h"

/// One run of a DeviceSupervisor from start to stop. Everything that may hang in a server's library
/// happens on its thread, outside its mutex; the mutex guards who plays.
class DeviceWatch {
  public:
    using Choice = DeviceSupervisor::Choice;
    using Pace = DeviceSupervisor::Pace;
    using Maker = DeviceSupervisor::Maker;

    DeviceWatch(const Choice& choice, const Pace& pace, AudioDeviceClient& client, bool capture)
        : m_choice(choice),
          m_pace(pace),
          m_capture(capture),
          m_client(std::make_shared<GatedClient>(GatedClient{&client})) {}

    /// Returns when a device plays, be it the clock. [control]
    static void begin(const std::shared_ptr<DeviceWatch>& watch);
    /// No call of the client comes after it, even if a server hangs. [control]
    void end();
    AudioDeviceInfo info() const;
    AudioDeviceState state() const;

  private:
    struct Player {
        std::shared_ptr<AudioDevice> device;
        std::shared_ptr<ClientGate> gate;
    };
    using Lock = std::unique_lock<std::mutex>;

    void run();
    void look();
    bool tryDevice(std::size_t index);
    bool answers(const Player& player);
    void take(Player player, std::size_t index);
    void drop();
    bool lost();
    void playByClock(Lock& held);
    void sayThatNoneWorks();
    void countXruns() { m_earlierXruns += m_player.device->info().xruns; }
    Player playerOf(const Maker& maker) const {
        return {maker(), std::make_shared<ClientGate>(m_client)};
    }
    bool pause(std::chrono::milliseconds time);

    const Choice m_choice;
    const Pace m_pace;
    const bool m_capture;
    const std::shared_ptr<GatedClient> m_client;

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stopping = false;
    bool m_finished = false;
    Player m_player;                     // whose gate is open
    std::optional<std::size_t> m_index;  // which device that is; none is the clock
    AudioDeviceState m_state;
    std::uint64_t m_earlierXruns = 0;
    bool m_saidThatNoneWorks = false;
    std::thread m_thread;

    // Of the thread alone.
    std::optional<std::size_t> m_lost;  // the device to go back to when it answers again
    std::uint64_t m_lastCalls = 0;
    int m_silentTicks = 0;
    std::chrono::steady_clock::time_point m_nextLook;
};
