#include "audiounits/devices/AudioDevices.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <thread>

#include "audiounits/devices/AlsaDevice.h"
#include "audiounits/devices/ClockDevice.h"
#include "audiounits/devices/DeviceName.h"
#include "audiounits/devices/DeviceSupervisor.h"
#include "audiounits/devices/JackDevice.h"
#include "audiounits/devices/PulseDevice.h"
#include "audiounits/devices/RealTimePriority.h"

namespace {

constexpr std::uint32_t kShortestPeriod = 16;
// A back end whose server does not answer within this time is left out of a list.
constexpr auto kListPatience = std::chrono::milliseconds(1500);

struct Choice {
    std::mutex mutex;
    std::shared_ptr<AudioDevice> device;
};

Choice& choice() {
    static Choice chosen;
    return chosen;
}

std::atomic<std::uint32_t> preferredPeriod{0};

std::shared_ptr<AudioDevice> makeClock() {
    return std::make_shared<ClockDevice>(preferredPeriod);
}

std::shared_ptr<AudioDevice> makeJack() {
    return std::make_shared<JackDevice>();
}

std::shared_ptr<AudioDevice> supervised(const DeviceName& name, const std::string& text) {
    using Backend = DeviceName::Backend;
    DeviceSupervisor::Choice choice;
    const auto wanted = [&](Backend backend) {
        return name.backend == backend || name.backend == Backend::automatic;
    };
    if (wanted(Backend::jack))
        choice.devices.push_back(makeJack);
    if (wanted(Backend::pulse))
        choice.devices.push_back(
            [sink = name.device] { return std::make_shared<PulseDevice>(sink, preferredPeriod); });
    if (wanted(Backend::alsa))
        choice.devices.push_back(
            [pcm = name.device] { return std::make_shared<AlsaDevice>(pcm, preferredPeriod); });
    choice.clock = makeClock;
    choice.name = text;
    choice.absence =
        text.empty()
            ? "no sound device answers (JACK, PulseAudio, ALSA); going on without "
              "sound until one appears"
            : "the device \"" + text + "\" does not answer; going on without sound until it does";
    return std::make_shared<DeviceSupervisor>(std::move(choice));
}

using List = std::vector<AudioDeviceInfo>;

// Asks on a thread of its own, which is left behind when a server hangs.
std::future<List> listAside(List (*list)()) {
    std::packaged_task<List()> task(list);
    auto result = task.get_future();
    std::thread(std::move(task)).detach();
    return result;
}

List listClock() {
    AudioDeviceInfo info = ClockDevice(preferredPeriod).info();
    info.realTime = RealTimePriority::available();
    return {info};
}

// Of ALSA only its own default is played to without being asked for: "null" always works.
bool wouldBeChosen(const AudioDeviceInfo& info) {
    return !info.name.starts_with("alsa:") || info.name == "alsa:default";
}

}  // namespace

bool AudioDevices::choose(const std::string& name, std::string& error) {
    const auto parsed = DeviceName::parse(name, error);
    if (!parsed)
        return false;
    use(parsed->backend == DeviceName::Backend::clock ? makeClock() : supervised(*parsed, name));
    return true;
}

void AudioDevices::use(std::shared_ptr<AudioDevice> device) {
    std::lock_guard guard(choice().mutex);
    choice().device = std::move(device);
}

std::shared_ptr<AudioDevice> AudioDevices::current() {
    std::lock_guard guard(choice().mutex);
    if (!choice().device)
        choice().device = supervised({}, "");
    return choice().device;
}

AudioDeviceState AudioDevices::state() {
    return current()->state();
}

std::vector<AudioDeviceInfo> AudioDevices::list() {
    const auto deadline = std::chrono::steady_clock::now() + kListPatience;
    std::future<List> answers[] = {listAside(JackDevice::list), listAside(PulseDevice::list),
                                   listAside(AlsaDevice::list), listAside(listClock)};
    List all;
    for (std::future<List>& answer : answers) {
        if (answer.wait_until(deadline) != std::future_status::ready)
            continue;
        const List some = answer.get();
        all.insert(all.end(), some.begin(), some.end());
    }
    // Back ends whose threads are ours are granted what the clock's is.
    for (AudioDeviceInfo& info : all)
        info.realTime = info.name == "jack" ? info.realTime : all.back().realTime;
    const auto standard = std::ranges::find_if(all, wouldBeChosen);
    if (standard != all.end())
        standard->isDefault = true;
    return all;
}

void AudioDevices::setPreferredPeriod(std::uint32_t frames) {
    preferredPeriod = frames ? std::clamp(frames, kShortestPeriod, kMaximumDeviceFrames) : 0;
}
