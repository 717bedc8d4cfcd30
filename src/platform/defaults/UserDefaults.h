#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "propertylists/PropertyListValue.h"

/// What the program remembers for its user between runs, by key: one property list in the
/// configuration folder, read again and written whole at each change, so that what another process
/// has changed meanwhile stays. Without such a folder, or when it cannot be written, values live as
/// long as the object (the log tells why). A file that
/// cannot be read is kept beside the new one with ".broken" after its name. [main]
class UserDefaults {
  public:
    /// "ombrix-synth" in $XDG_CONFIG_HOME or else in ~/.config; empty when there is neither.
    static std::string defaultPath();

    explicit UserDefaults(std::string path = defaultPath());

    /// Nothing when the key is absent or holds another type.
    std::optional<std::string> string(const std::string& key) const;
    std::optional<bool> boolean(const std::string& key) const;
    std::optional<std::int64_t> integer(const std::string& key) const;
    std::optional<PropertyListValue::Dictionary> dictionary(const std::string& key) const;

    void set(const std::string& key, PropertyListValue value);
    void remove(const std::string& key);

  private:
    const PropertyListValue* find(const std::string& key) const;
    /// To nothing: removes it.
    void change(const std::string& key, std::optional<PropertyListValue> value);
    void read();
    bool write();

    std::string m_path;
    PropertyListValue::Dictionary m_values;
    std::map<std::string, std::optional<PropertyListValue>> m_unwritten;  // changes of ours
    bool m_fileIsBroken = false;
};
