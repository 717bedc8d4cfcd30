#pragma once

#include "PassthruRecordingUnit.h"
#include "midi/MidiFileWriter.h"
#include "recording/NotesFile.h"
#include "runloop/RunLoop.h"

/// The notes of one performance, kept as a standard MIDI file beside its sound file. A note's time
/// is the frame of the sound file at which it is heard, to within one buffer. The file is brought
/// up to date every two seconds, so that a kill loses no more. [main]
class PerformanceNotes {
  public:
    static constexpr double kRefreshSeconds = 2;

    /// Begins with the recording that runs in the unit, which must outlive this. `path` is that of
    /// the MIDI file, which nothing is called yet.
    PerformanceNotes(const PassthruRecordingUnit& recordingUnit, std::string path);
    ~PerformanceNotes();
    PerformanceNotes(const PerformanceNotes&) = delete;
    PerformanceNotes& operator=(const PerformanceNotes&) = delete;

    /// "NAME.mid" for "NAME.wav".
    static std::string pathBeside(const std::string& soundFile);

    /// A key, 0 to 87, was started with a gain in [0, 1], or released.
    void began(int key, float gain);
    void ended(int key);
    /// Completes the file after the recording has ended. Answers one line if that failed, else
    /// nothing.
    [[nodiscard]] std::string finish();
    /// Empty when there is no file; after `finish`.
    std::string path() const { return m_file.exists() ? m_file.path() : ""; }

  private:
    double seconds() const;
    void refresh();

    const PassthruRecordingUnit& m_recordingUnit;
    MidiFileWriter m_notes;
    NotesFile m_file;
    bool m_changed = false;
    RunLoop::Token m_refreshing = 0;
};
