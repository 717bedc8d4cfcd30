#include "storage/AsideFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "storage/FileNames.h"
#include "storage/WriteAll.h"

namespace fs = std::filesystem;

namespace {

std::string behindLinks(const std::string& path) {
    std::error_code missing;
    const fs::path real = fs::canonical(path, missing);
    return missing ? path : real.string();
}

std::string asideName(const fs::path& target) {
    static std::atomic<unsigned> count{0};
    const std::string own =
        '.' + std::to_string(getpid()) + '.' + std::to_string(count++) + ".part";
    // The longest name that file systems take has 255 bytes.
    const std::string name = target.filename().string().substr(0, 254 - own.size());
    return (target.parent_path() / ('.' + name + own)).string();
}

}  // namespace

AsideFile::AsideFile(const std::string& target)
    : m_target(behindLinks(target)), m_path(asideName(m_target)) {
    m_file = ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (m_file < 0) {
        fail();
        m_path.clear();
    }
}

AsideFile::~AsideFile() {
    close();
    if (!m_path.empty())
        ::unlink(m_path.c_str());
}

bool AsideFile::fail() {
    if (m_error.empty())
        m_error = m_target + ": cannot write: " + std::strerror(errno);
    return false;
}

bool AsideFile::close() {
    const int file = m_file;
    m_file = -1;
    return file < 0 || ::close(file) == 0;
}

bool AsideFile::write(std::span<const std::uint8_t> bytes) {
    if (!m_error.empty())
        return false;
    const std::size_t count = writeAll(m_file, bytes.data(), bytes.size(), m_written);
    m_written += count;
    return count == bytes.size() || fail();
}

bool AsideFile::sync() {
    if (!m_error.empty() || m_file < 0)
        return m_error.empty();
    return (::fsync(m_file) == 0 && close()) || fail();
}

void AsideFile::settled() {
    m_path.clear();
    syncFolderOf(m_target);
}

bool AsideFile::replaceTarget() {
    if (!sync())
        return false;
    struct stat old {};
    if (::stat(m_target.c_str(), &old) == 0) {
        if (!S_ISREG(old.st_mode) && !S_ISDIR(old.st_mode)) {
            m_error = m_target + ": is a pipe or a device; choose another name";
            return false;
        }
        ::chmod(m_path.c_str(), old.st_mode & 07777);
    }
    if (::rename(m_path.c_str(), m_target.c_str()) != 0)
        return fail();
    settled();
    return true;
}

AsideFile::Put AsideFile::putNew(const std::string& path) {
    if (!sync())
        return Put::failed;
    if (!FileNames::renameWithoutReplacing(m_path.c_str(), path.c_str())) {
        if (errno == EEXIST)
            return Put::taken;
        fail();
        return Put::failed;
    }
    m_target = path;
    settled();
    return Put::done;
}
