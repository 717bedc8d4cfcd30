// presetmaker: makes the property list of the shipped presets from a table that people write:
//
//     [Name]
//     tells = One sentence: what one hears.
//     wave = internal/Struck Bell.wav
//     echoDelay = 0.3
//
// Keys are those of presets; what a preset does not name stays at its start value. Empty lines and
// lines that begin with # count for nothing.

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>

#include "parameters/Preset.h"
#include "propertylists/PropertyList.h"

namespace {

/// Delay lines are whole frames long: the length that comes back from one as it was given to it.
float wholeFrames(float seconds) {
    float stored = 0;
    for (long frames = std::lround(seconds * 44100.f); frames > 0; --frames) {
        stored = float(frames) / 44100.f;
        if (long(stored * 44100.f) == frames)
            break;
    }
    return stored;
}

/// Reads the table line by line; the first error ends it.
class PresetTable {
  public:
    /// Answers what is wrong with the line, or nothing.
    std::string readLine(const std::string& line) {
        if (line.empty() || line.front() == '#')
            return "";
        if (line.front() == '[' && line.back() == ']')
            return begin(line.substr(1, line.size() - 2));
        const auto equals = line.find(" = ");
        if (equals == std::string::npos || m_preset.name.empty())
            return "a line is [NAME], or below one KEY = VALUE";
        return set(line.substr(0, equals), line.substr(equals + 3));
    }

    /// Ends the preset that is being read. Answers what it lacks, or nothing.
    std::string finish() {
        if (m_preset.name.empty())
            return "";
        if (!m_preset.wave || !m_tells)
            return '[' + m_preset.name + "] needs a wave, and tells = what one hears";
        for (const auto delay : {ParameterId::echoDelay, ParameterId::filterBass})
            m_preset.setNumber(delay, wholeFrames(m_preset.number(delay)));
        std::string key = m_preset.name;
        std::ranges::transform(key, key.begin(), [](unsigned char c) { return std::tolower(c); });
        if (!m_presets.emplace(key, m_preset.toPropertyList()).second)
            return "there are two of [" + m_preset.name + ']';
        return "";
    }

    const PropertyListValue::Dictionary& presets() const { return m_presets; }

  private:
    std::string begin(const std::string& name) {
        std::string error = finish();
        m_preset = Preset{};
        for (const Parameter& parameter : kParameters)
            m_preset.setNumber(parameter.id, parameter.storedInitial);
        m_preset.grainMotion = int(parameter(ParameterId::grainMotion).storedInitial);
        m_preset.name = name;
        m_preset.isProtected = true;
        m_tells = false;
        return error;
    }

    std::string set(const std::string& key, const std::string& value) {
        std::string error;
        if (key == "tells")
            m_tells = true;  // for docs/sounds.md
        else
            m_preset.set(key, value, error);
        return error;
    }

    Preset m_preset;  // being read; without a name there is none
    bool m_tells = false;
    PropertyListValue::Dictionary m_presets;
};

int fail(const std::string& line) {
    std::cerr << "presetmaker: " << line << '\n';
    return 1;
}

}  // namespace

int main(int count, char** words) {
    if (count != 3)
        return fail("usage: presetmaker presets.txt default-presets.plist");
    std::ifstream file(words[1]);
    if (!file)
        return fail(std::string(words[1]) + " cannot be read");
    PresetTable table;
    std::string line, error;
    for (int number = 1; error.empty() && std::getline(file, line); ++number) {
        if (error = table.readLine(line); !error.empty())
            error = std::string(words[1]) + ':' + std::to_string(number) + ": " + error;
    }
    if (error.empty())
        error = table.finish();
    if (error.empty() && !table.presets().contains("default sound"))
        error = std::string(words[1]) + ": there must be a [Default Sound]";
    if (error.empty())
        PropertyList::writeFile(words[2], table.presets(), error);
    return error.empty() ? 0 : fail(error);
}
