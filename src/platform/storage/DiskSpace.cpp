#include "storage/DiskSpace.h"

#include <sys/statvfs.h>

std::optional<std::uint64_t> DiskSpace::freeBytes(const std::string& folder) {
    struct statvfs disk {};
    if (::statvfs(folder.c_str(), &disk) != 0)
        return std::nullopt;
    return std::uint64_t{disk.f_bavail} * disk.f_frsize;
}
