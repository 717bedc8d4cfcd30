// What becomes of a recording when the program or the disk fails it.
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <filesystem>
#include <random>
#include <thread>

#include "ForeignReaders.h"
#include "RecordedRun.h"
#include "ScratchFolder.h"
#include "SmallDisk.h"
#include "SoundFiles.h"
#include "log/Log.h"

using testing::HasSubstr;
using testing::StartsWith;

namespace {

void expectReadEverywhere(const std::string& path, const std::vector<std::int16_t>& samples) {
    for (const auto& reading : ForeignReaders::readAll(path)) {
        EXPECT_TRUE(reading.opened) << reading.reader;
        EXPECT_TRUE(reading.samples == SoundFiles::bytes(samples))
            << reading.reader << " read " << reading.samples.size() / 2 << " of " << samples.size();
    }
}

/// Records at the pace of a device until it is killed.
[[noreturn]] void recordForEver(const std::string& path, std::atomic<std::uint32_t>& handedOver) {
    RecordedRun run;
    run.unit.startRecordingTo(path);
    std::thread audio([&] {
        auto due = std::chrono::steady_clock::now();
        for (;;) {
            run.render(512);
            handedOver = run.source.given.load();
            std::this_thread::sleep_until(due += std::chrono::microseconds(11610));
        }
    });
    audio.join();
    std::abort();
}

}  // namespace

TEST(RecordingFaults, aKillLosesNoMoreThanTheLastSecond) {
    constexpr unsigned kSeed = 20, kPrograms = 16;
    SCOPED_TRACE(kSeed);
    const ScratchFolder folder;
    const auto file = [&](unsigned i) { return folder.file(std::to_string(i) + ".wav"); };
    auto* handedOver = static_cast<std::atomic<std::uint32_t>*>(
        mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    std::vector<pid_t> programs;
    for (unsigned i = 0; i < kPrograms; ++i) {
        programs.push_back(fork());
        if (programs.back() == 0)
            recordForEver(file(i), handedOver[i]);
    }
    std::minstd_rand random(kSeed);
    for (unsigned i = 0; i < kPrograms; ++i) {
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 400000));
        kill(programs[i], SIGKILL);
        waitpid(programs[i], nullptr, 0);
    }
    std::uint32_t mostLost = 0;
    for (unsigned i = 0; i < kPrograms; ++i) {
        if (handedOver[i] == 0)  // killed before it began
            continue;
        const auto samples = recorded(file(i));
        EXPECT_TRUE(countsOn(samples));
        EXPECT_GE(samples.size() + 44100, handedOver[i]);
        mostLost = std::max(mostLost, handedOver[i] - static_cast<std::uint32_t>(samples.size()));
        if (i % 4 == 3)  // starting four readers takes longer than all else
            expectReadEverywhere(file(i), samples);
    }
    EXPECT_GT(handedOver[kPrograms - 1], 0u);
    RecordProperty("mostFramesLost", static_cast<int>(mostLost));
    munmap(handedOver, 4096);
}

TEST(RecordingFaults, aFullDiskEndsTheRecordingOnly) {
    const ScratchFolder folder;
    const SmallDisk disk(folder.file("disk"), 0, "512k");
    if (!disk.there())
        GTEST_SKIP() << "only root may mount a small disk";
    RecordedRun run;
    Log::clear();
    const std::string path = folder.file("disk/a.wav");
    run.unit.startRecordingTo(path);
    while (run.unit.report().problem.empty()) {
        run.render(1023);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    for (int i = 0; i < 100; ++i)
        run.render(512);
    EXPECT_TRUE(run.unit.recording());
    run.unit.stopRecording();
    // 512 KiB without the header.
    EXPECT_EQ(run.unit.report().framesWritten, 262122u);
    EXPECT_EQ(run.unit.report().problem,
              path +
                  " cannot be written: the disk is full; the recording ends after 5.9 s; free "
                  "some space");
    const auto samples = recorded(path);
    EXPECT_EQ(samples.size(), 262122u);
    EXPECT_TRUE(countsOn(samples));
    Log::drain();
    EXPECT_THAT(Log::lines(), testing::Each("AU Error -34 / ffffffde"));
    std::filesystem::copy(path, folder.file("a.wav"));
    expectReadEverywhere(folder.file("a.wav"), samples);
    // Not even a header fits: what was to be replaced stays, and nothing else is left.
    run.unit.startRecordingTo(path);
    EXPECT_THAT(run.unit.report().problem, HasSubstr("a.wav cannot be written: the disk is full"));
    EXPECT_EQ(recorded(path).size(), samples.size());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.file("disk")), {}), 1);
}

TEST(RecordingFaults, whatCannotBeCreatedIsSaidAndPlayingGoesOn) {
    const ScratchFolder folder;
    const SmallDisk disk(folder.file("disk"), MS_RDONLY);
    std::filesystem::create_directory(folder.file("folder.wav"));
    ASSERT_EQ(mkfifo(folder.file("pipe.wav").c_str(), 0600), 0);
    std::vector<std::pair<std::string, std::string>> faults{
        {"none/a.wav",
         "cannot be written: its folder does not exist; make the folder or choose another"},
        {"folder.wav", "is a folder; choose another name"},
        {"pipe.wav", "is a pipe or a device; choose another name"}};
    if (disk.there())
        faults.emplace_back("disk/a.wav",
                            "cannot be written: the disk is read-only; choose a folder on another");
    for (const auto& [name, problem] : faults) {
        RecordedRun run;
        Log::clear();
        run.unit.startRecordingTo(folder.file(name));
        EXPECT_THAT(Log::lines(), testing::Each(StartsWith("AU Error")));
        EXPECT_TRUE(run.unit.recording());
        Log::clear();
        run.render(512);
        run.render(512);
        Log::drain();
        EXPECT_THAT(Log::lines(),
                    testing::ElementsAre("AU Error -38 / ffffffda", "AU Error -38 / ffffffda"));
        EXPECT_EQ(run.unit.report().problem, folder.file(name) + " " + problem);
        run.unit.stopRecording();
        EXPECT_EQ(run.unit.report().problem, folder.file(name) + " " + problem);
    }
}
