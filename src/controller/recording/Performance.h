#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "PassthruRecordingUnit.h"
#include "notes/Notes.h"
#include "recording/PerformanceNotes.h"
#include "runloop/RunLoop.h"

/// What the recording of a performance has to show and say. [main]
class PerformanceDelegate {
  public:
    virtual ~PerformanceDelegate() = default;
    /// Of the record button.
    virtual void buttonTitleChanged(const std::string& /*title*/) {}
    /// To be spoken for assistive technology.
    virtual void accessibleAnnounce(const std::string& /*text*/) {}
    /// The file is complete, and can be sent on.
    virtual void performanceComplete(const std::string& /*path*/) {}
    /// One line for the user. What fitted is in the file.
    virtual void performanceProblem(const std::string& /*line*/) {}
};

/// Records the instrument's own output into a WAV file in the data folder, from the first key
/// pressed until the user ends it or 30 seconds pass without a key, and the notes that are played
/// into a MIDI file beside it. [main]
///
/// idle -> waiting -> recording -> finished -> idle at the next second; waiting -> idle
class Performance : private NotesDelegate {
  public:
    enum class State : std::int32_t { idle = 0, waiting = 1, recording = 2, finished = 3 };
    static constexpr std::uint32_t kIdleSeconds = 30;

    Performance(Notes& notes, PassthruRecordingUnit& recordingUnit);
    /// Ends a recording that runs; its files are complete.
    ~Performance() override;
    Performance(const Performance&) = delete;
    Performance& operator=(const Performance&) = delete;

    /// Not retained; null for none.
    void setDelegate(PerformanceDelegate* delegate);

    /// The record button: waits for the first key, or cancels that, or ends the recording.
    void toolbarRecordClicked();
    void tickPerformanceRecordingTime();
    /// Somebody is still playing: the 30 seconds begin anew.
    void restartTimeout() { m_recordingPerformanceTimeout = 0; }

    State recordingPerformance() const { return m_recordingPerformance; }
    /// Full path of the last file; empty before the first.
    const std::string& recordingPerformanceLastFilename() const {
        return m_recordingPerformanceLastFilename;
    }
    /// Full path of the MIDI file beside the last complete one; empty when there is none.
    const std::string& notesFilename() const { return m_notesFilename; }

  private:
    void keyTouched(bool down) override;
    void keyBegan(int key, float gain) override;
    void keyEnded(int key) override;
    void startRecording();
    void endRecording();
    void cancel();
    void report();
    std::string endNotes();
    void removeFiles();
    void dropTimer();
    void show(const std::string& title) { m_delegate->buttonTitleChanged(title); }

    Notes& m_notes;
    PassthruRecordingUnit& m_recordingUnit;
    PerformanceDelegate* m_delegate;
    State m_recordingPerformance = State::idle;
    double m_recordingPerformanceSince = 0;           // on Clock::monotonic
    std::uint32_t m_recordingPerformanceTimeout = 0;  // seconds since the last key event
    std::string m_recordingPerformanceLastFilename;
    std::optional<PerformanceNotes> m_playedNotes;  // while a recording runs
    std::string m_notesFilename;
    RunLoop::Token m_timer = 0;  // 0: none
};
