#include "log/Log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "audiounits/RenderScope.h"

namespace {

void failInRender(int times) {
    const RenderScope scope;
    for (int i = 0; i < times; ++i)
        Log::status(-10876);
}

}  // namespace

TEST(Log, writesAStatusTwiceAndSuccessNotAtAll) {
    Log::clear();
    Log::status(0);
    Log::status(-50);
    EXPECT_THAT(Log::lines(), testing::ElementsAre("AU Error -50 / ffffffce"));
}

TEST(Log, hearsWhatRendersSayWhenItIsDrained) {
    Log::clear();
    failInRender(1);
    EXPECT_THAT(Log::lines(), testing::IsEmpty());
    Log::drain();
    Log::drain();
    EXPECT_THAT(Log::lines(), testing::ElementsAre("AU Error -10876 / ffffd584"));
}

TEST(Log, countsWhatItCannotKeepAndLosesNothingBetweenThreads) {
    Log::clear();
    failInRender(300);
    Log::drain();
    ASSERT_EQ(Log::lines().size(), 257u);
    EXPECT_EQ(Log::lines().back(), "44 more errors while rendering");

    Log::clear();
    std::thread audio([] {
        for (int i = 0; i < 2000; ++i)
            failInRender(1);
    });
    for (int i = 0; i < 2000; ++i)
        Log::drain();
    audio.join();
    Log::drain();
    std::size_t heard = 0;
    for (const std::string& line : Log::lines()) {
        unsigned more = 0;
        heard += std::sscanf(line.c_str(), "%u more errors", &more) == 1 ? more : 1;
    }
    EXPECT_EQ(heard, 2000u);
}
