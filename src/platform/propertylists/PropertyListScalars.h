#pragma once

#include <string>

#include "propertylists/PropertyListValue.h"

/// Why a property list cannot be read or written. Thrown inside this folder only.
struct PropertyListRefusal {
    std::string reason;
};

/// `text` in quotation marks and fit for a message.
std::string quoted(const std::string& text);

/// The values of <integer>, <real>, <date> and <data> elements and their texts. Numbers are in C
/// notation from the first character to the last, dates are like 2001-01-01T00:00:00Z (the years 1
/// to 9999), data is Base64. What does not fit is thrown as a refusal.
namespace PropertyListScalars {
std::int64_t integerFrom(const std::string& text);
double realFrom(const std::string& text);
PropertyListDate dateFrom(const std::string& text);
PropertyListValue::Data dataFrom(const std::string& text);

/// The shortest digits that give the same double again.
std::string textOf(double real);
std::string textOf(PropertyListDate date);
std::string textOf(const PropertyListValue::Data& data);
}  // namespace PropertyListScalars
