#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "parameters/Parameters.h"
#include "propertylists/PropertyListValue.h"

/// Everything that makes a sound what it is, as stored values: single-precision floats by
/// ParameterId, each within its stored range. A number that was never set is 0. A plain value.
class Preset {
  public:
    std::string name;
    std::optional<std::string> wave;  // absent: the wave in use stays
    bool syncSpeed = false;
    std::int32_t grainMotion = 0;  // an index into kGrainModes
    bool isProtected = false;      // shipped with the program: not to be deleted
    /// Keys of a newer version, kept as they are when the preset is written again.
    PropertyListValue::Dictionary unknown;

    /// Of a parameter of kind number, as stored; a bass delay of 0 means the default.
    float number(ParameterId id) const { return m_numbers[std::size_t(id)]; }
    /// Takes what a unit holds, unchecked.
    void setNumber(ParameterId id, float stored) { m_numbers[std::size_t(id)] = stored; }
    /// The bass delay in seconds, with the default in place of 0.
    float filterBass() const;

    /// From a dictionary that may hold the parameters' keys, "name", "wave" and "protected" and no
    /// others. On failure `error` is one line that names key, value and what is allowed.
    static std::optional<Preset> fromPropertyList(const PropertyListValue& value,
                                                  std::string& error);
    /// Every parameter and the name; "wave" and "protected" only where they say something; what is
    /// unknown here.
    PropertyListValue toPropertyList() const;

    /// Sets one key from text in C notation, as `--set KEY=VALUE` gives it: a number for a number,
    /// true, false, 1 or 0 for "syncSpeed", 0 to 6 for "grainMotion", a file name for "wave";
    /// "name" and "protected" are refused. On failure nothing changes and `error` is one line.
    bool set(std::string_view key, const std::string& text, std::string& error);

    bool operator==(const Preset&) const = default;

  private:
    bool setValue(std::string_view key, const PropertyListValue& value, std::string& error);
    bool setWave(const PropertyListValue& value, std::string& error);
    bool setParameter(const Parameter& parameter, const PropertyListValue& value,
                      std::string& error);

    std::array<float, kParameterCount> m_numbers{};
};

/// The preset in an XML property list. On failure `error` is one line that begins with the path.
std::optional<Preset> readPresetFile(const std::string& path, std::string& error);
