#include "Figures.h"

#include <time.h>

#include <algorithm>
#include <cstdio>
#include <fstream>

namespace {

double seconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

/// The field of all mappings whose file has `part` in its name, in MiB.
double sum(const char* path, const std::string& part, const std::string& field) {
    std::ifstream file(path);
    double kibibytes = 0;
    bool counts = false;
    for (std::string line; std::getline(file, line);) {
        if (line.find('-') < line.find(' '))  // the addresses of the next one
            counts = line.find(part) != std::string::npos;
        else if (counts && line.starts_with(field + ':'))
            kibibytes += std::stod(line.substr(field.size() + 1));
    }
    return kibibytes / 1024;
}

}  // namespace

void tellFigures(const std::string& what, std::vector<double> values, const char* unit,
                 const std::string& allowed) {
    std::ranges::sort(values);
    const auto at = [&](double part) {
        return values[std::size_t(part * double(values.size() - 1))];
    };
    std::printf("%-44s median %7.2f  99th %7.2f  most %7.2f %s (%zu times; at most %s)\n",
                what.c_str(), at(0.5), at(0.99), values.back(), unit, values.size(),
                allowed.c_str());
    std::fflush(stdout);
}

double threadSeconds() {
    return seconds(CLOCK_THREAD_CPUTIME_ID);
}

double processSeconds() {
    return seconds(CLOCK_PROCESS_CPUTIME_ID);
}

double memory(const std::string& field) {
    return sum("/proc/self/smaps_rollup", "", field);
}

double jackMemory() {
    return sum("/proc/self/smaps", "/jack-", "Rss");
}
