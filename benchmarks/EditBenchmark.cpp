// What editing 20 minutes costs: an edit and an undo on the main thread (budget 5 ms), also of a
// list of thousands of blocks, and the handing over to the voices (no turn of the main loop above
// 16 ms); and, on a worker, the copy in one piece and the edits that make new samples.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>

#include "VornWave2.h"
#include "editing/EditSession.h"
#include "editing/SpanEdits.h"
#include "startup/Instrument.h"

namespace {

constexpr std::uint32_t kFrames = EditSession::kMostFrames;

std::shared_ptr<VornWave2> longWave() {
    auto wave =
        VornWave2::mutableWaveOfLength(kFrames, StreamDescription::float32(1), "Benchmark", "");
    std::uint32_t random = 1;
    for (std::uint32_t i = 0; i < kFrames; ++i)
        wave->mutableData()[i] = float((random = random * 1664525u + 1013904223u) >> 8) * 1e-8f;
    return wave;
}

/// A list of `blocks` blocks that do not continue each other.
VornWaveSequence::Pointer piecesOf(const std::shared_ptr<VornWave2>& wave, std::uint32_t blocks) {
    const std::uint32_t each = kFrames / (blocks + 1);
    VornWaveSequence::Blocks list;
    for (std::uint32_t i = 0; i < blocks; ++i)
        list.push_back(VornWaveBlock::blockWithWave(wave, i * each + i % 2, each));
    return VornWaveSequence::sequenceWithBlocks(list, *wave->audioDescription(), ExtractType::all);
}

/// The instrument with 20 minutes as its sound.
struct Edited {
    Instrument instrument;
    EditSession session{instrument.waves(), nullptr};

    Edited() {
        instrument.waves().useUnsaved(longWave());
        session.soundChanged();
    }
    void settle() {
        while (session.busy() || session.handingOver())
            RunLoop::main().turn();
    }
};

Edited& edited() {
    static Edited the;
    return the;
}

void edit(benchmark::State& state, SoundEdit what) {
    Edited& sound = edited();
    for (auto _ : state) {
        sound.session.edit(what, {kFrames / 4, kFrames / 2});
        state.PauseTiming();
        sound.session.undo();
        sound.settle();
        state.ResumeTiming();
    }
}

/// Back to the sound as it was, which includes handing it over.
void undo(benchmark::State& state) {
    Edited& sound = edited();
    for (auto _ : state) {
        state.PauseTiming();
        sound.session.edit(SoundEdit::cut, {kFrames / 4, kFrames / 2});
        sound.settle();
        state.ResumeTiming();
        sound.session.undo();
    }
}

/// The longest turn of the main loop while a cut is handed over and its old copy let go of.
void handOver(benchmark::State& state) {
    using Clock = std::chrono::steady_clock;
    Edited& sound = edited();
    for (auto _ : state) {
        sound.session.edit(SoundEdit::cut, {kFrames / 4, kFrames / 2});
        Clock::duration longest{};
        const auto until = Clock::now() + std::chrono::seconds(1);
        while (Clock::now() < until || sound.session.handingOver()) {
            const auto begin = Clock::now();
            RunLoop::main().turn();
            longest = std::max(longest, Clock::now() - begin);
        }
        state.SetIterationTime(std::chrono::duration<double>(longest).count());
        sound.session.undo();
    }
}

void cutPieces(benchmark::State& state) {
    const auto sound = piecesOf(longWave(), static_cast<std::uint32_t>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(SoundEdits::cut(*sound, {kFrames / 4, kFrames / 2}));
}

void flatten(benchmark::State& state) {
    const auto sound = piecesOf(longWave(), 10);
    for (auto _ : state) {
        EditWatch watch;
        benchmark::DoNotOptimize(
            SoundCopy::flat(*sound, EditSpan::whole(sound->sampleCount()), 1, watch));
    }
}

void make(benchmark::State& state, SpanEdits::Kind kind) {
    const auto sound = VornWaveSequence::sequenceWithWave(longWave());
    for (auto _ : state) {
        EditWatch watch;
        benchmark::DoNotOptimize(
            SpanEdits::edited(*sound, EditSpan::whole(kFrames), kind, 1, watch));
    }
}

BENCHMARK_CAPTURE(edit, crop, SoundEdit::crop)->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK_CAPTURE(edit, cut, SoundEdit::cut)->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK_CAPTURE(edit, silence, SoundEdit::silence)->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK(undo)->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK(handOver)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(cutPieces)->Unit(benchmark::kMillisecond)->Arg(1000)->Arg(4096);
BENCHMARK(flatten)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(make, fadeIn, SpanEdits::Kind::fadeIn)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(make, normalise, SpanEdits::Kind::normalise)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(make, reverse, SpanEdits::Kind::reverse)->Unit(benchmark::kMillisecond);

}  // namespace
