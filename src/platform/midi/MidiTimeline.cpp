#include "midi/MidiTimeline.h"

#include <algorithm>

namespace {

__extension__ using Exact = unsigned __int128;

constexpr std::uint32_t kDefaultTempo = 500000;  // 120 quarter notes a minute

/// Turns ticks, which must not go back, into frames. A tick lasts tempo * 441 / (ticks * 10000)
/// frames, or 44100 * under / (over * ticks) by time code; the sum is kept undivided. It stays
/// below 2^85: a file has less than 2^25 deltas of 28 bits, times a 24-bit tempo, times 441.
class TickClock {
  public:
    explicit TickClock(const MidiDivision& division)
        : m_tempoMatters(!division.isTimeCode),
          m_perTick(division.isTimeCode ? Exact(44100) * division.framesPerSecondUnder : 441),
          m_under(division.isTimeCode ? Exact(division.framesPerSecond) * division.ticks
                                      : Exact(division.ticks) * 10000) {}

    void advance(std::uint64_t tick) {
        m_sum += Exact(tick - m_tick) * m_perTick * (m_tempoMatters ? m_tempo : 1);
        m_tick = tick;
    }

    void setTempo(std::uint32_t tempo) { m_tempo = tempo; }
    bool tooLate() const { return m_sum / m_under > MidiTimeline::kMaximumFrames; }
    std::uint64_t frame() const { return static_cast<std::uint64_t>(m_sum / m_under); }

  private:
    bool m_tempoMatters;
    Exact m_perTick;
    Exact m_under;
    Exact m_sum = 0;
    std::uint64_t m_tick = 0;
    std::uint32_t m_tempo = kDefaultTempo;
};

std::vector<MidiFileEvent> oneAfterTheOther(const MidiFile& file) {
    std::vector<MidiFileEvent> all;
    std::uint64_t start = 0;
    for (const auto& track : file.tracks) {
        for (MidiFileEvent event : track) {
            event.tick += start;
            all.push_back(event);
        }
        if (!all.empty())
            start = all.back().tick;
    }
    return all;
}

std::vector<MidiFileEvent> allTogether(const MidiFile& file) {
    std::vector<MidiFileEvent> all;
    for (const auto& track : file.tracks)
        all.insert(all.end(), track.begin(), track.end());
    std::ranges::stable_sort(all, {}, &MidiFileEvent::tick);
    return all;
}

bool isOn(const MidiFileEvent& event) {
    return event.kind == MidiFileEvent::Kind::noteOn && event.velocity > 0;
}

}  // namespace

std::optional<MidiTimeline> MidiTimeline::make(const MidiFile& file, std::string& error) {
    MidiTimeline timeline;
    TickClock clock(file.division);
    for (const MidiFileEvent& event :
         file.format == 2 ? oneAfterTheOther(file) : allTogether(file)) {
        clock.advance(event.tick);
        if (clock.tooLate()) {
            error = "lasts longer than 288 days";
            return std::nullopt;
        }
        if (event.kind == MidiFileEvent::Kind::tempo)
            clock.setTempo(event.tempo);
        else if (event.kind == MidiFileEvent::Kind::endOfTrack)
            timeline.endFrame = clock.frame();
        else
            timeline.events.push_back({clock.frame(), isOn(event), event.key, event.velocity});
    }
    return timeline;
}
