#pragma once

#include <atomic>
#include <cstdint>

#include "audiofiles/FormatChange.h"
#include "audiofiles/FrameRing.h"
#include "audiofiles/PeriodicThread.h"
#include "audiofiles/WavOutput.h"

/// Writes what a render hands over. A thread takes the frames out of a ring every 50 ms, changes
/// their format, writes them and makes the header claim them: that survives the end of the program
/// at any instant. Another asks the disk every second to keep what is written, for power cuts; were
/// it the same thread, a slow disk would keep frames in the ring, where they die with the program.
/// The first failure ends the writing. Made and destroyed on an ordinary thread.
class AsyncWriter {
  public:
    /// Both threads run from now on. `file` must outlive this. Throws what memory and threads do.
    AsyncWriter(WavOutput& file, const StreamDescription& client);
    ~AsyncWriter() { finish(); }

    /// [render] Never waits. What there is no room for is counted as dropped. Quiet once the
    /// writing has ended.
    OSStatus write(std::uint32_t frames, const AudioBufferList& data) noexcept;
    /// Writes what is still in the ring; nothing is to be handed over any more.
    void finish();

    /// [any thread] Frames in the file.
    std::uint64_t framesWritten() const { return m_bytes.load() / m_file.frameBytes(); }
    std::uint64_t framesDropped() const { return m_dropped.load(std::memory_order_relaxed); }
    /// [any thread] What ended the writing.
    OSStatus status() const { return m_status.load(); }

  private:
    void emptyRing();
    void put(std::span<const std::byte> bytes);
    void sync();
    /// Nothing for noErr; else, if it is the first, says so and stops the writing.
    void end(OSStatus status);

    WavOutput& m_file;
    FormatChange m_change;
    FrameRing m_ring;
    std::atomic<std::uint64_t> m_bytes{0};
    std::atomic<std::uint64_t> m_dropped{0};
    std::atomic<OSStatus> m_status{noErr};
    std::uint64_t m_synced = 0;  // value of m_bytes
    bool m_finished = false;
    PeriodicThread m_writing;
    PeriodicThread m_syncing;
};
