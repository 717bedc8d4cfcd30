#pragma once

#include <gmock/gmock.h>

#include <atomic>
#include <functional>
#include <thread>

#include "RenderWatch.h"
#include "RenderedUnit.h"

/// Renders a component a hundred times while another thread changes it again and again; whatever it
/// is told, its renders do nothing that is forbidden.
inline void expectQuietRenders(AudioUnit unit, std::uint32_t channels,
                               const std::function<void(int turn)>& change) {
    if (!RenderWatch::working())
        GTEST_SKIP() << "a sanitizer watches in its own way";
    std::atomic<bool> done{false};
    std::thread hand([&] {
        for (int turn = 0; !done; ++turn)
            change(turn);
    });
    {
        const RenderWatch watch;
        for (int turn = 0; turn < 100; ++turn)
            renderUnit<float>(unit, 64, channels);
        EXPECT_EQ(watch.renders(), 100u);
        EXPECT_THAT(watch.violations(), testing::IsEmpty());
    }
    done = true;
    hand.join();
}
