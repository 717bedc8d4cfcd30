#include "devices/AudioSurvey.h"

#include <chrono>
#include <thread>

#include "audiounits/devices/AudioDevices.h"

// The thread is left behind when its asker goes: the program does not wait for a server to end.
void AudioSurvey::begin() {
    if (underWay())
        return;
    std::packaged_task<Found()> look([] {
        return Found{AudioDevices::list(), AudioDevices::listInputs()};
    });
    m_answer = look.get_future();
    std::thread(std::move(look)).detach();
}

std::optional<AudioSurvey::Found> AudioSurvey::take() {
    if (!underWay() || m_answer.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        return std::nullopt;
    return m_answer.get();
}
