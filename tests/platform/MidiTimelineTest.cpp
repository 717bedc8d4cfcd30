#include "midi/MidiTimeline.h"

#include <gtest/gtest.h>

#include <random>

#include "MidiBytesMaker.h"

namespace {

__extension__ using Exact = unsigned __int128;
using Kind = MidiFileEvent::Kind;

MidiTimeline timelineOf(const MidiFile& file) {
    std::string error;
    auto timeline = MidiTimeline::make(file, error);
    EXPECT_TRUE(timeline) << error;
    return timeline ? *timeline : MidiTimeline{};
}

/// The same by walking over every single tick of the piece.
class SlowModel {
  public:
    explicit SlowModel(const MidiFile& file) : m_division(file.division) {
        if (file.format != 2)
            play(file.tracks);
        else
            for (const auto& track : file.tracks)
                play({track});
    }

    MidiTimeline timeline;

  private:
    void play(const std::vector<std::vector<MidiFileEvent>>& tracks) {
        std::vector<std::size_t> next(tracks.size(), 0);
        for (std::uint64_t tick = 0;; ++tick) {
            bool more = false;
            const std::uint64_t frame = frameNow();
            for (std::size_t t = 0; t < tracks.size(); ++t) {
                while (next[t] < tracks[t].size() && tracks[t][next[t]].tick == tick)
                    take(tracks[t][next[t]++], frame);
                more = more || next[t] < tracks[t].size();
            }
            if (!more)
                return;
            m_ticks += 1;
            m_tempoTicks += m_tempo;
        }
    }

    void take(const MidiFileEvent& event, std::uint64_t frame) {
        if (event.kind == Kind::tempo)
            m_tempo = event.tempo;
        else if (event.kind == Kind::endOfTrack)
            timeline.endFrame = std::max(timeline.endFrame, frame);
        else
            timeline.events.push_back({frame, event.kind == Kind::noteOn && event.velocity != 0,
                                       event.key, event.velocity});
    }

    std::uint64_t frameNow() const {
        const Exact frames = m_division.isTimeCode
                                 ? m_ticks * 44100 * m_division.framesPerSecondUnder /
                                       (Exact(m_division.framesPerSecond) * m_division.ticks)
                                 : m_tempoTicks * 441 / (Exact(m_division.ticks) * 10000);
        return std::uint64_t(frames);
    }

    MidiDivision m_division;
    Exact m_ticks = 0;
    Exact m_tempoTicks = 0;
    std::uint32_t m_tempo = 500000;
};

class RandomFile {
  public:
    explicit RandomFile(unsigned seed) : m_random(seed) {}

    MidiFile make() {
        const MidiDivision divisions[] = {{false, below(960) + 1},
                                          {false, 32767},
                                          {true, below(255) + 1, 24, 1},
                                          {true, 80, 25, 1},
                                          {true, below(255) + 1, 30000, 1001},
                                          {true, 4, 30, 1}};
        MidiFile file{.format = int(below(3)), .division = divisions[below(6)], .tracks = {}};
        for (unsigned tracks = below(5); tracks > 0; --tracks)
            file.tracks.push_back(track());
        return file;
    }

  private:
    unsigned below(unsigned bound) { return unsigned(m_random() % bound); }

    std::vector<MidiFileEvent> track() {
        std::vector<MidiFileEvent> events;
        std::uint64_t tick = 0;
        for (unsigned count = below(40); count > 0; --count) {
            tick += below(3) == 0 ? below(700) : below(2);
            const auto kind = Kind(below(3));
            events.push_back({tick, kind, std::uint8_t(below(128)), std::uint8_t(below(3)),
                              below(4) == 0 ? below(1u << 24) : 300000 + below(400000)});
        }
        events.push_back({tick + below(50), Kind::endOfTrack});
        return events;
    }

    std::mt19937 m_random;
};

}  // namespace

TEST(MidiTimeline, agreesWithAWalkOverEveryTick) {
    for (unsigned seed = 1; seed <= 600; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const MidiFile file = RandomFile(seed).make();
        const MidiTimeline expected = SlowModel(file).timeline;
        const MidiTimeline actual = timelineOf(file);
        ASSERT_EQ(actual.events, expected.events);
        ASSERT_EQ(actual.endFrame, expected.endFrame);
    }
}

TEST(MidiTimeline, countsFramesOfAWholeFile) {
    // Two quarter notes at 120 a minute, the second after a change to 100 a minute on its start.
    const midi::Bytes events = {0,    0x90, 60,   100, 96, 60, 0,  0, 0xFF, 0x51, 3,    9, 0x27,
                                0xC0, 0,    0x91, 20,  1,  96, 20, 0, 96,   0xFF, 0x2F, 0};
    MidiFileError error;
    const auto file = MidiFile::parse(midi::file(events), error);
    ASSERT_TRUE(file) << error.reason;
    const MidiTimeline timeline = timelineOf(*file);
    const std::vector<MidiTimelineEvent> expected = {{0, true, 60, 100},
                                                     {22050, false, 60, 0},
                                                     {22050, true, 20, 1},
                                                     {22050 + 26460, false, 20, 0}};
    EXPECT_EQ(timeline.events, expected);
    EXPECT_EQ(timeline.endFrame, 22050u + 2 * 26460u);
}

TEST(MidiTimeline, doesNotDriftOverAMillionUnevenTicks) {
    MidiFile file{.format = 0, .division = {false, 7}, .tracks = {{}}};
    file.tracks[0].push_back({0, Kind::tempo, 0, 0, 333333});
    for (std::uint64_t tick = 1; tick <= 1000000; ++tick)
        file.tracks[0].push_back({tick, Kind::noteOn, 60, 1});
    const MidiTimeline timeline = timelineOf(file);
    EXPECT_EQ(timeline.events.back().frame, 333333ull * 441 * 1000000 / (7 * 10000));
}

TEST(MidiTimeline, refusesAPieceThatNeverEnds) {
    MidiFile file{.format = 0, .division = {false, 1}, .tracks = {{}}};
    file.tracks[0] = {{0, Kind::tempo, 0, 0, 0xFFFFFF}, {1u << 20, Kind::endOfTrack}};
    EXPECT_EQ(timelineOf(file).endFrame, (Exact(0xFFFFFF) << 20) * 441 / 10000);
    for (const std::uint64_t tick : {std::uint64_t(1) << 25, std::uint64_t(1) << 51}) {
        file.tracks[0].back().tick = tick;
        std::string error;
        EXPECT_FALSE(MidiTimeline::make(file, error));
        EXPECT_NE(error.find("288 days"), std::string::npos);
    }
}
