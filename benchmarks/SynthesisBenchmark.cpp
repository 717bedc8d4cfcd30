// What a buffer of the instrument's sound costs, by kind of work and buffer length. The budget of a
// buffer of 512 frames is 11.6 ms.
#include <benchmark/benchmark.h>

#include "Bench.h"

namespace {

using bench::Graph;
using bench::Settings;

constexpr std::uint32_t kSlice = sizeof(float);

void countFrames(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void voices(benchmark::State& state, Settings settings, double seconds) {
    const Graph graph(std::make_shared<bench::Sound>(seconds), settings);
    const auto frames = static_cast<std::uint32_t>(state.range(0));
    std::vector<float> out(frames);
    RenderScope scope;
    for (auto _ : state) {
        graph.render(graph.mixer, out.data(), frames, frames * kSlice);
        benchmark::DoNotOptimize(out.data());
    }
    countFrames(state);
}

void plainVoices(benchmark::State& state, Settings settings) {
    const bench::Sound sound(2.0);
    bench::PlainVoices plain(sound, settings);
    const auto frames = static_cast<std::uint32_t>(state.range(0));
    std::vector<float> out(frames);
    RenderScope scope;
    for (auto _ : state) {
        plain.render(out.data(), frames);
        benchmark::DoNotOptimize(out.data());
    }
    countFrames(state);
}

void wholeGraph(benchmark::State& state, Settings settings) {
    const Graph graph(std::make_shared<bench::Sound>(2.0), settings);
    const auto frames = static_cast<std::uint32_t>(state.range(0));
    std::vector<std::int16_t> out(frames);
    RenderScope scope;
    for (auto _ : state) {
        graph.render(graph.output, out.data(), frames, frames * 2);
        benchmark::DoNotOptimize(out.data());
    }
    countFrames(state);
}

void effects(benchmark::State& state) {
    Graph graph(nullptr, {.sounding = false, .effects = true});
    bench::Noise noise;
    graph.ring.setUpstreamUnit(noise);
    const auto frames = static_cast<std::uint32_t>(state.range(0));
    std::vector<float> out(frames);
    RenderScope scope;
    for (auto _ : state) {
        graph.render(graph.echo, out.data(), frames, frames * kSlice);
        benchmark::DoNotOptimize(out.data());
    }
    countFrames(state);
}

void plainEffects(benchmark::State& state) {
    const bench::Noise noise;
    bench::PlainChain plain;
    const auto frames = static_cast<std::uint32_t>(state.range(0));
    std::vector<float> out(frames);
    RenderScope scope;
    for (auto _ : state) {
        std::copy_n(noise.samples(), frames, out.data());
        plain.render(out.data(), frames);
        benchmark::DoNotOptimize(out.data());
    }
    countFrames(state);
}

BENCHMARK(effects)->Arg(64)->Arg(512)->Arg(8192);
BENCHMARK(plainEffects)->Arg(512);

const Settings kPlainNotes{};
const Settings kModulated{.fmFrequency = 0.01f};
const Settings kIdle{.sounding = false};
const Settings kIdleEffects{.sounding = false, .effects = true};
const Settings kEverything{.fmFrequency = 0.01f, .effects = true};

BENCHMARK_CAPTURE(voices, plain, kPlainNotes, 2.0)->Arg(64)->Arg(512)->Arg(8192);
BENCHMARK_CAPTURE(plainVoices, plain, kPlainNotes)->Arg(512);
BENCHMARK_CAPTURE(voices, shortSound, kPlainNotes, 100.5 / 44100)->Arg(512);
BENCHMARK_CAPTURE(voices, modulated, kModulated, 2.0)->Arg(64)->Arg(512)->Arg(8192);
BENCHMARK_CAPTURE(plainVoices, modulated, kModulated)->Arg(512);
BENCHMARK_CAPTURE(wholeGraph, everything, kEverything)->Arg(64)->Arg(512)->Arg(8192);
BENCHMARK_CAPTURE(wholeGraph, idle, kIdle)->Arg(1)->Arg(512)->Arg(8192);
BENCHMARK_CAPTURE(wholeGraph, idleEffects, kIdleEffects)->Arg(1)->Arg(512)->Arg(8192);

}  // namespace
