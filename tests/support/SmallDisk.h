#pragma once

#include <string>

/// A small file system of its own in a new folder, where this account may make one.
class SmallDisk {
  public:
    /// `flags` and `size` as mount takes them, e.g. MS_RDONLY and "64k".
    SmallDisk(const std::string& folder, unsigned long flags, const std::string& size = "64k");
    ~SmallDisk();
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool there() const { return m_there; }
    bool empty() const;
    /// Forbids writing from now on; false when that failed.
    bool makeReadOnly();

  private:
    std::string m_folder;
    bool m_there = false;
};
