#include "storage/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <thread>

namespace {

// A holder needs it for some milliseconds, mostly to sync its file.
constexpr std::chrono::milliseconds kAskAgain{3};

/// A signal must not look like a taken lock.
bool lockNow(int file) {
    int failed = 0;
    do
        failed = ::flock(file, LOCK_EX | LOCK_NB);
    while (failed != 0 && errno == EINTR);
    return failed == 0;
}

}  // namespace

FileLock::FileLock(const std::string& path, std::chrono::milliseconds patience) {
    m_file = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666);
    if (m_file < 0)
        m_reason = std::strerror(errno);
    else
        ask(patience);
}

FileLock::~FileLock() {
    if (m_file >= 0)
        ::close(m_file);
}

void FileLock::ask(std::chrono::milliseconds patience) {
    const auto end = std::chrono::steady_clock::now() + patience;
    bool locked = false;
    while (!(locked = lockNow(m_file)) && errno == EWOULDBLOCK &&
           std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(kAskAgain);
    if (locked)
        return;
    m_taken = errno == EWOULDBLOCK;
    m_reason = std::strerror(errno);
    ::close(m_file);
    m_file = -1;
}
