#include "recording/PerformanceNotes.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "graph/Vornery.h"
#include "notes/Notes.h"

namespace {

std::uint8_t noteOf(int key) {
    return static_cast<std::uint8_t>(key + kLowestMidiNote);
}

std::uint8_t velocityOf(float gain) {
    return static_cast<std::uint8_t>(std::clamp(std::lround(gain * 127.f), 1l, 127l));
}

}  // namespace

PerformanceNotes::PerformanceNotes(const PassthruRecordingUnit& recordingUnit, std::string path)
    : m_recordingUnit(recordingUnit), m_file(std::move(path)) {
    m_refreshing = RunLoop::main().callEvery(kRefreshSeconds, [this] { refresh(); });
}

PerformanceNotes::~PerformanceNotes() {
    RunLoop::main().cancel(m_refreshing);
}

std::string PerformanceNotes::pathBeside(const std::string& soundFile) {
    return soundFile.substr(0, soundFile.rfind('.')) + ".mid";
}

/// A key that was started now is heard from the next buffer on.
double PerformanceNotes::seconds() const {
    return static_cast<double>(m_recordingUnit.framesRecorded()) / kGraphRate;
}

void PerformanceNotes::began(int key, float gain) {
    m_notes.noteOn(seconds(), noteOf(key), velocityOf(gain));
    m_changed = true;
}

void PerformanceNotes::ended(int key) {
    m_notes.noteOff(seconds(), noteOf(key));
    m_changed = true;
}

void PerformanceNotes::refresh() {
    if (std::exchange(m_changed, false))
        m_file.put(m_notes.bytes(seconds()));
}

std::string PerformanceNotes::finish() {
    RunLoop::main().cancel(m_refreshing);
    m_file.put(m_notes.bytes(seconds()));
    const std::string problem = m_file.finish();
    if (problem.empty() && m_notes.isCut())
        return m_file.path() + ": too many notes; the last ones are missing";
    return problem;
}
