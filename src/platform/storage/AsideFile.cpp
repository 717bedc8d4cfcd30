#include "storage/AsideFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "storage/AsideNames.h"
#include "storage/FileNames.h"
#include "storage/WriteAll.h"

namespace fs = std::filesystem;

namespace {

std::string behindLinks(const std::string& path) {
    std::error_code missing;
    const fs::path real = fs::canonical(path, missing);
    return missing ? path : real.string();
}

}  // namespace

AsideFile::AsideFile(const std::string& target) : m_target(behindLinks(target)) {
    m_file = AsideNames::create(m_target, m_path);
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
    const std::uint64_t end = m_written;
    m_written += bytes.size();
    return overwrite(end, bytes);
}

bool AsideFile::overwrite(std::uint64_t at, std::span<const std::uint8_t> bytes) {
    if (!m_error.empty())
        return false;
    return writeAll(m_file, bytes.data(), bytes.size(), at) == bytes.size() || fail();
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
    const bool isThere = ::stat(m_target.c_str(), &old) == 0;
    if (isThere && !S_ISREG(old.st_mode)) {
        m_error = m_target + ": cannot write: not a regular file";
        return false;
    }
    if (isThere)
        ::chmod(m_path.c_str(), old.st_mode & 07777);
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
