#include "recording/MinutesAndSeconds.h"

#include <array>
#include <cstdio>

#include "runloop/Clock.h"

int MinutesAndSeconds::since(double moment) {
    return static_cast<int>(Clock::monotonic() - moment + 1e-6);
}

std::string MinutesAndSeconds::text(int seconds) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%02d:%02d", seconds / 60, seconds % 60);
    return text.data();
}
