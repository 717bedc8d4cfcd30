// Any bytes as a MIDI file: refused with an offset within the file, or read into a timeline whose
// events are in order and end where the piece ends.
#include <cstdint>
#include <cstdlib>

#include "midi/MidiFile.h"
#include "midi/MidiTimeline.h"

namespace {

void check(bool holds) {
    if (!holds)
        std::abort();
}

void checkTimeline(const MidiTimeline& timeline) {
    std::uint64_t before = 0;
    for (const MidiTimelineEvent& event : timeline.events) {
        check(event.key < 128 && event.velocity < 128 && event.frame >= before);
        check(event.frame <= timeline.endFrame && (!event.on || event.velocity > 0));
        before = event.frame;
    }
    check(timeline.endFrame <= MidiTimeline::kMaximumFrames);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MidiFileError error;
    const auto file = MidiFile::parse({data, size}, error);
    check(file || (error.offset <= size && !error.reason.empty()));
    std::string reason;
    if (!file)
        return 0;
    if (const auto timeline = MidiTimeline::make(*file, reason))
        checkTimeline(*timeline);
    else
        check(!reason.empty());
    return 0;
}
