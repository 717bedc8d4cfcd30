#include "memory/SampleMemory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

std::size_t pageBytes() {
    static const auto bytes = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return bytes;
}

std::size_t mappedBytes(std::size_t floats) {
    const std::size_t page = pageBytes();
    return (std::max<std::size_t>(floats, 1) * sizeof(float) + page - 1) / page * page;
}

void* moved(void* from, std::size_t oldBytes, std::size_t newBytes) {
    if (!from)
        return mmap(nullptr, newBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return mremap(from, oldBytes, newBytes, MREMAP_MAYMOVE);
}

}  // namespace

SampleMemory::SampleMemory(SampleMemory&& other) noexcept
    : m_data(std::exchange(other.m_data, nullptr)), m_floats(std::exchange(other.m_floats, 0)) {}

SampleMemory& SampleMemory::operator=(SampleMemory&& other) noexcept {
    std::swap(m_data, other.m_data);
    std::swap(m_floats, other.m_floats);
    return *this;
}

SampleMemory::~SampleMemory() {
    if (m_data)
        munmap(m_data, mappedBytes(m_floats));
}

bool SampleMemory::resize(std::size_t floats) noexcept {
    if (floats > std::numeric_limits<std::size_t>::max() / 8)
        return false;
    const std::size_t oldBytes = mappedBytes(m_floats);
    const std::size_t newBytes = mappedBytes(floats);
    if (!m_data || newBytes != oldBytes) {
        void* memory = moved(m_data, oldBytes, newBytes);
        if (memory == MAP_FAILED)
            return false;
        m_data = static_cast<float*>(memory);
    }
    // The rest of the last page may hold what was cut off.
    if (floats < m_floats)
        std::fill_n(m_data + floats,
                    std::min(m_floats * sizeof(float), newBytes) / sizeof(float) - floats, 0.f);
    m_floats = floats;
    return true;
}

void SampleMemory::faultIn(std::size_t from, std::size_t floats) noexcept {
    if (from >= m_floats || floats == 0)
        return;
    const std::size_t page = pageBytes();
    const std::size_t begin = from * sizeof(float) / page * page;
    const std::size_t end = mappedBytes(from + std::min(floats, m_floats - from));
    auto* bytes = reinterpret_cast<char*>(m_data);
#ifdef MADV_POPULATE_WRITE
    if (madvise(bytes + begin, end - begin, MADV_POPULATE_WRITE) == 0)
        return;
#endif
    for (std::size_t at = begin; at < end; at += page) {
        volatile char* touched = bytes + at;
        *touched = *touched;
    }
}
