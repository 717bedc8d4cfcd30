#include "handoff/Shared.h"

#include <gtest/gtest.h>

TEST(Shared, copiesTheValueAndNotTheCell) {
    Shared<float> a = 3.f;
    Shared<float> b = a;
    a = 4.f;
    EXPECT_EQ(float(b), 3.f);
    EXPECT_EQ(float(a), 4.f);
}
