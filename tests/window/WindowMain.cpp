#include <gtest/gtest.h>

#include "WindowSession.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    const WindowSession session(1920, 1200);
    return RUN_ALL_TESTS();
}
