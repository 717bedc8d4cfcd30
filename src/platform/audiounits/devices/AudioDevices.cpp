#include "audiounits/devices/AudioDevices.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <initializer_list>
#include <iterator>
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
    std::string name;    // of the device, as it was chosen
    std::string source;  // of PulseAudio; "" is its default
};

Choice& choice() {
    static Choice chosen;
    return chosen;
}

std::atomic<std::uint32_t> wantedPeriod{0};

std::string chosenSource() {
    std::lock_guard guard(choice().mutex);
    return choice().source;
}

std::shared_ptr<AudioDevice> makeClock() {
    return std::make_shared<ClockDevice>(wantedPeriod);
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
        choice.devices.push_back([sink = name.device] {
            return std::make_shared<PulseDevice>(sink, wantedPeriod, chosenSource());
        });
    if (wanted(Backend::alsa))
        choice.devices.push_back(
            [pcm = name.device] { return std::make_shared<AlsaDevice>(pcm, wantedPeriod); });
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

List listTogether(std::initializer_list<List (*)()> lists) {
    const auto deadline = std::chrono::steady_clock::now() + kListPatience;
    std::vector<std::future<List>> answers;
    std::ranges::transform(lists, std::back_inserter(answers), listAside);
    List all;
    for (std::future<List>& answer : answers) {
        if (answer.wait_until(deadline) == std::future_status::ready)
            std::ranges::move(answer.get(), std::back_inserter(all));
    }
    return all;
}

List listClock() {
    AudioDeviceInfo info = ClockDevice(wantedPeriod).info();
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
    const bool clock = parsed->backend == DeviceName::Backend::clock;
    use(clock ? makeClock() : supervised(*parsed, name), name);
    return true;
}

void AudioDevices::use(std::shared_ptr<AudioDevice> device) {
    const std::string name = device->info().name;
    use(std::move(device), name);
}

void AudioDevices::use(std::shared_ptr<AudioDevice> device, const std::string& name) {
    std::lock_guard guard(choice().mutex);
    choice().device = std::move(device);
    choice().name = name;
}

std::string AudioDevices::chosen() {
    std::lock_guard guard(choice().mutex);
    return choice().name;
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
    List all = listTogether({JackDevice::list, PulseDevice::list, AlsaDevice::list, listClock});
    // Back ends whose threads are ours are granted what the clock's is.
    for (AudioDeviceInfo& info : all)
        info.realTime = info.name == "jack" ? info.realTime : all.back().realTime;
    const auto standard = std::ranges::find_if(all, wouldBeChosen);
    if (standard != all.end())
        standard->isDefault = true;
    return all;
}

bool AudioDevices::chooseInput(const std::string& name, std::string& error) {
    const auto parsed = DeviceName::parse(name, error);
    const bool ofPulse =
        parsed && parsed->backend == DeviceName::Backend::pulse && !parsed->device.empty();
    if (parsed && !name.empty() && !ofPulse)
        error = name + ": no such audio input; use pulse:SOURCE, or none";
    if (!name.empty() && !ofPulse)
        return false;
    std::lock_guard guard(choice().mutex);
    choice().source = parsed->device;
    return true;
}

std::string AudioDevices::input() {
    const std::string source = chosenSource();
    return source.empty() ? "" : "pulse:" + source;
}

std::vector<AudioDeviceInfo> AudioDevices::listInputs() {
    return listTogether({PulseDevice::listInputs});
}

void AudioDevices::setPreferredPeriod(std::uint32_t frames) {
    wantedPeriod = frames ? std::clamp(frames, kShortestPeriod, kMaximumDeviceFrames) : 0;
}

std::uint32_t AudioDevices::preferredPeriod() {
    return wantedPeriod;
}
