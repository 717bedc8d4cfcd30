#include "parameters/PresetNames.h"

#include <algorithm>
#include <array>

#include "text/UnicodeText.h"

namespace {

constexpr std::size_t kLongestEnding = 32;  // bytes

constexpr std::array<std::string_view, 3> kWavePrefixes = {"user/", "internal/", "generated/"};

std::string_view withoutPrefix(std::string_view wave) {
    for (const std::string_view prefix : kWavePrefixes) {
        if (wave.starts_with(prefix))
            return wave.substr(prefix.size());
    }
    return wave;
}

bool isSeparator(char c) {
    return c == '/' || c == '\\';
}

std::string longerThan(std::size_t bytes) {
    return "longer than " + std::to_string(bytes) + " bytes";
}

}  // namespace

std::string PresetNames::trimmed(std::string_view name) {
    return UnicodeText::trimmed(name);
}

std::string PresetNames::keyOf(std::string_view name) {
    return UnicodeText::lowerCased(UnicodeText::trimmed(name));
}

std::string PresetNames::fault(std::string_view name) {
    if (!UnicodeText::isUtf8(name))
        return "not UTF-8";
    const std::string text = trimmed(name);
    if (text.empty())
        return "empty";
    if (UnicodeText::hasControls(text))
        return "with control characters";
    return text.size() > kLongest ? longerThan(kLongest) : std::string();
}

std::string PresetNames::repaired(std::string_view name) {
    const std::string text = trimmed(UnicodeText::withoutControls(name));
    return trimmed(UnicodeText::cut(text, kLongest));
}

std::string PresetNames::fileNameFor(std::string_view name) {
    std::string file(UnicodeText::cut(name, kLongestWave - kLongestEnding));
    std::ranges::replace_if(file, isSeparator, '-');
    for (std::size_t i = 0; i < file.size(); ++i) {
        if (file[i] == '.' && (i == 0 || file[i - 1] == '.'))
            file[i] = '-';
    }
    return file;
}

std::string PresetNames::fileFault(std::string_view file) {
    if (!UnicodeText::isUtf8(file))
        return "not UTF-8";
    if (file.empty())
        return "empty";
    if (file.size() > kLongestWave)
        return longerThan(kLongestWave);
    if (UnicodeText::hasControls(file))
        return "with control characters";
    if (file == "." || file.find("..") != file.npos || std::ranges::any_of(file, isSeparator))
        return "not a plain file name";
    return "";
}

std::string PresetNames::waveFault(std::string_view wave) {
    return wave.size() > kLongestWave ? longerThan(kLongestWave) : fileFault(withoutPrefix(wave));
}
