// What sequences cost: editing a thousand blocks (budget 1 ms), finding a frame among them (2 us),
// and copies in one piece beside memcpy into equally fresh memory (60 % of its speed or more).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "VornWave2.h"
#include "VornWaveSequence.h"

namespace {

constexpr std::uint32_t kBlocks = 1000;

std::shared_ptr<VornWave2> waveOf(std::uint32_t frames, std::uint32_t channels) {
    auto wave = VornWave2::mutableWaveOfLength(frames, StreamDescription::float32(channels),
                                               "Benchmark", "");
    std::fill_n(wave->mutableData(), std::size_t{frames} * channels, 0.5f);
    return wave;
}

/// `blocks` blocks of together `frames` frames.
VornWaveSequence::Pointer sequenceOf(std::uint32_t frames, std::uint32_t channels,
                                     std::uint32_t blocks) {
    const auto wave = waveOf(frames, channels);
    VornWaveSequence::Blocks list;
    const std::uint32_t each = frames / blocks;
    for (std::uint32_t i = 0; i < blocks; ++i)
        list.push_back(VornWaveBlock::blockWithWave(wave, i * each, each));
    return VornWaveSequence::sequenceWithBlocks(std::move(list), *wave->audioDescription(),
                                                ExtractType::all);
}

void countBytes(benchmark::State& state, std::size_t floats) {
    state.SetBytesProcessed(state.iterations() * std::int64_t(floats * sizeof(float)));
}

void sliceAndAppend(benchmark::State& state) {
    const auto sequence = sequenceOf(1'000'000, 2, kBlocks);
    for (auto _ : state) {
        const auto slice = sequence->sliceFrom(500, sequence->sampleCount() - 1000);
        benchmark::DoNotOptimize(slice->sequenceByAppendingSequence(*sequence));
    }
}
BENCHMARK(sliceAndAppend)->Unit(benchmark::kMicrosecond);

void locate(benchmark::State& state) {
    const auto sequence = sequenceOf(1'000'000, 1, kBlocks);
    std::minstd_rand random(1);
    for (auto _ : state) {
        std::uint32_t frame = static_cast<std::uint32_t>(random()) % 1'000'000;
        benchmark::DoNotOptimize(sequence->getBlockIndexForDataIndex(&frame));
    }
}
BENCHMARK(locate);

/// As many floats as the others write, in `pieces` runs of memory. Merging makes 18.
void memcpyIntoFresh(benchmark::State& state, std::size_t pieces) {
    const auto floats = static_cast<std::size_t>(state.range(0)) * 2 / pieces;
    const std::vector<float> source(floats * pieces, 0.5f);
    for (auto _ : state) {
        std::vector<SampleMemory> fresh(pieces);
        for (std::size_t i = 0; i < pieces; ++i) {
            fresh[i].resize(floats);
            fresh[i].faultIn();
            std::memcpy(fresh[i].data(), source.data() + i * floats, floats * sizeof(float));
        }
        benchmark::DoNotOptimize(fresh.data());
    }
    countBytes(state, floats * pieces);
}

/// Target floats per second, from `from` to `to` channels.
void flatten(benchmark::State& state, std::uint32_t from, std::uint32_t to) {
    const auto frames = static_cast<std::uint32_t>(state.range(0)) * 2 / to;
    const auto sequence = sequenceOf(frames, from, 10);
    for (auto _ : state)
        benchmark::DoNotOptimize(sequence->flattenInto("", to));
    countBytes(state, std::size_t{sequence->sampleCount()} * to);
}

void merge(benchmark::State& state, std::uint32_t channels) {
    const auto frames = static_cast<std::uint32_t>(state.range(0));
    const auto left = sequenceOf(frames, channels, 10), right = sequenceOf(frames, channels, 9);
    left->setExtractType(ExtractType::first);
    right->setExtractType(ExtractType::second);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            VornWaveSequence::sequenceByMergingMonoSequenceLeft(*left, *right, ""));
    countBytes(state, std::size_t{frames} * 2);
}

constexpr std::int64_t kMinute = 60 * 44100;  // frames of stereo

BENCHMARK_CAPTURE(memcpyIntoFresh, whole, 1)->Arg(44100)->Arg(kMinute);
BENCHMARK_CAPTURE(memcpyIntoFresh, pieces, 18)->Arg(44100)->Arg(kMinute);
BENCHMARK_CAPTURE(flatten, stereo, 2, 2)->Arg(44100)->Arg(kMinute);
BENCHMARK_CAPTURE(flatten, monoToStereo, 1, 2)->Arg(44100)->Arg(kMinute);
BENCHMARK_CAPTURE(flatten, stereoToMono, 2, 1)->Arg(44100)->Arg(kMinute);
BENCHMARK_CAPTURE(merge, mono, 1)->Arg(44100)->Arg(kMinute);
BENCHMARK_CAPTURE(merge, channels, 2)->Arg(44100)->Arg(kMinute);

}  // namespace
