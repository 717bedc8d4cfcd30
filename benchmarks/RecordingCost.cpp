// Prints what a running recording costs: the audio thread, as medians over alternating pairs of the
// whole graph with and without one, and the writing threads at the pace of a device.
//
//     build/release/bin/recording_cost [FOLDER]    (the folder to record into; default /tmp)
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>

#include "Bench.h"
#include "PassthruRecordingUnit.h"

namespace {

constexpr std::uint32_t kFrames = 512;
constexpr double kBufferSeconds = kFrames / kGraphRate;
constexpr int kPairs = 41;
constexpr int kBuffers = 300;        // 3.5 s, less than the ring holds
constexpr int kPacedBuffers = 1723;  // 20 s

double nanoseconds(clockid_t clock) {
    timespec now;
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

double median(std::vector<double> values) {
    std::ranges::nth_element(values, values.begin() + static_cast<int>(values.size() / 2));
    return values[values.size() / 2];
}

/// The whole graph of twelve sounding voices behind a recording unit.
struct Player {
    Player() { unit.setUpstreamUnit(graph.output); }

    /// CPU nanoseconds a buffer.
    double render(int buffers) {
        const RenderScope scope;
        const double begin = nanoseconds(CLOCK_THREAD_CPUTIME_ID);
        for (int i = 0; i < buffers; ++i)
            graph.render(unit, out.data(), kFrames, kFrames * 2);
        rendered += static_cast<std::uint64_t>(buffers) * kFrames;
        return (nanoseconds(CLOCK_THREAD_CPUTIME_ID) - begin) / buffers;
    }
    void waitForTheWriter() const {
        while (unit.recording() && unit.report().framesWritten < rendered)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }

    bench::Graph graph{std::make_shared<bench::Sound>(2.0),
                       bench::Settings{.fmFrequency = 0.01f, .effects = true}};
    PassthruRecordingUnit unit;
    std::vector<std::int16_t> out = std::vector<std::int16_t>(kFrames);
    std::uint64_t rendered = 0;
};

void audioThread(const std::string& path) {
    Player idle, recording;
    recording.unit.startRecordingTo(path);
    std::vector<double> without, with, differences;
    for (int i = 0; i < kPairs; ++i) {
        without.push_back(idle.render(kBuffers));
        with.push_back(recording.render(kBuffers));
        differences.push_back(with.back() - without.back());
        recording.waitForTheWriter();
    }
    const double budget = kBufferSeconds * 1e9;
    std::printf(
        "audio thread, a buffer of %u: %.0f ns without, %.0f ns with, %+.0f ns = %+.4f %% "
        "of a core\n",
        kFrames, median(without), median(with), median(differences),
        100 * median(differences) / budget);
    std::printf("dropped %llu frames\n",
                static_cast<unsigned long long>(recording.unit.report().framesDropped));
}

void writingThreads(const std::string& path) {
    Player player;
    player.unit.startRecordingTo(path);
    const double process = nanoseconds(CLOCK_PROCESS_CPUTIME_ID);
    const double own = nanoseconds(CLOCK_THREAD_CPUTIME_ID);
    auto due = std::chrono::steady_clock::now();
    for (int i = 0; i < kPacedBuffers; ++i) {
        player.render(1);
        due += std::chrono::nanoseconds(static_cast<long>(kBufferSeconds * 1e9));
        std::this_thread::sleep_until(due);
    }
    const double spent = nanoseconds(CLOCK_PROCESS_CPUTIME_ID) - process -
                         (nanoseconds(CLOCK_THREAD_CPUTIME_ID) - own);
    const double seconds = kPacedBuffers * kBufferSeconds;
    std::printf("writing threads: %.3f ms of CPU a second of sound = %.4f %% of a core\n",
                spent / seconds / 1e6, spent / seconds / 1e7);
    player.unit.stopRecording();
    std::printf("dropped %llu frames\n",
                static_cast<unsigned long long>(player.unit.report().framesDropped));
}

}  // namespace

int main(int count, char** words) {
    const std::string path = std::string(count > 1 ? words[1] : "/tmp") + "/recording_cost.wav";
    audioThread(path);
    writingThreads(path);
    std::filesystem::remove(path);
}
