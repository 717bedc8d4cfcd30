#include "storage/AsideFile.h"

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "storage/WriteAll.h"

namespace fs = std::filesystem;

namespace {

std::string behindLinks(const std::string& path) {
    std::error_code missing;
    const fs::path real = fs::canonical(path, missing);
    return missing ? path : real.string();
}

/// Short, whatever the name that it stands for: that one may be as long as names can be.
std::string asideName() {
    static std::atomic<unsigned> count{0};
    return ".ombrix-" + std::to_string(getpid()) + '-' + std::to_string(count++) + ".part";
}

int renameKeeping(const char* from, const char* to) {
    int failed = renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE);
    if (failed && errno == EINVAL) {  // a file system that cannot refuse to replace
        failed = link(from, to);
        if (!failed)
            unlink(from);
    }
    return failed;
}

}  // namespace

AsideFile::AsideFile(const std::string& path)
    : m_target(behindLinks(path)), m_aside(fs::path(m_target).parent_path() / asideName()) {}

AsideFile::~AsideFile() {
    if (!m_aside.empty())
        ::unlink(m_aside.c_str());
}

std::string AsideFile::putInPlace(Existing existing) {
    std::string error = rename(m_aside, m_target, existing);
    if (error.empty())
        m_aside.clear();
    return error;
}

std::string AsideFile::rename(const std::string& from, const std::string& path, Existing existing) {
    const int failed = existing == Existing::keep ? renameKeeping(from.c_str(), path.c_str())
                                                  : ::rename(from.c_str(), path.c_str());
    if (failed)
        return "cannot write " + path + ": " + std::strerror(errno);
    syncFolderOf(path);
    return "";
}

bool AsideFile::reserve(const std::string& path) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    return file >= 0 && ::close(file) == 0;
}
