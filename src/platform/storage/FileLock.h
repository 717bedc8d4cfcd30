#pragma once

#include <chrono>
#include <string>

/// A lock file, held while this lives. The system takes the lock from a process that dies. The
/// file itself stays: a process that removed it could take the name from under another's lock.
/// [any thread but render]
class FileLock {
  public:
    /// Makes the file if there is none. Asks again for up to `patience` while another holds it.
    explicit FileLock(const std::string& path, std::chrono::milliseconds patience = {});
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    bool held() const { return m_file >= 0; }
    /// Another has it; false also when it could not be asked for.
    bool taken() const { return m_taken; }
    /// Why it could not be asked for: one line without the path.
    const std::string& reason() const { return m_reason; }

  private:
    void ask(std::chrono::milliseconds patience);

    int m_file = -1;
    bool m_taken = false;
    std::string m_reason;
};
