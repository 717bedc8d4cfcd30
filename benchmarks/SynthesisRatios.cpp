// Prints what the instrument's sound costs beside the yardstick: medians over alternating pairs, so
// that a noisy machine weighs on both alike.
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <functional>

#include "Bench.h"

namespace {

using bench::Graph;
using bench::Settings;

constexpr std::uint32_t kFrames = 512;
constexpr int kPairs = 41;

double threadNanoseconds() {
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

double nanoseconds(const std::function<void()>& work, int buffers) {
    const double begin = threadNanoseconds();
    for (int i = 0; i < buffers; ++i)
        work();
    return (threadNanoseconds() - begin) / buffers;
}

double median(std::vector<double> values) {
    std::ranges::nth_element(values, values.begin() + static_cast<int>(values.size() / 2));
    return values[values.size() / 2];
}

struct Cost {
    double first, second, ratio;
};

Cost compare(const std::function<void()>& first, const std::function<void()>& second, int buffers) {
    std::vector<double> firsts, seconds, ratios;
    nanoseconds(first, buffers);
    nanoseconds(second, buffers);
    for (int i = 0; i < kPairs; ++i) {
        firsts.push_back(nanoseconds(first, buffers));
        seconds.push_back(nanoseconds(second, buffers));
        ratios.push_back(firsts.back() / seconds.back());
    }
    return {median(firsts), median(seconds), median(ratios)};
}

void printRow(const char* what, const Cost& cost, double per) {
    std::printf("%-44s %8.2f ns %8.2f ns   ratio %.3f\n", what, cost.first / per, cost.second / per,
                cost.ratio);
}

void voicesAgainstYardstick(const char* what, const Settings& settings, double seconds = 2.0) {
    const auto sound = std::make_shared<bench::Sound>(seconds);
    const Graph graph(sound, settings);
    bench::PlainVoices plain(*sound, settings);
    std::vector<float> out(kFrames);
    const Cost cost = compare([&] { graph.render(graph.mixer, out.data(), kFrames, kFrames * 4); },
                              [&] { plain.render(out.data(), kFrames); }, 60);
    printRow(what, cost, kFrames * bench::kVoices);
}

void effectsAgainstYardstick() {
    Graph graph(nullptr, {.sounding = false, .effects = true});
    bench::Noise noise;
    graph.ring.setUpstreamUnit(noise);
    bench::PlainChain plain;
    std::vector<float> out(kFrames);
    const Cost cost = compare([&] { graph.render(graph.echo, out.data(), kFrames, kFrames * 4); },
                              [&] {
                                  std::copy_n(noise.samples(), kFrames, out.data());
                                  plain.render(out.data(), kFrames);
                              },
                              300);
    printRow("four effects on, a frame (ours, yardstick)", cost, kFrames);
}

void longSoundAgainstShort() {
    for (int mode : {1, 3}) {
        const Graph longer(std::make_shared<bench::Sound>(600.0), {.mode = mode});
        const Graph shorter(std::make_shared<bench::Sound>(2.0), {.mode = mode});
        std::vector<float> out(kFrames);
        const Cost cost =
            compare([&] { longer.render(longer.mixer, out.data(), kFrames, kFrames * 4); },
                    [&] { shorter.render(shorter.mixer, out.data(), kFrames, kFrames * 4); }, 60);
        printRow(mode == 1 ? "10 minutes against 2 s, linear, a voice frame"
                           : "10 minutes against 2 s, chaos, a voice frame",
                 cost, kFrames * bench::kVoices);
    }
}

void idleGraph(const char* what, const Settings& settings) {
    const Graph graph(std::make_shared<bench::Sound>(2.0), settings);
    std::vector<std::int16_t> out(8192);
    auto render = [&](std::uint32_t frames) {
        return
            [&graph, &out, frames] { graph.render(graph.output, out.data(), frames, frames * 2); };
    };
    for (int i = 0; i < 20000; ++i)
        render(512)();
    const Cost cost = compare(render(512), render(1), 2000);
    std::printf("%-44s %8.2f ns a frame, %.2f us a buffer of 1\n", what, cost.first / kFrames,
                cost.second / 1000);
}

// What a buffer costs beyond its frames: the same 512 frames as one buffer and as 512 / n.
void bufferOverhead(const char* what, const Settings& settings) {
    const auto sound = std::make_shared<bench::Sound>(2.0);
    const Graph graph(sound, settings);
    std::vector<std::int16_t> out(8192);
    auto pieces = [&](std::uint32_t frames) {
        return [&graph, &out, frames] {
            for (std::uint32_t done = 0; done < 8192; done += frames)
                graph.render(graph.output, out.data(), frames, frames * 2);
        };
    };
    for (std::uint32_t frames : {16u, 64u, 256u}) {
        const Cost cost = compare(pieces(frames), pieces(4096), 1);
        std::printf("%-30s buffers of %4u %7.2f us beyond their frames\n", what, frames,
                    (cost.first - cost.second) / (8192.0 / frames - 2) / 1000);
    }
}

// Both beside one of the instrument's voices.
struct Listened {
    void render(const VornUnit& unit, std::uint32_t bytesPerFrame) {
        AudioBufferList list = AudioBufferList::single(out.data(), 2, kFrames * bytesPerFrame);
        AudioUnitRenderActionFlags flags = 0;
        const AudioTimeStamp time;
        unit.callback()->inputProc(unit.callback()->inputProcRefCon, &flags, &time, 0, kFrames,
                                   &list);
    }
    std::vector<float> out = std::vector<float>(2 * kFrames);
};

void playerAndScrubberAgainstAVoice() {
    const Graph graph(std::make_shared<bench::Sound>(2.0), {});
    std::vector<float> out(kFrames);
    const auto voice = [&] { graph.render(*graph.envelopes[0], out.data(), kFrames, kFrames * 4); };
    Listened listened;
    const char* const layouts[] = {"mono", "stereo", "one of two channels"};
    for (int format : {0, 1, 2}) {
        const auto sound = bench::sequence(static_cast<WaveFormat>(format));
        VornSequencePlayer player(sound), converting(sound, true);
        for (VornSequencePlayer* unit : {&player, &converting}) {
            unit->setLooping(true);
            unit->play();
        }
        VornSequenceScrubber scrubber;
        scrubber.setSequence(sound);
        int place = 0;
        std::printf("%s, a frame (ours, a voice)\n", layouts[format]);
        printRow("  player", compare([&] { listened.render(player, 8); }, voice, 300), kFrames);
        printRow("  player in 16 bits",
                 compare([&] { listened.render(converting, 4); }, voice, 300), kFrames);
        const auto scrub = [&] {
            scrubber.scrubTo(place = (place + 1000) % 30000);
            listened.render(scrubber, 4);
        };
        printRow("  scrubber, two heads", compare(scrub, voice, 300), kFrames);
    }
    VornSequencePlayer paused(bench::sequence(WaveFormat::mono));
    printRow("paused player", compare([&] { listened.render(paused, 8); }, voice, 300), kFrames);
}

}  // namespace

int main() {
    RenderScope scope;
    playerAndScrubberAgainstAVoice();
    voicesAgainstYardstick("voices, a voice frame (ours, yardstick)", {});
    voicesAgainstYardstick("voices with modulation", {.fmFrequency = 0.01f});
    voicesAgainstYardstick("voices on a sound of 100 frames", {}, 100.5 / 44100);
    voicesAgainstYardstick("the same with modulation", {.fmFrequency = 0.01f}, 100.5 / 44100);
    voicesAgainstYardstick("small grains, two octaves up",
                           {.grainSize = 0.f, .transposition = 4.f});
    voicesAgainstYardstick("large grains, two octaves down",
                           {.grainSize = 1.f, .transposition = 0.25f});
    effectsAgainstYardstick();
    idleGraph("nothing sounding", {.sounding = false});
    idleGraph("nothing sounding, effects on", {.sounding = false, .effects = true});
    longSoundAgainstShort();
    bufferOverhead("twelve voices and effects", {.effects = true});
    bufferOverhead("nothing sounding", {.sounding = false});
}
