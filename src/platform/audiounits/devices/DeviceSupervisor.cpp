#include "audiounits/devices/DeviceSupervisor.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "audiounits/devices/ClientGate.h"
#include "log/Log.h"

// One run from start to stop. Everything that may hang in a server's library happens on its thread,
// outside its mutex; the mutex guards who plays.
class DeviceSupervisor::Watch {
  public:
    Watch(const Choice& choice, const Pace& pace, AudioDeviceClient& client, bool capture)
        : m_choice(choice),
          m_pace(pace),
          m_capture(capture),
          m_client(std::make_shared<GatedClient>(GatedClient{&client})) {}

    static void begin(const std::shared_ptr<Watch>& watch);
    void end();
    AudioDeviceInfo info() const;

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
    std::uint64_t m_earlierXruns = 0;
    bool m_saidThatNoneWorks = false;
    std::thread m_thread;

    // Of the thread alone.
    std::optional<std::size_t> m_lost;  // the device to go back to when it answers again
    std::uint64_t m_lastCalls = 0;
    int m_silentTicks = 0;
    std::chrono::steady_clock::time_point m_nextLook;
};

void DeviceSupervisor::Watch::begin(const std::shared_ptr<Watch>& watch) {
    watch->m_thread = std::thread([watch] { watch->run(); });
    Lock held(watch->m_mutex);
    const auto someonePlays = [&] { return watch->m_player.device != nullptr; };
    if (!watch->m_changed.wait_for(held, watch->m_pace.patience, someonePlays))
        watch->playByClock(held);
}

// The thread may hang in the library of a server that is stopped. All gates are closed by then, so
// it is left to end by itself.
void DeviceSupervisor::Watch::end() {
    Lock held(m_mutex);
    m_stopping = true;
    if (m_player.gate)
        m_player.gate->close();
    m_changed.notify_all();
    const bool done = m_changed.wait_for(held, m_pace.patience, [&] { return m_finished; });
    held.unlock();
    if (done)
        m_thread.join();
    else
        m_thread.detach();
}

AudioDeviceInfo DeviceSupervisor::Watch::info() const {
    Lock held(m_mutex);
    AudioDeviceInfo info = m_player.device->info();
    info.xruns += m_earlierXruns;
    return info;
}

void DeviceSupervisor::Watch::run() {
    do {
        if (m_index && lost())
            drop();
        if ((!m_index || m_lost) && std::chrono::steady_clock::now() >= m_nextLook)
            look();
    } while (pause(m_pace.tick));
    if (m_player.device)
        m_player.device->stop();
    Lock held(m_mutex);
    m_finished = true;
    m_changed.notify_all();
}

bool DeviceSupervisor::Watch::pause(std::chrono::milliseconds time) {
    Lock held(m_mutex);
    return !m_changed.wait_for(held, time, [&] { return m_stopping; });
}

// While a device plays, only the better one that was lost before is looked for.
void DeviceSupervisor::Watch::look() {
    const std::size_t first = m_index ? *m_lost : 0;
    const std::size_t end = m_index ? *m_lost + 1 : m_choice.devices.size();
    bool found = false;
    for (std::size_t index = first; index < end && !found; ++index)
        found = tryDevice(index);
    if (!found && !m_index)
        sayThatNoneWorks();
    Lock held(m_mutex);
    if (!m_player.device)
        playByClock(held);
    m_nextLook = std::chrono::steady_clock::now() + m_pace.probe;
}

bool DeviceSupervisor::Watch::tryDevice(std::size_t index) {
    if (!pause(std::chrono::milliseconds(0)))
        return false;
    Player player = playerOf(m_choice.devices[index]);
    if (player.device->start(*player.gate, m_capture) != noErr)
        return false;
    if (!answers(player)) {
        player.device->stop();
        return false;
    }
    take(std::move(player), index);
    return true;
}

bool DeviceSupervisor::Watch::answers(const Player& player) {
    const auto deadline = std::chrono::steady_clock::now() + m_pace.patience;
    while (player.gate->calls() == 0) {
        const bool late = std::chrono::steady_clock::now() > deadline;
        if (late || !player.device->alive() || !pause(std::chrono::milliseconds(2)))
            return false;
    }
    return true;
}

void DeviceSupervisor::Watch::take(Player player, std::size_t index) {
    Log::line("audio: playing through %s", player.device->info().name.c_str());
    {
        Lock held(m_mutex);
        if (m_player.gate) {
            m_player.gate->close();
            countXruns();
        }
        std::swap(m_player, player);
        m_index = index;
        if (!m_stopping)
            m_player.gate->open();
        m_changed.notify_all();
    }
    if (m_lost && index <= *m_lost)
        m_lost.reset();
    m_silentTicks = 0;
    if (player.device)
        player.device->stop();
}

// Counted in looks, not in seconds: when this whole program was stopped for a while, time has
// passed but the device had no chance to call.
bool DeviceSupervisor::Watch::lost() {
    const std::uint64_t calls = m_player.gate->calls();
    m_silentTicks = calls == m_lastCalls ? m_silentTicks + 1 : 0;
    m_lastCalls = calls;
    return !m_player.device->alive() || m_silentTicks >= m_pace.silentTicks;
}

void DeviceSupervisor::Watch::drop() {
    Player old;
    {
        Lock held(m_mutex);
        old = m_player;
        old.gate->close();
        countXruns();
        m_lost = m_lost ? std::min(*m_lost, *m_index) : *m_index;
        m_index.reset();
        playByClock(held);
    }
    Log::line("audio: lost %s", old.device->info().name.c_str());
    old.device->stop();
    m_nextLook = {};
}

void DeviceSupervisor::Watch::playByClock(Lock&) {
    if (m_stopping)
        return;
    m_player = playerOf(m_choice.clock);
    m_player.device->start(*m_player.gate, m_capture);
    m_player.gate->open();
    m_changed.notify_all();
}

void DeviceSupervisor::Watch::sayThatNoneWorks() {
    if (pause(std::chrono::milliseconds(0)) && !std::exchange(m_saidThatNoneWorks, true))
        tellUser("%s", m_choice.absence.c_str());
}

DeviceSupervisor::DeviceSupervisor(Choice choice) : DeviceSupervisor(std::move(choice), Pace{}) {}

DeviceSupervisor::DeviceSupervisor(Choice choice, Pace pace)
    : m_choice(std::move(choice)), m_pace(pace) {}

DeviceSupervisor::~DeviceSupervisor() {
    stop();
}

OSStatus DeviceSupervisor::start(AudioDeviceClient& client, bool capture) {
    stop();
    m_watch = std::make_shared<Watch>(m_choice, m_pace, client, capture);
    Watch::begin(m_watch);
    return noErr;
}

void DeviceSupervisor::stop() {
    if (m_watch)
        m_watch->end();
    m_watch.reset();
}

AudioDeviceInfo DeviceSupervisor::info() const {
    if (m_watch)
        return m_watch->info();
    AudioDeviceInfo info;
    info.name = m_choice.name;
    return info;
}
