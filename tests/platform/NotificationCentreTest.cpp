#include "notifications/NotificationCentre.h"

#include <gtest/gtest.h>

#include <thread>

TEST(NotificationCentre, callsObserversOfTheNameUntilTheyGo) {
    NotificationCentre centre;
    int first = 0;
    int other = 0;
    NotificationCentre::Token once = 0;
    int onceCalls = 0;
    auto token = centre.addObserver("first", [&] { ++first; });
    centre.addObserver("other", [&] { ++other; });
    once = centre.addObserver("first", [&] {
        ++onceCalls;
        centre.removeObserver(once);
    });
    centre.post("first");
    centre.post("first");
    centre.removeObserver(token);
    centre.post("first");
    EXPECT_EQ(first, 2);
    EXPECT_EQ(other, 0);
    EXPECT_EQ(onceCalls, 1);
}

TEST(NotificationCentre, doesNotCallWhatHasGoneWhileAnotherThreadPosts) {
    NotificationCentre centre;
    std::atomic<bool> done{false};
    std::thread audio([&] {
        while (!done)
            centre.post("clip");
    });
    for (int i = 0; i < 2000; ++i) {
        auto calls = std::make_unique<std::atomic<int>>(0);
        auto token = centre.addObserver("clip", [&calls = *calls] { ++calls; });
        centre.removeObserver(token);
    }
    done = true;
    audio.join();
}
