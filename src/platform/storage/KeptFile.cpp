#include "storage/KeptFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "storage/AsideNames.h"
#include "storage/WholeFile.h"

namespace {

constexpr int kMostAside = 1000;

/// A second name for the file behind links; false with errno when it cannot be given.
bool link(const std::string& path, const std::string& name) {
    return ::linkat(AT_FDCWD, path.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

bool hasNoSecondNames(int failure) {
    return failure == EPERM || failure == EOPNOTSUPP || failure == EXDEV || failure == EMLINK ||
           failure == ENOSYS;
}

bool copyWhole(const std::string& path, const std::string& copy, std::size_t limit,
               std::string& error) {
    const auto bytes = readWholeFile(path, limit, error);
    return bytes && writeWholeFile(copy, *bytes, error);
}

}  // namespace

bool KeptFile::keepAs(const std::string& path, const std::string& copy, std::size_t limit,
                      std::string& error) {
    const std::string part = AsideNames::beside(copy);
    ::unlink(part.c_str());  // of a process of the same number that died
    bool kept = link(path, part);
    if (!kept && hasNoSecondNames(errno))
        return copyWhole(path, copy, limit, error);
    kept = kept && ::rename(part.c_str(), copy.c_str()) == 0;
    if (!kept)
        error = copy + ": cannot write: " + std::strerror(errno);
    ::unlink(part.c_str());  // renaming does nothing when both are one file already
    return kept;
}

std::string KeptFile::keepAside(const std::string& path, const std::string& base,
                                std::string& error) {
    for (int number = 1; number <= kMostAside; ++number) {
        const std::string name = number == 1 ? base : base + ' ' + std::to_string(number);
        if (link(path, name))
            return name;
        if (hasNoSecondNames(errno) &&
            ::renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, name.c_str(), RENAME_NOREPLACE) == 0)
            return name;
        if (errno != EEXIST)
            break;
    }
    error = path + ": cannot be set aside: " + std::strerror(errno);
    return "";
}
