#include "parameters/Parameters.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>

#include "audiounits/FourCharCode.h"

namespace {

using enum ParameterId;

float dialAt(const Parameter& p, float position) {
    return (1 - position) * p.dial.low + position * p.dial.high;
}

}  // namespace

TEST(Parameters, everyDialStoresWhatPresetsMayHoldAndReturnsToWhereItWas) {
    for (const Parameter& p : kParameters) {
        SCOPED_TRACE(std::string(p.key));
        for (int step = 0; step <= 1000; ++step) {
            const float dial = dialAt(p, float(step) / 1000.f);
            const float stored = storedValue(p.id, dial);
            EXPECT_TRUE(p.stored.contains(stored)) << dial << " becomes " << stored;
            EXPECT_NEAR(dialValue(p.id, stored), dial, 3e-5f * std::max(1.f, p.dial.high));
        }
    }
}

TEST(Parameters, mapsDialsToUnits) {
    EXPECT_EQ(storedValue(filterCutoff, 0.5f), 0.125f);
    EXPECT_EQ(storedValue(ringModFrequency, 0.5f), 220.f);
    EXPECT_EQ(storedValue(filterBass, 330.f), 0.0074829934f);
    EXPECT_EQ(dialValue(filterBass, 0.f), 330.f);
    EXPECT_EQ(dialValue(filterBass, 0.0074829934f), 330.f);
    EXPECT_EQ(dialValue(filterCutoff, 1.f), 0.f);
    EXPECT_EQ(dialValue(adsrRelease, 5.f), 5.f);
}

TEST(Parameters, showsAndSpeaksDialValues) {
    const struct {
        ParameterId id;
        float dial;
        const char* shown;
        const char* spoken;
    } cases[] = {
        {grainSpeed, -0.5f, "-0.50x", "-0.50 times"},
        {grainSize, 0.f, " 6ms", " 6 milliseconds"},
        {grainSize, 1.f, "113ms", "113 milliseconds"},
        {fmFrequency, 0.25f, "250 Hz", "250 hertz"},
        {preamp, 1.25f, "125%", "125%"},
        {distortion, 0.01f, " 1%", " 1%"},
        {echoDelay, 0.333f, "0.33s", "0.33 seconds"},
        {filterCutoff, 0.5f, "11025 Hz", "11025 hertz"},
        {filterBass, 330.f, " 7ms", " 7 milliseconds"},
        {ringModFrequency, 0.5f, "440 Hz", "440 hertz"},
        {adsrSustain, 0.5f, "50%", "50%"},
        {adsrRelease, 2.f, "2.00s", "2.00 seconds"},
    };
    for (const char* locale : {"C", "de_DE.UTF-8"}) {
        std::setlocale(LC_ALL, locale);
        for (const auto& c : cases) {
            EXPECT_EQ(dialText(c.id, c.dial, false), c.shown);
            EXPECT_EQ(dialText(c.id, c.dial, true), c.spoken);
        }
    }
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(dialText(grainSpeed, 1, false, true), "1.00x (Synced)");
    EXPECT_EQ(dialText(grainSpeed, 1, true, true), "1.00 times (Synced)");
    EXPECT_EQ(dialText(preamp, 1, false, true), "100%");
}

TEST(Parameters, areFoundByKeyAndByTag) {
    for (const Parameter& p : kParameters) {
        EXPECT_EQ(parameterWithKey(p.key), &p);
        EXPECT_EQ(parameterWithTag(p.tag), p.tag == 0 ? nullptr : &p);
    }
    EXPECT_EQ(parameterWithKey("name"), nullptr);
    EXPECT_EQ(parameterWithTag(0), nullptr);
    EXPECT_EQ(parameterWithTag(fourCC("xxxx")), nullptr);
    EXPECT_EQ(parameterWithTag(fourCC("rbas"))->key, "filterBass");
}
