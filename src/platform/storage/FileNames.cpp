#include "storage/FileNames.h"

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "storage/WriteAll.h"

// Not every file system has the first call, nor the second.
bool FileNames::renameWithoutReplacing(const char* from, const char* to) {
    if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    return ::link(from, to) == 0 && ::unlink(from) == 0;
}

std::string FileNames::rename(const std::string& from, const std::string& to, Existing existing) {
    const bool renamed = existing == Existing::replace
                             ? ::rename(from.c_str(), to.c_str()) == 0
                             : renameWithoutReplacing(from.c_str(), to.c_str());
    if (!renamed)
        return to + ": cannot write: " + std::strerror(errno);
    syncFolderOf(to);
    return "";
}
