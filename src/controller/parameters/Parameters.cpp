#include "parameters/Parameters.h"

#include <algorithm>
#include <cmath>

#include "audiounits/FourCharCode.h"
#include "parameters/GrainModes.h"
#include "text/CNumber.h"

namespace {

constexpr float kRingModTop = 1760.f;  // hertz
constexpr double kFramesPerSecond = 44100.0;

float same(float value) {
    return value;
}

// The cutoff dial turns against the filter's value, which rises with its cube.
float cutoffToStored(float dial) {
    const float open = 1.f - dial;
    return open * open * open;
}
float cutoffToDial(float stored) {
    return 1.f - std::cbrt(stored);
}

constexpr float bassToStored(float dial) {
    return float(dial / kFramesPerSecond);
}
float bassToDial(float stored) {
    return stored * 44100.f;
}

float ringModToStored(float dial) {
    return float(dial * dial * dial * 1760.0);
}
float ringModToDial(float stored) {
    return std::cbrt(stored / kRingModTop);
}

double plain(float dial) {
    return dial;
}
double percent(float dial) {
    return dial * 100.f;
}
double grainMilliseconds(float dial) {
    return (dial * 5000.f + (1.f - dial) * 250.f) / 44.1;
}
double fmHertz(float dial) {
    return dial * 1000.f;
}
// Linear in the dial, though the filter is given the cube.
double cutoffHertz(float dial) {
    return (1.f - dial) * 22050.f;
}
double bassMilliseconds(float dial) {
    return dial / 44.1;
}
// Twice what the unit is given, on purpose.
double ringModHertz(float dial) {
    return 2.f * dial * dial * dial * kRingModTop;
}

constexpr DialMapping kSame = {same, same};
constexpr DialMapping kCutoff = {cutoffToStored, cutoffToDial};
constexpr DialMapping kBass = {bassToStored, bassToDial};
constexpr DialMapping kRingMod = {ringModToStored, ringModToDial};

constexpr DialText kNoText = {plain, "%2.0f", "%2.0f"};
constexpr DialText kSpeed = {plain, "%2.2fx", "%2.2f times"};
constexpr DialText kPercent = {percent, "%2.0f%%", "%2.0f%%"};
constexpr DialText kSeconds = {plain, "%2.2fs", "%2.2f seconds"};
constexpr DialText kGrainSize = {grainMilliseconds, "%2.0fms", "%2.0f milliseconds"};
constexpr DialText kFm = {fmHertz, "%2.0f Hz", "%2.0f hertz"};
constexpr DialText kCutoffText = {cutoffHertz, "%2.0f Hz", "%2.0f hertz"};
constexpr DialText kBassText = {bassMilliseconds, "%2.0fms", "%2.0f milliseconds"};
constexpr DialText kRingModText = {ringModHertz, "%2.0f Hz", "%2.0f hertz"};

constexpr std::array kSpeedNotches = {0.25f, 0.5f, 0.75f};
constexpr std::array kPreampNotches = {0.8f};

constexpr ParameterRange kUnit = {0, 1};
constexpr ParameterRange kEnvelopeDial = {0, 2};
constexpr ParameterRange kEnvelopeStored = {0, 5};
constexpr ParameterRange kBassDial = {1, 441};
constexpr ParameterRange kBassStored = {bassToStored(1), bassToStored(441)};

constexpr ParameterRange kFlag = {0, 1};
constexpr ParameterRange kModes = {0, float(kGrainModes.size() - 1)};

constexpr auto number = ParameterKind::number;
using enum ParameterId;

}  // namespace

// clang-format off
constexpr std::array<Parameter, kParameterCount> kParameters = {{
    // id, kind, key, dial, tag, dial range, initial, stored range, 0 is default, initial, notches, mapping, text
    {grainSpeed, number, "grainSpeed", "grainSpeed", fourCC("gspd"), {-2, 2}, 1, {-2, 2}, false, 1, kSpeedNotches, kSame, kSpeed},
    {grainSize, number, "grainSize", "grainSize", fourCC("gsiz"), kUnit, .5f, kUnit, false, .5f, {}, kSame, kGrainSize},
    {preamp, number, "preamp", "preamp", 0, {0, 1.25f}, 1, {0, 1.25f}, false, 1, kPreampNotches, kSame, kPercent},
    {fmFrequency, number, "fmFrequency", "fmFrequency", fourCC("fmfr"), kUnit, 0, kUnit, false, 0, {}, kSame, kFm},
    {syncSpeed, ParameterKind::flag, "syncSpeed", "", 0, kFlag, 0, kFlag, false, 0, {}, kSame, kNoText},
    {grainMotion, ParameterKind::choice, "grainMotion", "", 0, kModes, 1, kModes, false, 1, {}, kSame, kNoText},
    {echoDelay, number, "echoDelay", "echoDelay", 0, {0, 2}, 0, {0, 2}, false, 0, {}, kSame, kSeconds},
    {echoFeedback, number, "echoFeedback", "echoFeedback", 0, kUnit, 0, kUnit, false, 0, {}, kSame, kPercent},
    {filterCutoff, number, "filterCutoff", "filterCutoff", fourCC("cuto"), kUnit, 0, kUnit, false, 1, {}, kCutoff, kCutoffText},
    {filterResonance, number, "filterResonance", "filterResonance", 0, kUnit, 0, kUnit, false, 0, {}, kSame, kPercent},
    {filterBass, number, "filterBass", "filterResonanceBass", fourCC("rbas"), kBassDial, 330, kBassStored, true, kDefaultFilterBass, {}, kBass, kBassText},
    {ringModFrequency, number, "ringModFrequency", "ringModFrequency", fourCC("rmfr"), kUnit, 0, {0, kRingModTop}, false, 440, {}, kRingMod, kRingModText},
    {ringModDepth, number, "ringModDepth", "ringModDepth", 0, kUnit, 0, kUnit, false, 0, {}, kSame, kPercent},
    {distortion, number, "distortion", "distortionStrength", 0, kUnit, 0, kUnit, false, 0, {}, kSame, kPercent},
    {adsrAttack, number, "adsrAttack", "adsrAttack", 0, kEnvelopeDial, .25f, kEnvelopeStored, false, 0, {}, kSame, kSeconds},
    {adsrDecay, number, "adsrDecay", "adsrDecay", 0, kEnvelopeDial, .35f, kEnvelopeStored, false, 0, {}, kSame, kSeconds},
    {adsrSustain, number, "adsrSustain", "adsrSustain", 0, kUnit, .5f, kUnit, false, 1, {}, kSame, kPercent},
    {adsrRelease, number, "adsrRelease", "adsrRelease", 0, kEnvelopeDial, 2, kEnvelopeStored, false, .02f, {}, kSame, kSeconds},
}};
// clang-format on

static_assert([] {
    for (std::size_t i = 0; i < kParameterCount; ++i) {
        const Parameter& p = kParameters[i];
        if (std::size_t(p.id) != i || !p.dial.contains(p.dialInitial) ||
            !p.stored.contains(p.storedInitial))
            return false;
    }
    return true;
}());

const Parameter& parameter(ParameterId id) {
    return kParameters[std::size_t(id)];
}

const Parameter* parameterWithKey(std::string_view key) {
    const auto found = std::ranges::find(kParameters, key, &Parameter::key);
    return found == kParameters.end() ? nullptr : &*found;
}

const Parameter* parameterWithTag(std::uint32_t tag) {
    const auto found = std::ranges::find(kParameters, tag, &Parameter::tag);
    return tag == 0 || found == kParameters.end() ? nullptr : &*found;
}

float storedValue(ParameterId id, float dialValue) {
    return parameter(id).mapping.toStored(dialValue);
}

float dialValue(ParameterId id, float storedValue) {
    const Parameter& p = parameter(id);
    return p.mapping.toDial(p.zeroMeansDefault && storedValue == 0 ? p.storedInitial : storedValue);
}

std::string dialText(ParameterId id, float dialValue, bool spoken, bool synced) {
    const DialText& text = parameter(id).text;
    const std::string shown =
        formattedNumber(spoken ? text.spokenFormat : text.format, text.shown(dialValue));
    return synced && id == ParameterId::grainSpeed ? shown + " (Synced)" : shown;
}
