#include "parameters/PresetValue.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "text/CNumber.h"

namespace {

/// The fewest digits that are this float and no other.
std::string shortest(float value) {
    std::array<char, 32> text;
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

std::string shown(const PropertyListValue& value) {
    if (const auto* text = value.string())
        return '"' + oneLine(*text) + '"';
    if (const auto* integer = value.integer())
        return std::to_string(*integer);
    if (const auto* real = value.real())
        return formattedNumber("%.9g", *real);
    if (const auto* flag = value.boolean())
        return *flag ? "true" : "false";
    return "of type " + std::string(value.typeName());
}

std::optional<double> numberIn(const PropertyListValue& value, ParameterKind kind) {
    if (const auto* integer = value.integer())
        return double(*integer);
    if (const auto* real = value.real())
        return *real;
    if (const auto* flag = value.boolean(); flag && kind == ParameterKind::flag)
        return *flag ? 1 : 0;
    return std::nullopt;
}

/// Ranges hold for the float that is stored, so that a limit's own float form is within.
bool isAllowed(const Parameter& parameter, double number) {
    if (std::abs(number) > double(std::numeric_limits<float>::max()))
        return false;
    if (parameter.kind != ParameterKind::number && number != std::floor(number))
        return false;
    const float stored = float(number);
    return parameter.stored.contains(stored) || (parameter.zeroMeansDefault && stored == 0);
}

}  // namespace

std::string allowedValues(const Parameter& parameter) {
    if (parameter.kind == ParameterKind::flag)
        return "true or false";
    const std::string range =
        shortest(parameter.stored.low) + " to " + shortest(parameter.stored.high);
    if (parameter.kind == ParameterKind::choice)
        return "a whole number from " + range;
    return "a number from " + range + (parameter.zeroMeansDefault ? ", or 0 for the default" : "");
}

std::optional<float> presetValue(const Parameter& parameter, const PropertyListValue& value,
                                 std::string& error) {
    const auto refuse = [&](const std::string& what) {
        error = std::string(parameter.key) + " is " + shown(value) + what + "; it must be " +
                allowedValues(parameter);
        return std::nullopt;
    };
    const auto number = numberIn(value, parameter.kind);
    if (!number)
        return refuse(", which is not a number");
    if (!std::isfinite(*number))
        return refuse(", which is not finite");
    if (!isAllowed(parameter, *number))
        return refuse("");
    return float(*number);
}

float repairedValue(const Parameter& parameter, const PropertyListValue& value) {
    const auto number = numberIn(value, parameter.kind);
    if (!number || !std::isfinite(*number) || parameter.kind == ParameterKind::choice)
        return parameter.storedInitial;
    const double low = parameter.stored.low;
    const double nearest = std::clamp(*number, low, double(parameter.stored.high));
    return float(parameter.kind == ParameterKind::flag ? std::ceil(nearest) : nearest);
}

std::string shownValue(const Parameter& parameter, float stored) {
    if (parameter.kind == ParameterKind::flag)
        return stored != 0 ? "true" : "false";
    return shortest(stored);
}
