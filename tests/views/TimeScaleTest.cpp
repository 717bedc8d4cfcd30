#include "wave/TimeScale.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr double kLetter = 6;  // points
constexpr double kGap = 20;

double widthOf(const QString& label) {
    return kLetter * double(label.size()) + kGap;
}

WaveViewport viewOf(double from, double frames) {
    WaveViewport viewport;
    viewport.setWidth(1166);
    viewport.setLength(500'000'000);  // three hours
    viewport.show(from, from + frames);
    return viewport;
}

}  // namespace

TEST(TimeScaleTest, labelsNeverOverlapAndAllDiffer) {
    for (const double rate : {8000., 44100., 48000., 192000.}) {
        for (double frames = 16; frames < 4e8; frames *= 1.3) {
            SCOPED_TRACE(testing::Message() << frames << " frames at " << rate);
            const WaveViewport viewport = viewOf(12'345'678, frames);
            double free = -1e9;
            QString before;
            int labels = 0;
            double mark = -1e9;
            for (const TimeScale::Mark& each : TimeScale(rate).marks(viewport, widthOf)) {
                EXPECT_GT(each.x, mark + 3) << "marks can be told apart";
                mark = each.x;
                if (each.label.isEmpty())
                    continue;
                EXPECT_GE(each.x, free);
                EXPECT_NE(each.label, before);
                free = each.x + widthOf(each.label) - 1e-6;
                before = each.label;
                labels += each.x >= 0;
            }
            EXPECT_GE(labels, 2);
        }
    }
}

TEST(TimeScaleTest, saysTimesAsFineAsTheZoomWantsThem) {
    const TimeScale scale(44100);
    const auto label = [&](double seconds, double step) {
        return scale.label(seconds * 44100, step * 44100).toStdString();
    };
    EXPECT_EQ(label(0, 1), "0:00");
    EXPECT_EQ(label(59.9996, 0.001), "1:00.000");
    EXPECT_EQ(label(3725, 60), "1:02:05");
    EXPECT_EQ(label(62.5, 0.5), "1:02.5");
    EXPECT_EQ(label(2.001, 0.001), "0:02.001");
    EXPECT_EQ(scale.label(44110, 5).toStdString(), "0:01.0002 \u00b7 44110");
    EXPECT_EQ(scale.stepsFor(2.5).label, 5);
    EXPECT_EQ(scale.stepsFor(30).label, 44.1) << "a whole millisecond";
    EXPECT_TRUE(TimeScale(44100).marks(WaveViewport(), widthOf).empty());
}
