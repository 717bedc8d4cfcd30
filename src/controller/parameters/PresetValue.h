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
