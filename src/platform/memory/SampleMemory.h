#pragma once

#include <cstddef>

/// Owner of a long run of 32-bit floats, in pages of its own: zero at first, grown without copying
/// (pages move), and given back to the system at once when released. Reserving costs nothing until
/// pages are touched. Moved, never copied. [any thread but render; one at a time]
class SampleMemory {
  public:
    SampleMemory() = default;
    /// `floats` zeros; empty (false) when there is no memory for them.
    explicit SampleMemory(std::size_t floats) { resize(floats); }
    SampleMemory(SampleMemory&& other) noexcept;
    SampleMemory& operator=(SampleMemory&& other) noexcept;
    ~SampleMemory();

    float* data() noexcept { return m_data; }
    const float* data() const noexcept { return m_data; }
    std::size_t size() const noexcept { return m_floats; }
    explicit operator bool() const noexcept { return m_data != nullptr; }

    /// Keeps what fits; new floats are zero. False, and nothing changed, without memory for it.
    bool resize(std::size_t floats) noexcept;

    /// Makes pages present, so that a later reader on the audio thread takes no page fault. Also
    /// worth while before a long run is filled: cheaper than a fault for every page.
    void faultIn() noexcept { faultIn(0, m_floats); }
    void faultIn(std::size_t from, std::size_t floats) noexcept;

  private:
    float* m_data = nullptr;
    std::size_t m_floats = 0;
};
