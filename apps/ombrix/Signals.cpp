#include "Signals.h"

#include <csignal>

namespace {
volatile std::sig_atomic_t stopping = 0;
volatile std::sig_atomic_t silencing = 0;
}  // namespace

void Signals::listen() {
    struct sigaction action = {};
    sigemptyset(&action.sa_mask);
    action.sa_handler = [](int) { stopping = 1; };
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    if (std::signal(SIGHUP, SIG_IGN) != SIG_IGN)  // not for one who outlives the terminal
        sigaction(SIGHUP, &action, nullptr);
    action.sa_handler = [](int) { silencing = 1; };
    sigaction(SIGUSR1, &action, nullptr);
}

bool Signals::stopWanted() {
    return stopping != 0;
}

bool Signals::takeSilenceWanted() {
    const bool wanted = silencing != 0;
    silencing = 0;
    return wanted;
}
