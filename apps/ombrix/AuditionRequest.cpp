#include "AuditionRequest.h"

#include <cmath>
#include <optional>
#include <sstream>

#include "CommandFrame.h"
#include "DeviceRequest.h"
#include "OutputRequest.h"

namespace {

constexpr double kHighestGain = 100;
constexpr double kSlowestPace = 60;  // seconds

/// A number in a range, from `low` on where the range is open at the top.
std::string readNumber(const Arguments& arguments, const char* option, double low, double high,
                       std::optional<double>& into) {
    const auto text = arguments.value(option);
    if (!text)
        return "";
    into = decimalNumber(*text);
    if (into && *into >= low && *into <= high)
        return "";
    std::ostringstream error;
    error << "--" << option << " " << *text << ": a number from " << low << " to " << high
          << " is wanted";
    return error.str();
}

std::string readPlaces(const std::string& text, double length, std::vector<double>& places) {
    std::string_view rest = text;
    for (bool more = true; more;) {
        const auto comma = rest.find(',');
        more = comma != std::string_view::npos;
        const std::string place(rest.substr(0, comma));
        const auto seconds = decimalNumber(place);
        if (!seconds || !(*seconds >= 0 && *seconds < length))
            return "--scrub " + text + ": \"" + place + "\" is no place in a sound of " +
                   std::to_string(length) + " s";
        places.push_back(*seconds);
        rest.remove_prefix(more ? comma + 1 : rest.size());
    }
    return "";
}

}  // namespace

const std::vector<OptionRow>& auditionOptions() {
    static const std::vector<OptionRow> rows{
        {"from", "S", "begin S seconds after the sound's start"},
        {"loop", nullptr, "play it again and again, until stopped or for --seconds"},
        {"gain", "G", "factor for the level, 0 to 100 (1; 0.5 for --scrub)"},
        {"scrub", "S,S,...", "visit these places, in seconds, in place of playing"},
        {"pace", "S", "seconds from place to place, 0.001 to 60 (0.05)"},
        kDeviceOption,
        {"output", "OUT.wav", "write a file, faster than real time, in place of playing"},
        kForceOption,
        {"buffer-frames", "N", "frames per period, where we choose: 16 to 8192, --output from 1"},
        {"seconds", "S", "stop after S seconds; with --output write exactly as many"},
    };
    return rows;
}

std::string readAuditionWish(const Arguments& arguments, const WaveAccess& sound,
                             Listening::Wish& wish) {
    const double length = sound.sampleCount() / kGraphRate;
    std::optional<double> from, gain, pace;
    std::string error = readNumber(arguments, "from", 0, length, from);
    if (error.empty())
        error = readNumber(arguments, "gain", 0, kHighestGain, gain);
    if (error.empty())
        error = readNumber(arguments, "pace", 0.001, kSlowestPace, pace);
    if (!error.empty())
        return error;
    wish.playing.from = static_cast<std::uint32_t>(std::floor(from.value_or(0) * kGraphRate + 0.5));
    wish.playing.gain = static_cast<float>(gain.value_or(1));
    wish.playing.looping = arguments.has("loop");
    wish.scrubGain = static_cast<float>(gain.value_or(0.5));
    wish.pace = pace.value_or(wish.pace);
    if (const auto places = arguments.value("scrub"))
        return readPlaces(*places, length, wish.places);
    return "";
}

std::string auditionContradiction(const Arguments& arguments) {
    if (arguments.words().size() != 1)
        return arguments.words().empty() ? "name the sound to play"
                                         : "one sound at a time, not " + arguments.words()[1];
    const bool output = arguments.has("output");
    if (arguments.has("scrub") && (arguments.has("loop") || arguments.has("from")))
        return "--scrub visits its own places; leave out --loop and --from";
    if (arguments.has("pace") && !arguments.has("scrub"))
        return "--pace is for --scrub";
    if (output && arguments.has("device"))
        return "--output plays through no device; leave out --device";
    if (output && arguments.has("loop") && !arguments.has("seconds"))
        return "--loop never ends; say with --seconds how much --output writes";
    if (!output && arguments.has("force"))
        return "--force is for --output";
    return "";
}
