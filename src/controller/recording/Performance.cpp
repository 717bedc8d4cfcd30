#include "recording/Performance.h"

#include <unistd.h>

#include <array>
#include <cstdio>

#include "recording/MinutesAndSeconds.h"
#include "recording/PerformanceName.h"
#include "runloop/Clock.h"

namespace {

PerformanceDelegate noPerformanceDelegate;

std::string missing(std::uint64_t frames) {
    std::array<char, 80> text;
    std::snprintf(text.data(), text.size(), ": the disk was too slow; %.1f s are missing",
                  static_cast<double>(frames) / kGraphRate);
    return text.data();
}

}  // namespace

Performance::Performance(Notes& notes, PassthruRecordingUnit& recordingUnit)
    : m_notes(notes), m_recordingUnit(recordingUnit), m_delegate(&noPerformanceDelegate) {
    m_notes.addDelegate(*this);
}

Performance::~Performance() {
    m_notes.removeDelegate(*this);
    dropTimer();
    if (m_recordingPerformance == State::recording)
        m_recordingUnit.stopRecording();
    endNotes();
}

void Performance::setDelegate(PerformanceDelegate* delegate) {
    m_delegate = delegate ? delegate : &noPerformanceDelegate;
}

void Performance::toolbarRecordClicked() {
    if (m_recordingPerformance == State::idle) {
        m_recordingPerformance = State::waiting;
        show("Waiting...");
        m_delegate->accessibleAnnounce("Waiting to record.");
        return;
    }
    if (m_recordingUnit.recording())
        endRecording();
    else
        cancel();
    show("Record");
}

void Performance::cancel() {
    m_delegate->accessibleAnnounce("Record cancelled.");
    m_recordingPerformance = State::idle;
    dropTimer();  // runs on for up to a second after a recording
}

void Performance::keyTouched(bool down) {
    m_recordingPerformanceTimeout = 0;
    if (down && m_recordingPerformance == State::waiting)
        startRecording();
}

void Performance::keyBegan(int key, float gain) {
    if (m_playedNotes)
        m_playedNotes->began(key, gain);
}

void Performance::keyEnded(int key) {
    if (m_playedNotes)
        m_playedNotes->ended(key);
}

void Performance::startRecording() {
    std::string error;
    const std::string path = PerformanceName::reserve(Clock::now(), error);
    if (path.empty()) {
        m_recordingPerformance = State::idle;
        show("Record");
        m_delegate->performanceProblem(error);
        return;
    }
    m_recordingPerformanceLastFilename = path;
    m_recordingUnit.startRecordingTo(m_recordingPerformanceLastFilename);
    m_playedNotes.emplace(m_recordingUnit, PerformanceNotes::pathBeside(path));
    m_recordingPerformance = State::recording;
    show("00:00");
    m_recordingPerformanceSince = Clock::monotonic();
    dropTimer();
    m_timer = RunLoop::main().callEvery(1.0, [this] { tickPerformanceRecordingTime(); });
}

void Performance::endRecording() {
    m_recordingUnit.stopRecording();
    m_recordingPerformance = State::finished;
    report();
}

/// What went wrong with the sound outweighs what did with the notes: a full disk is said once.
void Performance::report() {
    const std::string& path = m_recordingPerformanceLastFilename;
    const VornExtAudioFile::Report report = m_recordingUnit.report();
    const std::string notesProblem = endNotes();
    if (!report.problem.empty())
        m_delegate->performanceProblem(report.problem);
    else if (report.framesDropped > 0)
        m_delegate->performanceProblem(path + missing(report.framesDropped));
    else if (!notesProblem.empty())
        m_delegate->performanceProblem(notesProblem);
    if (report.framesWritten == 0 && !report.problem.empty())
        removeFiles();  // nothing of the performance is in them
    else
        m_delegate->performanceComplete(path);
}

std::string Performance::endNotes() {
    if (!m_playedNotes)
        return "";
    std::string problem = m_playedNotes->finish();
    m_notesFilename = m_playedNotes->path();
    m_playedNotes.reset();
    return problem;
}

void Performance::removeFiles() {
    ::unlink(m_recordingPerformanceLastFilename.c_str());
    if (!m_notesFilename.empty())
        ::unlink(m_notesFilename.c_str());
    m_notesFilename.clear();
}

void Performance::tickPerformanceRecordingTime() {
    ++m_recordingPerformanceTimeout;
    const bool broken = !m_recordingUnit.report().problem.empty();
    if (m_recordingPerformance == State::recording &&
        (broken || m_recordingPerformanceTimeout == kIdleSeconds))
        toolbarRecordClicked();
    if (m_recordingPerformance == State::finished) {
        dropTimer();
        m_recordingPerformance = State::idle;
    } else {
        show(MinutesAndSeconds::text(MinutesAndSeconds::since(m_recordingPerformanceSince)));
    }
}

void Performance::dropTimer() {
    RunLoop::main().cancel(m_timer);
    m_timer = 0;
}
