#include "files/VornExtAudioFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <thread>

#include "ScratchFolder.h"
#include "audiounits/RenderScope.h"
#include "files/VornOutputAudioFile.h"
#include "log/Log.h"

namespace {

template <typename Sample>
std::vector<Sample> contents(const std::string& path) {
    VornAudioFile file(path);
    std::vector<Sample> samples(file.byteCount() / sizeof(Sample));
    auto bytes = static_cast<std::uint32_t>(samples.size() * sizeof(Sample));
    EXPECT_TRUE(file.ReadIntoBuffer(samples.data(), &bytes));
    return samples;
}

OSStatus handOver(VornExtAudioFile& file, const std::vector<std::int16_t>& mono) {
    const RenderScope render;
    const auto list = AudioBufferList::single(const_cast<std::int16_t*>(mono.data()), 1,
                                              static_cast<std::uint32_t>(mono.size() * 2));
    return file.writeAsync(&list, static_cast<std::uint32_t>(mono.size()));
}

/// Writes `planes` in pieces of 441 frames from the client format, separate buffers.
void writePlanes(const std::string& path, const StreamDescription& format, StreamDescription client,
                 std::vector<std::vector<float>> planes) {
    client.mFormatFlags |= kAudioFormatFlagIsNonInterleaved;
    client.mBytesPerFrame = client.mBytesPerPacket = 4;
    VornExtAudioFile file(path, kWaveFileType, format);
    file.setClientFormat(client);
    file.primeAsyncWriting();
    for (std::size_t at = 0; at < planes[0].size(); at += 441) {
        AudioBufferList list{static_cast<std::uint32_t>(planes.size()), {}};
        for (std::size_t p = 0; p < planes.size(); ++p)
            list.mBuffers[p] = {1, 441 * 4, &planes[p][at]};
        EXPECT_EQ(file.writeAsync(&list, 441), noErr);
    }
    EXPECT_EQ(file.close().problem, "");
}

}  // namespace

TEST(VornExtAudioFile, startsAsItsFileAndIsPrimedFirst) {
    const ScratchFolder folder;
    const auto format = StreamDescription::sint16(1);
    VornExtAudioFile file(folder.file("a.wav"), kWaveFileType, format);
    EXPECT_EQ(file.fileFormat(), format);
    EXPECT_EQ(file.clientFormat(), format);
    EXPECT_FALSE(file.asyncPrimed());
    EXPECT_EQ(contents<std::int16_t>(folder.file("a.wav")).size(), 0u);
    EXPECT_EQ(handOver(file, {1, 2}), kExtAudioFileError_InvalidOperationOrder);
    file.primeAsyncWriting();
    EXPECT_TRUE(file.asyncPrimed());
    EXPECT_EQ(handOver(file, {1, 2, 3}), noErr);
    const auto report = file.close();
    EXPECT_EQ(report.framesWritten, 3u);
    EXPECT_EQ(report.problem, "");
    EXPECT_EQ(contents<std::int16_t>(folder.file("a.wav")), (std::vector<std::int16_t>{1, 2, 3}));
}

TEST(VornExtAudioFile, convertsFromTheClient) {
    const ScratchFolder folder;
    const std::string path = folder.file("a.wav");
    std::vector<float> left(44100), right(44100);
    for (std::size_t i = 0; i < left.size(); ++i) {
        left[i] = static_cast<float>(i % 1000) / 1024.f;
        right[i] = static_cast<float>(0.5 * std::sin(static_cast<double>(i) * 0.05));
    }
    writePlanes(path, StreamDescription::sint16(2), StreamDescription::float32(2), {left, right});
    const auto pairs = contents<std::int16_t>(path);
    ASSERT_EQ(pairs.size(), 88200u);
    writePlanes(path, StreamDescription::float32(1), StreamDescription::float32(2), {left, right});
    const auto means = contents<float>(path);
    ASSERT_EQ(means.size(), 44100u);
    writePlanes(path, StreamDescription::float32(2), StreamDescription::float32(1), {left});
    const auto twice = contents<float>(path);
    ASSERT_EQ(twice.size(), 88200u);
    for (std::size_t i = 0; i < left.size(); ++i) {
        ASSERT_EQ(pairs[2 * i], std::lrintf(left[i] * 32768));
        ASSERT_EQ(pairs[2 * i + 1], std::lrintf(right[i] * 32768));
        ASSERT_EQ(means[i], (left[i] + right[i]) * 0.5f);
        ASSERT_TRUE(twice[2 * i] == left[i] && twice[2 * i + 1] == left[i]);
    }
    // A sine at another rate is the same sine.
    writePlanes(path, StreamDescription::float32(1, 48000), StreamDescription::float32(1), {right});
    const auto resampled = contents<float>(path);
    ASSERT_EQ(resampled.size(), 48000u);
    for (std::size_t i = 200; i < 47800; ++i)
        ASSERT_NEAR(resampled[i], 0.5 * std::sin(static_cast<double>(i) * 0.05 * 44100 / 48000),
                    2e-3);
}

TEST(VornExtAudioFile, countsWhatItHadToDrop) {
    const ScratchFolder folder;
    VornExtAudioFile file(folder.file("a.wav"), kWaveFileType, StreamDescription::sint16(1));
    file.primeAsyncWriting();
    // Far more than the ring holds, in far less time than the disk is given.
    std::vector<std::int16_t> second(44100);
    for (int s = 0; s < 300; ++s) {
        std::ranges::fill(second, static_cast<std::int16_t>(s));
        ASSERT_EQ(handOver(file, second), noErr);
    }
    const auto report = file.close();
    EXPECT_GT(report.framesDropped, 0u);
    EXPECT_GE(report.framesWritten, 8u * 44100);
    EXPECT_EQ(report.framesWritten + report.framesDropped, 300u * 44100);
    EXPECT_EQ(report.problem, "");
    const auto written = contents<std::int16_t>(folder.file("a.wav"));
    EXPECT_EQ(written.size(), report.framesWritten);
    EXPECT_TRUE(std::ranges::is_sorted(written));
}

TEST(VornExtAudioFile, reportsWhileAnotherThreadHandsOver) {
    const ScratchFolder folder;
    VornExtAudioFile file(folder.file("a.wav"), kWaveFileType, StreamDescription::sint16(1));
    file.primeAsyncWriting();
    constexpr std::uint32_t kBuffers = 400;
    std::thread audio([&] {
        std::vector<std::int16_t> buffer(512);
        for (std::uint32_t b = 0; b < kBuffers; ++b) {
            for (std::uint32_t i = 0; i < 512; ++i)
                buffer[i] = static_cast<std::int16_t>(b * 512 + i);
            handOver(file, buffer);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    std::uint64_t seen = 0;
    while (seen < 20000) {
        const auto report = file.report();
        ASSERT_GE(report.framesWritten, seen);
        seen = report.framesWritten;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    audio.join();
    EXPECT_EQ(file.close().framesWritten, kBuffers * 512);
    const auto written = contents<std::int16_t>(folder.file("a.wav"));
    for (std::size_t i = 0; i < written.size(); ++i)
        ASSERT_EQ(written[i], static_cast<std::int16_t>(i));
}
