#include <gtest/gtest.h>

#include "InstrumentWindow.h"

TEST(OpeningTest, showsThePresetAndPlaysAtTheFirstTouch) {
    InstrumentWindow instrument;
    EXPECT_FALSE(instrument.controller().presetBar()->title().isEmpty());
    instrument.fingers().press(0, instrument.placeOf(instrument.item("keyboard"), 0.5, 0.8));
    EXPECT_TRUE(instrument.controller().instrument().keysSound());
    instrument.fingers().release(0);
    EXPECT_FALSE(instrument.controller().instrument().keysSound());
}
