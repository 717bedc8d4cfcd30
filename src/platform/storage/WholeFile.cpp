#include "storage/WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "storage/AsideFile.h"
#include "storage/FileHandle.h"

namespace {

std::string reason() {
    return std::strerror(errno);
}

/// Why a file cannot be opened. A link to nothing is not nothing: what it led to may come back.
ReadFault faultOfOpening(const std::string& path, std::string& why) {
    const bool isMissing = errno == ENOENT;
    why = reason();
    std::error_code unknown;
    if (!isMissing || !std::filesystem::is_symlink(path, unknown))
        return isMissing ? ReadFault::missing : ReadFault::unavailable;
    why = "is a link to a file that is not there";
    return ReadFault::unavailable;
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
    const FileHandle file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0) {
        std::string why;
        const ReadFault kind = faultOfOpening(path, why);
        return refuse(kind, why);
    }
    if (S_ISDIR(status.st_mode))
        return refuse(ReadFault::unavailable, "is a folder, not a file");
    if (!S_ISREG(status.st_mode))
        return refuse(ReadFault::unavailable, "is not a regular file");
    if (static_cast<std::uint64_t>(status.st_size) > limit)
        return refuse(ReadFault::tooLarge, tooLarge(limit));
    std::vector<std::uint8_t> bytes;
    const ReadFault failed = readAll(file.get(), limit, bytes);
    if (failed != ReadFault::none)
        return refuse(failed, failed == ReadFault::tooLarge ? tooLarge(limit) : reason());
    return bytes;
}

bool writeWholeFile(const std::string& path, std::span<const std::uint8_t> bytes,
                    std::string& error) {
    AsideFile aside(path);
    const bool done = aside.write(bytes) && aside.replaceTarget();
    if (!done)
        error = aside.error();
    return done;
}
