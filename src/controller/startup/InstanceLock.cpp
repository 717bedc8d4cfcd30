#include "startup/InstanceLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

namespace {

/// Far more than anyone starts; keeps a file system that answers nonsense from being asked forever.
constexpr int kMostPlaces = 1000;

std::string lockFile(const std::string& folder, int ordinal) {
    const std::string number = ordinal == 1 ? std::string() : ' ' + std::to_string(ordinal);
    return (std::filesystem::path(folder) / (".running" + number + ".lock")).string();
}

/// Waits for nobody, but a signal must not look like a taken lock.
bool lockNow(int file) {
    int failed = 0;
    do
        failed = ::flock(file, LOCK_EX | LOCK_NB);
    while (failed != 0 && errno == EINTR);
    return failed == 0;
}

}  // namespace

InstanceLock::Place::Place(const std::string& folder, int ordinal) {
    if (ordinal < 1)
        return;
    m_file =
        ::open(lockFile(folder, ordinal).c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY, 0666);
    if (m_file < 0 || lockNow(m_file))
        return;
    m_taken = errno == EWOULDBLOCK;
    ::close(m_file);
    m_file = -1;
}

InstanceLock::Place::~Place() {
    // The file stays: a process that removed it could take the name from under another's lock.
    if (m_file >= 0)
        ::close(m_file);
}

InstanceLock::InstanceLock(const std::string& folder) : m_folder(folder) {
    for (int ordinal = 1; ordinal <= kMostPlaces; ++ordinal) {
        auto place = std::make_unique<Place>(folder, ordinal);
        if (place->held()) {
            m_place = std::move(place);
            m_ordinal = ordinal;
            return;
        }
        if (!place->taken())
            return;
    }
}

InstanceLock::~InstanceLock() = default;
