#include "midi/MidiFileWriter.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "midi/MidiFile.h"

TEST(MidiFileWriter, isBoundedAndReleasesWhatSounds) {
    MidiFileWriter writer;
    std::mt19937 random(2);
    double seconds = 0;
    for (std::size_t i = 0; i < MidiFileWriter::kMostEvents * 2; ++i) {
        seconds += i == 1000 ? 100000.0 : double(random() % 5) / 1000;  // a day passes
        const auto key = std::uint8_t(random() % 128);
        if (random() % 2)
            writer.noteOn(seconds, key, std::uint8_t(1 + random() % 127));
        else
            writer.noteOff(seconds, key);
    }
    EXPECT_TRUE(writer.isCut());
    MidiFileError error;
    const auto file = MidiFile::parse(writer.bytes(seconds), error);
    ASSERT_TRUE(file) << error.reason;
    const auto& events = file->tracks.at(0);
    EXPECT_LE(events.size(), MidiFileWriter::kMostEvents + 2);  // with tempo and end
    std::set<int> sounding;
    for (const MidiFileEvent& event : events) {
        if (event.kind == MidiFileEvent::Kind::noteOn) {
            EXPECT_TRUE(sounding.insert(event.key).second);
        } else if (event.kind == MidiFileEvent::Kind::noteOff) {
            EXPECT_EQ(sounding.erase(event.key), 1u);
        }
    }
    EXPECT_TRUE(sounding.empty());
    EXPECT_NEAR(double(events.back().tick) / 1920, seconds, 0.001);
}
