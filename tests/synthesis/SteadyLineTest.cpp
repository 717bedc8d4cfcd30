#include "SteadyLine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

TEST(SteadyLine, holdsOnlyWhenEverySlotOfTheLoopIsTheSame) {
    std::vector<float> slots(100, 1.f);
    SteadyLine line;
    float held = 7.f;

    // Sixty of a hundred slots are at rest; a loop of fifty of them need not be.
    std::fill(slots.begin() + 10, slots.begin() + 70, 0.25f);
    line.look({slots.data(), 100, 10}, 60);
    EXPECT_FALSE(line.holds({slots.data(), 100, 70}, held));
    EXPECT_FALSE(line.holds({slots.data(), 50, 0}, held));
    std::fill(slots.begin(), slots.begin() + 5, 0.25f);
    line.look({slots.data(), 50, 0}, 5);
    EXPECT_FALSE(line.holds({slots.data(), 50, 5}, held));

    // All of it, round the end and in pieces.
    std::ranges::fill(slots, 0.25f);
    line.look({slots.data(), 50, 5}, 40);
    line.look({slots.data(), 50, 45}, 40);
    EXPECT_TRUE(line.holds({slots.data(), 50, 35}, held));
    EXPECT_EQ(held, 0.25f);

    // Another buffer has to prove itself, and so has the same one after sound.
    std::vector<float> others(50, 1.f);
    std::fill(others.begin(), others.begin() + 5, 0.25f);
    line.look({others.data(), 50, 0}, 5);
    EXPECT_FALSE(line.holds({others.data(), 50, 5}, held));
    line.look({slots.data(), 50, 0}, 50);
    line.forget();
    EXPECT_FALSE(line.holds({slots.data(), 50, 0}, held));
}
