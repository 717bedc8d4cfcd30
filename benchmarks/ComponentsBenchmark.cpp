// What a frame costs in the platform's mixers, by number of buses, and in its equaliser.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "audiounits/AudioComponent.h"
#include "audiounits/RenderScope.h"

namespace {

constexpr std::uint32_t kFrames = 512;

/// A component fed with the same noise on every bus.
class FedUnit {
  public:
    FedUnit(std::uint32_t type, std::uint32_t subtype) {
        const AudioComponentDescription wanted{type, subtype, fourCC("appl"), 0, 0};
        AudioUnit unit = nullptr;
        AudioComponentInstanceNew(AudioComponentFindNext(nullptr, &wanted), &unit);
        m_unit.reset(unit);
        std::uint32_t random = 1;
        for (float& sample : m_noise) {
            random = random * 1664525u + 1013904223u;
            sample = static_cast<float>(static_cast<std::int32_t>(random)) / 4294967296.f;
        }
    }
    template <typename T>
    void set(AudioUnitPropertyID property, AudioUnitScope scope, std::uint32_t bus,
             const T& value) {
        AudioUnitSetProperty(m_unit.get(), property, scope, bus, &value, sizeof value);
    }
    void feed(std::uint32_t bus, const StreamDescription& format) {
        set(kAudioUnitProperty_StreamFormat, kAudioUnitScope_Input, bus, format);
        set(kAudioUnitProperty_SetRenderCallback, kAudioUnitScope_Input, bus,
            AURenderCallbackStruct{&render, this});
    }
    void run(benchmark::State& state, std::uint32_t channels) {
        set(kAudioUnitProperty_StreamFormat, kAudioUnitScope_Output, 0,
            StreamDescription::float32(channels));
        AudioUnitInitialize(m_unit.get());
        std::vector<float> out(kFrames * channels);
        auto list = AudioBufferList::single(out.data(), channels, kFrames * channels * 4);
        const RenderScope scope;
        const AudioTimeStamp time;
        for (auto _ : state) {
            AudioUnitRenderActionFlags flags = 0;
            AudioUnitRender(m_unit.get(), &flags, &time, 0, kFrames, &list);
            benchmark::DoNotOptimize(out.data());
        }
        state.SetItemsProcessed(state.iterations() * kFrames);
    }

  private:
    static OSStatus render(void* self, AudioUnitRenderActionFlags*, const AudioTimeStamp*,
                           std::uint32_t, std::uint32_t frames, AudioBufferList* data) {
        const auto count = frames * data->mBuffers[0].mNumberChannels;
        std::copy_n(static_cast<FedUnit*>(self)->m_noise.data(), count, data->samples<float>());
        return noErr;
    }

    std::unique_ptr<AudioUnitInstance> m_unit;
    std::vector<float> m_noise = std::vector<float>(2 * kFrames);
};

void mixer(benchmark::State& state, std::uint32_t subtype, std::uint32_t channels) {
    FedUnit fed(fourCC("aumx"), subtype);
    const auto buses = static_cast<std::uint32_t>(state.range(0));
    fed.set(kAudioUnitProperty_ElementCount, kAudioUnitScope_Input, 0, buses);
    for (std::uint32_t bus = 0; bus < buses; ++bus)
        fed.feed(bus, StreamDescription::float32(1));
    fed.run(state, channels);
}

void equaliser(benchmark::State& state, std::int32_t preset) {
    FedUnit fed(fourCC("aufx"), fourCC("ipeq"));
    const auto channels = static_cast<std::uint32_t>(state.range(0));
    const AUPreset record{preset, {}};
    fed.set(kAudioUnitProperty_PresentPreset, kAudioUnitScope_Global, 0, &record);
    fed.feed(0, StreamDescription::float32(channels));
    fed.run(state, channels);
}

BENCHMARK_CAPTURE(mixer, plainMono, fourCC("mcmx"), 1)->Arg(1)->Arg(3)->Arg(16);
BENCHMARK_CAPTURE(mixer, plainStereo, fourCC("mcmx"), 2)->Arg(1)->Arg(3)->Arg(16);
BENCHMARK_CAPTURE(mixer, spatialMono, fourCC("3dem"), 1)->Arg(1)->Arg(3)->Arg(16);
BENCHMARK_CAPTURE(mixer, spatialStereo, fourCC("3dem"), 2)->Arg(1)->Arg(3)->Arg(16);
BENCHMARK_CAPTURE(equaliser, flat, 0)->Arg(1)->Arg(2);
BENCHMARK_CAPTURE(equaliser, bassBoost, 1)->Arg(1)->Arg(2);

}  // namespace
