#pragma once

#include <pthread.h>

/// The lock of one voice's record: held by the audio thread for the length of a render and by
/// others for a few instructions. It inherits priority, so that a low-priority holder cannot
/// keep the audio thread waiting behind unrelated work. Lockable in the standard sense.
class VoiceLock {
  public:
    VoiceLock() noexcept;
    ~VoiceLock();
    VoiceLock(const VoiceLock&) = delete;
    VoiceLock& operator=(const VoiceLock&) = delete;

    /// [any thread]
    void lock() noexcept;
    void unlock() noexcept;

    /// Tells a test's watch that the calling thread is inside lock or unlock of a voice lock, the
    /// only locks that a render may take.
    static bool active() noexcept;

  private:
    pthread_mutex_t m_mutex;
};
