#include "TakeRequest.h"

#include <filesystem>

#include "CommandFrame.h"
#include "audiounits/devices/AudioDevices.h"
#include "parameters/PresetNames.h"
#include "recording/AudioTake.h"

namespace {

constexpr std::string_view kExtension = ".wav";

/// Names of sounds are file names: what would lead elsewhere, or be seen nowhere, is refused.
std::string faultOf(const std::string& name) {
    if (name.starts_with('.'))
        return "hidden: it begins with a dot";
    if (name.find_first_not_of(' ') == std::string::npos)
        return "empty";
    const std::string fault = PresetNames::fileFault(name);
    return fault.empty() ? PresetNames::fileFault(name + std::string(kExtension)) : fault;
}

}  // namespace

std::string TakeRequest::read(const Arguments& arguments) {
    if (arguments.has("force"))
        existing = FileNames::Existing::replace;
    device = arguments.value("device").value_or("");
    for (const auto step : {&TakeRequest::readName, &TakeRequest::readSeconds}) {
        if (std::string error = (this->*step)(arguments); !error.empty())
            return error;
    }
    std::string error = refusalOfPath();
    if (error.empty())
        AudioDevices::choose(device, error);
    return error;
}

std::string TakeRequest::readName(const Arguments& arguments) {
    if (arguments.words().size() != 1)
        return arguments.words().empty() ? "name the sound to record"
                                         : "one name at a time, not " + arguments.words()[1];
    std::string name = arguments.words()[0];
    if (name.ends_with(kExtension) && name != kExtension)
        name.resize(name.size() - kExtension.size());
    const std::string fault = faultOf(name);
    if (!fault.empty())
        return "give the sound another name, this one is " + fault;
    path = WaveChoice::dataFile(name + std::string(kExtension));
    return "";
}

std::string TakeRequest::readSeconds(const Arguments& arguments) {
    seconds = AudioTake::kLongestTake;
    const auto text = arguments.value("seconds");
    if (!text)
        return "";
    const auto wanted = decimalNumber(*text);
    if (!wanted || *wanted <= 0 || *wanted > AudioTake::kLongestTake)
        return "--seconds " + *text + ": a number above 0, up to 30, is wanted";
    seconds = *wanted;
    return "";
}

std::string TakeRequest::refusalOfPath() const {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored))
        return path + " is a folder; choose another name";
    if (std::filesystem::is_other(path, ignored))
        return path + " is a pipe or a device; choose another name";
    const bool taken = std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
    if (taken && existing == FileNames::Existing::keep)
        return path + " exists already; --force replaces it";
    return "";
}
