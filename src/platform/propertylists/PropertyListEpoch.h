#pragma once

#include <cstdint>

/// Seconds from 1970-01-01 to 2001-01-01 UTC.
inline constexpr std::int64_t kSecondsFrom1970To2001 = 978307200;
