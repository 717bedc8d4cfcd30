#include "defaults/UserDefaults.h"

#include <cstdlib>
#include <filesystem>

#include "log/Log.h"
#include "propertylists/PropertyList.h"

namespace {

/// Names of folders in the environment count only when they are absolute.
std::string absoluteFolder(const char* variable) {
    const char* folder = std::getenv(variable);
    return folder && folder[0] == '/' ? folder : "";
}

}  // namespace

std::string UserDefaults::defaultPath() {
    std::filesystem::path folder = absoluteFolder("XDG_CONFIG_HOME");
    if (folder.empty() && !absoluteFolder("HOME").empty())
        folder = std::filesystem::path(absoluteFolder("HOME")) / ".config";
    return folder.empty() ? "" : (folder / "ombrix-synth").string();
}

UserDefaults::UserDefaults(std::string path) : m_path(std::move(path)) {
    if (m_path.empty())
        Log::line("No configuration folder: settings are not kept");
    read();
}

void UserDefaults::read() {
    m_values.clear();
    std::error_code unknown;
    if (m_path.empty() || !std::filesystem::exists(m_path, unknown))
        return;
    std::string error;
    const auto list = PropertyList::readFile(m_path, error);
    if (list && list->dictionary())
        m_values = *list->dictionary();
    else
        m_fileIsBroken = true;
    if (m_fileIsBroken)
        Log::line("Settings not read: %s", list ? "not a dictionary" : error.c_str());
}

bool UserDefaults::write() {
    if (m_path.empty())
        return false;
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(m_path).parent_path(), ignored);
    if (m_fileIsBroken)
        std::filesystem::rename(m_path, m_path + ".broken", ignored);
    m_fileIsBroken = false;
    std::string error;
    if (PropertyList::writeFile(m_path, m_values, error))
        return true;
    Log::line("Settings not kept: %s", error.c_str());
    return false;
}

const PropertyListValue* UserDefaults::find(const std::string& key) const {
    const auto found = m_values.find(key);
    return found == m_values.end() ? nullptr : &found->second;
}

std::optional<std::string> UserDefaults::string(const std::string& key) const {
    const auto* value = find(key);
    return value && value->string() ? std::optional(*value->string()) : std::nullopt;
}

std::optional<bool> UserDefaults::boolean(const std::string& key) const {
    const auto* value = find(key);
    return value && value->boolean() ? std::optional(*value->boolean()) : std::nullopt;
}

std::optional<std::int64_t> UserDefaults::integer(const std::string& key) const {
    const auto* value = find(key);
    return value && value->integer() ? std::optional(*value->integer()) : std::nullopt;
}

std::optional<PropertyListValue::Dictionary> UserDefaults::dictionary(
    const std::string& key) const {
    const auto* value = find(key);
    return value && value->dictionary() ? std::optional(*value->dictionary()) : std::nullopt;
}

void UserDefaults::set(const std::string& key, PropertyListValue value) {
    change(key, std::move(value));
}

void UserDefaults::remove(const std::string& key) {
    change(key, std::nullopt);
}

void UserDefaults::change(const std::string& key, std::optional<PropertyListValue> value) {
    m_unwritten.insert_or_assign(key, std::move(value));
    read();
    const PropertyListValue::Dictionary stored = m_values;
    for (const auto& [name, fresh] : m_unwritten) {
        if (fresh)
            m_values.insert_or_assign(name, *fresh);
        else
            m_values.erase(name);
    }
    if (m_values == stored || write())
        m_unwritten.clear();
}
