#include "VornWave2.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "LoadedWave.h"
#include "ScratchFolder.h"
#include "SoundFiles.h"
#include "VornWaveDatabase.h"
#include "log/Log.h"

namespace {

std::shared_ptr<VornWave2> waveOf(const std::vector<float>& samples, std::uint32_t channels) {
    return VornWave2::initWithCopyOfData(samples.data(),
                                         static_cast<std::uint32_t>(samples.size()) / channels,
                                         StreamDescription::float32(channels), "Hint");
}

bool logged(const std::string& line) {
    return std::ranges::count(Log::lines(), line) > 0;
}

/// A second of stereo in a file.
std::string writeStereo(const ScratchFolder& folder, const std::string& name) {
    std::vector<std::int16_t> samples(2 * 44100);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<std::int16_t>(i * 7919);
    SoundFiles::write(folder.file(name),
                      SoundFiles::wav({.channels = 2}, SoundFiles::bytes(samples)));
    return folder.file(name);
}

}  // namespace

TEST(VornWave2, windowsAreClampedAndTerminated) {
    const auto wave = waveOf({1, 2, 3, 4, 5, 6}, 2);
    std::uint32_t count = 99;
    const auto list = wave->retrieveWindowsAt(1, &count);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(list[0].owner, wave.get());
    EXPECT_EQ(list[0].data[0], 3.f);
    EXPECT_EQ(list[0].frameCount, 2u);
    EXPECT_EQ(list[0].format, 1);
    EXPECT_EQ(list[1].data, nullptr);
    EXPECT_EQ(list[1].frameCount, 0u);

    count = 5;
    const auto past = wave->retrieveWindowsAt(4000000000u, &count);
    ASSERT_NE(past, nullptr);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(past[0].frameCount, 0u);

    std::vector<float> copy(10, 9.f);
    EXPECT_EQ(wave->write(5, copy.data()), 5u);
    EXPECT_EQ(copy, (std::vector<float>{1, 2, 3, 4, 5, 6, 0, 0, 0, 0}));
}

TEST(VornWave2, inMemoryWavesAreNamedFromTheHintAndUnknownToTheDatabase) {
    const auto wave = waveOf({1, 2, 3}, 1);
    EXPECT_TRUE(wave->filename().starts_with("Hint 0x"));
    EXPECT_TRUE(wave->filename().ends_with(".wav"));
    EXPECT_EQ(wave->fullPath(), "");
    EXPECT_EQ(wave->residency(), VornWave2::inMemory);
    EXPECT_EQ(wave->bkgLoadState(), VornWave2::loaded);
    EXPECT_TRUE(VornWaveDatabase::sharedInstance().waves().empty());
}

TEST(VornWave2, yieldsNothingUntilItIsLoaded) {
    ScratchFolder folder;
    writeStereo(folder, "a.wav");
    const auto wave = VornWave2::initWithReferenceToFile("a.wav", folder.path());
    EXPECT_EQ(wave->bkgLoadState(), VornWave2::notLoaded);
    EXPECT_EQ(wave->sampleCount(), 44100u);
    EXPECT_EQ(wave->audioDescription()->mBitsPerChannel, 16u);
    std::uint32_t count = 10;
    EXPECT_EQ(wave->retrieveWindowsAt(0, &count), nullptr);
    EXPECT_EQ(count, 0u);

    wave->fetch(0);
    wave->waitUntilLoaded();
    EXPECT_EQ(wave->progress(), 1.f);
    EXPECT_EQ(*wave->audioDescription(), StreamDescription::float32(2));
    const LoadedWave loaded(folder.file("a.wav"));
    ASSERT_EQ(loaded.wave, wave);
    for (std::size_t i = 0; i < loaded.samples.size(); ++i)
        ASSERT_EQ(loaded.samples[i],
                  static_cast<float>(static_cast<std::int16_t>(i * 7919)) / 32768.f);
}

TEST(VornWave2, onePathHasOneWaveWhileItLives) {
    ScratchFolder folder;
    const std::string path = writeStereo(folder, "a.wav");
    auto first = VornWave2::initWithReferenceToFile("a.wav", folder.path());
    auto second = VornWave2::initWithContentsOfFile("a.wav", folder.path());
    EXPECT_EQ(first, second);
    EXPECT_EQ(VornWaveDatabase::sharedInstance().waves().size(), 1u);
    EXPECT_TRUE(logged("Lookup " + path));
    EXPECT_TRUE(logged("Register " + path));
    first.reset();
    second.reset();
    EXPECT_TRUE(logged("Unregister " + path));
    EXPECT_EQ(VornWaveDatabase::sharedInstance().lookupWaveForPath(path), nullptr);
}

TEST(VornWave2, aWaveTakesOnlyItsOwnEntryAway) {
    auto older = waveOf({1}, 1), newer = waveOf({2}, 1);
    VornWaveDatabase& database = VornWaveDatabase::sharedInstance();
    database.registerWave(older, "same");
    database.registerWave(newer, "same");
    database.unregisterWaveForPath(older.get(), "same");
    EXPECT_EQ(database.lookupWaveForPath("same"), newer);
    database.debugPrint();
    EXPECT_TRUE(Log::lines().back().starts_with("same -> "));
    database.unregisterWaveForPath(newer.get(), "same");
    EXPECT_EQ(database.lookupWaveForPath("same"), nullptr);
    database.registerWave(newer, "same");
    database.unregisterWaveForPath("same");
    EXPECT_EQ(database.lookupWaveForPath("same"), nullptr);
}

TEST(VornWave2, replacedSamplesOutliveTheirReaders) {
    const auto wave = waveOf(std::vector<float>(1000, 1.f), 1);
    std::uint32_t count = 1000;
    const float* old = wave->retrieveWindowAt(0, &count, nullptr);
    SampleMemory samples(500);
    std::fill_n(samples.data(), 500, 2.f);
    wave->cheekilyReplaceDataWithOwnershipOf(std::move(samples), 500);
    EXPECT_EQ(old[999], 1.f);
    count = 1000;
    EXPECT_EQ(wave->retrieveWindowAt(0, &count, nullptr)[499], 2.f);
    EXPECT_EQ(count, 500u);
    EXPECT_EQ(wave->sampleCount(), 500u);
    wave->releaseReplacedData();
    EXPECT_EQ(wave->retrieveWindowAt(0, &count, nullptr)[0], 2.f);
}

TEST(VornWave2, progressNeverGoesBack) {
    ScratchFolder folder;
    SoundFiles::write(folder.file("long.wav"),
                      SoundFiles::wav({.rate = 48000, .channels = 2}, std::string(4000000, 7)));
    const auto wave = VornWave2::initWithReferenceToFile("long.wav", folder.path());
    wave->fetch(0);
    float last = 0.f;
    while (wave->bkgLoadState() != VornWave2::loaded) {
        const float now = wave->progress();
        ASSERT_GE(now, last);
        ASSERT_LE(now, 1.f);
        last = now;
    }
    EXPECT_EQ(wave->progress(), 1.f);
}

TEST(VornWave2, threadsMayAskForTheSameFileAtOnce) {
    ScratchFolder folder;
    writeStereo(folder, "a.wav");
    writeStereo(folder, "b.wav");
    const auto work = [&](int turn) {
        for (int i = 0; i < 100; ++i) {
            const auto wave = VornWave2::initWithReferenceToFile((i + turn) % 2 ? "a.wav" : "b.wav",
                                                                 folder.path());
            wave->fetch(i % 3 == 0);
            std::uint32_t count = 44100;
            if (i % 5 == 0)
                wave->waitUntilLoaded();
            if (const float* samples = wave->retrieveWindowAt(0, &count, nullptr)) {
                ASSERT_EQ(samples[1], 7919.f / 32768.f);
            }
        }
    };
    std::thread other(work, 1);
    work(0);
    other.join();
    // Loaders in the background hold the last references; wait for them to go.
    while (!VornWaveDatabase::sharedInstance().waves().empty())
        std::this_thread::yield();
}
