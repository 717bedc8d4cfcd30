#include "Float32ToSInt16.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "PlainOutput.h"
#include "SameBits.h"
#include "TestUnits.h"
#include "notifications/NotificationCentre.h"

TEST(Float32ToSInt16, isThePlainOutputStageToTheBit) {
    Float32ToSInt16 unit;
    PlainConverter plain;
    BufferSource source;
    unit.setUpstreamUnit(source);
    Dice dice(51);
    int notices = 0;
    auto token = NotificationCentre::defaultCentre().addObserver(kAudioClippedNotification,
                                                                 [&] { ++notices; });
    unit.setNotifyClipping(true);
    for (int i = 0; i < 2000; ++i) {
        SCOPED_TRACE(i);
        if (dice.oneIn(20))
            unit.setAutoGainControl(plain.autoGainControl = dice.of({0.f, -1.f, 0.5f, 1.f}));
        const std::uint32_t frames = dice.of(kBufferSizes);
        source.samples = dice.noise(frames, dice.of({0.f, 0.f, 0.5f, 1.f, 1.2f, 8.f, 1e30f}));
        if (dice.oneIn(10))
            source.samples[0] = 0.5f;
        std::vector<std::int16_t> wanted(frames);
        inRender([&] { plain.render(source.samples.data(), wanted.data(), frames); });
        ASSERT_EQ(renderUnit<std::int16_t>(unit, frames), wanted);
        ASSERT_TRUE(sameBits(unit.clippiness(), plain.clippiness));
        ASSERT_TRUE(sameBits(unit.internalGainLevel(), plain.internalGainLevel));
        ASSERT_EQ(notices, plain.notices);
    }
    NotificationCentre::defaultCentre().removeObserver(token);
}

TEST(Float32ToSInt16, clipsAtBothEndsAlike) {
    Float32ToSInt16 unit;
    BufferSource source;
    unit.setUpstreamUnit(source);
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    source.samples = {1.f, -1.f, 32767.f / 32768.f, kInfinity, -kInfinity, std::nanf(""), 0.5f};
    const std::vector<std::int16_t> wanted = {32767, -32767, 32767, 32767, -32767, 0, 16384};
    EXPECT_EQ(renderUnit<std::int16_t>(unit, 7), wanted);
    EXPECT_EQ(unit.clippiness(), 1.f);
    source.samples.assign(7, 0.25f);
    renderUnit<std::int16_t>(unit, 7);
    EXPECT_FLOAT_EQ(unit.clippiness(), 0.9f);
}

TEST(Float32ToSInt16, bringsThePeakToTheTarget) {
    Float32ToSInt16 unit;
    BufferSource source;
    unit.setUpstreamUnit(source);
    unit.setAutoGainControl(0.5f);
    source.samples.assign(512, 1.f);
    renderUnit<std::int16_t>(unit, 512);
    EXPECT_EQ(unit.internalGainLevel(), 0.5f);
    EXPECT_EQ(renderUnit<std::int16_t>(unit, 512).back(), 16384);
    source.samples.assign(512, 0.f);
    renderUnit<std::int16_t>(unit, 512);
    EXPECT_FLOAT_EQ(unit.internalGainLevel(), 0.5005f);
}
