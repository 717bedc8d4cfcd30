#include "RandomSource.h"

#include <array>

#include "handoff/Shared.h"

namespace {

constexpr std::uint32_t kWords = 31;
constexpr std::uint32_t kLag = 3;
constexpr int kDiscarded = 310;  // numbers dropped after seeding

using Words = std::array<std::uint32_t, kWords>;

constexpr std::uint32_t following(std::uint32_t index) {
    return index + 1 == kWords ? 0 : index + 1;
}

// x * 16807 mod (2^31 - 1) by Schrage's factors, on a signed word as the sequence wants it.
constexpr std::int32_t seedAfter(std::int32_t word) {
    const std::int32_t high = word / 127773;
    const std::int32_t low = word % 127773;
    const std::int32_t next = 16807 * low - 2836 * high;
    return next < 0 ? next + 2147483647 : next;
}

constexpr Words wordsOf(std::uint32_t seed) {
    Words words{};
    words[0] = seed == 0 ? 1 : seed;
    for (std::uint32_t i = 1; i < kWords; ++i)
        words[i] = static_cast<std::uint32_t>(seedAfter(static_cast<std::int32_t>(words[i - 1])));
    for (std::uint32_t i = 0, front = kLag, rear = 0; i < kDiscarded; ++i) {
        words[front] += words[rear];
        front = following(front);
        rear = following(rear);
    }
    return words;
}

static_assert(kDiscarded % kWords == 0, "the feedback taps are back at the start after seeding");

// Shared cells, so that a thread that only comes later sees whole words.
struct State {
    std::array<Shared<std::uint32_t>, kWords> words;
    Shared<std::uint32_t> front = kLag;
    Shared<std::uint32_t> rear = 0;

    explicit State(const Words& from) noexcept { start(from); }
    void start(const Words& from) noexcept {
        for (std::uint32_t i = 0; i < kWords; ++i)
            words[i] = from[i];
        front = kLag;
        rear = 0;
    }
};

constexpr Words kFirstWords = wordsOf(1);
State state(kFirstWords);

}  // namespace

void RandomSource::seed(std::uint32_t seed) noexcept {
    state.start(wordsOf(seed));
}

std::uint32_t RandomSource::next() noexcept {
    const std::uint32_t front = state.front;
    const std::uint32_t rear = state.rear;
    const std::uint32_t sum = state.words[front] + state.words[rear];
    state.words[front] = sum;
    state.front = following(front);
    state.rear = following(rear);
    return sum >> 1;
}
