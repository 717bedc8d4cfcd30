#include "RecordedPlay.h"

#include <cstdio>

#include "CommandFrame.h"
#include "DeviceRequest.h"
#include "log/Log.h"

std::vector<OptionRow> playingOptions(std::vector<OptionRow> own) {
    own.insert(own.begin(),
               {kDeviceOption,
                kPeriodOption,
                kStopOption,
                {"record", nullptr, "record it into the data folder, from the first note on"}});
    return withInstrumentOptions(std::move(own));
}

RecordedPlay::RecordedPlay(Instrument& instrument, const Arguments& arguments) {
    if (!arguments.has("record"))
        return;
    m_performance.emplace(instrument.notes(), instrument.recordingUnit());
    m_performance->setDelegate(this);
    m_performance->toolbarRecordClicked();
}

void RecordedPlay::goOn() {
    if (m_performance)
        m_performance->restartTimeout();
}

bool RecordedPlay::finish() {
    if (!m_performance)
        return true;
    using State = Performance::State;
    const State state = m_performance->recordingPerformance();
    if (state == State::waiting)
        tellUser("nothing was recorded: no note was played");
    if (state == State::waiting || state == State::recording)
        m_performance->toolbarRecordClicked();
    return !m_failed;
}

void RecordedPlay::performanceComplete(const std::string& path) {
    std::printf("recorded: %s\n", path.c_str());
    if (!m_performance->notesFilename().empty())
        std::printf("its notes: %s\n", m_performance->notesFilename().c_str());
}

void RecordedPlay::performanceProblem(const std::string& line) {
    tellUser("%s", line.c_str());
    m_failed = true;
}
