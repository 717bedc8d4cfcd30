#include "PassthruRecordingUnit.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "files/VornOutputAudioFile.h"
#include "log/Log.h"

PassthruRecordingUnit::PassthruRecordingUnit()
    : VornCallbackUnit(&render, StreamDescription::sint16(1)) {}

PassthruRecordingUnit::~PassthruRecordingUnit() {
    stopRecording();
}

// The counter goes up before the file is looked at, and the stopper takes the file away before it
// looks at the counter: a render that the stopper does not see cannot see the file any more.
OSStatus PassthruRecordingUnit::render(void* unit, AudioUnitRenderActionFlags* flags,
                                       const AudioTimeStamp* time, std::uint32_t,
                                       std::uint32_t frames, AudioBufferList* data) {
    auto& self = *static_cast<PassthruRecordingUnit*>(unit);
    self.m_accessing.fetch_add(1, std::memory_order_seq_cst);
    Log::status(
        self.upstreamRenderFlags(flags, time, self.source()->sourceOutputNumber, frames, data));
    // Silence is written like all else: whoever flags it has written zeros.
    if (VornExtAudioFile* file = self.m_targetFile.load(std::memory_order_seq_cst)) {
        Log::status(file->writeAsync(data, frames));
        self.m_framesHandedOver.fetch_add(frames, std::memory_order_relaxed);
    }
    self.m_accessing.fetch_sub(1, std::memory_order_seq_cst);
    return noErr;
}

void PassthruRecordingUnit::startRecordingTo(const std::string& path) {
    stopRecording();
    auto file =
        std::make_unique<VornExtAudioFile>(path, kWaveFileType, StreamDescription::sint16(1));
    file->setClientFormat(m_streamDescription);
    file->primeAsyncWriting();
    m_framesHandedOver.store(0, std::memory_order_relaxed);
    m_targetFile.store(file.release(), std::memory_order_seq_cst);
}

void PassthruRecordingUnit::stopRecording() {
    const std::unique_ptr<VornExtAudioFile> file(
        m_targetFile.exchange(nullptr, std::memory_order_seq_cst));
    while (m_accessing.load(std::memory_order_seq_cst) != 0)
        std::this_thread::sleep_for(std::chrono::microseconds(1));
    if (file)
        m_lastReport = file->close();
}

std::uint64_t PassthruRecordingUnit::framesRecorded() const {
    const std::uint64_t all = m_framesHandedOver.load(std::memory_order_relaxed);
    return all - std::min(all, report().framesDropped);
}

VornExtAudioFile::Report PassthruRecordingUnit::report() const {
    const VornExtAudioFile* file = targetFile();
    return file ? file->report() : m_lastReport;
}
