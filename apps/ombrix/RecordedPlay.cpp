#include "RecordedPlay.h"

#include <cstdio>

#include "log/Log.h"

RecordedPlay::RecordedPlay(Instrument& instrument)
    : m_performance(instrument.notes(), instrument.recordingUnit()) {
    m_performance.setDelegate(this);
    m_performance.toolbarRecordClicked();
}

bool RecordedPlay::finish() {
    using State = Performance::State;
    const State state = m_performance.recordingPerformance();
    if (state == State::waiting)
        tellUser("nothing was recorded: no note was played");
    if (state == State::waiting || state == State::recording)
        m_performance.toolbarRecordClicked();
    return !m_failed;
}

void RecordedPlay::performanceComplete(const std::string& path) {
    std::printf("recorded: %s\n", path.c_str());
    if (!m_performance.notesFilename().empty())
        std::printf("its notes: %s\n", m_performance.notesFilename().c_str());
}

void RecordedPlay::performanceProblem(const std::string& line) {
    tellUser("%s", line.c_str());
    m_failed = true;
}
