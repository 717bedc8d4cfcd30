#include "wave/WaveViewport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

void expectWithin(const WaveViewport& viewport) {
    const int length = viewport.length();
    const int least = std::min(WaveViewport::kFewestFrames, length);
    EXPECT_GE(viewport.first(), 0);
    EXPECT_LE(viewport.first() + viewport.span(), length + 1e-6);
    EXPECT_GE(viewport.span(), least);
    EXPECT_GE(viewport.start(), 0);
    EXPECT_LE(viewport.stop(), length);
    EXPECT_GE(viewport.stop() - viewport.start(), least);
}

}  // namespace

TEST(WaveViewportTest, aWalkStaysWithinTheSoundAndScrollsKeepTheScale) {
    std::mt19937 random(20);
    std::uniform_real_distribution<double> share(0, 1);
    for (const int length : {0, 1, 2, 15, 16, 17, 1000, 52'920'000}) {
        SCOPED_TRACE(length);
        WaveViewport viewport;
        viewport.setWidth(1181);
        viewport.setLength(length);
        EXPECT_TRUE(viewport.showsAll());
        for (int i = 0; i < 3000; ++i) {
            const int frames = viewport.stop() - viewport.start();
            const double span = viewport.span();
            const double x = 1181 * share(random);
            const double held = viewport.first() + x * viewport.framesPerPoint();
            const auto dice = random() % 10;
            if (dice < 5) {
                viewport.scrollBy(std::pow(10., 5 * share(random) - 2) * (dice < 2 ? 1 : -1));
                EXPECT_EQ(viewport.stop() - viewport.start(), frames);
                EXPECT_EQ(viewport.span(), span);
            } else if (dice < 9) {
                viewport.zoomAbout(x, std::exp(3 * share(random) - 1.4));
                const bool atEnd =
                    viewport.first() <= 0 || viewport.first() + viewport.span() >= length;
                if (!atEnd) {
                    EXPECT_NEAR(viewport.xOf(held), x, 1e-3);
                }
            } else {
                viewport.show(length * share(random), length * share(random));
            }
            expectWithin(viewport);
        }
        viewport.show(NAN, 7);
        expectWithin(viewport);
    }
}

TEST(WaveViewportTest, slowDragsMoveADeepZoomToo) {
    WaveViewport viewport;
    viewport.setWidth(1200);
    viewport.setLength(1000);
    viewport.show(500, 516);
    for (int i = 0; i < 750; ++i)
        viewport.scrollBy(-0.2);  // 150 points, at 75 a frame
    EXPECT_EQ(viewport.start(), 502);
    EXPECT_NEAR(viewport.xOf(504), 150, 1e-6);
}

TEST(WaveViewportTest, anEditKeepsTheStretchAsFarAsThereIsOne) {
    WaveViewport viewport;
    viewport.setWidth(1000);
    viewport.setLength(10'000);
    viewport.show(6000, 8000);
    viewport.changeLength(20'000);
    EXPECT_EQ(viewport.start(), 6000);
    viewport.changeLength(7000);
    EXPECT_EQ(viewport.start(), 5000);
    EXPECT_EQ(viewport.stop(), 7000);
    viewport.changeLength(5);
    EXPECT_TRUE(viewport.showsAll());
    viewport.changeLength(9000);
    EXPECT_EQ(viewport.stop(), 9000) << "all was shown";
}
