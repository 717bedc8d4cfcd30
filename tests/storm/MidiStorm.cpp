// Plays random notes at a JACK server until it is ended.
//   midi_storm MESSAGES_A_SECOND [MILLISECONDS]
// With MILLISECONDS its port goes and comes back that often. After SIGUSR1 it only releases notes.
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <thread>

#include "StormClient.h"

namespace {

std::atomic<bool> releasing{false};

}  // namespace

int main(int count, char** arguments) {
    if (count < 2)
        return 2;
    std::signal(SIGUSR1, [](int) { releasing = true; });
    StormClient storm("storm");
    storm.setRate(std::atof(arguments[1]));
    const std::chrono::milliseconds stay(count > 2 ? std::atoi(arguments[2]) : 0);
    for (;;) {
        storm.plug();
        std::this_thread::sleep_for(std::max(stay, std::chrono::milliseconds(1)));
        storm.setReleasing(releasing);
        if (stay.count() > 0)
            storm.pull();
    }
}
