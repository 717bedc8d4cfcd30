#include "Ears.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "Recording.h"
#include "runloop/Clock.h"

namespace {

std::uintmax_t sizeOf(const std::string& file) {
    std::error_code missing;
    const auto size = std::filesystem::file_size(file, missing);
    return missing ? 0 : size;
}

}  // namespace

Ears::Ears(std::string file, const std::string& port) : m_file(std::move(file)) {
    std::filesystem::remove(m_file);
    m_process = std::make_unique<Process>(
        std::vector<std::string>{"jack_rec", "-f", m_file, "-d", "3600", "-b", "32", port});
    for (int i = 0; i < 200 && sizeOf(m_file) < 1000; ++i)
        usleep(20000);
    m_began = Clock::monotonic();
}

double Ears::now() const {
    return Clock::monotonic() - m_began;
}

void Ears::close() {
    m_process->signal(SIGINT);
    m_process->wait();
    m_frames = readRecording(m_file).frames;
}

std::vector<float> Ears::heard(double from, double to) const {
    const auto at = [&](double seconds) {
        return m_frames.begin() +
               std::clamp<std::ptrdiff_t>(std::ptrdiff_t(seconds * 44100), 0, std::ssize(m_frames));
    };
    return {at(from), at(to)};
}
