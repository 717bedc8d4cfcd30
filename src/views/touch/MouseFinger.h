#pragma once

#include <limits>

/// The mouse is one more finger. No touch has this number.
inline constexpr int kMouseFinger = std::numeric_limits<int>::min();
