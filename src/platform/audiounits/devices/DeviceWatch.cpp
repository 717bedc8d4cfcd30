#include "audiounits/devices/DeviceWatch.h"

#include <algorithm>
#include <utility>

#include "log/Log.h"

void DeviceWatch::begin(const std::shared_ptr<DeviceWatch>& watch) {
    watch->m_thread = std::thread([watch] { watch->run(); });
    Lock held(watch->m_mutex);
    const auto someonePlays = [&] { return watch->m_player.device != nullptr; };
    if (!watch->m_changed.wait_for(held, watch->m_pace.patience, someonePlays))
        watch->playByClock(held);
}

// The thread may hang in the library of a server that is stopped. All gates are closed by then, so
// it is left to end by itself; soon, when the clock plays already and there is nothing to stop.
void DeviceWatch::end() {
    Lock held(m_mutex);
    m_stopping = true;
    if (m_player.gate)
        m_player.gate->close();
    m_changed.notify_all();
    const auto patience = m_index ? m_pace.stopPatience : m_pace.shortPatience;
    const bool done = m_changed.wait_for(held, patience, [&] { return m_finished; });
    held.unlock();
    if (done)
        m_thread.join();
    else
        m_thread.detach();
}

AudioDeviceInfo DeviceWatch::info() const {
    Lock held(m_mutex);
    AudioDeviceInfo info = m_player.device->info();
    info.xruns += m_earlierXruns;
    return info;
}

AudioDeviceState DeviceWatch::state() const {
    Lock held(m_mutex);
    return m_state;
}

void DeviceWatch::run() {
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

bool DeviceWatch::pause(std::chrono::milliseconds time) {
    Lock held(m_mutex);
    return !m_changed.wait_for(held, time, [&] { return m_stopping; });
}

// While a device plays, only the better one that was lost before is looked for.
void DeviceWatch::look() {
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

bool DeviceWatch::tryDevice(std::size_t index) {
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

bool DeviceWatch::answers(const Player& player) {
    const auto deadline = std::chrono::steady_clock::now() + m_pace.patience;
    while (player.gate->calls() == 0) {
        const bool late = std::chrono::steady_clock::now() > deadline;
        if (late || !player.device->alive() || !pause(std::chrono::milliseconds(2)))
            return false;
    }
    return true;
}

void DeviceWatch::take(Player player, std::size_t index) {
    const std::string name = player.device->info().name;
    Log::line("audio: playing through %s", name.c_str());
    {
        Lock held(m_mutex);
        if (m_player.gate) {
            m_player.gate->close();
            countXruns();
        }
        std::swap(m_player, player);
        m_index = index;
        m_state = {AudioDeviceState::Presence::playing, name, "", m_state.losses};
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
bool DeviceWatch::lost() {
    const std::uint64_t calls = m_player.gate->calls();
    m_silentTicks = calls == m_lastCalls ? m_silentTicks + 1 : 0;
    m_lastCalls = calls;
    return !m_player.device->alive() || m_silentTicks >= m_pace.silentTicks;
}

void DeviceWatch::drop() {
    Player old;
    {
        Lock held(m_mutex);
        old = m_player;
        old.gate->close();
        countXruns();
        m_lost = m_lost ? std::min(*m_lost, *m_index) : *m_index;
        m_index.reset();
        m_state.presence = AudioDeviceState::Presence::lost;
        ++m_state.losses;
        playByClock(held);
    }
    Log::line("audio: lost %s", old.device->info().name.c_str());
    old.device->stop();
    m_nextLook = {};
}

void DeviceWatch::playByClock(Lock&) {
    if (m_stopping)
        return;
    m_player = playerOf(m_choice.clock);
    m_player.device->start(*m_player.gate, m_capture);
    m_player.gate->open();
    m_changed.notify_all();
}

void DeviceWatch::sayThatNoneWorks() {
    {
        Lock held(m_mutex);
        if (m_state.presence == AudioDeviceState::Presence::starting)
            m_state = {AudioDeviceState::Presence::absent, "", m_choice.absence, 0};
    }
    if (pause(std::chrono::milliseconds(0)) && !std::exchange(m_saidThatNoneWorks, true))
        tellUser("%s", m_choice.absence.c_str());
}
