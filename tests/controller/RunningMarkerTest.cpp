#include "startup/RunningMarker.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "ScratchFolder.h"
#include "propertylists/PropertyList.h"

TEST(RunningMarker, belongsToTheFirstInstance) {
    ScratchFolder folder;
    const std::string path = folder.path().string();
    const std::string file = folder.file(".running.marker");
    const pid_t killed = fork();
    if (killed == 0) {
        const InstanceLock place(path);
        RunningMarker marker(path, place);
        marker.markRunning(!marker.previousRunCrashed() && place.ordinal() == 1);
        kill(getpid(), SIGKILL);
    }
    waitpid(killed, nullptr, 0);

    InstanceLock first(path);
    ASSERT_EQ(first.ordinal(), 1);
    RunningMarker marker(path, first);
    EXPECT_TRUE(marker.previousRunCrashed());
    marker.markRunning(true);
    std::string error;
    const auto list = PropertyList::readFile(file, error);
    ASSERT_TRUE(list && list->dictionary()) << error;
    ASSERT_EQ(list->dictionary()->size(), 1u);
    EXPECT_TRUE(list->dictionary()->at("last-opened-at").date());

    const pid_t second = fork();
    if (second == 0) {
        InstanceLock place(path);
        RunningMarker other(path, place);
        const bool crashed = other.previousRunCrashed();
        other.markRunning(false);
        const bool taken = place.whileFree(1, [] {});
        _exit(place.ordinal() == 2 && !crashed && !taken && place.whileFree(3, [] {}) ? 0 : 1);
    }
    int status = 1;
    waitpid(second, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(std::filesystem::exists(file));
    EXPECT_TRUE(first.whileFree(2, [] {}));  // its holder is gone
    marker.markRunning(false);
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(InstanceLock("/proc").ordinal(), 0);
}
