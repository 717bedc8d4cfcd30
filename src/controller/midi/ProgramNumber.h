#pragma once

#include <iterator>

#include "parameters/PresetList.h"

/// The preset that a program change names: 0 is the first in their order. Null beyond the last.
inline const Preset* presetOfNumber(const PresetList::Presets& presets, int number) {
    return number >= 0 && std::size_t(number) < presets.size()
               ? &std::next(presets.begin(), number)->second
               : nullptr;
}
