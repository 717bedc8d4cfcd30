#include "recording/PerformanceName.h"

#include <cstring>
#include <filesystem>

#include "audiofiles/AudioFile.h"
#include "audiofiles/WavOutput.h"
#include "recording/PerformanceNotes.h"
#include "text/DateText.h"
#include "wavechoice/WaveChoice.h"

namespace {

constexpr const char* kExtension = ".wav";
constexpr const char* kWhiteSpace = " \t\n\v\f\r";

std::string trimmed(const std::string& text) {
    const auto begin = text.find_first_not_of(kWhiteSpace);
    if (begin == std::string::npos)
        return "";
    return text.substr(begin, text.find_last_not_of(kWhiteSpace) + 1 - begin);
}

std::string numbered(const std::string& name, int number) {
    if (number == 1)
        return name;
    const std::string stem = name.substr(0, name.size() - std::strlen(kExtension));
    return stem + ' ' + std::to_string(number) + kExtension;
}

}  // namespace

std::string PerformanceName::of(std::string date, const std::string& beginning) {
    for (char& letter : date) {
        if (letter == '/' || letter == '\\' || letter == ':')
            letter = '-';
    }
    return beginning + trimmed(date) + kExtension;
}

std::string PerformanceName::reserve(double moment, std::string& error) {
    error = WaveChoice::makeDataFolder();
    if (!error.empty())
        return "";
    const std::string name = of(DateText::mediumDateShortTime(moment));
    for (int number = 1;; ++number) {
        std::string path = WaveChoice::dataFile(numbered(name, number));
        if (std::error_code unknown;
            std::filesystem::exists(PerformanceNotes::pathBeside(path), unknown))
            continue;
        OSStatus status = noErr;
        if (WavOutput::create(path, StreamDescription::sint16(1), false, &status))
            return path;
        if (status != kAudioFileExistsError) {
            error = path + " " + audioFileWriteProblem(status);
            return "";
        }
    }
}
