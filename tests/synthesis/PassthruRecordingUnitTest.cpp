#include "PassthruRecordingUnit.h"

#include <gmock/gmock.h>

#include <thread>

#include "RecordedRun.h"
#include "RenderWatch.h"
#include "ScratchFolder.h"
#include "log/Log.h"

TEST(PassthruRecordingUnit, passesOnAndKeepsEveryBuffer) {
    const ScratchFolder folder;
    RecordedRun run;
    run.unit.stopRecording();
    run.render(100);
    run.unit.startRecordingTo(folder.file("a.wav"));
    EXPECT_TRUE(run.unit.recording());
    EXPECT_TRUE(run.unit.targetFile()->asyncPrimed());
    for (const std::uint32_t frames : {1u, 512u, 8192u, 7u})
        run.render(frames);
    run.source.silent = true;  // a rest is part of a performance
    run.render(1000);
    run.source.silent = false;
    run.source.status = -50;  // what came is passed on as it is
    Log::clear();
    run.render(10);
    Log::drain();
    EXPECT_THAT(Log::lines(), testing::ElementsAre("AU Error -50 / ffffffce"));
    run.source.status = noErr;
    // The second begins when the first is whole.
    run.unit.startRecordingTo(folder.file("b.wav"));
    const auto first = recorded(folder.file("a.wav"));
    ASSERT_EQ(first.size(), 9722u);
    EXPECT_TRUE(countsOn({first.begin(), first.begin() + 8712}));
    EXPECT_EQ(first[0], 100);
    EXPECT_EQ(std::count(first.begin() + 8712, first.begin() + 9712, 0), 1000);
    EXPECT_TRUE(countsOn({first.begin() + 9712, first.end()}));
    run.render(300);
    run.unit.stopRecording();
    EXPECT_FALSE(run.unit.recording());
    EXPECT_EQ(run.unit.report().framesWritten, 300u);
    run.render(50);
    EXPECT_EQ(recorded(folder.file("b.wav")).size(), 300u);
}

TEST(PassthruRecordingUnit, startsAndStopsUnderARunningRender) {
    const ScratchFolder folder;
    RecordedRun run;
    std::atomic<bool> ended{false};
    std::thread audio([&] {
        while (!ended) {
            run.render(64);
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
    });
    for (int i = 0; i < 20; ++i) {
        run.unit.startRecordingTo(folder.file("a.wav"));
        const std::uint32_t from = run.source.given;
        while (run.source.given - from < 640u * static_cast<unsigned>(i % 4 + 1))
            std::this_thread::yield();
        run.unit.stopRecording();
        const auto samples = recorded(folder.file("a.wav"));
        EXPECT_EQ(samples.size(), run.unit.report().framesWritten);
        EXPECT_GE(samples.size(), 576u);
        EXPECT_TRUE(countsOn(samples));
    }
    run.unit.startRecordingTo(folder.file("last.wav"));
    ended = true;
    audio.join();
}

TEST(PassthruRecordingUnit, rendersAsStrictlyWhileItRecords) {
    if (!RenderWatch::working())
        GTEST_SKIP() << "a sanitizer is in the way";
    const ScratchFolder folder;
    RecordedRun run;
    run.unit.startRecordingTo(folder.file("a.wav"));
    const RenderWatch watch;
    for (int i = 0; i < 3000; ++i)  // longer than the ring: drops are as quiet
        run.render(512);
    EXPECT_EQ(watch.renders(), 3000u);
    EXPECT_THAT(watch.violations(), testing::IsEmpty());
}

TEST(PassthruRecordingUnit, endsItsFileWithItself) {
    const ScratchFolder folder;
    {
        RecordedRun run;
        run.unit.startRecordingTo(folder.file("a.wav"));
        run.render(500);
    }
    EXPECT_EQ(recorded(folder.file("a.wav")).size(), 500u);
}
