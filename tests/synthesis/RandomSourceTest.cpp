#include "RandomSource.h"

#include <gtest/gtest.h>

#include <cstdlib>

TEST(RandomSource, givesTheSequenceOfTheCLibrary) {
    for (unsigned seed : {0u, 1u, 2u, 127773u, 2147483647u, 2147483648u, 4294967295u}) {
        srandom(seed);
        RandomSource::seed(seed);
        for (int i = 0; i < 500; ++i)
            ASSERT_EQ(RandomSource::next(), random()) << "seed " << seed << ", number " << i;
    }
}

TEST(RandomSource, startsWhereSeedOneStarts) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");  // a process that has drawn nothing yet
    EXPECT_EXIT(std::exit(RandomSource::next() == 1804289383u ? 0 : 1), testing::ExitedWithCode(0),
                "");
}
