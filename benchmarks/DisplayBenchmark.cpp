// What the wave display costs over a sound of 20 minutes: the peaks of one tile from all of it to
// 16 frames a view, and all tiles of a view of 1280 points from the request to where they can be
// drawn (budget 50 ms, of which a frame of the screen takes 16).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <thread>

#include "VornWave2.h"
#include "VornWaveSequence.h"
#include "WaveTiles.h"
#include "runloop/RunLoop.h"

namespace {

constexpr std::uint32_t kFrames = 20 * 60 * 44100;
constexpr double kWidth = 1280;

std::shared_ptr<VornWaveSequence> longSound(std::uint32_t channels) {
    const auto wave = VornWave2::mutableWaveOfLength(kFrames, StreamDescription::float32(channels),
                                                     "Benchmark", "");
    float* const samples = wave->mutableData();
    for (std::size_t i = 0; i < std::size_t{kFrames} * channels; ++i)
        samples[i] = std::sin(float(i % 100003) * 0.01f);
    return VornWaveSequence::sequenceWithWave(wave);
}

/// Frames across the view; the tile begins in the middle of the sound where it does not hold all.
void gatherOneTile(benchmark::State& state, std::uint32_t channels) {
    const double shown = double(std::min<std::int64_t>(state.range(0), kFrames));
    const auto span = std::int32_t(shown * 1024 / kWidth);
    const auto tile = std::make_shared<WaveTileLayer>(300);
    tile->setWave(longSound(channels));
    std::int32_t start = 0;
    for (auto _ : state) {
        tile->setStretch(start, start + span);
        tile->gatherPeaks();
        benchmark::DoNotOptimize(tile->peaks().data());
        start = std::int32_t((start + std::int64_t{span}) % (kFrames - span));
    }
}

void refreshThreeTiles(benchmark::State& state) {
    struct View : WaveTilesDelegate {
    } view;
    WaveTiles tiles(view);
    tiles.setReduceMotion(true);
    tiles.setBounds(kWidth, 300);
    tiles.setWave(longSound(1));
    const auto shown = std::int32_t(std::min<std::int64_t>(state.range(0), kFrames));
    for (auto _ : state) {
        tiles.setViewFromI(0, shown, WaveUpdate::refresh);
        while (!tiles.complete()) {
            RunLoop::main().turn();
            for (const auto& tile : tiles.layers())
                if (tile->needsDisplay())
                    tile->renderingDone();
            std::this_thread::yield();
        }
    }
}

void zooms(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(kFrames)->Arg(kFrames / 8)->Arg(1 << 20)->Arg(1 << 15)->Arg(2048)->Arg(16);
    benchmark->Unit(benchmark::kMicrosecond)->UseRealTime();
}

BENCHMARK_CAPTURE(gatherOneTile, mono, 1)->Apply(zooms);
BENCHMARK_CAPTURE(gatherOneTile, stereo, 2)->Apply(zooms);
BENCHMARK(refreshThreeTiles)->Apply(zooms);

}  // namespace
