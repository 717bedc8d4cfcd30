#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "graph/Vornery.h"
#include "recording/RecordingAudioData.h"
#include "recording/UnsavedTake.h"
#include "runloop/RunLoop.h"
#include "wavechoice/WaveChoice.h"

/// What a take has to show and say. [main]
class AudioTakeDelegate {
  public:
    virtual ~AudioTakeDelegate() = default;
    /// The bubble at the microphone button is to be shown, or has another text.
    virtual void bubbleShown(const std::string& /*text*/) {}
    virtual void bubbleDismissed() {}
    virtual void alertShown(const std::string& /*title*/, const std::string& /*message*/,
                            const std::string& /*button*/) {}
    /// The take is the sound in use; show all of it.
    virtual void takeMade(const std::shared_ptr<VornWaveSequence>& /*take*/) {}
    /// One line for the user.
    virtual void takeProblem(const std::string& /*line*/) {}
};

/// Records the microphone, while a button is held or until 30 seconds are over, and makes the take
/// the sound of all voices: scaled to a peak of 1 and without the quiet before its beginning. The
/// take is kept as a file until it has a name. [main]
///
/// no record -> armed or capturing -> stop requested -> stopped -> sound made, record freed
class AudioTake {
  public:
    static constexpr int kLongestTake = 30;  // seconds

    /// Takes go to `unsaved` too; null keeps none.
    AudioTake(WaveChoice& waves, UnsavedTake* unsaved);
    ~AudioTake();
    AudioTake(const AudioTake&) = delete;
    AudioTake& operator=(const AudioTake&) = delete;

    /// Not retained; null for none.
    void setDelegate(AudioTakeDelegate* delegate);

    /// The button was pressed: begins a take, unless one runs. The engine plays afterwards.
    void waveRecordDown();
    /// It was released: ends the take and makes a sound of it.
    void waveRecordUp();

    /// Makes the record and switches the input on; at the start of the program (the engine does not
    /// run yet) only armed, else capturing at once.
    void readyForAudioRecording(bool atStart);
    void tickAudioRecordingTime();
    /// Waits at most 250 ms for a device that no longer calls. Nothing happens when nothing is
    /// captured.
    void stopAudioRecording();

    /// Whether a take runs.
    bool recording() const { return m_recordingAudioTimer != 0; }
    /// Frames that have come in so far, at 44100 Hz.
    std::uint32_t framesHeard() const;
    /// These frames, -32768 to 32767; more may follow behind them at any time. Valid until the take
    /// ends.
    std::span<const float> heard() const;
    /// The loudest sample of the last take before it was scaled, 1 is full scale.
    float lastPeak() const { return m_lastPeak; }

  private:
    void startHardware();
    void awaitStop();
    void dropTimer();
    void normalise();
    std::uint32_t firstLoudSample() const;
    void makeTake();
    void freeRecordingAudioData() { m_recordingAudioData.reset(); }

    Vornery& m_engine = Vornery::sharedInstance();
    WaveChoice& m_waves;
    UnsavedTake* m_unsaved;
    AudioTakeDelegate* m_delegate;
    std::unique_ptr<RecordingAudioData> m_recordingAudioData;
    double m_recordingAudioSince = 0;          // on Clock::monotonic
    RunLoop::Token m_recordingAudioTimer = 0;  // 0: none
    float m_lastPeak = 0;
};
