#include "recording/AudioTake.h"

#include <chrono>
#include <thread>

#include "VornWave2.h"
#include "recording/MinutesAndSeconds.h"
#include "runloop/Clock.h"

namespace {

AudioTakeDelegate noTakeDelegate;

constexpr auto kLongestWait = std::chrono::milliseconds(250);
constexpr double kLoud = 0.2;  // where a take begins; positive swings only
constexpr float kFullScale = 32768.f;

}  // namespace

AudioTake::AudioTake(WaveChoice& waves, UnsavedTake* unsaved)
    : m_waves(waves), m_unsaved(unsaved), m_delegate(&noTakeDelegate) {}

// The record must outlive the last call of the callback.
AudioTake::~AudioTake() {
    dropTimer();
    if (!m_recordingAudioData)
        return;
    m_engine.stop();
    m_engine.hardware().disableRecording();
}

void AudioTake::setDelegate(AudioTakeDelegate* delegate) {
    m_delegate = delegate ? delegate : &noTakeDelegate;
}

void AudioTake::waveRecordDown() {
    if (recording())
        return;
    m_delegate->bubbleDismissed();
    readyForAudioRecording(false);
    m_delegate->bubbleShown("  00:00  ");
    m_recordingAudioSince = Clock::monotonic();
    m_recordingAudioTimer = RunLoop::main().callEvery(1.0, [this] { tickAudioRecordingTime(); });
}

void AudioTake::readyForAudioRecording(bool atStart) {
    VornIOUnit& hardware = m_engine.hardware();
    auto record = std::make_unique<RecordingAudioData>(hardware);
    if (!atStart) {
        m_engine.stop();
        hardware.uninitialise();
    }
    // Before the engine plays: what the callback reads is settled when it is called first.
    record->state = atStart ? RecordingAudioData::armed : RecordingAudioData::capturing;
    hardware.enableRecordingVia({RecordingAudioData::input, record.get()},
                                RecordingAudioData::inputFormat());
    m_recordingAudioData = std::move(record);
    if (!atStart)
        startHardware();
}

void AudioTake::startHardware() {
    m_engine.hardware().initialise();
    m_engine.play();
}

void AudioTake::tickAudioRecordingTime() {
    const int seconds = MinutesAndSeconds::since(m_recordingAudioSince);
    if (seconds >= kLongestTake)
        waveRecordUp();
    else
        m_delegate->bubbleShown(MinutesAndSeconds::text(seconds));
}

void AudioTake::waveRecordUp() {
    dropTimer();
    m_delegate->bubbleDismissed();
    stopAudioRecording();
}

void AudioTake::dropTimer() {
    RunLoop::main().cancel(m_recordingAudioTimer);
    m_recordingAudioTimer = 0;
}

std::uint32_t AudioTake::framesHeard() const {
    return static_cast<std::uint32_t>(heard().size());
}

std::span<const float> AudioTake::heard() const {
    if (!m_recordingAudioData)
        return {};
    const auto count = m_recordingAudioData->sampleCount.load(std::memory_order_acquire);
    return {m_recordingAudioData->take.data(), count};
}

// A device that has died never acknowledges. Once the engine has stopped no callback runs either,
// so the record is ours both ways.
void AudioTake::awaitStop() {
    auto& state = m_recordingAudioData->state;
    state.store(RecordingAudioData::stopRequested, std::memory_order_release);
    const auto deadline = std::chrono::steady_clock::now() + kLongestWait;
    while (state.load(std::memory_order_acquire) != RecordingAudioData::stopped &&
           std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::microseconds(100));
}

void AudioTake::stopAudioRecording() {
    if (!m_recordingAudioData || m_recordingAudioData->state == RecordingAudioData::armed)
        return;
    awaitStop();
    m_engine.stop();
    m_engine.hardware().uninitialise();
    m_engine.hardware().disableRecording();
    startHardware();
    if (m_recordingAudioData->sampleCount == 0) {
        freeRecordingAudioData();
        m_delegate->alertShown("No Audio Recorded",
                               "To record audio to use as a new instrument, hold the microphone "
                               "button down, and release it to end recording.",
                               "OK");
        return;
    }
    normalise();
    makeTake();
}

void AudioTake::normalise() {
    RecordingAudioData& record = *m_recordingAudioData;
    const auto peak = static_cast<float>(record.peak);
    const float gain =
        record.peak < 1 ? 1.f / kFullScale : (kFullScale / peak) * (1.f / kFullScale);
    for (std::uint32_t i = 0; i < record.sampleCount; ++i)
        record.take.data()[i] *= gain;
    m_lastPeak = peak / kFullScale;
}

/// 0 when no sample is loud.
std::uint32_t AudioTake::firstLoudSample() const {
    const RecordingAudioData& record = *m_recordingAudioData;
    for (std::uint32_t i = 0; i < record.sampleCount; ++i) {
        if (static_cast<double>(record.take.data()[i]) > kLoud)
            return i;
    }
    return 0;
}

void AudioTake::makeTake() {
    const std::uint32_t first = firstLoudSample();
    m_waves.useUnsaved(VornWave2::initWithCopyOfData(m_recordingAudioData->take.data() + first,
                                                     m_recordingAudioData->sampleCount - first,
                                                     StreamDescription::float32(1), "Recording"));
    freeRecordingAudioData();
    if (m_unsaved) {
        if (const std::string error = m_unsaved->store(*m_waves.currentWave()); !error.empty())
            m_delegate->takeProblem(error);
    }
    m_delegate->takeMade(m_waves.currentWave());
}
