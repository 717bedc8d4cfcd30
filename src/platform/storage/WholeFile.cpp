#include "storage/WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "storage/WriteAll.h"

namespace {

/// Closes its descriptor.
class Descriptor {
  public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    ~Descriptor() {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int fd() const { return m_fd; }
    explicit operator bool() const { return m_fd >= 0; }
    bool close() {
        const int fd = m_fd;
        m_fd = -1;
        return ::close(fd) == 0;
    }

  private:
    int m_fd;
};

std::string reason() {
    return std::strerror(errno);
}

std::string tooLarge(std::size_t limit) {
    return "larger than " + std::to_string(limit >> 20) + " MiB";
}

/// Appends to `bytes`.
ReadFault readAll(int fd, std::size_t limit, std::vector<std::uint8_t>& bytes) {
    std::array<std::uint8_t, 65536> part;
    for (;;) {
        const ssize_t count = ::read(fd, part.data(), part.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return ReadFault::unavailable;
        if (count == 0)
            return ReadFault::none;
        bytes.insert(bytes.end(), part.data(), part.data() + count);
        if (bytes.size() > limit)
            return ReadFault::tooLarge;
    }
}

std::string asideName(const std::filesystem::path& target) {
    static std::atomic<unsigned> count{0};
    const std::string name = '.' + target.filename().string() + '.' + std::to_string(getpid()) +
                             '.' + std::to_string(count++) + ".part";
    return (target.parent_path() / name).string();
}

/// The file behind a link, so that a linked file is replaced and not the link.
std::filesystem::path behindLinks(const std::string& path) {
    std::error_code missing;
    const std::filesystem::path real = std::filesystem::canonical(path, missing);
    return missing ? std::filesystem::path(path) : real;
}

bool writeAside(const std::string& aside, std::span<const std::uint8_t> bytes) {
    Descriptor file(::open(aside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    return file && writeAll(file.fd(), bytes.data(), bytes.size(), 0) == bytes.size() &&
           ::fsync(file.fd()) == 0 && file.close();
}

void keepPermissions(const std::filesystem::path& from, const std::string& to) {
    struct stat old {};
    if (::stat(from.c_str(), &old) == 0)
        ::chmod(to.c_str(), old.st_mode & 07777);
}

}  // namespace

std::optional<std::vector<std::uint8_t>> readWholeFile(const std::string& path, std::size_t limit,
                                                       std::string& error, ReadFault* fault) {
    const auto refuse = [&](ReadFault kind, const std::string& why) {
        error = path + ": " + why;
        if (fault)
            *fault = kind;
        return std::nullopt;
    };
    // Opening a pipe for reading would wait for its writer.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat status {};
    if (!file || ::fstat(file.fd(), &status) != 0)
        return refuse(errno == ENOENT ? ReadFault::missing : ReadFault::unavailable, reason());
    if (S_ISDIR(status.st_mode))
        return refuse(ReadFault::unavailable, "is a folder, not a file");
    if (!S_ISREG(status.st_mode))
        return refuse(ReadFault::unavailable, "is not a regular file");
    if (static_cast<std::uint64_t>(status.st_size) > limit)
        return refuse(ReadFault::tooLarge, tooLarge(limit));
    std::vector<std::uint8_t> bytes;
    const ReadFault failed = readAll(file.fd(), limit, bytes);
    if (failed != ReadFault::none)
        return refuse(failed, failed == ReadFault::tooLarge ? tooLarge(limit) : reason());
    return bytes;
}

bool writeWholeFile(const std::string& path, std::span<const std::uint8_t> bytes,
                    std::string& error) {
    const std::filesystem::path target = behindLinks(path);
    std::error_code missing;
    const auto there = std::filesystem::status(target, missing);
    if (std::filesystem::is_other(there)) {
        error = path + ": is a pipe or a device; choose another name";
        return false;
    }
    const std::string aside = asideName(target);
    if (!writeAside(aside, bytes)) {
        error = path + ": cannot write: " + reason();
        ::unlink(aside.c_str());
        return false;
    }
    keepPermissions(target, aside);
    if (::rename(aside.c_str(), target.c_str()) != 0) {
        error = path + ": cannot write: " + reason();
        ::unlink(aside.c_str());
        return false;
    }
    syncFolderOf(target.string());
    return true;
}
