// Sound files as users have them, written by another program, against what must come out.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "Contents.h"
#include "LoadedWave.h"
#include "ScratchFolder.h"
#include "SoundFiles.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

/// What 16 bits make of a value: nearest, ties to even, saturated.
float throughSixteenBits(double value) {
    return static_cast<float>(std::clamp(std::nearbyint(value * 32768), -32768.0, 32767.0) / 32768);
}

std::vector<double> sine(double hertz, double rate, std::size_t frames) {
    std::vector<double> values(frames);
    for (std::size_t i = 0; i < frames; ++i)
        values[i] = 0.5 * std::sin(2 * kPi * hertz * static_cast<double>(i) / rate);
    return values;
}

/// Root of the mean square of wave - model, over frames [from, to), `shift` frames later in the
/// wave.
double deviation(const LoadedWave& wave, const std::vector<double>& model, std::size_t from,
                 std::size_t to, std::size_t shift = 0) {
    double sum = 0;
    for (std::size_t i = from; i < to; ++i)
        sum += std::pow(wave.at(i + shift) - model[i], 2);
    return std::sqrt(sum / static_cast<double>(to - from));
}

std::vector<std::int16_t> readIntegers(const std::string& path) {
    const std::string bytes = contentsOf(path);
    std::vector<std::int16_t> values(bytes.size() / 2);
    std::copy_n(bytes.data(), values.size() * 2, reinterpret_cast<char*>(values.data()));
    return values;
}

}  // namespace

TEST(SoundFileLoading, everyDepthAndByteOrderIsExact) {
    struct Row {
        const char* name;
        const char* codec;
        int bits;       // of the samples that go in
        bool straight;  // taken as they are, without a step of 16 bits
    };
    const Row rows[] = {
        {"u8.wav", "pcm_u8", 8, false},        {"16.wav", "pcm_s16le", 16, false},
        {"24.wav", "pcm_s24le", 24, false},    {"32.wav", "pcm_s32le", 32, false},
        {"f32.wav", "pcm_f32le", 24, true},    {"f64.wav", "pcm_f64le", 30, false},
        {"16.aiff", "pcm_s16be", 16, false},   {"24.aiff", "pcm_s24be", 24, false},
        {"32.aiff", "pcm_s32be", 32, false},   {"f32.aiff", "pcm_f32be", 24, false},
        {"f64.aiff", "pcm_f64be", 30, false},  {"s8.aiff", "pcm_s8", 8, false},
        {"le.aiff", "pcm_s16le", 16, false},   {"s8.caf", "pcm_s8", 8, false},
        {"16le.caf", "pcm_s16le", 16, false},  {"16be.caf", "pcm_s16be", 16, false},
        {"24le.caf", "pcm_s24le", 24, false},  {"24be.caf", "pcm_s24be", 24, false},
        {"32be.caf", "pcm_s32be", 32, false},  {"f32le.caf", "pcm_f32le", 24, true},
        {"f32be.caf", "pcm_f32be", 24, false}, {"f64le.caf", "pcm_f64le", 30, false},
        {"16.flac", "flac", 16, false},
    };
    ScratchFolder folder;
    for (const Row& row : rows)
        for (const std::size_t channels : {1u, 2u}) {
            SCOPED_TRACE(std::string(row.name) + " " + std::to_string(channels));
            const auto samples = SoundFiles::noise(3000 * channels, row.bits);
            const std::string path = folder.file(std::to_string(channels) + row.name);
            ASSERT_TRUE(SoundFiles::ffmpegWrites(path, samples, static_cast<int>(channels), 44100,
                                                 std::string("-c:a ") + row.codec));
            const LoadedWave wave(path);
            EXPECT_EQ(wave.wave->loadError(), "");
            ASSERT_EQ(wave.channels, channels);
            ASSERT_EQ(wave.frames, 3000u);
            for (std::size_t i = 0; i < samples.size(); ++i)
                ASSERT_EQ(wave.samples[i], row.straight ? static_cast<float>(samples[i])
                                                        : throughSixteenBits(samples[i]))
                    << i;
        }
}

TEST(SoundFileLoading, everyExtensionLoads) {
    struct Row {
        const char* name;
        const char* options;
        std::size_t delay;  // frames before the sound; bare AAC frames do not tell theirs
        double tolerance;
    };
    const Row rows[] = {
        {"a.wav", "-c:a pcm_s16le", 0, 1e-5},
        {"a.wave", "-f wav", 0, 1e-5},
        {"a.caf", "-c:a pcm_s16le", 0, 1e-5},
        {"a.caff", "-f caf -c:a pcm_s16be", 0, 1e-5},
        {"a.aif", "", 0, 1e-5},
        {"a.aiff", "", 0, 1e-5},
        {"a.m4a", "-c:a aac -b:a 128k", 0, 5e-3},
        {"a.aac", "-c:a aac -b:a 128k", 1024, 5e-3},
        {"looks-like.wav", "-f ipod -c:a alac", 0, 1e-5},
    };
    ScratchFolder folder;
    const auto samples = sine(441, 44100, 44100);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string path = folder.file(row.name);
        ASSERT_TRUE(SoundFiles::ffmpegWrites(path, samples, 1, 44100, row.options));
        const LoadedWave wave(path);
        EXPECT_EQ(wave.wave->loadError() + wave.wave->loadNotice(), "");
        ASSERT_GE(wave.frames, 44100 + row.delay);
        EXPECT_LT(deviation(wave, samples, 2000, 42000, row.delay), row.tolerance);
    }
}

TEST(SoundFileLoading, ratesComeOutInTimeAndOnPitch) {
    ScratchFolder folder;
    for (const int rate : {8000, 11025, 22050, 32000, 44056, 48000, 88200, 96000, 192000}) {
        SCOPED_TRACE(rate);
        const std::string path = folder.file(std::to_string(rate) + ".wav");
        const std::size_t frames = static_cast<std::size_t>(rate) / 2 + 1;
        ASSERT_TRUE(
            SoundFiles::ffmpegWrites(path, sine(440, rate, frames), 1, rate, "-c:a pcm_s24le"));
        const LoadedWave wave(path);
        const auto expected =
            static_cast<std::uint32_t>(static_cast<double>(frames) / rate * 44100.0);
        ASSERT_EQ(wave.frames, expected);
        // Filters need some frames at either end.
        EXPECT_LT(deviation(wave, sine(440, 44100, wave.frames), 500, wave.frames - 500), 1e-4);
    }
}

TEST(SoundFileLoading, ratesAgreeToTheBitWithTheReferenceConverter) {
    ScratchFolder folder;
    for (const int rate : {22050, 48000}) {
        SCOPED_TRACE(rate);
        const std::string path = folder.file("noise.wav"), reference = folder.file("reference.raw");
        ASSERT_TRUE(SoundFiles::ffmpegWrites(path, SoundFiles::noise(40000, 24), 2, rate,
                                             "-c:a pcm_s24le"));
        ASSERT_TRUE(SoundFiles::runs(
            "ffmpeg -y -i " + path +
            " -af aresample=44100:osf=s16:internal_sample_fmt=fltp -f s16le " + reference));
        const LoadedWave wave(path);
        const auto expected = readIntegers(reference);
        ASSERT_LE(wave.samples.size(), expected.size());
        for (std::size_t i = 0; i < wave.samples.size(); ++i)
            ASSERT_EQ(wave.samples[i] * 32768, expected[i]) << i;
    }
}

TEST(SoundFileLoading, lengthsAreExact) {
    ScratchFolder folder;
    const std::string doubled = folder.file("doubled.wav"), few = folder.file("few.wav");
    SoundFiles::write(doubled, SoundFiles::wav({.rate = 22050}, std::string(2000, 0)));
    EXPECT_EQ(LoadedWave(doubled).frames, 2000u);
    SoundFiles::write(few, SoundFiles::wav({.rate = 22050}, std::string(14, 1)));
    EXPECT_EQ(LoadedWave(few).frames, 14u);

    const auto samples = SoundFiles::noise(2 * 30001, 16);
    for (const char* name : {"odd.m4a", "odd.caf"}) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(SoundFiles::ffmpegWrites(folder.file(name), samples, 2, 44100, "-c:a alac"));
        const LoadedWave wave(folder.file(name));
        ASSERT_EQ(wave.frames, 30001u);
        EXPECT_EQ(wave.wave->loadNotice(), "");
        for (std::size_t i = 0; i < samples.size(); ++i)
            ASSERT_EQ(wave.samples[i], static_cast<float>(samples[i]));
    }
    // 1.5 s: whole milliseconds, as the container counts.
    const std::string aac = folder.file("aac.m4a");
    ASSERT_TRUE(SoundFiles::ffmpegWrites(aac, sine(441, 48000, 72000), 1, 48000, "-c:a aac"));
    EXPECT_EQ(LoadedWave(aac).frames, 66150u);
}

TEST(SoundFileLoading, manyChannelsFoldToTwo) {
    ScratchFolder folder;
    const std::string five = folder.file("five.wav"), floats = folder.file("floats.wav");
    std::vector<std::int16_t> integers;
    std::vector<float> fractions;
    for (int frame = 0; frame < 100; ++frame) {
        integers.insert(integers.end(), {3000, 100, 6000, 301, 9001});
        fractions.insert(fractions.end(), {0.1f, 1e-7f, 0.3f, 3e-7f});
    }
    SoundFiles::write(five, SoundFiles::wav({.channels = 5}, SoundFiles::bytes(integers)));
    SoundFiles::write(floats, SoundFiles::wav({.channels = 4, .bits = 32, .floats = true},
                                              SoundFiles::bytes(fractions)));
    const LoadedWave folded(five), kept(floats);
    ASSERT_EQ(folded.channels, 2u);
    ASSERT_EQ(folded.frames, 100u);
    EXPECT_EQ(folded.at(50, 0) * 32768, 6000.f);  // 6000.33
    EXPECT_EQ(folded.at(50, 1) * 32768, 200.f);   // 200.5, to even
    ASSERT_EQ(kept.frames, 100u);
    EXPECT_FLOAT_EQ(kept.at(99, 0), 0.2f);
    EXPECT_FLOAT_EQ(kept.at(99, 1), 2e-7f);  // floats at this rate never meet 16 bits
}

TEST(SoundFileLoading, whatIsNotANumberIsSilent) {
    ScratchFolder folder;
    for (const std::uint32_t rate : {44100u, 48000u}) {
        std::vector<float> samples(2000, 0.25f);
        samples[700] = std::nanf("");
        samples[701] = INFINITY;
        samples[702] = -INFINITY;
        const std::string path = folder.file(std::to_string(rate) + ".wav");
        SoundFiles::write(path, SoundFiles::wav({.rate = rate, .bits = 32, .floats = true},
                                                SoundFiles::bytes(samples)));
        const LoadedWave wave(path);
        ASSERT_GT(wave.frames, 1000u);
        for (const float sample : wave.samples)
            ASSERT_LE(std::abs(sample), 0.5f);
        if (rate == 44100) {
            EXPECT_EQ(wave.at(700), 0.f);
        }
    }
}
