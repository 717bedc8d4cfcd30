#include "handoff/AtomicTransfer.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>
#include <thread>
#include <utility>

TEST(AtomicTransfer, deliversOnlyTheLatestPostingAndOnlyOnce) {
    AtomicTransfer<int> transfer;
    int out = -1;
    EXPECT_FALSE(transfer.read(out));
    transfer.write(1);
    transfer.write(2);
    transfer.write(3);
    EXPECT_TRUE(transfer.read(out));
    EXPECT_EQ(out, 3);
    out = -1;
    EXPECT_FALSE(transfer.read(out));
    EXPECT_EQ(out, -1);
}

namespace {
// Lets the test act in the middle of a copy, where a real reader would come in.
struct Interrupted {
    int value = 0;
    static inline std::function<void()> duringCopy;
    Interrupted& operator=(const Interrupted& other) noexcept {
        if (const auto act = std::exchange(duringCopy, nullptr))
            act();
        value = other.value;
        return *this;
    }
    Interrupted(int v = 0) : value(v) {}
    Interrupted(const Interrupted&) = default;
};
}  // namespace

TEST(AtomicTransfer, readerPassesByWhileTheWriterIsAtIt) {
    AtomicTransfer<Interrupted> transfer;
    Interrupted out(-1);
    transfer.write(1);
    Interrupted::duringCopy = [&] { EXPECT_FALSE(transfer.read(out)); };
    transfer.write(2);
    EXPECT_EQ(out.value, -1);
    EXPECT_TRUE(transfer.read(out));
    EXPECT_EQ(out.value, 2);
}

namespace {
// Many cache lines that all say the same: a torn copy gives itself away.
struct Payload {
    std::array<std::uint64_t, 512> words{};
    static Payload of(std::uint64_t n) {
        Payload payload;
        payload.words.fill(n);
        return payload;
    }
    bool whole() const {
        for (const std::uint64_t word : words) {
            if (word != words[0])
                return false;
        }
        return true;
    }
};
}  // namespace

TEST(AtomicTransfer, neverTearsNorGoesBackBetweenTwoThreads) {
    constexpr std::uint64_t kPostings = 50000;
    AtomicTransfer<Payload> transfer;
    std::thread writer([&] {
        for (std::uint64_t n = 1; n <= kPostings; ++n)
            transfer.write(Payload::of(n));
    });
    Payload got;
    std::uint64_t last = 0;
    bool torn = false;
    bool wentBack = false;
    while (last < kPostings && !torn && !wentBack) {
        if (!transfer.read(got))
            continue;
        torn = !got.whole();
        wentBack = got.words[0] <= last;
        last = got.words[0];
    }
    writer.join();
    EXPECT_FALSE(torn);
    EXPECT_FALSE(wentBack);
    EXPECT_FALSE(transfer.read(got));
}
