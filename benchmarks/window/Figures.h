#pragma once

#include <string>
#include <vector>

/// What was measured, as one line: median, 99th percentile and greatest, beside what is allowed.
void tellFigures(const std::string& what, std::vector<double> values, const char* unit,
                 const std::string& allowed);

/// Seconds of the processor that this thread, or the whole process, has used.
double threadSeconds();
double processSeconds();

/// A field of /proc/self/smaps_rollup, in MiB: "Rss", "Pss".
double memory(const std::string& field);
/// What the JACK server has every client map and hold, in MiB.
double jackMemory();
