#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "files/VornExtAudioFile.h"
#include "graph/VornCallbackUnit.h"

/// Passes its upstream's 16-bit mono audio on, bit for bit, and while a recording runs writes every
/// buffer into a WAV file too. Recordings are started and ended on the main thread.
class PassthruRecordingUnit : public VornCallbackUnit {
  public:
    PassthruRecordingUnit();
    ~PassthruRecordingUnit() override;

    /// Ends a recording that runs, then begins another; a file at `path` is replaced.
    void startRecordingTo(const std::string& path);
    /// Returns when the file is complete on the disk. Nothing happens when none is recorded.
    void stopRecording();
    bool recording() const { return targetFile() != nullptr; }
    /// The file being written, or null. Owned by the unit.
    VornExtAudioFile* targetFile() const { return m_targetFile.load(std::memory_order_relaxed); }
    /// [main] How the recording goes that runs, or went that ran last. Cheap: ask once a second
    /// and tell the user the problem when there is one.
    VornExtAudioFile::Report report() const;
    /// [main] Frames that the recording holds by now, the last of which may still be on their way
    /// to the disk: where in it is heard what is played next.
    std::uint64_t framesRecorded() const;

  private:
    static OSStatus render(void* unit, AudioUnitRenderActionFlags* flags,
                           const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                           AudioBufferList* data);

    std::atomic<VornExtAudioFile*> m_targetFile{nullptr};
    std::atomic<std::int32_t> m_accessing{0};          // renders that may be using the file
    std::atomic<std::uint64_t> m_framesHandedOver{0};  // to the file
    VornExtAudioFile::Report m_lastReport;
};
