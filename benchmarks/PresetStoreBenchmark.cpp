#include <benchmark/benchmark.h>

#include <filesystem>

#include "parameters/PresetFile.h"
#include "parameters/PresetStore.h"
#include "propertylists/PropertyList.h"

namespace {

const std::string kFolder =
    (std::filesystem::temp_directory_path() / "ombrix-presets-benchmark").string();

/// A store of so many presets with every key.
std::string storeOf(std::int64_t count) {
    PresetList list;
    for (std::int64_t i = 0; i < count; ++i) {
        Preset preset;
        preset.name = "A preset of the usual length " + std::to_string(i);
        preset.wave = "internal/Some Wave.wav";
        for (const Parameter& row : kParameters)
            preset.setNumber(row.id, row.stored.low + (row.stored.high - row.stored.low) / 3.f);
        list.put(std::move(preset));
    }
    std::filesystem::create_directories(kFolder);
    const std::string path = kFolder + "/presets.plist";
    std::string error;
    PropertyList::writeFile(path, list.toPropertyList(), error);
    return path;
}

void silent(const std::string&) {}

}  // namespace

/// Opening a store: 1,000 presets in less than 150 ms.
static void openStore(benchmark::State& state) {
    const std::string path = storeOf(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(PresetStore(path, "", silent).presets().size());
    std::filesystem::remove_all(kFolder);
}
BENCHMARK(openStore)->Arg(30)->Arg(1000)->Unit(benchmark::kMillisecond);

/// A save, with all that makes it safe.
static void savePreset(benchmark::State& state) {
    PresetStore store(storeOf(state.range(0)), "", silent);
    const Preset preset = store.presets().begin()->second;
    for (auto _ : state) {
        const std::string error = store.save(preset);
        if (!error.empty())
            state.SkipWithError(error.c_str());
    }
    std::filesystem::remove_all(kFolder);
}
BENCHMARK(savePreset)->Arg(30)->Arg(1000)->Unit(benchmark::kMillisecond);
