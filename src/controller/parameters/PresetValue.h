#pragma once

#include <optional>
#include <string>

#include "parameters/Parameters.h"
#include "propertylists/PropertyListValue.h"

/// The value as `parameter` stores it: a float within its stored range; for a flag 0 or 1, for a
/// choice a whole number. A boolean counts only for a flag, text never. On failure `error` is one
/// line that names key, value and what is allowed.
std::optional<float> presetValue(const Parameter& parameter, const PropertyListValue& value,
                                 std::string& error);

/// What a user may write: "a number from -2 to 2".
std::string allowedValues(const Parameter& parameter);

/// What is stored in place of a value that `presetValue` refuses: the nearest end of the range, or
/// the initial value where the value is no finite number. A grain mode that does not exist becomes
/// the initial one.
float repairedValue(const Parameter& parameter, const PropertyListValue& value);

/// The stored value in a message: "0.5", "true".
std::string shownValue(const Parameter& parameter, float stored);
