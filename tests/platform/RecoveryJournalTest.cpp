#include "midi/network/RecoveryJournal.h"

#include <gtest/gtest.h>

#include <vector>

#include "midi/network/JournalWriter.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

/// One channel's journal behind the header of a whole one that starts at packet 0x1234.
Bytes channelJournal(std::uint8_t channel, std::uint8_t contents, const Bytes& chapters) {
    const std::size_t length = 3 + chapters.size();
    return Bytes{std::uint8_t(channel << 3 | length >> 8), std::uint8_t(length), contents} +
           chapters;
}

const Bytes kHeader = {0x20, 0x12, 0x34};
// Note 60 is on with 100 and worth playing, 62 with 90 is not; 65 and 71 are off.
const Bytes kNotes = {0x82, 0x88, 60, 0x80 | 100, 62, 90, 0x41};

void expectTheNotes(const Bytes& bytes, const char* what, std::size_t channel = 3) {
    SCOPED_TRACE(what);
    RecoveryJournal journal;
    EXPECT_TRUE(journal.read(bytes));
    EXPECT_EQ(journal.checkpoint, 0x1234);
    NoteBits on, playable, off;
    on.set(60).set(62);
    playable.set(60);
    off.set(65).set(71);
    EXPECT_EQ(journal.on[channel], on);
    EXPECT_EQ(journal.playable[channel], playable);
    EXPECT_EQ(journal.off[channel], off);
    EXPECT_EQ(journal.velocity[channel][60], 100);
    EXPECT_EQ(journal.velocity[channel][62], 90);
}

}  // namespace

TEST(RecoveryJournal, findsTheNotesBehindEveryOtherChapter) {
    const Bytes program = {1, 2, 3}, wheel = {5, 6}, behind = {1, 2, 3, 4, 5, 6};
    const Bytes controllers = {0x01, 64, 127, 1, 5};          // two logs
    const Bytes parameters = {0x00, 7, 0xFF, 0xFF, 1, 2, 3};  // seven bytes with the length itself
    const Bytes system = {0x40, 5, 9, 9, 9};
    expectTheNotes(kHeader + channelJournal(3, 0x08, kNotes), "alone");
    expectTheNotes(
        kHeader +
            channelJournal(3, 0xFF, program + controllers + parameters + wheel + kNotes + behind),
        "all chapters");
    expectTheNotes(Bytes{0x60, 0x12, 0x34} + system + channelJournal(3, 0x08, kNotes), "system");
    expectTheNotes(Bytes{0x21, 0x12, 0x34} + channelJournal(9, 0x80, program) +
                       channelJournal(3, 0x18, wheel + kNotes),
                   "second channel");
}

// Whatever is cut or lies about its length ends the journal: false, and no note made up.
TEST(RecoveryJournal, endsAtTheFirstThingThatDoesNotFit) {
    const Bytes whole =
        Bytes{0x60, 0x12, 0x34} + Bytes{0x40, 3, 9} + channelJournal(3, 0x08, kNotes);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        RecoveryJournal journal;
        const std::vector<std::uint8_t> cut(whole.begin(), whole.begin() + std::ptrdiff_t(length));
        EXPECT_FALSE(journal.read(cut)) << length;
        EXPECT_TRUE(journal.on[3].none() && journal.off[3].none()) << length;
    }
    struct {
        const char* what;
        Bytes bytes;
    } const bad[] = {
        {"system journal shorter than its header", {0x40, 0, 0, 0, 1}},
        {"channel journal shorter than its header", kHeader + Bytes{0, 2, 0x08} + kNotes},
        {"chapter M shorter than its header",
         kHeader + channelJournal(3, 0x28, Bytes{0, 1} + kNotes)},
        {"chapter C beyond its channel", kHeader + channelJournal(3, 0x48, Bytes{0x7F} + kNotes)},
        {"logs beyond their channel", kHeader + channelJournal(3, 0x08, {0xFF, 0x88, 60, 0xE4})},
        {"a channel that comes twice", Bytes{0x21, 0x12, 0x34} +
                                           channelJournal(3, 0x08, {0x00, 0xF0}) +
                                           channelJournal(3, 0x08, kNotes)},
        {"a second channel that is not there",
         Bytes{0x21, 0x12, 0x34} + channelJournal(9, 0x08, {0x80, 0xF0})},
    };
    for (const auto& [what, bytes] : bad) {
        RecoveryJournal journal;
        EXPECT_FALSE(journal.read(bytes)) << what;
        EXPECT_TRUE(journal.on[3].none()) << what;
    }
}

// The count of logs has seven bits, and there are 128 notes.
TEST(RecoveryJournal, readsWhatIsWrittenForAnyNumberOfNotes) {
    for (const std::size_t held : {0u, 1u, 126u, 127u, 128u}) {
        for (const bool othersEnded : {false, true}) {
            JournalWriter writer(65530);
            for (std::uint8_t note = 0; note < 128; ++note) {
                const bool on = note < held;
                if (on || othersEnded)
                    writer.follow(Bytes{std::uint8_t(on ? 0x9F : 0x8F), note, 1}, 65533u + note);
            }
            Bytes bytes;
            writer.write(bytes, 65533 + 128);
            RecoveryJournal journal;
            ASSERT_TRUE(journal.read(bytes)) << held;
            EXPECT_EQ(journal.checkpoint, 65530);
            EXPECT_EQ(journal.on[15].count(), held);
            EXPECT_EQ(journal.playable[15], journal.on[15]);
            EXPECT_EQ(journal.off[15].count(), othersEnded ? 128 - held : 0);
            EXPECT_FALSE(journal.off[15][0] && held > 0);
        }
    }
}

// With every key of every channel held there is no room for all; ends are never left out.
TEST(RecoveryJournal, staysSmallAndKeepsEveryEnd) {
    JournalWriter writer(0);
    for (int key = 0; key < 16 * 128; ++key)
        writer.follow(
            Bytes{std::uint8_t((key % 5 ? 0x90 : 0x80) | key / 128), std::uint8_t(key % 128), 64},
            7);
    Bytes bytes;
    writer.write(bytes, 8);
    EXPECT_LE(bytes.size(), JournalWriter::kMostBytes);
    RecoveryJournal journal;
    EXPECT_TRUE(journal.read(bytes));
    for (int key = 0; key < 16 * 128; ++key)
        ASSERT_EQ(journal.off[std::size_t(key / 128)][std::size_t(key % 128)], key % 5 == 0) << key;
}
