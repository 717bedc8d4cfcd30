#pragma once

#include <unistd.h>

#include <utility>

/// Owner of an open file descriptor; empty when -1.
class FileHandle {
  public:
    explicit FileHandle(int descriptor = -1) noexcept : m_descriptor(descriptor) {}
    FileHandle(FileHandle&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    ~FileHandle() {
        if (m_descriptor >= 0)
            close(m_descriptor);
    }

    int get() const noexcept { return m_descriptor; }
    explicit operator bool() const noexcept { return m_descriptor >= 0; }

  private:
    int m_descriptor;
};
