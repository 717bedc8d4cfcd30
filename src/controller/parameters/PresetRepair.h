#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "parameters/Preset.h"

/// A preset from a dictionary that may hold anything. Numbers that cannot be used are repaired (see
/// repairedValue), a wave that may not be named is dropped, a name that cannot be one gives way to
/// `fallbackName`; keys that are not known are kept. Each repair adds one line to `repairs`. A name
/// may be left empty when `fallbackName` is no better.
Preset repairedPreset(const PropertyListValue::Dictionary& dictionary,
                      std::string_view fallbackName, std::vector<std::string>& repairs);

/// How a message names the preset of a name. Lines of repairs begin with it.
std::string subjectOf(std::string_view name);
