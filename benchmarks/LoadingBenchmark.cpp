// What opening and loading a sound file of 30 s costs beside the decoding library alone, which
// leaves 32-bit floats in fresh memory too: budget 15 % more.
#include <benchmark/benchmark.h>
#include <sndfile.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "VornWave2.h"

namespace {

namespace fs = std::filesystem;

constexpr int kFrames = 30 * 44100;

fs::path folder() {
    const fs::path path = fs::temp_directory_path() / "ombrix-loading-benchmark";
    fs::create_directories(path);
    return path;
}

/// Two tones with a little noise, as 16 bits.
std::string wavOf(int channels) {
    const std::string path = folder() / ("sound" + std::to_string(channels) + ".wav");
    std::vector<short> samples(static_cast<std::size_t>(kFrames * channels));
    std::uint32_t random = 1;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        random = random * 1664525u + 1013904223u;
        const double tone = std::sin(static_cast<double>(i) * (i % 2 ? 0.031 : 0.043));
        samples[i] = static_cast<short>(12000 * tone + (random >> 22));
    }
    SF_INFO info{0, 44100, channels, SF_FORMAT_WAV | SF_FORMAT_PCM_16, 0, 0};
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    sf_writef_short(file, samples.data(), kFrames);
    sf_close(file);
    return path;
}

std::string m4aOf(int channels) {
    const std::string wav = wavOf(channels), path = fs::path(wav).replace_extension(".m4a");
    const std::string command = "ffmpeg -loglevel error -y -i " + wav + " -c:a aac " + path;
    return std::system(command.c_str()) == 0 ? path : "";
}

bool hasFrames(benchmark::State& state, std::int64_t frames) {
    if (frames < kFrames)
        state.SkipWithError("frames are missing");
    return frames >= kFrames;
}

void load(benchmark::State& state, std::string (*fileOf)(int)) {
    const fs::path path = fileOf(static_cast<int>(state.range(0)));
    bool whole = true;
    for (auto _ : state) {
        const auto wave = VornWave2::initWithContentsOfFile(path.filename(), path.parent_path());
        whole = whole && hasFrames(state, wave->sampleCount());
    }
    fs::remove_all(folder());
}

void sndfileAlone(benchmark::State& state) {
    const std::string path = wavOf(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        SF_INFO info{};
        SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
        SampleMemory samples(static_cast<std::size_t>(info.frames * info.channels));
        samples.faultIn();
        hasFrames(state, sf_readf_float(file, samples.data(), info.frames));
        sf_close(file);
        benchmark::DoNotOptimize(samples.data());
    }
    fs::remove_all(folder());
}

/// Decodes a file's only stream into planes of floats, one behind the other.
std::int64_t decode(const std::string& path, int channels) {
    AVFormatContext* format = nullptr;
    avformat_open_input(&format, path.c_str(), nullptr, nullptr);
    avformat_find_stream_info(format, nullptr);
    AVCodecParameters* parameters = format->streams[0]->codecpar;
    const AVCodec* codec = avcodec_find_decoder(parameters->codec_id);
    AVCodecContext* context = avcodec_alloc_context3(codec);
    avcodec_parameters_to_context(context, parameters);
    context->thread_count = 1;
    avcodec_open2(context, codec, nullptr);
    AVPacket* packet = av_packet_alloc();
    AVFrame* frame = av_frame_alloc();
    constexpr std::int64_t kRoom = kFrames + 44100;
    SampleMemory samples(static_cast<std::size_t>(kRoom * channels));
    samples.faultIn();
    std::int64_t frames = 0;
    for (bool more = true; more;) {
        more = av_read_frame(format, packet) >= 0;
        avcodec_send_packet(context, more ? packet : nullptr);
        av_packet_unref(packet);
        while (avcodec_receive_frame(context, frame) == 0 && frames + frame->nb_samples < kRoom) {
            for (int c = 0; c < channels; ++c)
                std::memcpy(samples.data() + c * kRoom + frames, frame->extended_data[c],
                            static_cast<std::size_t>(frame->nb_samples) * sizeof(float));
            frames += frame->nb_samples;
        }
    }
    av_frame_free(&frame);
    av_packet_free(&packet);
    avcodec_free_context(&context);
    avformat_close_input(&format);
    benchmark::DoNotOptimize(samples.data());
    return frames;
}

void ffmpegAlone(benchmark::State& state) {
    const int channels = static_cast<int>(state.range(0));
    const std::string path = m4aOf(channels);
    for (auto _ : state)
        hasFrames(state, decode(path, channels));
    fs::remove_all(folder());
}

BENCHMARK(sndfileAlone)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(load, wav, wavOf)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(ffmpegAlone)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(load, m4a, m4aOf)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

}  // namespace
