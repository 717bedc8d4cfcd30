#include "memory/SampleMemory.h"

#include <gtest/gtest.h>

TEST(SampleMemory, keepsItsContentsAndNothingElseWhenResized) {
    SampleMemory memory(10);
    memory.data()[9] = 3.f;
    ASSERT_TRUE(memory.resize(5000000));
    EXPECT_EQ(memory.data()[9], 3.f);
    EXPECT_EQ(memory.data()[4999999], 0.f);
    memory.data()[700] = 4.f;
    ASSERT_TRUE(memory.resize(700));
    ASSERT_TRUE(memory.resize(701));
    EXPECT_EQ(memory.data()[700], 0.f);
    EXPECT_FALSE(memory.resize(std::size_t{1} << 60));
    EXPECT_EQ(memory.size(), 701u);
    EXPECT_EQ(memory.data()[9], 3.f);
    ASSERT_TRUE(memory.resize(0));
    ASSERT_TRUE(memory.resize(3));
    EXPECT_EQ(memory.data()[0], 0.f);
    SampleMemory taken = std::move(memory);
    EXPECT_FALSE(memory);
    EXPECT_EQ(taken.size(), 3u);
}
