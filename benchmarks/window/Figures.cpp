#include "Figures.h"

#include <time.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>

namespace {

double seconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
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
    std::ifstream file("/proc/self/smaps_rollup");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(field + ':'))
            return std::stod(line.substr(field.size() + 1)) / 1024;
    }
    return 0;
}
