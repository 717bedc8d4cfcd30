#include "Ears.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "Recording.h"

namespace {

constexpr double kRate = 44100;
constexpr int kTries = 200;
constexpr useconds_t kPause = 20'000;

double secondsIn(const std::string& file) {
    std::error_code missing;
    const auto size = std::filesystem::file_size(file, missing);
    return missing ? 0 : double(size) / sizeof(float) / kRate;
}

}  // namespace

Ears::Ears(std::string file) : m_file(std::move(file)) {
    std::filesystem::remove(m_file);
    m_process =
        std::make_unique<Process>(std::vector<std::string>{"jack-record", "-n", "1", m_file});
    for (int i = 0; i < kTries && secondsIn(m_file) < 0.05; ++i)
        usleep(kPause);
}

bool Ears::connect(const std::string& port) {
    const std::string own = "jack-record-" + std::to_string(m_process->id()) + ":in_1";
    runProgram({"jack_disconnect", port, own});
    for (int i = 0; i < kTries; ++i) {
        if (runProgram({"jack_connect", port, own}) == 0)
            return true;
        usleep(kPause);
    }
    return false;
}

double Ears::now() const {
    return secondsIn(m_file);
}

void Ears::close() {
    m_process->signal(SIGINT);
    m_process->wait();
    m_frames = readRecording(m_file).frames;
}

std::vector<float> Ears::heard(double from, double to) const {
    const auto at = [&](double seconds) {
        return m_frames.begin() +
               std::clamp<std::ptrdiff_t>(std::ptrdiff_t(seconds * kRate), 0, std::ssize(m_frames));
    };
    return {at(from), at(to)};
}
