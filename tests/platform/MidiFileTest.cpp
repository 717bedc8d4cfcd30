#include "midi/MidiFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <random>

#include "MidiBytesMaker.h"
#include "ScratchFolder.h"

namespace {

using midi::Bytes;
using Kind = MidiFileEvent::Kind;

constexpr std::uint64_t kFirstEvent = 22;  // after a header and the track's type and length

Bytes joined(std::initializer_list<Bytes> parts) {
    Bytes result;
    for (const Bytes& part : parts)
        midi::append(result, part);
    return result;
}

MidiFile parsed(const Bytes& bytes) {
    MidiFileError error;
    auto file = MidiFile::parse(bytes, error);
    EXPECT_TRUE(file) << "byte " << error.offset << ": " << error.reason;
    return file ? *file : MidiFile{};
}

/// What a sequencer might write: two tracks, tempo, controllers, text, running status.
Bytes ordinaryFile() {
    const Bytes tempo = {0, 0xFF, 0x51, 3, 7, 0xA1, 0x20, 0, 0xFF, 3, 2, 'h', 'i'};
    const Bytes notes = {0,    0xB0, 7,  100,  0, 0xC0, 5, 0,  0x90, 60,   100,  10, 64,
                         90,   0x60, 60, 0,    0, 0xFF, 1, 1,  'x',  0,    64,   0,  5,
                         0xF0, 2,    1,  0xF7, 0, 0xE0, 0, 64, 0x81, 0x10, 0x80, 67, 64};
    return joined({midi::header(1, 2, 480), midi::chunk("MTrk", joined({tempo, midi::kEndOfTrack})),
                   midi::chunk("MTrk", joined({notes, midi::kEndOfTrack}))});
}

std::vector<int> keysOf(const std::vector<MidiFileEvent>& track) {
    std::vector<int> keys;
    for (const MidiFileEvent& event : track) {
        if (event.kind == Kind::noteOn || event.kind == Kind::noteOff)
            keys.push_back(event.key);
    }
    return keys;
}

}  // namespace

TEST(MidiFile, keepsNotesTempoAndEnds) {
    const MidiFile file = parsed(ordinaryFile());
    EXPECT_EQ(file.format, 1);
    EXPECT_EQ(file.division.ticks, 480u);
    ASSERT_EQ(file.tracks.size(), 2u);
    ASSERT_EQ(file.tracks[0].size(), 2u);
    EXPECT_EQ(file.tracks[0][0].tempo, 500000u);
    const auto& notes = file.tracks[1];
    EXPECT_EQ(keysOf(notes), (std::vector<int>{60, 64, 60, 64, 67}));
    EXPECT_EQ(notes[2].tick, 0x6Au);
    EXPECT_EQ(notes[4].kind, Kind::noteOff);
    EXPECT_EQ(notes[4].tick, 0x6Fu + 0x90u);
    EXPECT_EQ(notes.back().kind, Kind::endOfTrack);
}

TEST(MidiFile, keepsRunningStatusAcrossMetaAndExclusiveEvents) {
    const Bytes between[] = {{0, 0xFF, 1, 1, 'x'}, {0, 0xF0, 2, 1, 0xF7}, {0, 0xF7, 1, 0x90}};
    for (const Bytes& other : between) {
        const MidiFile file =
            parsed(midi::file(joined({{0, 0x93, 60, 1}, other, {0, 61, 1}, midi::kEndOfTrack})));
        EXPECT_EQ(keysOf(file.tracks.at(0)), (std::vector<int>{60, 61}));
        EXPECT_EQ(file.tracks[0][1].kind, Kind::noteOn);
    }
}

TEST(MidiFile, skipsWhatIsNoNote) {
    const Bytes events =
        joined({{0, 0xA0, 1, 2, 0, 0xD0, 3, 0, 0xF2, 1, 2, 0, 0xF3, 1, 0, 0xF8, 0, 0xFF, 0x7F, 2},
                {0xFF, 0xFF, 0, 0x90, 60, 1},
                midi::kEndOfTrack,
                {0, 0x90, 61}});
    Bytes longHeader =
        joined({midi::number(0, 2), midi::number(1, 2), midi::number(96, 2), {1, 2}});
    const Bytes bytes = joined({midi::chunk("MThd", longHeader),
                                midi::chunk("junk", {1, 2, 3}),
                                midi::chunk("MTrk", events),
                                midi::chunk("MTrk", {0x45}),
                                {7}});
    const MidiFile file = parsed(bytes);
    ASSERT_EQ(file.tracks.size(), 1u);
    EXPECT_EQ(keysOf(file.tracks[0]), std::vector<int>{60});
}

TEST(MidiFile, knowsTheFourTimeCodeRates) {
    const std::pair<int, std::pair<unsigned, unsigned>> rates[] = {
        {24, {24, 1}}, {25, {25, 1}}, {29, {30000, 1001}}, {30, {30, 1}}};
    for (const auto& [name, rate] : rates) {
        const auto division = std::uint32_t((256 - name) << 8 | 80);
        const MidiFile file = parsed(midi::file(midi::kEndOfTrack, division));
        EXPECT_TRUE(file.division.isTimeCode);
        EXPECT_EQ(file.division.ticks, 80u);
        EXPECT_EQ(file.division.framesPerSecond, rate.first);
        EXPECT_EQ(file.division.framesPerSecondUnder, rate.second);
    }
}

TEST(MidiFile, saysAtWhichByteItIsBroken) {
    const auto track = [](const Bytes& events) {
        return midi::file(joined({events, midi::kEndOfTrack}));
    };
    Bytes pastEnd = midi::file(midi::kEndOfTrack);
    pastEnd[21] += 1;
    Bytes shortHeader = joined({midi::chunk("MThd", {0, 0, 0, 1, 0}), {96}});
    const struct {
        Bytes bytes;
        std::uint64_t offset;
        const char* reason;
    } cases[] = {
        {{}, 0, "MThd"},
        {{'M', 'T', 'h'}, 0, "MThd"},
        {joined({midi::chunk("RIFF", {}), midi::file(midi::kEndOfTrack)}), 0, "MThd"},
        {{'M', 'T', 'h', 'd', 0, 0}, 6, "too early"},
        {shortHeader, 4, "less than six"},
        {joined({midi::header(3, 1, 96), midi::chunk("MTrk", midi::kEndOfTrack)}), 8, "format 3"},
        {midi::file(midi::kEndOfTrack, 0), 12, "division of 0"},
        {midi::file(midi::kEndOfTrack, 0xE700), 12, "division of 0"},
        {midi::file(midi::kEndOfTrack, 0xE801), kFirstEvent, nullptr},
        {midi::file(midi::kEndOfTrack, 0xE601), 12, "frame rate"},
        {midi::header(1, 65535, 96), 14, "65535 tracks declared but 0"},
        {joined({midi::file(midi::kEndOfTrack), {1}}), 26, nullptr},
        {joined({midi::header(1, 2, 96), midi::chunk("MTrk", midi::kEndOfTrack), {'M', 'T'}}), 28,
         "too early"},
        {pastEnd, 18, "past the end"},
        {track({0x81, 0x80, 0x80, 0x80, 0}), kFirstEvent, "more than four"},
        {track({0, 60, 1}), kFirstEvent + 1, "status"},
        {track({0, 0xFF, 1, 0, 0, 60, 1}), kFirstEvent + 5, "status"},
        {midi::file({0, 0x90, 60, 1}), kFirstEvent + 4, "End of Track"},
        {midi::file({}), kFirstEvent, "End of Track"},
        {midi::file({0, 0x90, 60}), kFirstEvent + 3, "too early"},
        {midi::file({0x81}), kFirstEvent + 1, "too early"},
        {track({0, 0x90, 60, 0x80}), kFirstEvent + 3, "above 127"},
        {track({0, 0xC0, 0x90}), kFirstEvent + 2, "above 127"},
        {track({0, 0xFF, 0x51, 2, 1, 2}), kFirstEvent + 3, "three bytes"},
        {track({0, 0xFF, 1, 50}), kFirstEvent + 3, "past the end"},
        {track({0, 0xF0, 0x8F, 0xFF, 0xFF, 0x7F}), kFirstEvent + 2, "past the end"},
    };
    for (const auto& c : cases) {
        MidiFileError error;
        const bool read = MidiFile::parse(c.bytes, error).has_value();
        if (!c.reason) {
            EXPECT_TRUE(read) << error.reason;
            continue;
        }
        SCOPED_TRACE(c.reason);
        EXPECT_FALSE(read);
        EXPECT_EQ(error.offset, c.offset) << error.reason;
        EXPECT_NE(error.reason.find(c.reason), std::string::npos) << error.reason;
    }
}

TEST(MidiFile, refusesEveryShorterPieceOfAFile) {
    const Bytes whole = ordinaryFile();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        MidiFileError error;
        // A copy of its own size, so that a sanitizer sees any reading past the end.
        const Bytes piece(whole.begin(), whole.begin() + std::ptrdiff_t(length));
        EXPECT_FALSE(MidiFile::parse(piece, error)) << length;
        EXPECT_LE(error.offset, length);
    }
}

TEST(MidiFile, survivesRandomDamage) {
    constexpr unsigned kSeed = 4711;
    std::mt19937 random(kSeed);
    const Bytes whole = ordinaryFile();
    for (int round = 0; round < 20000; ++round) {
        Bytes bytes = whole;
        for (unsigned damage = random() % 4 + 1; damage > 0; --damage)
            bytes[random() % bytes.size()] = std::uint8_t(random());
        MidiFileError error;
        const auto file = MidiFile::parse(bytes, error);
        if (!file) {
            ASSERT_LE(error.offset, bytes.size()) << "seed " << kSeed << " round " << round;
            continue;
        }
        for (const auto& track : file->tracks) {
            ASSERT_EQ(track.back().kind, Kind::endOfTrack);
            ASSERT_TRUE(std::ranges::is_sorted(track, {}, &MidiFileEvent::tick));
            ASSERT_TRUE(std::ranges::all_of(
                track, [](const auto& e) { return e.key < 128 && e.velocity < 128; }));
        }
    }
}

TEST(MidiFile, namesFileAndByteWhenReadingFails) {
    ScratchFolder folder;
    const auto errorOf = [&](const std::string& path) {
        std::string error;
        EXPECT_FALSE(MidiFile::read(path, error));
        EXPECT_TRUE(error.starts_with(path + ": ")) << error;
        return error.substr(path.size() + 2);
    };
    std::ofstream(folder.file("broken.mid")) << "MThd";
    std::ofstream(folder.file("huge.mid"));
    std::filesystem::resize_file(folder.file("huge.mid"), MidiFile::kMaximumBytes + 1);
    ASSERT_EQ(mkfifo(folder.file("pipe.mid").c_str(), 0600), 0);
    EXPECT_EQ(errorOf(folder.file("broken.mid")), "broken at byte 4: the file ends too early");
    EXPECT_EQ(errorOf(folder.file("huge.mid")), "larger than 32 MiB");
    EXPECT_EQ(errorOf(folder.file("pipe.mid")), "is not a regular file");
    EXPECT_EQ(errorOf(folder.path().string()), "is a folder, not a file");
    EXPECT_EQ(errorOf("/dev/zero"), "is not a regular file");
    EXPECT_EQ(errorOf(folder.file("none.mid")), "No such file or directory");
}
