#include "WobbleTable.h"

#include <cmath>

namespace {

struct Table {
    float values[WobbleTable::kFrames];
    float step;
    std::uint32_t filled;
};
thread_local constinit Table table{};

}  // namespace

float WobbleTable::value(float step, std::uint32_t frame) noexcept {
    return std::sin(step * static_cast<float>(frame)) * 0.25f + 1.f;
}

const float* WobbleTable::values(float step, std::uint32_t frames) noexcept {
    if (table.step != step)
        table.filled = 0;
    table.step = step;
    for (; table.filled < frames; ++table.filled)
        table.values[table.filled] = value(step, table.filled);
    return table.values;
}
