#include "storage/WriteAll.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

std::size_t writeAll(int file, const void* data, std::size_t bytes, std::uint64_t offset) {
    const auto* from = static_cast<const char*>(data);
    std::size_t done = 0;
    while (done < bytes) {
        const ssize_t count =
            pwrite(file, from + done, bytes - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count == 0)
            errno = ENOSPC;
        if (count <= 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

void syncFolderOf(const std::string& path) {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    const int descriptor =
        open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    close(descriptor);
}
