#include "memory/FreeMemory.h"

#include <fstream>
#include <limits>
#include <string>

std::uint64_t freeMemory() {
    std::ifstream report("/proc/meminfo");  // "MemAvailable:   23478568 kB"
    for (std::string line; std::getline(report, line);) {
        constexpr std::string_view kLabel = "MemAvailable:";
        if (line.starts_with(kLabel))
            return std::strtoull(line.c_str() + kLabel.size(), nullptr, 10) * 1024;
    }
    return std::numeric_limits<std::uint64_t>::max();
}
