// Where the music cannot be written.

#include <sys/mount.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <thread>

#include "CommandLine.h"
#include "SmallDisk.h"

using testing::AnyOf;
using testing::HasSubstr;

TEST_F(CommandLine, replacesAFileOnlyWhenForced) {
    put("out.wav", "precious");
    const Outcome refused = render();
    expectRefusal(refused, 2);
    EXPECT_THAT(refused.err, HasSubstr("out.wav"));
    EXPECT_THAT(refused.err, HasSubstr("--force"));
    EXPECT_EQ(contentsOf(path("out.wav")), "precious");
    // A render that fails leaves the old file, forced or not.
    expectRefusal(render({"--force", "--sound", "none.wav"}), 2);
    EXPECT_EQ(contentsOf(path("out.wav")), "precious");
    EXPECT_EQ(render({"--force"}).exitCode, 0);
    EXPECT_NE(contentsOf(path("out.wav")), "precious");
}

TEST_F(CommandLine, refusesPlacesThatHoldNoFile) {
    std::filesystem::create_directory(path("folder"));
    for (const std::string& place : {path("none/out.wav"), path("folder"), path("song.mid/x.wav"),
                                     std::string("/proc/out.wav"), std::string()}) {
        SCOPED_TRACE(place);
        const auto before = folder();
        const Outcome outcome = render({"--output", place});
        EXPECT_EQ(outcome.signal, 0);
        EXPECT_THAT(outcome.exitCode, AnyOf(1, 2));
        EXPECT_THAT(outcome.err, IsOneLine());
        EXPECT_THAT(outcome.err, HasSubstr(place));
        EXPECT_EQ(folder(), before);
    }
    EXPECT_TRUE(std::filesystem::is_empty(path("folder")));
}

TEST_F(CommandLine, leavesNothingWhenAFileMayGrowNoFurther) {
    m_surroundings.largestFile = 20000;
    const Outcome outcome = render({"--seconds", "10"});
    expectRefusal(outcome, 1);
    EXPECT_THAT(outcome.err, HasSubstr("out.wav"));
}

TEST_F(CommandLine, leavesNothingOnAFullOrReadOnlyDisk) {
    const SmallDisk full(path("full"), 0);
    const SmallDisk readOnly(path("read-only"), MS_RDONLY);
    if (!full.there() || !readOnly.there())
        GTEST_SKIP() << "this account may not mount";
    for (const char* place : {"full/out.wav", "read-only/out.wav"}) {
        SCOPED_TRACE(place);
        const Outcome outcome = render({"--seconds", "10", "--output", place});
        EXPECT_THAT(outcome.exitCode, AnyOf(1, 2));
        EXPECT_THAT(outcome.err, IsOneLine());
        EXPECT_THAT(outcome.err, HasSubstr(place));
    }
    EXPECT_TRUE(full.empty());
}

TEST_F(CommandLine, leavesNothingWhenItIsStopped) {
    for (const int signal : {SIGINT, SIGTERM}) {
        SCOPED_TRACE(signal);
        Program program({"render", "song.mid", "--output", "out.wav", "--sound", "Sine Wave",
                         "--seconds", "40000"},
                        m_surroundings);
        const auto before = folder();
        while (folder() == before && program.running())
            std::this_thread::yield();
        program.signal(signal);
        const Outcome& outcome = program.wait();
        EXPECT_EQ(outcome.signal, 0);
        EXPECT_NE(outcome.exitCode, 0);
        EXPECT_EQ(folder(), before);
    }
}
