#include "handoff/SequenceSlot.h"

#include <gtest/gtest.h>

#include <array>
#include <thread>

namespace {

// Wider than a cache line, and every word says the same: a mixture shows.
struct Record {
    std::array<std::uint32_t, 21> words{};
    explicit Record(std::uint32_t value = 0) { words.fill(value); }
    bool whole() const {
        for (std::uint32_t word : words)
            if (word != words[0])
                return false;
        return true;
    }
};

}  // namespace

TEST(SequenceSlot, neverHandsOutAMixture) {
    SequenceSlot<Record> slot(Record{0});
    constexpr std::uint32_t kWrites = 20000;
    std::thread audio([&] {
        Record record;
        for (std::uint32_t i = 0; i < kWrites; ++i) {
            if (slot.tryRead(record) && !record.whole())
                ADD_FAILURE() << "a mixture at the audio side";
            slot.tryWrite(Record{i});
        }
    });
    for (std::uint32_t i = 0; i < kWrites; ++i) {
        slot.write(Record{kWrites + i});
        ASSERT_TRUE(slot.read().whole());
    }
    audio.join();
    slot.write(Record{5});
    EXPECT_EQ(slot.read().words[20], 5u);
}
