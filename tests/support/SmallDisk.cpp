#include "SmallDisk.h"

#include <sys/mount.h>

#include <filesystem>

SmallDisk::SmallDisk(const std::string& folder, unsigned long flags, const std::string& size)
    : m_folder(folder) {
    std::filesystem::create_directory(folder);
    m_there = mount("tmpfs", folder.c_str(), "tmpfs", flags, ("size=" + size).c_str()) == 0;
}

SmallDisk::~SmallDisk() {
    if (m_there)
        umount2(m_folder.c_str(), MNT_DETACH);
}

bool SmallDisk::empty() const {
    return std::filesystem::is_empty(m_folder);
}

bool SmallDisk::makeReadOnly() {
    return mount("", m_folder.c_str(), "", MS_REMOUNT | MS_RDONLY, "") == 0;
}
