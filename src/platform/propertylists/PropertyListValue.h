#pragma once

#include <concepts>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

/// An instant: seconds since 2001-01-01 UTC. Property lists store whole seconds.
struct PropertyListDate {
    double seconds = 0;
    bool operator==(const PropertyListDate&) const = default;
};

/// One value of a property list: a dictionary (its keys in order), array, string (UTF-8), integer,
/// real, boolean, date or block of bytes. A plain value.
class PropertyListValue {
  public:
    using Dictionary = std::map<std::string, PropertyListValue, std::less<>>;
    using Array = std::vector<PropertyListValue>;
    using Data = std::vector<std::uint8_t>;

    PropertyListValue(Dictionary value) : m_value(std::move(value)) {}
    PropertyListValue(Array value) : m_value(std::move(value)) {}
    PropertyListValue(std::string value) : m_value(std::move(value)) {}
    PropertyListValue(const char* value) : m_value(std::string(value)) {}
    PropertyListValue(std::same_as<bool> auto value) : m_value(value) {}
    PropertyListValue(std::floating_point auto value) : m_value(double(value)) {}
    PropertyListValue(PropertyListDate value) : m_value(value) {}
    PropertyListValue(Data value) : m_value(std::move(value)) {}
    template <std::integral T>
    requires(!std::same_as<T, bool> && (std::is_signed_v<T> || sizeof(T) < 8))
        PropertyListValue(T value)
        : m_value(std::int64_t(value)) {}

    /// The value, or null when it is of another type.
    const Dictionary* dictionary() const { return std::get_if<Dictionary>(&m_value); }
    const Array* array() const { return std::get_if<Array>(&m_value); }
    const std::string* string() const { return std::get_if<std::string>(&m_value); }
    const std::int64_t* integer() const { return std::get_if<std::int64_t>(&m_value); }
    const double* real() const { return std::get_if<double>(&m_value); }
    const bool* boolean() const { return std::get_if<bool>(&m_value); }
    const PropertyListDate* date() const { return std::get_if<PropertyListDate>(&m_value); }
    const Data* data() const { return std::get_if<Data>(&m_value); }

    /// "dictionary", "string" and so on, for messages.
    std::string_view typeName() const;

    bool operator==(const PropertyListValue&) const = default;

  private:
    std::variant<Dictionary, Array, std::string, std::int64_t, double, bool, PropertyListDate, Data>
        m_value;
};
